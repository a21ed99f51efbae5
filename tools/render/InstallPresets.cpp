#include "tools/render/InstallPresets.h"

#include <algorithm>
#include <ostream>
#include <random>

#include "foundation/strings/FileNames.h"
#include "persistence/presets/MPresetBase.h"
#include "persistence/presets/MPresetManagerBase.h"
#include "persistence/presets/PresetTree.h"
#include "tools/render/Failure.h"

namespace
{

/// Whole folders move without anyone to load their presets.
class NoOwner final : public MPresetBase
{
public:
    void Store(MXMLItem& /*preset*/) override {}
    void Load(MXMLItem& /*preset*/) override {}
};

/// A name for a file that goes with this.
class TemporaryFile
{
public:
    TemporaryFile()
        : path(std::filesystem::temp_directory_path() /
               ("tonvale-presets-" + std::to_string(std::random_device()()) + ".xml"))
    {
    }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;
    ~TemporaryFile()
    {
        std::error_code ignored;
        std::filesystem::remove(path, ignored);
    }

    MString GetName() const { return FileNameFromBytes(path.string()); }

private:
    std::filesystem::path path;
};

bool HasFolder(const MXMLItem& root, const MString& name)
{
    return std::ranges::any_of(
        root.GetSubItems(), [&name](const auto& item)
        { return presettree::IsFolder(*item) && presettree::GetName(*item) == name; });
}

void AddFolder(MPresetManagerBase& manager, const MXMLItem& folder)
{
    const TemporaryFile file;
    manager.Export(folder, file.GetName());
    MXMLItem& added = manager.AddFolder(manager.GetRoot(), presettree::GetName(folder));
    try
    {
        manager.Import(added, file.GetName());
    }
    catch (const MException&)
    {
        manager.DeleteFolder(added); // an empty one would count as there the next time
        throw;
    }
}

std::unique_ptr<MXMLItem> ReadSource(const std::filesystem::path& source)
{
    try
    {
        if (auto root = ReadPresetTree(FileNameFromBytes(source.string())))
            return root;
        throw Failure("it is empty");
    }
    catch (const MException& failure)
    {
        throw Failure("cannot read presets from " + Quoted(source), failure.text.ToUTF8());
    }
}

} // namespace

void InstallPresets(const std::filesystem::path& source, std::ostream& report)
{
    const std::unique_ptr<MXMLItem> root = ReadSource(source);
    const MString place = FindProductFolder();
    const std::string target =
        Quoted(std::filesystem::path(FileNameToBytes(place)) / "Tonvalepresets.xml");
    try
    {
        NoOwner owner;
        MPresetManagerBase manager(owner, "Tonvale", place);
        manager.LoadFile(); // tells of one that cannot be read
        for (const auto& folder : root->GetSubItems())
        {
            const std::string name = '"' + presettree::GetName(*folder).ToUTF8() + '"';
            if (!presettree::IsFolder(*folder))
                continue;
            if (HasFolder(manager.GetRoot(), presettree::GetName(*folder)))
            {
                report << name << " is there already\n";
                continue;
            }
            AddFolder(manager, *folder);
            const std::size_t count = presettree::ListPresets(*folder).size();
            report << name << ": added " << count << (count == 1 ? " preset to " : " presets to ")
                   << target << '\n';
        }
    }
    catch (const MException& failure)
    {
        throw Failure("cannot add presets to " + target, failure.text.ToUTF8());
    }
}
