#pragma once

#include <cstddef>
#include <filesystem>
#include <iosfwd>
#include <memory>
#include <optional>
#include <string>
#include <vector>

class MXMLItem;

/// The presets that a file holds, by their paths, such as "Folder/Name".
class PresetCatalogue
{
public:
    /// Without @p chosenFile: the presets of the user, or, for one who has none, those that were
    /// built or installed with this program, in share/tonvale beside its folder.
    /// @throws MException naming the file if it cannot be read
    explicit PresetCatalogue(const std::optional<std::string>& chosenFile);
    ~PresetCatalogue();

    /// One line a path, in the order of the file.
    void List(std::ostream& stream) const;
    /// The preset as settings, compressed, as plugins take them. Case does not matter.
    /// @throws MException that names the nearest ones if there is none, or if it is damaged
    std::vector<std::byte> Load(const std::string& path) const;

private:
    std::string ListNearest(const std::string& path) const;

    std::filesystem::path file;
    std::unique_ptr<MXMLItem> root;
};
