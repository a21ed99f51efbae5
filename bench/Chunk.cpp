// What the state of an instance costs as hosts keep it, beside zlib alone with the same text.

#include <memory>
#include <random>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include <zlib.h>

#include "bench/Goals.h"
#include "foundation/streams/MMemoryStream.h"
#include "foundation/strings/MStringFormatter.h"
#include "foundation/xml/MXMLItem.h"
#include "host/MAudioPlugin.h"
#include "host/PluginState.h"
#include "persistence/MPluginConfiguration.h"

namespace
{

using Bytes = std::vector<std::byte>;

/// A plugin, and what it stores: by default, or with drawn curves, also in further presets.
class StoredPlugin
{
public:
    StoredPlugin(std::int64_t points, std::int64_t presets)
    {
        plugin->InitProcessing();
        Take();
        MXMLItem state("");
        Draw(state, points);
        for (int i = 1; i <= presets; ++i)
        {
            MXMLItem preset("");
            Draw(preset, points);
            state.AddSubItem(MStringFormatter("Preset{0}").Add(i).Result()).CopyContents(preset);
        }
        MMemoryStream packed;
        state.SaveCompressed(packed, "utf-8");
        packed.Seek(0, MStream::FromStart);
        pluginstate::Load(*plugin, packed);
        Take();
    }

    MMemoryStream& OpenText()
    {
        reader = MMemoryStream::Refer(text);
        return reader;
    }

    std::unique_ptr<MAudioPlugin> plugin = CreateAudioPlugin();
    Bytes chunk;
    Bytes text; ///< inflated

private:
    /// Makes @p state the one by default, but with curves of @p points points unless it is 0.
    void Draw(MXMLItem& state, std::int64_t points)
    {
        state.Load(OpenText());
        MXMLItem& shape = state.GetRequiredSubItem("Shape");
        MXMLItem& operations = shape.GetRequiredSubItem("Operations");
        for (MXMLItem* const curve :
             {&shape.GetRequiredSubItem("Envelope"), &operations.GetRequiredSubItem("Transform"),
              &operations.GetRequiredSubItem("AmplitudeTransform")})
        {
            if (points > 0)
                curve->Clear();
            for (std::int64_t i = 0; i < points; ++i)
            {
                MXMLItem& point = curve->AddSubItem("Point");
                point.SetAttribute("x", (static_cast<double>(i) + real(random)) /
                                            static_cast<double>(points));
                point.SetAttribute("y", real(random));
                point.SetAttribute("Flags", 12);
            }
        }
    }
    void Take()
    {
        const MMemoryStream stream = pluginstate::Save(*plugin);
        chunk.assign(stream.GetData().begin(), stream.GetData().end());
        MXMLItem settings("");
        MMemoryStream packed = MMemoryStream::Refer(chunk);
        settings.LoadCompressed(packed);
        MMemoryStream plain;
        settings.Save(plain, true, "utf-8");
        plain.Seek(0, MStream::FromStart);
        text.assign(plain.GetData().begin(), plain.GetData().end());
    }

    MMemoryStream reader;
    std::minstd_rand random;
    std::uniform_real_distribution<double> real{0.0, 1.0};
};

Bytef* AsZLib(std::span<std::byte> bytes)
{
    return reinterpret_cast<Bytef*>(bytes.data());
}

void SaveChunk(benchmark::State& state)
{
    const StoredPlugin stored(state.range(0), state.range(1));
    for ([[maybe_unused]] const auto round : state)
        benchmark::DoNotOptimize(pluginstate::Save(*stored.plugin));
    state.counters["bytes"] = static_cast<double>(stored.chunk.size());
    state.counters["characters"] = static_cast<double>(stored.text.size());
}

void Deflate(benchmark::State& state)
{
    StoredPlugin stored(state.range(0), state.range(1));
    Bytes packed(compressBound(stored.text.size()));
    for ([[maybe_unused]] const auto round : state)
    {
        uLongf size = packed.size();
        if (compress2(AsZLib(packed), &size, AsZLib(stored.text), stored.text.size(), 9) != Z_OK)
            return state.SkipWithError("zlib");
        benchmark::DoNotOptimize(packed.data());
    }
}

void LoadChunk(benchmark::State& state)
{
    const StoredPlugin stored(state.range(0), state.range(1));
    for ([[maybe_unused]] const auto round : state)
    {
        MMemoryStream stream = MMemoryStream::Refer(stored.chunk);
        pluginstate::Load(*stored.plugin, stream);
    }
}

/// The parse, too, if @p isParsed.
void Inflate(benchmark::State& state, bool isParsed)
{
    StoredPlugin stored(state.range(0), state.range(1));
    Bytes plain(stored.text.size());
    for ([[maybe_unused]] const auto round : state)
    {
        uLongf size = plain.size();
        if (uncompress(AsZLib(plain), &size, AsZLib(stored.chunk), stored.chunk.size()) != Z_OK)
            return state.SkipWithError("zlib");
        benchmark::DoNotOptimize(plain.data());
        if (isParsed)
        {
            MXMLItem settings("");
            settings.Load(stored.OpenText());
            benchmark::DoNotOptimize(&settings);
        }
    }
}

void CreateInstance(benchmark::State& state)
{
    for ([[maybe_unused]] const auto round : state)
        benchmark::DoNotOptimize(CreateAudioPlugin());
}

/// What each instance asks the settings of the family when it is made.
void AskConfiguration(benchmark::State& state)
{
    for ([[maybe_unused]] const auto round : state)
        benchmark::DoNotOptimize(
            MPluginConfiguration::Get().IsOn(MPluginConfiguration::SurroundActivated));
}

[[maybe_unused]] const bool isRegistered = []
{
    const auto add = [](const char* name, auto&&... work) {
        benchmark::RegisterBenchmark(name, work...)->Args({0, 0})->Args({50, 0})->Args({50, 7});
    };
    add("Chunk/Save", SaveChunk);
    add("Chunk/Save/compress2", Deflate);
    add("Chunk/Load", LoadChunk);
    add("Chunk/Load/uncompress", Inflate, false);
    add("Chunk/Load/uncompress+parse", Inflate, true);
    benchmark::RegisterBenchmark("Instance/CreateAndDestroy", CreateInstance);
    benchmark::RegisterBenchmark("Instance/AskConfiguration", AskConfiguration);
    for (const auto& [what, suffix] : {std::pair("by default", "/0/0"),
                                       {"with curves of 50 points", "/50/0"},
                                       {"with eight presets of such curves", "/50/7"}})
    {
        const std::string run = suffix;
        RegisterGoal({std::string("store a chunk ") + what, "Chunk/Save" + run,
                      "Chunk/Save/compress2" + run, 1.3});
        RegisterGoal({std::string("load a chunk ") + what + ", beside inflating and parsing",
                      "Chunk/Load" + run, "Chunk/Load/uncompress+parse" + run, 1.5});
    }
    return true;
}();

} // namespace
