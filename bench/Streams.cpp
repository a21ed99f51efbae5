// What storing a state costs: deflating a tree's text into hexadecimal digits and back, beside zlib
// used directly with plain loops, and small writes into memory, beside a vector.

#include <cstddef>
#include <cstdint>
#include <random>
#include <span>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>
#include <zlib.h>

#include "bench/Goals.h"
#include "foundation/streams/MHexaStream.h"
#include "foundation/streams/MMemoryStream.h"
#include "foundation/streams/MZLibStream.h"

namespace
{

using Direction = MZLibStream::Direction;

constexpr std::size_t StateBytes = 20'000;
constexpr std::size_t MuchBytes = 1'000'000;
constexpr std::size_t WriteBytes = 24; ///< of one write: a tag or an attribute

/// As a stored tree reads: few names, many numbers.
const std::string& State()
{
    static const std::string state = []
    {
        std::mt19937 random(1);
        std::string text;
        while (text.size() < StateBytes)
        {
            text += R"(<Point x="0.)";
            text += std::to_string(random());
            text += R"(" y="0.)";
            text += std::to_string(random());
            text += R"(" curvature="0.5000" enabled="1"/>)";
        }
        text.resize(StateBytes);
        return text;
    }();
    return state;
}

/// Through the streams, as items store binary data.
struct OurStreams
{
    static std::string Pack(const std::string& plain)
    {
        MMemoryStream text;
        MHexaStream digits(text);
        MZLibStream writer(digits, Direction::Write);
        writer.Write(std::as_bytes(std::span(plain)));
        writer.Finish();
        text.Seek(0, MStream::FromStart);
        return {reinterpret_cast<const char*>(text.GetData().data()), text.GetData().size()};
    }

    static std::string Unpack(const std::string& text)
    {
        MMemoryStream source = MMemoryStream::Refer(std::as_bytes(std::span(text)));
        MHexaStream digits(source);
        MZLibStream reader(digits, Direction::Read);
        std::string plain(StateBytes, '\0');
        plain.resize(reader.Read(std::as_writable_bytes(std::span(plain))));
        return plain;
    }
};

/// One call of the library for all, and the plainest loop.
struct PlainLibrary
{
    static std::string Pack(const std::string& plain)
    {
        uLongf size = compressBound(plain.size());
        std::vector<Bytef> packed(size);
        compress2(packed.data(), &size, reinterpret_cast<const Bytef*>(plain.data()), plain.size(),
                  9);
        std::string text;
        for (std::size_t i = 0; i < size; ++i)
        {
            text += "0123456789ABCDEF"[packed[i] >> 4U];
            text += "0123456789ABCDEF"[packed[i] & 15U];
        }
        return text;
    }

    static std::string Unpack(const std::string& text)
    {
        const auto valueOf = [](char digit)
        { return static_cast<unsigned>(digit <= '9' ? digit - '0' : digit - 'A' + 10); };
        std::vector<Bytef> packed;
        for (std::size_t i = 0; i + 1 < text.size(); i += 2)
            packed.push_back(static_cast<Bytef>(valueOf(text[i]) << 4U | valueOf(text[i + 1])));
        std::string plain(StateBytes, '\0');
        uLongf size = plain.size();
        uncompress(reinterpret_cast<Bytef*>(plain.data()), &size, packed.data(), packed.size());
        plain.resize(size);
        return plain;
    }
};

template <typename Packer>
void Pack(benchmark::State& state)
{
    if (Packer::Pack(State()) != PlainLibrary::Pack(State()))
        return state.SkipWithError("packs into something else");
    for (auto _ : state)
        benchmark::DoNotOptimize(Packer::Pack(State()));
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(StateBytes));
}

template <typename Packer>
void Unpack(benchmark::State& state)
{
    const std::string packed = PlainLibrary::Pack(State());
    if (Packer::Unpack(packed) != State())
        return state.SkipWithError("does not unpack");
    for (auto _ : state)
        benchmark::DoNotOptimize(Packer::Unpack(packed));
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(StateBytes));
}

struct OurMemory
{
    void Write(std::span<const std::byte> bytes) { stream.Write(bytes); }

    MMemoryStream stream;
};

struct Vector
{
    void Write(std::span<const std::byte> bytes)
    {
        memory.insert(memory.end(), bytes.begin(), bytes.end());
    }

    std::vector<std::byte> memory;
};

template <typename Memory>
void WriteMany(benchmark::State& state)
{
    std::size_t pieceBytes = WriteBytes;
    benchmark::DoNotOptimize(pieceBytes); // no caller knows it when compiled
    const auto piece = std::as_bytes(std::span(State())).first(pieceBytes);
    const auto size = static_cast<std::size_t>(state.range(0));
    for (auto _ : state)
    {
        Memory memory;
        for (std::size_t written = 0; written < size; written += piece.size())
            memory.Write(piece);
        benchmark::DoNotOptimize(memory);
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

[[maybe_unused]] const bool isRegistered = []
{
    benchmark::RegisterBenchmark("Streams/Pack/MZLibStream+MHexaStream", &Pack<OurStreams>);
    benchmark::RegisterBenchmark("Streams/Pack/compress2+loop", &Pack<PlainLibrary>);
    benchmark::RegisterBenchmark("Streams/Unpack/MZLibStream+MHexaStream", &Unpack<OurStreams>);
    benchmark::RegisterBenchmark("Streams/Unpack/uncompress+loop", &Unpack<PlainLibrary>);
    benchmark::RegisterBenchmark("Streams/Write/MMemoryStream", &WriteMany<OurMemory>)
        ->ArgName("bytes")
        ->Arg(StateBytes)
        ->Arg(MuchBytes);
    // To be seen rather than beaten: a vector is no stream, and its writes are no virtual calls.
    benchmark::RegisterBenchmark("Streams/Write/vector", &WriteMany<Vector>)
        ->ArgName("bytes")
        ->Arg(StateBytes)
        ->Arg(MuchBytes);
    RegisterGoal({"deflate a state of 20 kB into hexadecimal text",
                  "Streams/Pack/MZLibStream+MHexaStream", "Streams/Pack/compress2+loop", 1.05});
    RegisterGoal({"inflate it again", "Streams/Unpack/MZLibStream+MHexaStream",
                  "Streams/Unpack/uncompress+loop", 1.05});
    return true;
}();

} // namespace
