#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <vector>

#include "foundation/strings/MStringFormatter.h"
#include "host/MAudioPlugin.h"

/// A row of values that live here, each with the one that the effect hears while it is modulated.
class RowAdapter final : public MAutomationAdapter
{
public:
    explicit RowAdapter(int indexCount, const char* rowName = "row")
        : MAutomationAdapter(indexCount),
          name(rowName),
          cells(static_cast<std::size_t>(indexCount))
    {
    }

    void SetParameter(int index, double value01, bool quiet) override
    {
        if (!Has(index))
            return;
        ++sets;
        loudSets += !quiet;
        Cell& cell = At(index);
        if (beforeSet)
            beforeSet(value01);
        (cell.isModulated ? cell.alternate : cell.value) = value01;
    }
    double GetParameter(int index) const override
    {
        const double value = Has(index) ? At(index).value.load() : 0.0;
        if (afterGet)
            afterGet();
        return value;
    }
    void SetModulated(int index, bool on) override
    {
        if (on)
            At(index).alternate = At(index).value.load();
        At(index).isModulated = on;
    }
    MString GetParameterSection(int index) const override { return Has(index) ? "Rows" : ""; }
    MString GetParameterNameWithoutSection(int index) const override
    {
        return Has(index) ? MStringFormatter("{0}{1}").Add(name).Add(index).Result() : MString();
    }

    double Heard(int index) const
    {
        return At(index).isModulated ? At(index).alternate : At(index).value;
    }
    bool IsModulated(int index) const { return At(index).isModulated; }

    std::atomic<int> sets = 0;
    std::atomic<int> loudSets = 0;
    // What another thread does at the worst moment: before a value is written, after one is read.
    std::function<void(double)> beforeSet;
    std::function<void()> afterGet;

private:
    struct Cell
    {
        std::atomic<double> value = 0.0;
        std::atomic<double> alternate = 0.0;
        std::atomic<bool> isModulated = false;
    };

    Cell& At(int index) { return cells[static_cast<std::size_t>(index)]; }
    const Cell& At(int index) const { return cells[static_cast<std::size_t>(index)]; }

    const char* name; ///< a literal
    std::vector<Cell> cells;
};

/// A plugin without a sound.
class SilentPlugin final : public MAudioPlugin
{
public:
    void InitProcessing() override
    {
        const SuspendScope suspended(*this);
        TakeLayout();
    }
    void ProcessAudio(const float* const*, float* const*, int, bool) noexcept override {}
    void Store(const MStorageDescriptor&) override {}
    void StoreSettings(const MStorageDescriptor&) override {}
    bool IsBypassed() const noexcept override { return false; }
    void SetBypassed(bool) override {}
    void OnCustomParameterChanged(MAutomationAdapter&) override {}
    void UpdateEffect() override { ++updates; }

    using MAudioPlugin::SetBuses;

    int updates = 0;
};
