#include "shell/modulators/Modulators.h"

#include "effect/parameters/ParameterBase.h"
#include "foundation/xml/MXMLItem.h"
#include "host/MAudioPlugin.h"

namespace
{

constexpr const char* ListKey = "LFOs";
constexpr const char* ItemKey = "LFO";

} // namespace

Modulators::Modulators(MAudioPlugin& modulatedPlugin) noexcept
    : plugin(modulatedPlugin),
      writer(modulatedPlugin),
      counter(writer),
      modulators{MModulator(counter, modulatedPlugin.GetProcessingLock()),
                 MModulator(counter, modulatedPlugin.GetProcessingLock())}
{
}

void Modulators::AddParameters()
{
    parameters.reserve(Count);
    for (std::size_t i = 0; i < Count; ++i)
        for (const auto& adapter :
             parameters.emplace_back(modulators[i], static_cast<int>(i), plugin).GetAdapters())
            plugin.AddAdapter(*adapter);
}

void Modulators::InitProcessing(double sampleRate)
{
    counter.Resize(plugin.GetParameterCount());
    for (MModulator& modulator : modulators)
        modulator.InitProcessing(sampleRate);
}

bool Modulators::Prepare()
{
    bool isAnyRunning = false;
    for (std::size_t i = 0; i < Count; ++i)
    {
        isRunning[i] = modulators[i].Prepare();
        isAnyRunning |= isRunning[i];
    }
    return isAnyRunning;
}

void Modulators::Process(const MAudioPluginTime& transport, const float* const* inputs, int samples,
                         int channels)
{
    for (std::size_t i = 0; i < Count; ++i)
        if (isRunning[i])
            modulators[i].ProcessBlock(transport, inputs, samples, channels);
}

void Modulators::OnNote(int channel, double velocity, bool on)
{
    for (MModulator& modulator : modulators)
        modulator.OnNote(channel, velocity, on);
}

void Modulators::Store(MXMLItem& settings) const
{
    MXMLItem& list = settings.GetOrAddSubItem(ListKey);
    list.Clear();
    for (const MModulator& modulator : modulators)
        modulator.Store(list.AddSubItem(ItemKey));
}

void Modulators::Load(MXMLItem& settings)
{
    MXMLItem none("none");
    const MXMLItem& list = settings.HasSubItem(ListKey) ? settings.GetSubItem() : none;
    auto item = list.GetSubItems().begin();
    const auto end = list.GetSubItems().end();
    const MString key = ItemKey;
    for (MModulator& modulator : modulators)
    {
        while (item != end && !((*item)->GetName() == key))
            ++item;
        modulator.Load(item != end ? **item++ : none, plugin);
        modulator.ForgetClaims();
    }
}

void Modulators::Writer::SetParameter(int index, double value01)
{
    if (MAutomationAdapter* const adapter = plugin.FindAdapter(index))
        adapter->SetParameter(index - adapter->GetFirstIndex(), value01, false);
}

void Modulators::Writer::SetModulated(int index, bool on)
{
    if (on)
        plugin.GetInterpolation().SetHeld(index, true);
    plugin.SetModulated(index, on);
    if (on)
        return;
    plugin.GetInterpolation().SetHeld(index, false);
    plugin.UpdateEffect(); // it hears the user's value again
}

bool Modulators::Writer::HasAlternate(int index) const
{
    const auto* const base = dynamic_cast<const ParameterRecordBase*>(plugin.FindAdapter(index));
    return base != nullptr && (base->GetRecord().type == MParameterType::Float ||
                               base->GetRecord().type == MParameterType::Int);
}
