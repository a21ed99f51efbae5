// tonvale-moduleinfo LIBRARY FILE: asks the factory of a VST3 module what it has, and writes it to
// FILE as the description that lets hosts list a bundle without loading it.

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <sstream>
#include <string>
#include <string_view>

#include "foundation/modules/MLibrary.h"
#include "foundation/threads/MException.h"
#include "host/vst3/Vst3Factory.h"

namespace
{

/// @p text of a record, which need not be ended, in quotes.
template <std::size_t Size>
std::string Quote(const char (&text)[Size])
{
    std::string quoted = "\"";
    for (const char character : std::string_view(text, strnlen(text, Size)))
    {
        if (character == '"' || character == '\\')
            quoted += '\\';
        quoted += character;
    }
    return quoted + '"';
}

/// The digits of the four words, wherever their bytes lie.
std::string WriteUid(const Vst3::Uid& uid)
{
    const Vst3::Uid order = Vst3::MakeUid(0x00010203, 0x04050607, 0x08090A0B, 0x0C0D0E0F);
    std::array<unsigned, 16> bytes{};
    for (std::size_t i = 0; i < uid.size(); ++i)
        bytes[order[i]] = uid[i];
    std::string digits = "\"";
    for (const unsigned byte : bytes)
    {
        std::array<char, 3> pair{};
        std::snprintf(pair.data(), pair.size(), "%02X", byte);
        digits += pair.data();
    }
    return digits + '"';
}

/// The parts between the bars of @p text.
std::string WriteList(std::string_view text)
{
    std::string list = "[";
    for (std::size_t start = 0; start <= text.size();)
    {
        const std::size_t end = std::min(text.find('|', start), text.size());
        list += (start > 0 ? ", \"" : "\"") + std::string(text.substr(start, end - start)) + '"';
        start = end + 1;
    }
    return list + ']';
}

const char* WriteFlag(std::int32_t flags, std::int32_t flag)
{
    return (flags & flag) != 0 ? "true" : "false";
}

void WriteClass(std::ostream& out, const Vst3::PClassInfo2& info)
{
    out << "    {\n"
        << "      \"CID\": " << WriteUid(info.cid) << ",\n"
        << "      \"Category\": " << Quote(info.category) << ",\n"
        << "      \"Name\": " << Quote(info.name) << ",\n"
        << "      \"Vendor\": " << Quote(info.vendor) << ",\n"
        << "      \"Version\": " << Quote(info.version) << ",\n"
        << "      \"SDKVersion\": " << Quote(info.sdkVersion) << ",\n"
        << "      \"Sub Categories\": " << WriteList(info.subCategories) << ",\n"
        << "      \"Class Flags\": " << info.classFlags << ",\n"
        << "      \"Cardinality\": " << info.cardinality << ",\n"
        << "      \"Snapshots\": []\n"
        << "    }";
}

/// Empty if the factory does not answer.
std::string Describe(Vst3::IPluginFactory2& factory)
{
    Vst3::PFactoryInfo maker{};
    Vst3::PClassInfo2 first{};
    if (factory.getFactoryInfo(&maker) != Vst3::kResultOk ||
        factory.getClassInfo2(0, &first) != Vst3::kResultOk)
        return {};
    std::ostringstream out;
    out << "{\n"
        << "  \"Name\": " << Quote(first.name) << ",\n"
        << "  \"Version\": " << Quote(first.version) << ",\n"
        << "  \"Factory Info\": {\n"
        << "    \"Vendor\": " << Quote(maker.vendor) << ",\n"
        << "    \"URL\": " << Quote(maker.url) << ",\n"
        << "    \"E-Mail\": " << Quote(maker.email) << ",\n"
        << "    \"Flags\": {\n"
        << "      \"Unicode\": " << WriteFlag(maker.flags, maker.kUnicode) << ",\n"
        << "      \"Classes Discardable\": " << WriteFlag(maker.flags, maker.kClassesDiscardable)
        << ",\n"
        << "      \"Component Non Discardable\": "
        << WriteFlag(maker.flags, maker.kComponentNonDiscardable) << "\n"
        << "    }\n"
        << "  },\n"
        << "  \"Compatibility\": [],\n"
        << "  \"Classes\": [\n";
    for (std::int32_t i = 0; i < factory.countClasses(); ++i)
    {
        Vst3::PClassInfo2 info{};
        if (factory.getClassInfo2(i, &info) != Vst3::kResultOk)
            return {};
        out << (i > 0 ? ",\n" : "");
        WriteClass(out, info);
    }
    out << "\n  ]\n}\n";
    return out.str();
}

std::string DescribeLibrary(const char* path)
{
    const MLibrary library(MString::FromUTF8(path));
    const auto enter = library.Find<bool (*)(void*)>("ModuleEntry");
    const auto leave = library.Find<bool (*)()>("ModuleExit");
    const auto getFactory = library.Find<Vst3::IPluginFactory* (*)()>("GetPluginFactory");
    if (enter == nullptr || leave == nullptr || getFactory == nullptr ||
        !enter(library.GetHandle()))
        return {};
    Vst3::IPluginFactory* const factory = getFactory();
    std::string text;
    void* second = nullptr;
    if (factory->queryInterface(Vst3::IPluginFactory2::Id.data(), &second) == Vst3::kResultOk)
    {
        auto* const records = static_cast<Vst3::IPluginFactory2*>(second);
        text = Describe(*records);
        records->release();
    }
    factory->release();
    return leave() ? text : std::string();
}

} // namespace

int main(int count, char** arguments)
{
    if (count != 3)
    {
        std::fputs("usage: tonvale-moduleinfo LIBRARY FILE\n", stderr);
        return EXIT_FAILURE;
    }
    try
    {
        const std::string text = DescribeLibrary(arguments[1]);
        if (text.empty())
        {
            std::fprintf(stderr, "%s: cannot be described\n", arguments[1]);
            return EXIT_FAILURE;
        }
        std::ofstream file(arguments[2], std::ios::binary);
        file << text;
        file.close();
        if (file)
            return EXIT_SUCCESS;
        std::fprintf(stderr, "%s: cannot be written\n", arguments[2]);
    }
    catch (const MException& failure)
    {
        std::fprintf(stderr, "%s\n", failure.text.ToUTF8().c_str());
    }
    return EXIT_FAILURE;
}
