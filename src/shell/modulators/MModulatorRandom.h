#pragma once

#include <cstdint>
#include <vector>

#include "shell/modulators/MModulatorProjection.h"

struct MAudioPluginTime;
class MXMLItem;
struct MModulatorParameter;

/// What of MModulatorRandom is stored. Any thread writes the fields.
struct MModulatorRandomSettings : MModulatorProjection
{
    void Store(MXMLItem& item) const;
    /// What is missing takes its default.
    void Load(MXMLItem& item);
    /// Adds what can be automated, under keys of @p group.
    void Publish(std::vector<MModulatorParameter>& parameters, const char* group);

    MRelaxed<double> Speed = 0.0;      ///< octaves, -10 to 10; 0 is a node each quarter
    MRelaxed<double> Smoothness = 1.0; ///< 0.0 straight lines, 1.0 a curve through the nodes
};

/// A random curve over the song: the same place always gives the same value.
/// Owned by a modulator; audio thread, under the processing lock. Does not allocate.
class MModulatorRandom : public MModulatorRandomSettings
{
public:
    /// Back to the start of what runs while the host gives no place; @p newRate in Hz.
    void Reset(double newRate) noexcept;

    /// The state at the start of a block of @p samples: 0.0 or more, and for a curve seldom above
    /// 1.0.
    double Process(const MAudioPluginTime& transport, int samples) noexcept;

    /// The value of node @p k, 0.0 to 1.0.
    static double GetNode(std::int64_t k) noexcept;

private:
    double rate = 44100.0;       ///< Hz
    double RandomPosition = 0.0; ///< quarters at 120 a minute
};
