#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "foundation/threads/MException.h"

/// One instance of a plugin, as its host drives it: the same operations for every standard.
/// All calls come from the thread that made it. Texts are UTF-8, empty where the plugin gives none.
/// Parameters are counted from 0; an index is always below GetParameterCount(). Whatever throws
/// throws MException with a text for the user.
class HostedPlugin
{
public:
    static constexpr int MaxChannels = 8;

    HostedPlugin() = default;
    virtual ~HostedPlugin() = default;
    HostedPlugin(const HostedPlugin&) = delete;
    HostedPlugin& operator=(const HostedPlugin&) = delete;

    virtual std::string GetName() const = 0;
    virtual std::string GetMaker() const = 0;
    virtual std::string GetVersion() const = 0; ///< in the style of the standard: "5.03", "503"
    virtual std::string GetFormat() const = 0;  ///< "VST2", "VST3"; empty for code in this program

    /// Constant. Without the bypass, which has an operation of its own.
    virtual int GetParameterCount() const = 0;
    virtual std::string GetParameterName(int index) const = 0;
    virtual double Get01(int index) const = 0;
    /// Takes effect at once, or at the next block.
    virtual void Set01(int index, double value01) = 0;
    /// The present value as users read it, with its unit.
    virtual std::string GetText(int index) const = 0;
    /// Whether texts of values may lack their ends: "-6.02 d" for "-6.02 dB".
    virtual bool CutsTexts() const { return false; }
    /// What it would show at @p value01.
    virtual std::string GetTextAt(int index, double value01) = 0;
    /// Where the value lies that @p text shows, also outside 0.0 to 1.0; nothing if the plugin
    /// reads no texts or not this one. Some answer with the present value instead.
    virtual std::optional<double> Parse(int index, const std::string& text) = 0;
    /// How many steps lie between the ends; 0 for none or if the plugin does not tell.
    virtual int CountSteps(int index) const = 0;

    /// False if the plugin cannot bypass itself.
    virtual bool SetBypassed(bool on) = 0;

    /// All that makes the plugin sound as it does, to be loaded by the same plugin.
    virtual std::vector<std::byte> SaveState() = 0;
    /// @throws MException if the plugin does not take it
    virtual void LoadState(std::span<const std::byte> state) = 0;

    /// Begins a sound of @p channels, 1 to MaxChannels, at @p rate Hz with blocks of up to
    /// @p maxBlock samples, and ends the one before. A plugin with other inputs, or none, is fine.
    /// @throws MException if its outputs or the rate cannot be had
    virtual void Start(int channels, int rate, int maxBlock) = 0;
    /// By how many samples the output comes late; from Start on.
    virtual int GetLatency() const = 0;
    /// Quarters a minute, above 0: from the next Start on the transport runs, from 0 there, in bars
    /// of four. Without, it stands and tells no tempo.
    virtual void SetTempo(double quartersAMinute) = 0;
    /// Has a channel message of three bytes come @p offset samples into the next block.
    virtual void Send(std::span<const std::uint8_t, 3> message, int offset) = 0;
    /// Makes a block of @p samples: one pointer for each channel that is given, or taken. Missing
    /// inputs are silent. No block may be input and output at once.
    virtual void Process(std::span<const float* const> inputs, std::span<float* const> outputs,
                         int samples) = 0;

protected:
    static MException Refusal(const std::string& reason)
    {
        return MException(MString::FromUTF8(reason), MException::BadArgument);
    }
    static MException ChannelRefusal(int asked, int outputs)
    {
        return Refusal("the plugin cannot play " + std::to_string(asked) +
                       (asked == 1 ? " channel" : " channels") + "; its number of outputs is " +
                       std::to_string(outputs));
    }
};
