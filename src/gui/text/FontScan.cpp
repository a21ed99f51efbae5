#include "gui/text/FontScan.h"

#include <algorithm>
#include <cstdint>
#include <set>
#include <utility>

#include "foundation/limits.h"
#include "foundation/streams/Files.h"
#include "foundation/threads/MGuard.h"
#include "gui/text/FontCache.h"
#include "gui/text/FontFace.h"

namespace
{

constexpr int MaxDepth = 8;

bool IsFontName(const MString& name)
{
    constexpr const char* Extensions[] = {".ttf", ".otf", ".ttc", ".pfb"};
    constexpr int Length = 4; // of each
    const MString end = name.Mid(std::max(0, name.Length() - Length), Length);
    return name.Length() > Length && std::ranges::any_of(Extensions, [&](const MString& extension)
                                                         { return end == extension; });
}

std::vector<FontFaceInfo> ReadFaces(const MString& file)
{
    std::vector<FontFaceInfo> faces;
    int count = 1;
    for (int i = 0; i < std::min(count, limits::FontFaces); ++i)
    {
        int faceCount = 0;
        const auto face = FontFace::Open(file, i, faceCount);
        if (i == 0)
            count = faceCount;
        if (!face)
            continue;
        faces.push_back(face->Describe());
        faces.back().file = file;
        faces.back().index = i;
    }
    return faces;
}

class FontScan
{
public:
    FontScan(const MString& cacheFile, const std::function<bool()>& stopQuestion)
        : cacheName(cacheFile),
          mustStop(stopQuestion)
    {
        known.Load(cacheName);
    }
    FontScan(const FontScan&) = delete;
    FontScan& operator=(const FontScan&) = delete;

    void ScanFolder(const MString& folder, int depth)
    {
        if (depth > MaxDepth)
            return;
        const files::Stamp stamp = files::GetStamp(folder);
        const bool isNew = stamp.id == 0 || visited.insert({stamp.id, stamp.modified}).second;
        if (!isNew)
            return;
        for (const files::Entry& entry : List(folder))
        {
            if (mustStop())
                return;
            const MString path = files::PathJoin(folder, entry.name);
            if (entry.isFolder)
                ScanFolder(path, depth + 1);
            else if (IsFontName(entry.name) && found.CountFiles() < limits::FontFiles)
                ScanFile(path);
        }
    }

    std::vector<FontFaceInfo> Finish()
    {
        if (hasNews || found.CountFiles() != known.CountFiles())
            MGuarded("FontScan::Finish", false,
                     [&]
                     {
                         found.Save(cacheName);
                         return true;
                     });
        return std::move(faces);
    }

private:
    static std::vector<files::Entry> List(const MString& folder)
    {
        return MGuarded("FontScan::List", std::vector<files::Entry>(),
                        [&] { return files::ListDirectory(folder); });
    }

    void ScanFile(const MString& file)
    {
        const files::Stamp stamp = files::GetStamp(file);
        const std::vector<FontFaceInfo>* const old = known.Find(file, stamp);
        std::vector<FontFaceInfo> present = old != nullptr ? *old : ReadFaces(file);
        hasNews = hasNews || old == nullptr;
        faces.insert(faces.end(), present.begin(), present.end());
        found.Add(file, stamp, std::move(present));
    }

    const MString& cacheName;
    const std::function<bool()>& mustStop;
    FontCache known;
    FontCache found;
    bool hasNews = false;
    std::set<std::pair<std::uint64_t, std::int64_t>> visited; ///< folders: identity and time
    std::vector<FontFaceInfo> faces;
};

} // namespace

std::vector<FontFaceInfo> ScanFonts(std::span<const MString> folders, const MString& cacheName,
                                    const std::function<bool()>& mustStop)
{
    FontScan scan(cacheName, mustStop);
    for (const MString& folder : folders)
        scan.ScanFolder(folder, 0);
    return mustStop() ? std::vector<FontFaceInfo>() : scan.Finish();
}
