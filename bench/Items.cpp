// Parsing and writing item trees, beside two XML libraries. Their trees are as editable as ours.

#include <cstddef>
#include <cstdio>
#include <random>
#include <string>

#include <benchmark/benchmark.h>
#include <pugixml.hpp>
#include <tinyxml2.h>

#include "bench/Goals.h"
#include "foundation/streams/MMemoryStream.h"
#include "foundation/xml/MXMLItem.h"

namespace
{

/// A megabyte as presets are made of: curves of points with attributes of twelve decimals.
const std::string& Document()
{
    static const std::string document = []
    {
        std::mt19937 random(1);
        std::uniform_real_distribution<double> position(0.0, 1.0);
        std::string text = "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<settings>";
        while (text.size() < 1'000'000)
        {
            text += "<Envelope Type=\"2\">";
            for (int i = 0; i < 50; ++i)
            {
                char point[256];
                std::snprintf(point, sizeof point,
                              "<Point Curvature=\"%.12f\" Flags=\"13\" Type=\"%d\" X=\"%.12f\" "
                              "Y=\"%.12f\"/>",
                              position(random), i % 8, position(random), position(random));
                text += point;
            }
            text += "</Envelope>";
        }
        text += "</settings>\n";
        return text;
    }();
    return document;
}

/// Counts characters as items, so that the table shows characters a second.
void CountDocument(benchmark::State& state)
{
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(Document().size()));
}

void Load(MXMLItem& item)
{
    MMemoryStream stream = MMemoryStream::Refer(std::as_bytes(std::span(Document())));
    item.Load(stream);
}

void ParseMXMLItem(benchmark::State& state)
{
    for (auto _ : state)
    {
        MXMLItem item("");
        Load(item);
        benchmark::DoNotOptimize(item);
    }
    CountDocument(state);
}

void ParseTinyXML2(benchmark::State& state)
{
    for (auto _ : state)
    {
        tinyxml2::XMLDocument document;
        document.Parse(Document().data(), Document().size());
        benchmark::DoNotOptimize(document);
    }
    CountDocument(state);
}

void ParsePugixml(benchmark::State& state)
{
    for (auto _ : state)
    {
        pugi::xml_document document;
        document.load_buffer(Document().data(), Document().size());
        benchmark::DoNotOptimize(document);
    }
    CountDocument(state);
}

void WriteMXMLItem(benchmark::State& state)
{
    MXMLItem item("");
    Load(item);
    for (auto _ : state)
    {
        MMemoryStream stream;
        item.Save(stream, true, "utf-8");
        benchmark::DoNotOptimize(stream.GetSize());
    }
    CountDocument(state);
}

void WriteTinyXML2(benchmark::State& state)
{
    tinyxml2::XMLDocument document;
    document.Parse(Document().data(), Document().size());
    for (auto _ : state)
    {
        tinyxml2::XMLPrinter printer(nullptr, true);
        document.Print(&printer);
        benchmark::DoNotOptimize(printer.CStrSize());
    }
    CountDocument(state);
}

void WritePugixml(benchmark::State& state)
{
    struct Writer : pugi::xml_writer
    {
        std::string text;
        void write(const void* data, std::size_t size) override
        {
            text.append(static_cast<const char*>(data), size);
        }
    };
    pugi::xml_document document;
    document.load_buffer(Document().data(), Document().size());
    for (auto _ : state)
    {
        Writer writer;
        document.save(writer, "", pugi::format_raw);
        benchmark::DoNotOptimize(writer.text.data());
    }
    CountDocument(state);
}

BENCHMARK(ParseMXMLItem)->Name("Items/parse");
BENCHMARK(ParseTinyXML2)->Name("Items/parse/tinyxml2");
BENCHMARK(ParsePugixml)->Name("Items/parse/pugixml");
BENCHMARK(WriteMXMLItem)->Name("Items/write");
BENCHMARK(WriteTinyXML2)->Name("Items/write/tinyxml2");
BENCHMARK(WritePugixml)->Name("Items/write/pugixml");

const bool goalsAreRegistered = []
{
    RegisterGoal(
        {"parsing an item tree beside tinyxml2", "Items/parse", "Items/parse/tinyxml2", 1.0 / 1.5});
    RegisterGoal(
        {"writing an item tree beside tinyxml2", "Items/write", "Items/write/tinyxml2", 1.0});
    return true;
}();

} // namespace
