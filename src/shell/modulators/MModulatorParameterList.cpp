#include "shell/modulators/MModulatorParameterList.h"

#include <utility>

#include "effect/parameters/MParameterOwner.h"
#include "effect/parameters/ParameterADSR.h"
#include "effect/parameters/ParameterSignalGenerator.h"
#include "shell/modulators/MModulator.h"
#include "shell/modulators/MModulatorParameters.h"

namespace
{

using Signal = ParameterSpecialBaseCustom<MSignalGenerator, MSignalGeneratorEditor>;
using ADSR = ParameterSpecialBaseCustom<MADSR, MADSREditor>;
using Published = std::vector<MModulatorParameter>;

constexpr std::size_t MostInARow = 20; ///< the reset, the follower and the envelope

} // namespace

MModulatorParameterList::MModulatorParameterList(MModulator& modulator, int modulatorIndex,
                                                 MParameterOwner& parameterOwner)
{
    const MString section = MModulatorParameters::GetSection(modulatorIndex);
    const auto addRow = [&](auto publish)
    {
        Published published;
        published.reserve(MostInARow);
        publish(published);
        adapters.push_back(std::make_unique<MModulatorParameters>(
            modulatorIndex, std::move(published), parameterOwner));
    };
    const auto makeSpecial = [&](const char* name, const char* key, void* data)
    {
        MPluginSpecialRecord special;
        special.name = name;
        special.secondName = MModulatorParameters::GetIDPrefix(modulatorIndex);
        special.secondName.Append(key);
        special.data = data;
        return special;
    };
    adapters.reserve(5);
    addRow([&](Published& to) { modulator.Publish(to); });
    adapters.push_back(std::make_unique<ParameterSignalGeneratorT<Signal>>(
        makeSpecial("Signal shape", MModulator::SignalKey, &modulator.Signal), &parameterOwner,
        section));
    addRow(
        [&](Published& to)
        {
            modulator.PublishReset(to);
            modulator.Follower.Publish(to, MModulator::FollowerKey);
            modulator.Envelope.Publish(to, MModulator::EnvelopeKey);
        });
    adapters.push_back(std::make_unique<ParameterADSRT<ADSR>>(
        makeSpecial("Envelope", MModulator::ADSRKey, &modulator.Envelope.ADSR), &parameterOwner,
        section));
    addRow(
        [&](Published& to)
        {
            modulator.Random.Publish(to, MModulator::RandomKey);
            modulator.Pitch.Publish(to, MModulator::PitchKey);
        });
}
