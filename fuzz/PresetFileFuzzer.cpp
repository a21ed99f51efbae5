// Two managers work on a stranger's file of presets, which a third party writes over now and then.
// A change that succeeds stands in the file as in memory; one that fails changes neither.

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>

#include <fuzzer/FuzzedDataProvider.h>

#include "foundation/streams/MMemoryStream.h"
#include "foundation/threads/MException.h"
#include "persistence/presets/MPresetBase.h"
#include "persistence/presets/MPresetManagerBase.h"
#include "persistence/presets/PresetTree.h"
#include "tests/TemporaryFolder.h"

namespace
{

void Demand(bool isTrue)
{
    if (!isTrue)
        std::abort();
}

std::string TextOf(const MXMLItem& item)
{
    MMemoryStream stream;
    item.Save(stream, true, "utf-8");
    stream.Seek(0, MStream::FromStart);
    return {reinterpret_cast<const char*>(stream.GetData().data()), stream.GetData().size()};
}

/// But for white space, which files do not keep in texts.
bool AreSame(const MXMLItem& a, const MXMLItem& b)
{
    const auto wordsOf = [](const MXMLItem& item)
    {
        std::string text = item.GetText().ToUTF8();
        std::erase_if(text, [](char character) { return character >= 0 && character <= ' '; });
        return text;
    };
    return a.GetName().ToUTF8() == b.GetName().ToUTF8() && wordsOf(a) == wordsOf(b) &&
           std::ranges::equal(a.GetAttributes(), b.GetAttributes(),
                              [](const MAttribute& left, const MAttribute& right)
                              {
                                  return left.name.ToUTF8() == right.name.ToUTF8() &&
                                         left.value.ToUTF8() == right.value.ToUTF8();
                              }) &&
           std::ranges::equal(a.GetSubItems(), b.GetSubItems(),
                              [](const auto& left, const auto& right)
                              { return AreSame(*left, *right); });
}

class Driver final : public MPresetBase
{
public:
    Driver(FuzzedDataProvider& source, const TemporaryFolder& usedFolder)
        : data(source),
          folder(usedFolder),
          file(folder / "presets.xml")
    {
        Overwrite();
        for (auto& manager : managers)
            manager = std::make_unique<MPresetManagerBase>(*this, "", NameOf(folder.GetPath()));
    }

    void Store(MXMLItem& preset) override
    {
        preset.Clear();
        preset.SetAttribute(data.ConsumeBool() ? "State" : "ExchangeIndex", PickText());
    }
    void Load(MXMLItem& preset) override { preset.HasAttribute("State"); }

    void Step()
    {
        MPresetManagerBase& manager = *managers[data.ConsumeBool() ? 1 : 0];
        const int generation = manager.GetGeneration();
        const std::string fileBefore = ReadFile();
        const std::string treeBefore = TextOf(manager.GetRoot());
        bool isChange = false;
        try
        {
            isChange = Work(manager);
        }
        catch (const MException&) // refused, as it may be
        {
            Demand(ReadFile() == fileBefore);
            isChange = manager.GetGeneration() != generation; // to what the file holds
            Demand(isChange || TextOf(manager.GetRoot()) == treeBefore);
        }
        if (isChange)
        {
            MPresetManagerBase fresh(*this, "", NameOf(folder.GetPath()));
            fresh.LoadFile();
            Demand(AreSame(fresh.GetRoot(), manager.GetRoot()));
        }
    }

private:
    static MString NameOf(const std::filesystem::path& path)
    {
        return MString::FromUTF8(path.string());
    }
    std::string ReadFile() const
    {
        std::ifstream stream(file, std::ios::binary);
        return {std::istreambuf_iterator(stream), {}};
    }
    void Overwrite() { std::ofstream(file, std::ios::binary) << data.ConsumeRandomLengthString(); }
    /// Any units, also what no file keeps.
    MString PickText()
    {
        const std::string bytes = data.ConsumeRandomLengthString(8);
        if (data.ConsumeBool())
            return MString::FromUTF8(bytes);
        std::u16string units;
        for (const char byte : bytes)
            units.push_back(static_cast<char16_t>(0xDB00 + byte * 5));
        return MString::FromUTF16(units);
    }
    MXMLItem& PickFolder(MXMLItem& from)
    {
        for (const auto& item : from.GetSubItems())
            if (presettree::IsFolder(*item) && data.ConsumeBool())
                return PickFolder(*item);
        return from;
    }
    /// Null if there is none.
    MXMLItem* PickPreset(const MPresetManagerBase& manager)
    {
        const auto presets = manager.ListPresets();
        return presets.empty()
                   ? nullptr
                   : presets[data.ConsumeIntegralInRange<std::size_t>(0, presets.size() - 1)];
    }

    /// One operation; whether the file has to hold what @p manager holds afterwards.
    bool Work(MPresetManagerBase& manager)
    {
        MXMLItem& directory = PickFolder(manager.GetRoot());
        MXMLItem* const preset = PickPreset(manager);
        const bool isRoot = &directory == &manager.GetRoot();
        const MString exported = NameOf(folder / "e.mpresets");
        switch (data.ConsumeIntegralInRange(0, 11))
        {
        case 0:
            Demand(presettree::IsPreset(manager.AddPreset(directory, PickText())));
            return true;
        case 1:
            Demand(presettree::IsFolder(manager.AddFolder(directory, PickText())));
            return true;
        case 2:
            if (preset != nullptr)
                manager.ReplacePreset(*preset);
            return preset != nullptr;
        case 3:
            if (preset != nullptr)
                manager.RenamePreset(*preset, PickText());
            return preset != nullptr;
        case 4:
            if (preset != nullptr)
                manager.DeletePreset(*preset);
            return preset != nullptr;
        case 5:
            if (!isRoot)
                manager.RenameFolder(directory, PickText());
            return !isRoot;
        case 6:
            manager.DeleteFolder(directory);
            return !isRoot;
        case 7:
            manager.Export(directory, exported);
            return false;
        case 8:
            manager.Import(directory, exported);
            return true;
        case 9:
            if (preset != nullptr)
                manager.LoadPreset(*preset);
            return false;
        case 10:
            Walk(manager, preset);
            return false;
        default:
            Overwrite();
            return false;
        }
    }
    static void Walk(const MPresetManagerBase& manager, const MXMLItem* preset)
    {
        if (preset == nullptr)
            return;
        Demand(manager.FindPrevious(manager.FindNext(preset)) == preset);
        const MString path = MPresetManagerBase::GetPath(*preset);
        const MXMLItem* const found = manager.Find(path);
        Demand(found != nullptr);
        Demand(MPresetManagerBase::GetPath(*found).ToUTF8() == path.ToUTF8());
    }

    FuzzedDataProvider& data;
    const TemporaryFolder& folder;
    const std::filesystem::path file;
    std::unique_ptr<MPresetManagerBase> managers[2];
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size)
{
    const TemporaryFolder folder;
    FuzzedDataProvider data(bytes, size);
    Driver driver(data, folder);
    for (int i = 0; i < 12 && data.remaining_bytes() > 0; ++i)
        driver.Step();
    return 0;
}
