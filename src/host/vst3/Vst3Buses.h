#pragma once

#include <cstdint>
#include <optional>
#include <span>

#include "foundation/strings/MString.h"
#include "host/vst3/Vst3Component.h"

class MAudioPlugin;

namespace Vst3
{

/// The buses of a plugin as the host sees them. All audio buses of a side share one arrangement.
/// Their number stays, whatever the arrangement: a bus without channels is still a bus.
/// Owned by the adapter; the host's thread.
class Buses
{
public:
    explicit Buses(MAudioPlugin& describedPlugin) noexcept : plugin(describedPlugin) {}

    /// Stereo on both sides, which the plugin is already prepared for.
    void Build();
    void Clear() noexcept;

    int Count(std::int32_t media, std::int32_t direction) const noexcept;
    bool Has(std::int32_t media, std::int32_t direction, std::int32_t index) const noexcept
    {
        return index >= 0 && index < Count(media, direction);
    }
    /// Returns whether there is such a bus; otherwise @p info stays as it is.
    bool Describe(std::int32_t media, std::int32_t direction, std::int32_t index,
                  BusInfo& info) const;
    std::optional<SpeakerArrangement> GetArrangement(std::int32_t direction,
                                                     std::int32_t index) const noexcept;

    struct Answer
    {
        bool isChanged; ///< InitProcessing has to follow
        bool isAsAsked; ///< the buses have what was asked for, or had it before
    };
    /// Takes the first arrangement of each side, narrowed to what the plugin can do. Both sides
    /// change together or not at all.
    Answer Arrange(std::span<const SpeakerArrangement> inputs,
                   std::span<const SpeakerArrangement> outputs);

private:
    struct Side
    {
        int buses = 0;
        SpeakerArrangement arrangement = SpeakerArr::kStereo;

        /// Whether each of its buses has what was asked for it.
        bool Has(std::span<const SpeakerArrangement> asked) const noexcept;
    };
    struct Layout
    {
        SpeakerArrangement arrangement;
        int channels; ///< the most of any bus
    };

    Layout Correct(const Side& side, std::span<const SpeakerArrangement> asked) const noexcept;
    MString NameAudioBus(std::int32_t direction, int index) const;

    MAudioPlugin& plugin;
    Side input;
    Side output;
    bool hasEventInput = false;
    bool hasEventOutput = false;
};

} // namespace Vst3
