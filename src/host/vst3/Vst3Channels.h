#pragma once

#include <array>
#include <vector>

#include "host/MAudioPlugin.h"
#include "host/vst3/Vst3Process.h"

namespace Vst3
{

/// Spreads the blocks of a host to the channels of a plugin, eight to a bus. Where the host has a
/// channel but no block, silence stands in on the inputs and waste paper on the outputs.
/// Owned by the adapter; the audio thread but for Reserve, which comes between blocks.
class Channels
{
public:
    /// Makes room for blocks of @p samples, so that none of them allocates.
    void Reserve(int samples);
    /// Has @p plugin make the block of @p data, which has a bus and at least one sample.
    void Process(MAudioPlugin& plugin, const ProcessData& data);

private:
    template <typename Sample>
    struct Pointers
    {
        std::array<Sample*, MAudioPlugin::MaxChannels> all{};
        std::array<int, MAudioPlugin::MaxBuses> used{}; ///< by bus; all behind them are null
    };

    template <typename Sample>
    static void Spread(const AudioBusBuffers* buses, std::int32_t count, Sample* standIn,
                       Pointers<Sample>& channels) noexcept;

    Pointers<const float> inputs{}; ///< of the block under way
    Pointers<float> outputs{};
    std::vector<float> silence; ///< never written to
    std::vector<float> waste;
};

} // namespace Vst3
