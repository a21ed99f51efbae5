#include "shell/modulators/MModulatorSettings.h"

#include "foundation/xml/MXMLItem.h"
#include "shell/modulators/ModulatorNumbers.h"

namespace
{

using namespace modulatornumbers;
using namespace modulatortexts;
using Settings = MModulatorSettings;

constexpr MModulatorNumberT<Settings> Numbers[] = {
    {"Frequency", &Settings::Frequency, 0.001, 1.0, "Frequency", &Hertz},
};
constexpr MModulatorSwitchT<Settings> Switches[] = {
    {"Enabled", &Settings::Enabled},
    {"HiSpeed", &Settings::HiSpeed},
    {"SideChain", &Settings::SideChain},
};
constexpr MModulatorNumberT<Settings> ResetNumbers[] = {
    {"MinVelocity", &Settings::MinVelocity, 0.0, 1.0, "MIDI reset min velocity", &Percents},
    {"MaxVelocity", &Settings::MaxVelocity, 0.0, 1.0, "MIDI reset max velocity", &Percents},
    {"Phase", &Settings::ResetPhase, 0.0, 1.0, "MIDI reset phase", &Percents},
};
constexpr MModulatorSwitchT<Settings> ResetSwitches[] = {
    {"Enabled", &Settings::MIDIResetEnabled},
};
constexpr const char* ResetKey = "MIDIReset";
constexpr const char* ModeNames[] = {"Normal", "Envelope", "MIDI Envelope", "Random", "Pitch"};
constexpr int LastChannel = 16;

} // namespace

void MModulatorSettings::Store(MXMLItem& item) const
{
    StoreAll(item, *this, Numbers, Switches);
    WriteChoice(item, "Mode", Mode, ModeNames);
    MXMLItem& reset = item.GetOrAddSubItem(ResetKey);
    StoreAll(reset, *this, ResetNumbers, ResetSwitches);
    WriteInt(reset, "Channel", Channel);
}

void MModulatorSettings::Load(MXMLItem& item)
{
    LoadAll(item, *this, Numbers, Switches);
    const bool isFollower =
        item.HasSubItem("Envelope") && ReadBool(item.GetSubItem(), "Enabled", false);
    Mode = ReadChoice(item, "Mode", isFollower ? 1 : 0, ModeNames);

    MXMLItem none("none");
    const MXMLItem& reset = item.HasSubItem(ResetKey) ? item.GetSubItem() : none;
    LoadAll(reset, *this, ResetNumbers, ResetSwitches);
    Channel = ReadInt(reset, "Channel", 0, 0, LastChannel);
}

void MModulatorSettings::Publish(std::vector<MModulatorParameter>& parameters)
{
    PublishAll(parameters, nullptr, *this, Numbers);
}

void MModulatorSettings::PublishReset(std::vector<MModulatorParameter>& parameters)
{
    PublishAll(parameters, ResetKey, *this, ResetNumbers);
}
