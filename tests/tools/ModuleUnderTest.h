#pragma once

#include <array>
#include <memory>
#include <string>
#include <vector>

#include "tools/hosting/HostedVst2.h"
#include "tools/hosting/HostedVst3.h"
#include "tools/hosting/PluginModule.h"

/// One channel, and a pair of them.
using Sound = std::vector<float>;
using SoundPair = std::array<Sound, 2>;

inline const char* const ModulePaths[] = {TONVALE_VST2_MODULE, TONVALE_VST3_MODULE};

/// The name of the tests of a module, by its path.
std::string NameStandard(const std::string& path);

/// Never near 0, other on each side, and no neighbour of the plugin's own tone.
SoundPair MakeInput(int samples);
float FindPeak(const Sound& sound);

/// An instance of a built module. Its blocks come by the function that hosts call, so that they may
/// be as odd as theirs.
class ModuleUnderTest
{
public:
    static constexpr int Rate = 48000;   ///< Hz, unless set up otherwise
    static constexpr int MaxBlock = 512; ///< samples, as told to the plugin

    explicit ModuleUnderTest(const std::shared_ptr<PluginModule>& pluginModule);
    explicit ModuleUnderTest(const std::string& path) : ModuleUnderTest(PluginModule::Open(path)) {}

    HostedPlugin* operator->() const { return plugin.get(); }
    /// Of "Dry" or "Wet", 0.0 to 1.0.
    void SetGain(const std::string& name, double gain) const;

    /// In stereo at Rate, without a line from the gains before.
    void Start(double dry, double wet) const;
    /// What a host that does not care may also do while it plays. VST2 knows no modes.
    void SetUp(int rate, std::int32_t mode = Vst3::kRealtime);
    /// At the start of the next block.
    void StartNote(int note);

    /// A block of two channels. Where there is no row, VST3 gets no bus.
    void Call(float** inputs, float** outputs, int samples);
    /// The sound of @p input, cut into @p blocks over and over.
    SoundPair Play(SoundPair input, const std::vector<int>& blocks, bool isInPlace = false);
    /// Of silence.
    Sound PlayLeft(int samples)
    {
        return Play({Sound(std::size_t(samples)), Sound(std::size_t(samples))}, {MaxBlock})[0];
    }

private:
    std::unique_ptr<HostedPlugin> plugin;
    HostedVst2* vst2; ///< the plugin, or null
    HostedVst3* vst3;
    Vst3EventList events; ///< for the next block
    std::int32_t processMode = Vst3::kRealtime;
};
