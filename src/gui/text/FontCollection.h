#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "foundation/strings/MString.h"
#include "gui/text/FontFaceInfo.h"

class FontFace;
class FontScanThread;

/// The faces of the packed fonts and, once they are needed and a helper thread has found them, of
/// those that the system has. A face is known by its number, which never changes.
/// Files are opened when their faces are first used, and at most MaxOpenFaces stay open. One for
/// the library, made and used on the GUI thread.
class FontCollection
{
public:
    static constexpr int MaxOpenFaces = 32;
    static constexpr int NoFace = -1;

    struct Wish
    {
        bool isBold;
        bool isItalic;
    };

    static FontCollection& Get();

    /// With the system's fonts in @p folders, and the file that keeps what is known of them.
    FontCollection(std::vector<MString> folders, const MString& cacheName);
    FontCollection(const FontCollection&) = delete;
    FontCollection& operator=(const FontCollection&) = delete;
    ~FontCollection();

    /// The face of the family that is nearest to @p wish, italic before weight; of a packed family
    /// only the packed ones count. Of the default family if there is no such family, or none as
    /// yet: it is looked for in the system's fonts then. NoFace only if there are no packed fonts.
    int Match(const MString& family, Wish wish);
    /// A face that has @p code, the packed ones first, then those nearest to @p wish. NoFace if
    /// there is none, or none as yet, as above.
    int MatchCode(char32_t code, Wish wish);

    const FontFaceInfo& GetInfo(int face) const noexcept
    {
        return faces[static_cast<std::size_t>(face)];
    }
    /// Null if it cannot be opened (any more). Valid until the next face is opened.
    FontFace* Open(int face);

    /// Another number once the system's fonts are there, and with them better matches.
    int GetGeneration();
    /// Waits for the system's fonts, if they are being looked for.
    void WaitForScan();
    /// No thread runs any more after this; to be called before the library goes, where the end of
    /// static objects may not wait for threads.
    void StopScan();

private:
    struct OpenFace
    {
        int number;
        std::unique_ptr<FontFace> face;
        std::uint64_t lastUse;
    };

    void AddPackedFonts();
    void NeedScan();
    /// Takes over what the thread has found, once it is ready.
    void AdoptScan();
    /// NoFace if the family is not known.
    int FindNearest(const MString& family, Wish wish) const;
    bool HasGlyph(int face, char32_t code);

    std::vector<MString> fontFolders;
    MString cacheFile;
    std::vector<FontFaceInfo> faces; ///< the packed ones first
    std::size_t packedCount = 0;
    std::vector<OpenFace> openFaces;
    std::vector<int> brokenFaces;
    std::uint64_t uses = 0;
    std::unique_ptr<FontScanThread> scan; ///< null until it is needed
    bool isScanned = false;
};
