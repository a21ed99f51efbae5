// What a file of ten thousand presets costs when it is loaded and when one more is added.

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <random>
#include <string>

#include <benchmark/benchmark.h>

#include "bench/Goals.h"
#include "foundation/modules/MModule.h"
#include "foundation/streams/MMemoryStream.h"
#include "foundation/streams/MStdFileStream.h"
#include "foundation/xml/MStorageDescriptor.h"
#include "host/MAudioPlugin.h"
#include "persistence/presets/MPresetBase.h"
#include "persistence/presets/MPresetManagerBase.h"
#include "persistence/presets/PresetTree.h"

namespace
{

constexpr int Presets = 10'000;
constexpr int PresetsAFolder = 100;
constexpr double LoadMs = 300.0; ///< goal
constexpr double AddMs = 100.0;  ///< goal, with the flush to the disk

/// A plugin whose curves are drawn anew for each preset, so that none is like another.
class DrawnPlugin final : public MPresetBase
{
public:
    DrawnPlugin() { plugin->InitProcessing(); }

    void Store(MXMLItem& preset) override
    {
        plugin->Store({.storing = true, .item = preset});
        MXMLItem& curve = preset.GetRequiredSubItem("Shape").GetRequiredSubItem("Envelope");
        curve.Clear();
        for (int i = 0; i < 8; ++i)
        {
            MXMLItem& point = curve.AddSubItem("Point");
            point.SetAttribute("x", (i + real(random)) / 8.0);
            point.SetAttribute("y", real(random));
        }
    }
    void Load(MXMLItem& preset) override { plugin->Store({.storing = false, .item = preset}); }

private:
    std::unique_ptr<MAudioPlugin> plugin = CreateAudioPlugin();
    std::minstd_rand random;
    std::uniform_real_distribution<double> real{0.0, 1.0};
};

/// The file of all presets, made once, in the folder that goes with this program.
struct PresetBench
{
    PresetBench()
    {
        MXMLItem root(PresetFile::RootName);
        for (int i = 0; i < Presets; ++i)
        {
            if (i % PresetsAFolder == 0)
                presettree::SetName(root.AddSubItem("Directory"), MString::FromInteger(i));
            MXMLItem& preset = root.GetSubItems().back()->AddSubItem("preset");
            owner.Store(preset);
            presettree::SetName(preset, MString::FromInteger(i));
        }
        presettree::CompressPresets(root);
        PresetFile(folder, "presets.xml").Write(root);
    }

    DrawnPlugin owner;
    const MString folder = files::PathJoin(MModule::Get().GetDataPath(), "bench");
    const MString fileName = (std::filesystem::create_directories(folder.ToUTF8()),
                              files::PathJoin(folder, "presets.xml"));

    static PresetBench& Get()
    {
        static PresetBench made;
        return made;
    }
};

void CountFile(benchmark::State& state)
{
    state.counters["bytes"] =
        static_cast<double>(files::GetStamp(PresetBench::Get().fileName).size);
}

void LoadFile(benchmark::State& state)
{
    PresetBench& bench = PresetBench::Get();
    for ([[maybe_unused]] const auto round : state)
        benchmark::DoNotOptimize(MPresetManagerBase(bench.owner, "", bench.folder));
    state.counters["ms at most"] = LoadMs;
    CountFile(state);
}

/// Adds one, and takes it away again, which is not timed. Where @p isChanged, another manager has
/// written the file meanwhile, so that it has to be read first.
void AddPreset(benchmark::State& state, bool isChanged)
{
    using Clock = std::chrono::steady_clock;
    PresetBench& bench = PresetBench::Get();
    MPresetManagerBase manager(bench.owner, "", bench.folder);
    for ([[maybe_unused]] const auto round : state)
    {
        if (isChanged)
        {
            MPresetManagerBase other(bench.owner, "", bench.folder);
            other.DeletePreset(other.AddPreset(other.GetRoot(), "Another"));
        }
        const auto begin = Clock::now();
        MXMLItem& added = manager.AddPreset(*manager.GetRoot().GetSubItems().front(), "One more");
        state.SetIterationTime(std::chrono::duration<double>(Clock::now() - begin).count());
        manager.DeletePreset(added);
    }
    state.counters["ms at most"] = AddMs;
    state.counters["read anew"] = manager.GetGeneration();
    CountFile(state);
}

void LoadPreset(benchmark::State& state)
{
    PresetBench& bench = PresetBench::Get();
    const MPresetManagerBase manager(bench.owner, "", bench.folder);
    MXMLItem* preset = nullptr;
    for ([[maybe_unused]] const auto round : state)
    {
        preset = manager.FindNext(preset);
        manager.LoadPreset(*preset);
    }
}

[[maybe_unused]] const bool isRegistered = []
{
    using benchmark::RegisterBenchmark;
    RegisterBenchmark("Presets/Load", LoadFile)->UseRealTime();
    RegisterBenchmark("Presets/Add", AddPreset, false)->UseManualTime();
    RegisterBenchmark("Presets/Add/file changed", AddPreset, true)->UseManualTime();
    RegisterBenchmark("Presets/NextAndLoad", LoadPreset);
    return true;
}();

} // namespace
