#include "persistence/presets/PresetFile.h"

#include "foundation/limits.h"
#include "foundation/modules/MModule.h"
#include "foundation/streams/MMemoryStream.h"
#include "foundation/streams/MStdFileStream.h"
#include "foundation/threads/MException.h"
#include "foundation/xml/MXMLParser.h"
#include "persistence/presets/StorableTree.h"

namespace
{

/// Knows whether the root element has been closed.
class WholeParser final : public MXMLParser
{
public:
    using MXMLParser::MXMLParser;

    bool IsWhole() const noexcept { return isWhole; }

protected:
    bool OnElement(const MString& name, std::vector<MAttribute>& received, bool isClosing) override
    {
        isWhole = MXMLParser::OnElement(name, received, isClosing);
        return isWhole;
    }

private:
    bool isWhole = false;
};

[[noreturn]] void Refuse(const char* text)
{
    throw MException(text, MException::BadData);
}

void CheckBytes(std::int64_t bytes)
{
    if (bytes > limits::InflatedTreeBytes)
        Refuse("Invalid file contents. The file is too long.");
}

} // namespace

std::unique_ptr<MXMLItem> ReadPresetTree(const MString& fileName)
{
    MStdFileStream stream(fileName, MStdFileStream::Opening::Existing);
    const std::int64_t size = stream.GetSize();
    if (size == 0)
        return nullptr;
    CheckBytes(size);
    auto root = std::make_unique<MXMLItem>("");
    WholeParser parser(*root);
    parser.Parse(stream);
    if (root->GetName().IsEmpty())
        Refuse("The XML does not contain any elements.");
    if (!parser.IsWhole())
        Refuse("Invalid file contents. The file is not complete.");
    storabletree::DropUnstorable(*root);
    return root;
}

MString FindProductFolder()
{
    try
    {
        return MModule::Get().GetDataPath();
    }
    catch (const MException&)
    {
        return {};
    }
}

PresetFile::PresetFile(const MString& usedFolder, const MString& name)
    : folder(usedFolder),
      fileName(usedFolder.IsEmpty() ? MString() : files::PathJoin(usedFolder, name))
{
}

MFileLock PresetFile::Lock() const
{
    if (folder.IsEmpty())
        throw MException("Could not retrieve system path.");
    files::CreatePath(folder);
    MString lockName = fileName;
    lockName.Append(".lock");
    return MFileLock(lockName);
}

std::unique_ptr<MXMLItem> PresetFile::ReadIfChanged()
{
    // Taken first: a change while the file is read shows the next time.
    const files::Stamp now = fileName.IsEmpty() ? files::Stamp() : files::GetStamp(fileName);
    if (now == stamp || now.size <= 0)
        return nullptr;
    std::unique_ptr<MXMLItem> root = ReadPresetTree(fileName);
    if (root != nullptr && root->GetName() != RootName)
        Refuse("Invalid file contents. There is no element \"presets\".");
    stamp = now;
    return root;
}

void PresetFile::Write(const MXMLItem& root)
{
    storabletree::CheckLimits(root);
    MMemoryStream written;
    root.Save(written, false, "utf-8");
    written.Seek(0, MStream::FromStart);
    CheckBytes(written.GetSize());
    files::ReplaceContents(fileName, written.GetData());
    stamp = files::GetStamp(fileName);
}
