#include "shell/modulators/MModulatorSettings.h"

#include "foundation/xml/MXMLItem.h"
#include "shell/modulators/ModulatorNumbers.h"

namespace
{

using namespace modulatornumbers;
using Settings = MModulatorSettings;

constexpr MModulatorNumberT<Settings> Numbers[] = {
    {"Frequency", &Settings::Frequency, 0.001, 1.0, "Frequency"},
};
constexpr MModulatorSwitchT<Settings> Switches[] = {
    {"Enabled", &Settings::Enabled},
    {"HiSpeed", &Settings::HiSpeed},
    {"SideChain", &Settings::SideChain},
};
constexpr MModulatorNumberT<Settings> ResetNumbers[] = {
    {"MinVelocity", &Settings::MinVelocity, 0.0, 1.0, nullptr},
    {"MaxVelocity", &Settings::MaxVelocity, 0.0, 1.0, nullptr},
    {"Phase", &Settings::ResetPhase, 0.0, 1.0, nullptr},
};
constexpr MModulatorSwitchT<Settings> ResetSwitches[] = {
    {"Enabled", &Settings::MIDIResetEnabled},
};
constexpr const char* ModeNames[] = {"Normal", "Envelope", "MIDI Envelope", "Random", "Pitch"};
constexpr int LastChannel = 16;

} // namespace

void MModulatorSettings::Store(MXMLItem& item) const
{
    StoreAll(item, *this, Numbers, Switches);
    WriteChoice(item, "Mode", Mode, ModeNames);
    MXMLItem& reset = item.GetOrAddSubItem("MIDIReset");
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
    const MXMLItem& reset = item.HasSubItem("MIDIReset") ? item.GetSubItem() : none;
    LoadAll(reset, *this, ResetNumbers, ResetSwitches);
    Channel = ReadInt(reset, "Channel", 0, 0, LastChannel);
}
