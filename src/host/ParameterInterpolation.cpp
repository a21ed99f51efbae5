#include "host/ParameterInterpolation.h"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <limits>
#include <utility>

#include "effect/MPluginParameterRecord.h"
#include "effect/parameters/ParameterBase.h"
#include "host/MAudioPluginAutomation.h"

namespace
{

constexpr double LeastMove = 1e-5; ///< of a normalised value; less is not heard

/// Null if @p adapter does not stand for the float of a record.
const MPluginParameterRecord* FloatRecordOf(const MAutomationAdapter& adapter) noexcept
{
    const auto* base = dynamic_cast<const ParameterRecordBase*>(&adapter);
    const bool isFloat = base != nullptr && base->GetRecord().type == MParameterType::Float;
    return isFloat ? &base->GetRecord() : nullptr;
}

} // namespace

/// One parameter and its line. Plain fields are the audio thread's; it alone makes the entry move
/// and rest.
struct ParameterInterpolation::Entry
{
    // The state: these bits, and above them a count of the values that hosts left, so that none
    // slips in unseen between the look at the last one and the rest.
    static constexpr unsigned Moving = 1;   ///< values wait; without it they go straight in
    static constexpr unsigned Diverted = 2; ///< one does
    static constexpr unsigned Loud = 4;     ///< and it is to be told to those who watch
    static constexpr unsigned OneWrite = 8;

    Entry(int pluginIndex, MAutomationAdapter& parameterAdapter) noexcept
        : index(pluginIndex),
          adapter(parameterAdapter),
          adapterIndex(pluginIndex - parameterAdapter.GetFirstIndex()),
          record(FloatRecordOf(parameterAdapter))
    {
    }

    double Get() const { return adapter.GetParameter(adapterIndex); }
    /// Get, but only looked up when the value in the record has moved: blocks are short, and values
    /// rest most of the time.
    double GetFast();
    void Set(double value01, bool quiet) { adapter.SetParameter(adapterIndex, value01, quiet); }
    void SetModulated(bool on) { adapter.SetModulated(adapterIndex, on); }

    /// Chooses the target. Returns whether there is a way to go.
    bool Aim(bool mayMove);
    void Depart(int samples);
    void Arrive();
    /// Ends Moving, with the newest value that a host wrote meanwhile.
    void ComeToRest(bool isTaken);

    /// Any thread: leaves @p value01 for ComeToRest and returns true if the entry moves.
    bool Divert(double value01, bool quiet) noexcept;

    const int index;
    MAutomationAdapter& adapter;
    const int adapterIndex;
    const MPluginParameterRecord* const record; ///< null if the adapter has no such
    double recordValue = std::numeric_limits<double>::quiet_NaN(); ///< to which normalised belongs
    double normalised = 0.0;
    double last = 0.0; ///< where the line begins
    double target = 0.0;
    double current = 0.0;
    double step = 0.0; ///< a sample; until Depart, of the whole block
    bool isActive = false;
    std::atomic<bool> isHeld = false;
    std::atomic<unsigned> state = 0;
    std::atomic<double> diverted = 0.0;   ///< written before the state tells of it
    std::atomic<unsigned> departures = 0; ///< tells writers that a line began under their hands
};

double ParameterInterpolation::Entry::GetFast()
{
    if (record == nullptr)
        return Get();
    // First the value: if it moves on before the look, the next block looks again.
    const double value = record->range.asFloat.value;
    if (value != recordValue)
    {
        recordValue = value;
        normalised = Get();
    }
    return normalised;
}

bool ParameterInterpolation::Entry::Aim(bool mayMove)
{
    // Mostly all stands still, which a record tells at once and with nobody to be told.
    if (record != nullptr || !mayMove)
    {
        target = GetFast();
        if (!mayMove || std::abs(target - last) <= LeastMove)
            return false;
    }
    // Before the look that counts, so that no write falls between the two.
    state = Moving;
    departures.fetch_add(1);
    target = Get();
    step = target - last;
    isActive = !isHeld && std::abs(step) > LeastMove;
    if (!isActive)
        ComeToRest(false);
    return isActive;
}

void ParameterInterpolation::Entry::Depart(int samples)
{
    step /= samples;
    current = last;
    SetModulated(true);
    Set(current, true);
}

