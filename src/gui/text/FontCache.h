#pragma once

#include <map>
#include <string>
#include <vector>

#include "foundation/streams/Files.h"
#include "gui/text/FontFaceInfo.h"

/// What is known of the system's font files, so that a scan opens only those that are new or have
/// changed since. Kept as an item tree: "file" with "name", "size", "time" and a "face" for each
/// face that can be used. One thread.
class FontCache
{
public:
    /// Reads what Save wrote; what is broken or missing is not known.
    void Load(const MString& fileName);
    /// @throws MException as files::ReplaceContents does
    void Save(const MString& fileName) const;

    /// The faces of a file, none if it is no font; null if it is not known or has changed. Valid
    /// until the next Add of the file.
    const std::vector<FontFaceInfo>* Find(const MString& file, const files::Stamp& stamp) const;
    void Add(const MString& file, const files::Stamp& stamp, std::vector<FontFaceInfo> faces);
    std::size_t CountFiles() const noexcept { return entries.size(); }

private:
    struct Entry
    {
        std::int64_t size;
        std::int64_t modified; ///< in units of the system
        std::vector<FontFaceInfo> faces;
    };

    std::map<std::string, Entry> entries; ///< by the bytes of the name, as names may differ in case
};
