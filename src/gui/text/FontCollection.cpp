#include "gui/text/FontCollection.h"

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <tuple>
#include <utility>

#include "foundation/modules/MModule.h"
#include "foundation/modules/MResources.h"
#include "foundation/modules/SystemPaths.h"
#include "foundation/streams/Files.h"
#include "foundation/threads/MGuard.h"
#include "foundation/threads/MThread.h"
#include "gui/text/FontFace.h"
#include "gui/text/FontScan.h"
#include "gui/text/MFontDescription.h"

namespace
{

/// In the order in which they stand in for each other.
constexpr const char* PackedFonts[] = {"fonts/Inter-Regular.otf", "fonts/Inter-SemiBold.otf",
                                       "fonts/DejaVuSans.ttf", "fonts/DejaVuSansMono.ttf"};
/// For one code, of faces that may have it: each costs the opening of a file.
constexpr int MaxTries = 16;

/// An empty stream if there is none.
MMemoryStream ReadPacked(const MString& name)
{
    return MGuarded("FontCollection::ReadPacked", MMemoryStream(),
                    [&] { return MResources::Open(name); });
}

/// The smaller, the nearer.
std::pair<bool, int> Distance(const FontFaceInfo& face, FontCollection::Wish wish) noexcept
{
    const int weight = wish.isBold ? FontFaceInfo::BoldWeight : FontFaceInfo::RegularWeight;
    return {face.isItalic != wish.isItalic, std::abs(face.weight - weight)};
}

MString GetCacheName()
{
    return MGuarded("FontCollection::GetCacheName", MString("fonts.cache"),
                    [] { return files::PathJoin(MModule::Get().GetDataPath(), "fonts.cache"); });
}

} // namespace

class FontScanThread : public MThread
{
public:
    FontScanThread(std::vector<MString> scannedFolders, MString cacheFile)
        : folders(std::move(scannedFolders)),
          cacheName(std::move(cacheFile))
    {
    }
    FontScanThread(const FontScanThread&) = delete;
    FontScanThread& operator=(const FontScanThread&) = delete;
    ~FontScanThread() override
    {
        RequestStop();
        Wait(MLock::Infinite);
    }

    bool IsReady() const noexcept { return isReady.load(std::memory_order_acquire); }
    /// Once it is ready.
    std::vector<FontFaceInfo> TakeFaces() noexcept { return std::move(faces); }

private:
    int Main() override
    {
        faces = ScanFonts(folders, cacheName, [this] { return IsStopRequested(); });
        isReady.store(true, std::memory_order_release); // hands over faces
        return 0;
    }

    std::vector<MString> folders;
    MString cacheName;
    std::vector<FontFaceInfo> faces;
    std::atomic<bool> isReady = false;
};

FontCollection& FontCollection::Get()
{
    static FontCollection collection(systempaths::GetFontFolders(), GetCacheName());
    return collection;
}

FontCollection::FontCollection(std::vector<MString> folders, const MString& cacheName)
    : fontFolders(std::move(folders)),
      cacheFile(cacheName)
{
    openFaces.reserve(MaxOpenFaces);
    AddPackedFonts();
}

FontCollection::~FontCollection() = default;

void FontCollection::AddPackedFonts()
{
    for (const char* name : PackedFonts)
    {
        int ignored = 0;
        const auto face = FontFace::Open(ReadPacked(name), 0, ignored);
        if (!face)
            continue;
        faces.push_back(face->Describe());
        faces.back().file = name;
        faces.back().isPacked = true;
    }
    packedCount = faces.size();
}

int FontCollection::Match(const MString& family, Wish wish)
{
    AdoptScan();
    if (const int face = FindNearest(family, wish); face != NoFace)
        return face;
    NeedScan();
    const int face = FindNearest(MFontDescription::DefaultFace, wish);
    return face != NoFace || faces.empty() ? face : 0;
}

int FontCollection::FindNearest(const MString& family, Wish wish) const
{
    int nearest = NoFace;
    for (int i = 0; i < static_cast<int>(faces.size()); ++i)
    {
        // The look of a packed family is the same on every machine.
        if (i == static_cast<int>(packedCount) && nearest != NoFace)
            break;
        if (GetInfo(i).family == family &&
            (nearest == NoFace || Distance(GetInfo(i), wish) < Distance(GetInfo(nearest), wish)))
            nearest = i;
    }
    return nearest;
}

int FontCollection::MatchCode(char32_t code, Wish wish)
{
    AdoptScan();
    std::vector<int> candidates;
    for (int i = 0; i < static_cast<int>(faces.size()); ++i)
        if (GetInfo(i).MayHave(code))
            candidates.push_back(i);
    const auto rank = [&](int face)
    { return std::tuple(!GetInfo(face).isPacked, Distance(GetInfo(face), wish), face); };
    std::ranges::sort(candidates, {}, rank);
    if (candidates.size() > packedCount + MaxTries)
        candidates.resize(packedCount + MaxTries);

    const auto found =
        std::ranges::find_if(candidates, [&](int face) { return HasGlyph(face, code); });
    if (found != candidates.end())
        return *found;
    NeedScan();
    return NoFace;
}

bool FontCollection::HasGlyph(int face, char32_t code)
{
    const FontFace* const opened = Open(face);
    return opened != nullptr && opened->FindGlyph(code) != 0;
}

FontFace* FontCollection::Open(int face)
{
    ++uses;
    const auto found = std::ranges::find(openFaces, face, &OpenFace::number);
    if (found != openFaces.end())
    {
        found->lastUse = uses;
        return found->face.get();
    }
    if (std::ranges::find(brokenFaces, face) != brokenFaces.end())
        return nullptr;

    const FontFaceInfo& info = GetInfo(face);
    int ignored = 0;
    auto opened = info.isPacked ? FontFace::Open(ReadPacked(info.file), info.index, ignored)
                                : FontFace::Open(info.file, info.index, ignored);
    if (!opened)
    {
        brokenFaces.push_back(face);
        return nullptr;
    }
    if (openFaces.size() >= MaxOpenFaces)
        openFaces.erase(std::ranges::min_element(openFaces, {}, &OpenFace::lastUse));
    openFaces.push_back({face, std::move(opened), uses});
    return openFaces.back().face.get();
}

int FontCollection::GetGeneration()
{
    AdoptScan();
    return isScanned ? 1 : 0;
}

void FontCollection::WaitForScan()
{
    if (scan)
        scan->Wait(MLock::Infinite);
    AdoptScan();
}

void FontCollection::StopScan()
{
    AdoptScan();
    scan.reset();
}

void FontCollection::NeedScan()
{
    if (scan || isScanned)
        return;
    scan = std::make_unique<FontScanThread>(fontFolders, cacheFile);
    // Without a thread there are the packed fonts.
    MGuarded("FontCollection::NeedScan", false,
             [this]
             {
                 scan->SetPriority(MThread::Priority::Low);
                 scan->Start();
                 return true;
             });
}

void FontCollection::AdoptScan()
{
    if (!scan || !scan->IsReady())
        return;
    const std::vector<FontFaceInfo> found = scan->TakeFaces();
    faces.insert(faces.end(), found.begin(), found.end());
    scan.reset();
    isScanned = true;
}
