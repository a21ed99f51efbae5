#include "shell/MIDIControllers.h"

#include <algorithm>

#include "foundation/strings/NumberedNames.h"
#include "foundation/xml/MXMLItem.h"
#include "host/MAudioPlugin.h"

namespace
{

bool Accepts(int wantedChannel, int channel) noexcept
{
    return wantedChannel == 0 || wantedChannel == channel + 1;
}

constexpr auto AssignmentNames = MakeNumberedNames<MIDIControllers::AssignmentCount>("Controller");
constexpr auto NoteControllerNames =
    MakeNumberedNames<MIDIControllers::NoteControllerCount>("NoteController");

/// Whether both hold the same, as the parser and StoreAll share it.
bool IsSame(const MXMLItem& a, const MXMLItem& b) noexcept
{
    return std::ranges::equal(a.GetAttributes(), b.GetAttributes(),
                              [](const MAttribute& one, const MAttribute& other) {
                                  return one.name.IsSharedWith(other.name) &&
                                         one.value.IsSharedWith(other.value);
                              });
}

/// Most rows are as they were from the first, so each is made from the one before if it can be.
template <typename Row, typename Names, std::size_t Count>
void StoreAll(MXMLItem& list, const Names& names, const std::array<Row, Count>& rows)
{
    list.Clear();
    for (std::size_t i = 0; i < Count; ++i)
    {
        MXMLItem& item = list.AddSubItem(names[i].data());
        if (i > 0 && rows[i] == rows[i - 1])
            item.CopyContents(*item.GetPreviousSibling());
        else
            rows[i].Store(item);
    }
}

/// Null for none.
template <typename Row, std::size_t Count>
Row* FindRow(std::array<Row, Count>& rows, int index) noexcept
{
    const auto place = static_cast<std::size_t>(index); // negative ones lie behind all
    return place < Count ? &rows[place] : nullptr;
}

template <typename Row>
void Assign(Row* row, int parameterIndex, const MAudioPlugin& plugin)
{
    if (row == nullptr)
        return;
    const bool isThere = parameterIndex >= 0 && parameterIndex < plugin.GetParameterCount();
    row->parameterIndex = isThere ? parameterIndex : -1;
    row->parameterName = isThere ? plugin.GetParameterName(parameterIndex) : MString();
}

/// Older states number the items by their order alone; @p name is that of each.
template <typename Row, typename Names, std::size_t Count>
void LoadAll(MXMLItem& list, const MString& name, const Names& names, std::array<Row, Count>& rows,
             const MAudioPlugin& plugin)
{
    MXMLItem none("none");
    std::size_t unnumbered = 0;
    const auto& items = list.GetSubItems();
    const MXMLItem* before = nullptr;
    for (std::size_t i = 0; i < Count; ++i)
    {
        MXMLItem* item = &none;
        const MString indexed = names[i].data();
        if (i < items.size() && items[i]->GetName() == indexed) // as this system writes them
            item = items[i].get();
        else if (list.HasSubItem(indexed))
            item = &list.GetSubItem();
        else
        {
            while (unnumbered < items.size() && !(items[unnumbered]->GetName() == name))
                ++unnumbered;
            if (unnumbered < items.size())
                item = items[unnumbered++].get();
        }
        if (before != nullptr && IsSame(*item, *before))
            rows[i] = rows[i - 1];
        else
            rows[i].Load(*item, plugin);
        before = item;
    }
}

} // namespace

void MIDIControllers::OnSource(int channel, int number, double moving)
{
    for (const MMIDIControllerAssignment& row : assignments)
        if (row.isEnabled && row.controller == number && Accepts(row.channel, channel))
            plugin.SetParameter(row.parameterIndex, row.target.Map(moving), false);
    PostSource(channel, number);
}

void MIDIControllers::PostSource(int channel, int number) noexcept
{
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
    PostSource(channel, Note);
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

bool MIDIControllers::TakeLast(bool isNote, Source& source) noexcept
{
    bool isFound = false;
    for (Source next{}; TakeSource(next);)
        if ((next.number == Note) == isNote)
        {
            source = next;
            isFound = true;
        }
    return isFound;
}

bool MIDIControllers::LearnController(int index) noexcept
{
    Source source{};
    MMIDIControllerAssignment* const row = FindRow(assignments, index);
    if (!TakeLast(false, source) || row == nullptr)
        return false;
    row->channel = source.channel;
    row->controller = source.number;
    return true;
}

bool MIDIControllers::LearnNoteChannel(int index) noexcept
{
    Source source{};
    MMIDINoteController* const row = FindRow(noteControllers, index);
    if (!TakeLast(true, source) || row == nullptr)
        return false;
    row->channel = source.channel;
    return true;
}

void MIDIControllers::AssignController(int index, int parameterIndex)
{
    Assign(FindRow(assignments, index), parameterIndex, plugin);
}

void MIDIControllers::AssignNoteController(int index, int parameterIndex)
{
    Assign(FindRow(noteControllers, index), parameterIndex, plugin);
}

void MIDIControllers::Store(MXMLItem& settings) const
{
    StoreAll(settings.GetOrAddSubItem("Controllers"), AssignmentNames, assignments);
    StoreAll(settings.GetOrAddSubItem("NoteControllers"), NoteControllerNames, noteControllers);
}

void MIDIControllers::Load(MXMLItem& settings)
{
    MXMLItem none("none");
    LoadAll(settings.HasSubItem("Controllers") ? settings.GetSubItem() : none, "Controller",
            AssignmentNames, assignments, plugin);
    LoadAll(settings.HasSubItem("NoteControllers") ? settings.GetSubItem() : none, "NoteController",
            NoteControllerNames, noteControllers, plugin);
}