void ParameterInterpolation::Entry::Arrive()
{
    isActive = false;
    // A modulator that took over in the midst of the block keeps what it switched; the host's value
    // lies below, and only a newer one has to get there.
    const bool isTaken = isHeld;
    if (!isTaken)
    {
        SetModulated(false);
        Set(target, true);
    }
    ComeToRest(isTaken);
}

void ParameterInterpolation::Entry::ComeToRest(bool isTaken)
{
    unsigned present = state;
    do
    {
        if ((present & Diverted) == 0)
            continue;
        if (isTaken)
            SetModulated(false);
        Set(diverted, (present & Loud) == 0);
        if (isTaken)
            SetModulated(true);
    } while (!state.compare_exchange_strong(present, 0));
}

bool ParameterInterpolation::Entry::Divert(double value01, bool quiet) noexcept
{
    diverted = value01;
    unsigned present = state;
    while ((present & Moving) != 0)
        if (state.compare_exchange_weak(present,
                                        (present + OneWrite) | Diverted | (quiet ? 0 : Loud)))
            return true;
    return false;
}

ParameterInterpolation::ParameterInterpolation(MAudioPluginAutomation& automatedPlugin) noexcept
    : plugin(automatedPlugin)
{
}

ParameterInterpolation::~ParameterInterpolation() = default;

void ParameterInterpolation::SetParameters(const std::vector<int>& indices)
{
    std::vector<int> sorted = indices;
    std::ranges::sort(sorted);
    entries.clear();
    for (const int index : sorted)
        if (MAutomationAdapter* adapter = plugin.FindAdapter(index); adapter != nullptr)
            entries.push_back(std::make_unique<Entry>(index, *adapter));
    isReset = true;
    isPrepared = isMoving = false;
}

void ParameterInterpolation::Forget(const MAutomationAdapter& adapter)
{
    std::erase_if(entries, [&](const auto& entry) { return &entry->adapter == &adapter; });
}

void ParameterInterpolation::SetHeld(int index, bool on) noexcept
{
    if (Entry* entry = Find(index); entry != nullptr)
        entry->isHeld = on;
}

bool ParameterInterpolation::Prepare(int samples)
{
    if (isMoving) // the last block failed before its end
        Finish();
    // Behind a reset there is nowhere to come from: Finish takes the present values.
    isPrepared = !std::exchange(isReset, false);
    if (!isPrepared)
        return false;

    for (const auto& entry : entries)
        isMoving |= entry->Aim(samples > 1);
    if (!isMoving)
        return false;

    for (const auto& entry : entries)
        if (entry->isActive)
            entry->Depart(samples);
    plugin.UpdateEffect();
    return true;
}

void ParameterInterpolation::Process(int n)
{
    if (!isMoving)
        return;
    for (const auto& entry : entries)
    {
        if (!entry->isActive)
            continue;
        if (entry->isHeld)
        {
            entry->Arrive();
            continue;
        }
        entry->current += n * entry->step;
        entry->Set(entry->current, true);
    }
    plugin.UpdateEffect();
}

void ParameterInterpolation::Finish()
{
    for (const auto& entry : entries)
    {
        entry->last = isPrepared ? entry->target : entry->GetFast();
        if (entry->isActive)
            entry->Arrive();
    }
    isPrepared = false;
    if (std::exchange(isMoving, false))
        plugin.UpdateEffect();
}

bool ParameterInterpolation::Write(int index, double value01, bool quiet)
{
    Entry* entry = Find(index);
    if (entry == nullptr)
        return false;
    unsigned before = entry->departures;
    if (entry->Divert(value01, quiet))
        return true;
    // A line that begins while the value is on its way into the parameter may swallow it: then it
    // goes in again. Both sides count by read-modify-write, so that whoever comes second sees what
    // the first did, the modulated state included.
    while (true)
    {
        entry->Set(value01, quiet);
        const unsigned after = entry->departures.fetch_add(0);
        if (after == before || entry->Divert(value01, true))
            return true;
        before = after;
    }
}

std::optional<double> ParameterInterpolation::GetDiverted(int index) const noexcept
{
    const Entry* entry = Find(index);
    if (entry == nullptr || (entry->state.load() & Entry::Diverted) == 0)
        return std::nullopt;
    return entry->diverted.load();
}

ParameterInterpolation::Entry* ParameterInterpolation::Find(int index) const noexcept
{
    const auto place = std::ranges::lower_bound(entries, index, {},
                                                [](const auto& entry) { return entry->index; });
    return place != entries.end() && (*place)->index == index ? place->get() : nullptr;
}
