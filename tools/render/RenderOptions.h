#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "host/MAudioPlugin.h"
#include "shell/ChannelModes.h"
#include "shell/MUpsampler.h"

/// What the user asked for on the command line, each value within its range.
struct RenderOptions
{
    static constexpr int MinRate = MAudioPlugin::MinRate; ///< Hz
    static constexpr int MaxRate = MAudioPlugin::MaxRate;
    static constexpr int DefaultRate = 48000;
    static constexpr int MaxChannels = MAudioPlugin::ChannelsPerBus;
    static constexpr int MinSurroundChannels = 3;
    static constexpr int MaxBlock = MAudioPlugin::MaxBlock; ///< samples
    static constexpr int MaxUpsampling = MUpsampler::MaxFactor;
    static constexpr double MaxTempo = 1000.0; ///< quarters a minute
    static constexpr double MaxSeconds = 86400.0;
    static constexpr double DefaultSeconds = 5.0;
    static constexpr double TailSeconds = 1.0; ///< behind a MIDI file

    /// A parameter value, as text or normalised.
    struct Setting
    {
        std::string name;              ///< empty for --shape
        std::string text;              ///< if there is no normalised value
        std::optional<double> value01; ///< any number
    };

    struct Point
    {
        double seconds; ///< 0.0 to MaxSeconds
        double value01; ///< 0.0 to 1.0
    };

    /// What a host does to a parameter meanwhile; at least one point, by rising seconds.
    struct Automation
    {
        std::string name;
        std::vector<Point> points;
    };

    /// A place in the square between the slots A, B, C and D, 0.0 to 1.0 each.
    struct Place
    {
        double x;
        double y;
    };

    struct PlaceInTime
    {
        double seconds; ///< 0.0 to MaxSeconds
        Place place;
    };

    /// The first option given that works only where all of the plugin is within reach; null if
    /// there is none.
    const char* FindInsideOption() const noexcept;

    /// Whether presets are listed or installed instead of anything else.
    bool IsPresetsOnly() const noexcept { return isPresetList || installPresets; }

    /// @throws MException that says which argument is wrong and how.
    static RenderOptions Parse(int argumentCount, const char* const* arguments);

    std::optional<std::string> plugin; ///< path; nothing for our own
    bool isInProcess = false;          ///< our own without a host standard between
    std::string output;               ///< path of the WAV file; empty if there is nothing to render
    std::optional<std::string> state; ///< path; loaded before the settings
    std::optional<std::string> preset;      ///< "Folder/Name"; instead of a state
    std::optional<std::string> presetsFile; ///< path; nothing for the usual places
    std::optional<Place> morph;             ///< after the settings
    std::vector<PlaceInTime> morphPath;     ///< by rising seconds
    std::optional<std::string> saveState;   ///< path; written after the settings, as is the table
    std::optional<std::string> table;       ///< path
    std::optional<std::string> plot;        ///< path of a PNG file; a picture of the sound
    std::optional<std::string> shapeSheet;  ///< likewise; the shapes that there are
    std::vector<int> notes;
    std::optional<std::string> midi;  ///< path
    std::optional<std::string> input; ///< path
    std::optional<double> seconds;
    std::optional<int> rate; ///< Hz
    int block = 512;         ///< samples
    int channels = 2;
    // Nothing leaves what the state says.
    std::optional<MChannelMode> channelMode;
    std::optional<int> upsampling;
    std::optional<bool> isHighQuality; ///< of the upsampling
    std::optional<bool> isBypassed;
    std::optional<double> tempo;   ///< quarters a minute; nothing while the host stands
    std::vector<Setting> settings; ///< in the order of the command line
    std::vector<Automation> automations;
    /// Path of presets to add to those of the user, instead of anything else.
    std::optional<std::string> installPresets;
    bool isPresetList = false; ///< list the presets instead of anything else
    bool isList = false;       ///< list the parameters
    bool isStatistics = false; ///< tell how the plugin ran
    /// Help or version, for those who asked for it instead of anything else.
    std::optional<std::string> answer;
};
