#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

/// What the user asked for on the command line, each value within its range.
struct RenderOptions
{
    static constexpr int MinRate = 101; ///< Hz
    static constexpr int MaxRate = 6144000;
    static constexpr int DefaultRate = 48000;
    static constexpr int MaxChannels = 8;
    static constexpr int MaxBlock = 1 << 24; ///< samples
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

    /// @throws MException that says which argument is wrong and how.
    static RenderOptions Parse(int argumentCount, const char* const* arguments);

    std::string output;               ///< path of the WAV file; empty if there is nothing to render
    std::optional<std::string> state; ///< path; loaded before the settings
    std::optional<std::string> saveState; ///< path; written after the settings, as is the table
    std::optional<std::string> table;     ///< path
    std::vector<int> notes;
    std::optional<std::string> midi;  ///< path
    std::optional<std::string> input; ///< path
    std::optional<double> seconds;
    std::optional<int> rate; ///< Hz
    int block = 512;         ///< samples
    int channels = 2;
    std::vector<Setting> settings; ///< in the order of the command line
    bool isList = false;           ///< list the parameters
    /// Help or version, for those who asked for it instead of anything else.
    std::optional<std::string> answer;
};
