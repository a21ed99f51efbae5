#include "tools/render/PresetCatalogue.h"

#include <algorithm>
#include <ostream>
#include <span>
#include <utility>

#include "foundation/modules/MModule.h"
#include "foundation/strings/FileNames.h"
#include "foundation/xml/SettingsTree.h"
#include "persistence/presets/MPresetBase.h"
#include "persistence/presets/PresetFile.h"
#include "persistence/presets/PresetTree.h"
#include "tools/render/Failure.h"
#include "tools/render/StateFile.h"

namespace
{

constexpr const char* FileName = "Tonvalepresets.xml";

std::filesystem::path FindFile()
{
    std::filesystem::path ofUser = FileNameToBytes(FindProductFolder());
    if (!ofUser.empty()) // else a file of any folder would do
        ofUser /= FileName;
    const std::filesystem::path program = MModule::Get().GetPath().ToUTF8();
    const std::filesystem::path installed =
        program.parent_path().parent_path() / "share" / "tonvale" / FileName;
    for (const std::filesystem::path& path : {ofUser, installed})
        if (std::error_code ignored; std::filesystem::is_regular_file(path, ignored))
            return path;
    throw Failure("there are no presets: neither " + Quoted(ofUser) + " nor " + Quoted(installed) +
                  " is there");
}

/// Keeps what it is given to load.
class StateTaker final : public MPresetBase
{
public:
    void Store(MXMLItem& /*preset*/) override {}
    void Load(MXMLItem& preset) override { settings.CopyContents(preset); }

    MXMLItem settings{"settings"};
};

/// How many characters to insert, remove or replace to make @p b of @p a; case does not matter.
std::size_t GetDistance(const MString& a, const MString& b)
{
    std::vector<std::size_t> row = {0};
    for (int j = 0; j < b.Length(); ++j)
        row.push_back(row.size());
    for (int i = 0; i < a.Length(); ++i)
    {
        std::size_t diagonal = row[0]++;
        for (int j = 0; j < b.Length(); ++j)
        {
            const auto place = static_cast<std::size_t>(j);
            const bool isSame = a.Compare(i, b, j, 1) == 0;
            const std::size_t best =
                std::min({diagonal + (isSame ? 0 : 1), row[place] + 1, row[place + 1] + 1});
            diagonal = std::exchange(row[place + 1], best);
        }
    }
    return row.back();
}

} // namespace

PresetCatalogue::PresetCatalogue(const std::optional<std::string>& chosenFile)
    : file(chosenFile ? std::filesystem::path(*chosenFile) : FindFile())
{
    try
    {
        root = ReadPresetTree(FileNameFromBytes(file.string()));
    }
    catch (const MException& failure)
    {
        throw Failure("cannot read presets from " + Quoted(file), failure.text.ToUTF8());
    }
    if (root == nullptr)
        root = std::make_unique<MXMLItem>(PresetFile::RootName); // an empty file has none
}

PresetCatalogue::~PresetCatalogue() = default;

void PresetCatalogue::List(std::ostream& stream) const
{
    for (const MXMLItem* const preset : presettree::ListPresets(*root))
        stream << presettree::GetPath(*preset).ToUTF8() << '\n';
}

std::vector<std::byte> PresetCatalogue::Load(const std::string& path) const
{
    MXMLItem* const preset = presettree::FindPreset(*root, MString::FromUTF8(path));
    if (preset == nullptr)
        throw Failure("there is no preset \"" + path + "\" in " + Quoted(file) + "; " +
                      ListNearest(path));
    try
    {
        StateTaker taker;
        presettree::LoadPreset(*preset, taker);
        taker.settings.RemoveAttribute("name"); // of a preset that is not compressed
        CheckSettingsTree(taker.settings);
        return statefile::Pack(taker.settings);
    }
    catch (const MException& failure)
    {
        throw Failure("cannot load preset \"" + path + "\" of " + Quoted(file),
                      failure.text.ToUTF8());
    }
}

std::string PresetCatalogue::ListNearest(const std::string& path) const
{
    constexpr std::size_t Told = 3;
    const MString wanted = MString::FromUTF8(path);
    std::vector<std::pair<std::size_t, std::string>> ranked;
    for (const MXMLItem* const preset : presettree::ListPresets(*root))
    {
        const MString candidate = presettree::GetPath(*preset);
        // Who leaves out the folder means the name.
        const std::size_t distance = std::min(GetDistance(wanted, candidate),
                                              GetDistance(wanted, presettree::GetName(*preset)));
        ranked.emplace_back(distance, candidate.ToUTF8());
    }
    if (ranked.empty())
        return "it holds none";
    std::ranges::stable_sort(ranked, {}, &std::pair<std::size_t, std::string>::first);
    std::string names;
    for (const auto& [distance, name] : std::span(ranked).first(std::min(Told, ranked.size())))
        names += (names.empty() ? "\"" : ", \"") + name + '"';
    return "the nearest are " + names + "; --presets lists all";
}
