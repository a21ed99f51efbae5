#include "persistence/MConfigurationFile.h"

#include "foundation/limits.h"
#include "foundation/streams/MFileLock.h"
#include "foundation/streams/MMemoryStream.h"
#include "foundation/streams/MStdFileStream.h"
#include "foundation/strings/MStringFormatter.h"
#include "foundation/threads/MException.h"
#include "foundation/threads/MLockGuard.h"

namespace
{

constexpr const char* RootName = "Configuration";

} // namespace

MConfigurationFile::MConfigurationFile(const MString& usedFolder, const MString& name)
    : folder(usedFolder),
      fileName(usedFolder.IsEmpty() ? MString() : files::PathJoin(usedFolder, name))
{
}

MString MConfigurationFile::Get(const MString& key, const MString& defaultValue)
{
    const MLockGuard guard(lock);
    Refresh();
    return configuration != nullptr ? configuration->GetAttribute(key, defaultValue) : defaultValue;
}

MString MConfigurationFile::Get(const MString& itemName, const MString& key,
                                const MString& defaultValue)
{
    const MLockGuard guard(lock);
    Refresh();
    return configuration != nullptr && configuration->HasSubItem(itemName)
               ? configuration->GetSubItem().GetAttribute(key, defaultValue)
               : defaultValue;
}

void MConfigurationFile::Change(const std::function<void(MXMLItem&)>& change)
{
    if (folder.IsEmpty())
        throw MException("Could not retrieve system path.");
    files::CreatePath(folder);
    MString lockName = fileName;
    lockName.Append(".lock");
    const MFileLock others(lockName);

    std::unique_ptr<MXMLItem> changed;
    try
    {
        changed = Read();
    }
    catch (const MException& failure)
    {
        throw MException(MStringFormatter("File \"{0}\" could not be changed. {1}")
                             .Add(fileName)
                             .Add(failure.text)
                             .Result(),
                         MException::BadData);
    }
    if (changed == nullptr)
        changed = std::make_unique<MXMLItem>(RootName);
    change(*changed);
    MMemoryStream written;
    changed->Save(written, false, "utf-8");
    written.Seek(0, MStream::FromStart);
    files::ReplaceContents(fileName, written.GetData());

    const MLockGuard guard(lock);
    stamp = files::GetStamp(fileName);
    configuration = std::move(changed);
}

void MConfigurationFile::Refresh()
{
    const files::Stamp now = fileName.IsEmpty() ? files::Stamp() : files::GetStamp(fileName);
    if (now == stamp)
        return;
    stamp = now; // a change while it is read shows the next time
    configuration.reset();
    try
    {
        configuration = Read();
    }
    catch (const MException&)
    {
        // The defaults do; who wants to change something will be told.
    }
}

std::unique_ptr<MXMLItem> MConfigurationFile::Read() const
{
    const std::int64_t size = files::GetStamp(fileName).size;
    if (size <= 0)
        return nullptr;
    if (size > limits::InflatedTreeBytes)
        throw MException("Invalid file contents. The file is too long.", MException::BadData);
    auto item = std::make_unique<MXMLItem>(RootName);
    MStdFileStream stream(fileName, MStdFileStream::Opening::Existing);
    item->Load(stream);
    if (item->GetName() != RootName)
        throw MException("Invalid file contents. There is no element \"Configuration\".",
                         MException::BadData);
    return item;
}
