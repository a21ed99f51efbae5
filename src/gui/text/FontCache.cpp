#include "gui/text/FontCache.h"

#include <algorithm>
#include <utility>

#include "foundation/limits.h"
#include "foundation/streams/MMemoryStream.h"
#include "foundation/streams/MStdFileStream.h"
#include "foundation/strings/FileNames.h"
#include "foundation/threads/MGuard.h"
#include "foundation/xml/MXMLItem.h"
#include "foundation/xml/MXMLItemIterator.h"

namespace
{

constexpr int PagesPerDigit = 4;

/// The pages from the first on, four a digit, the first of them lowest.
MString PagesToText(const std::bitset<FontFaceInfo::PageCount>& pages)
{
    MString text;
    for (std::size_t page = 0; page < pages.size(); page += PagesPerDigit)
    {
        int digit = 0;
        for (std::size_t bit = 0; bit < PagesPerDigit; ++bit)
            digit |= pages[page + bit] ? 1 << bit : 0;
        text.Append(MString::FromInteger(digit, 16));
    }
    return text;
}

std::bitset<FontFaceInfo::PageCount> PagesFromText(const MString& text)
{
    std::bitset<FontFaceInfo::PageCount> pages;
    for (std::size_t page = 0; page < pages.size(); ++page)
    {
        const int place = static_cast<int>(page) / PagesPerDigit;
        const std::int64_t digit = MString::FromCharacter(text.CharAt(place)).ToInteger(16);
        pages[page] = (digit >> (page % PagesPerDigit) & 1) != 0;
    }
    return pages;
}

std::int64_t ReadNumber(const MXMLItem& item, const MString& name)
{
    return item.GetAttribute(name, "").ToInteger();
}

FontFaceInfo ReadFace(const MXMLItem& item, const MString& file)
{
    FontFaceInfo face;
    face.family = item.GetAttribute("family", "");
    face.style = item.GetAttribute("style", "");
    face.file = file;
    face.index =
        static_cast<int>(std::clamp<std::int64_t>(ReadNumber(item, "index"), 0, limits::FontFaces));
    face.weight = static_cast<int>(
        std::clamp<std::int64_t>(ReadNumber(item, "weight"), 1, FontFaceInfo::MaxWeight));
    face.isItalic = ReadNumber(item, "italic") != 0;
    face.isFixedWidth = ReadNumber(item, "fixed") != 0;
    face.pages = PagesFromText(item.GetAttribute("pages", ""));
    return face;
}

void WriteFace(MXMLItem& item, const FontFaceInfo& face)
{
    item.SetAttribute("family", face.family);
    item.SetAttribute("style", face.style);
    item.SetAttribute("index", face.index);
    item.SetAttribute("weight", face.weight);
    item.SetAttribute("italic", face.isItalic ? 1 : 0);
    item.SetAttribute("fixed", face.isFixedWidth ? 1 : 0);
    item.SetAttribute("pages", PagesToText(face.pages));
}

} // namespace

void FontCache::Load(const MString& fileName)
{
    MXMLItem root("fonts");
    const bool isRead =
        MGuarded("FontCache::Load", false,
                 [&]
                 {
                     MStdFileStream file(fileName, MStdFileStream::Opening::Existing);
                     root.LoadCompressed(file);
                     return true;
                 });
    entries.clear();
    if (!isRead || root.GetName() != "fonts")
        return;
    MXMLItemIterator file(root, "file");
    for (file.Begin(); file.IsValid(); file.Next())
    {
        const MString name = file.Current().GetAttribute("name", "");
        Entry& entry = entries[FileNameToBytes(name)];
        entry = {ReadNumber(file.Current(), "size"), ReadNumber(file.Current(), "time"), {}};
        MXMLItemIterator face(file.Current(), "face");
        for (face.Begin(); face.IsValid(); face.Next())
            entry.faces.push_back(ReadFace(face.Current(), name));
    }
}

void FontCache::Save(const MString& fileName) const
{
    MXMLItem root("fonts");
    for (const auto& [name, entry] : entries)
    {
        MXMLItem& file = root.AddSubItem("file");
        file.SetAttribute("name", FileNameFromBytes(name));
        file.SetAttribute("size", MString::FromInteger(entry.size));
        file.SetAttribute("time", MString::FromInteger(entry.modified));
        for (const FontFaceInfo& face : entry.faces)
            WriteFace(file.AddSubItem("face"), face);
    }
    MMemoryStream contents;
    root.SaveCompressed(contents, "UTF-8");
    contents.Seek(0, MStream::FromStart);
    files::ReplaceContents(fileName, contents.GetData());
}

const std::vector<FontFaceInfo>* FontCache::Find(const MString& file,
                                                 const files::Stamp& stamp) const
{
    const auto found = entries.find(FileNameToBytes(file));
    const bool isSame = found != entries.end() && found->second.size == stamp.size &&
                        found->second.modified == stamp.modified;
    return isSame ? &found->second.faces : nullptr;
}

void FontCache::Add(const MString& file, const files::Stamp& stamp, std::vector<FontFaceInfo> faces)
{
    entries[FileNameToBytes(file)] = {stamp.size, stamp.modified, std::move(faces)};
}
