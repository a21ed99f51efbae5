#include "shell/MIDIControllers.h"

#include "foundation/strings/MStringFormatter.h"
#include "foundation/xml/MXMLItem.h"
#include "host/MAudioPlugin.h"

namespace
{

bool Accepts(int wantedChannel, int channel) noexcept
{
    return wantedChannel == 0 || wantedChannel == channel + 1;
}

MString IndexedName(const char* name, std::size_t index)
{
    return MStringFormatter("{0}{1}").Add(MString(name)).Add(static_cast<int>(index)).Result();
}

template <typename Row, std::size_t Count>
void StoreAll(MXMLItem& list, const char* name, const std::array<Row, Count>& rows)
{
    list.Clear();
    for (std::size_t i = 0; i < Count; ++i)
        rows[i].Store(list.AddSubItem(IndexedName(name, i)));
}

/// Older states number the items by their order alone.
template <typename Row, std::size_t Count>
void LoadAll(MXMLItem& list, const char* name, std::array<Row, Count>& rows,
             const MAudioPlugin& plugin)
{
    MXMLItem none("none");
    std::size_t unnumbered = 0;
    const auto& items = list.GetSubItems();
    for (std::size_t i = 0; i < Count; ++i)
    {
        if (list.HasSubItem(IndexedName(name, i)))
        {
            rows[i].Load(list.GetSubItem(), plugin);
            continue;
        }
        while (unnumbered < items.size() && !(items[unnumbered]->GetName() == name))
            ++unnumbered;
        rows[i].Load(unnumbered < items.size() ? *items[unnumbered++] : none, plugin);
    }
}

} // namespace

void MIDIControllers::OnSource(int channel, int number, double moving)
{
    for (const MMIDIControllerAssignment& row : assignments)
        if (row.isEnabled && row.controller == number && Accepts(row.channel, channel))
            plugin.SetParameter(row.parameterIndex, row.target.Map(moving), false);

    const std::uint32_t place = written.load(std::memory_order_relaxed);
    ring[place % RingLength].store(static_cast<std::uint32_t>((channel + 1) << 16 | number),
                                   std::memory_order_relaxed);
    written.store(place + 1, std::memory_order_release); // shows the entry with the count
}

void MIDIControllers::OnNote(int channel, int note, double semitones)
{
    for (const MMIDINoteController& row : noteControllers)
        if (row.isEnabled && Accepts(row.channel, channel))
            plugin.SetParameter(row.parameterIndex, row.Map(note, semitones), false);
}

bool MIDIControllers::TakeSource(Source& source) noexcept
{
    const std::uint32_t end = written.load(std::memory_order_acquire);
    if (end - taken > RingLength)
        taken = end - RingLength;
    if (taken == end)
        return false;
    const std::uint32_t packed = ring[taken++ % RingLength].load(std::memory_order_relaxed);
    source = {static_cast<int>(packed >> 16), static_cast<int>(packed & 0xFFFF)};
    return true;
}

void MIDIControllers::Store(MXMLItem& settings) const
{
    StoreAll(settings.GetOrAddSubItem("Controllers"), "Controller", assignments);
    StoreAll(settings.GetOrAddSubItem("NoteControllers"), "NoteController", noteControllers);
}

void MIDIControllers::Load(MXMLItem& settings)
{
    MXMLItem none("none");
    LoadAll(settings.HasSubItem("Controllers") ? settings.GetSubItem() : none, "Controller",
            assignments, plugin);
    LoadAll(settings.HasSubItem("NoteControllers") ? settings.GetSubItem() : none, "NoteController",
            noteControllers, plugin);
}
