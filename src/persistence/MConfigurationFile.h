#pragma once

#include <functional>
#include <memory>

#include "foundation/streams/Files.h"
#include "foundation/threads/MLock.h"
#include "foundation/xml/MXMLItem.h"

/// A file of settings beside those of the instances: one item "Configuration" in the readable form,
/// UTF-8. Any number of objects, threads and programs may have the same file open: each change is
/// applied to what the file holds at that time, so none is lost.
/// Any thread but the audio thread.
class MConfigurationFile
{
public:
    /// @p folder is made with the first change. An empty one means that there is no place for the
    /// file: then all values are the defaults.
    MConfigurationFile(const MString& folder, const MString& name);

    /// The attribute @p key of the item, or @p defaultValue if it is missing or the file is missing
    /// or cannot be read. Looks whether the file has changed, and reads it only then; does not wait
    /// for a change under way.
    MString Get(const MString& key, const MString& defaultValue);
    /// The same for the first subitem @p itemName.
    MString Get(const MString& itemName, const MString& key, const MString& defaultValue);

    /// Hands the present contents to @p change and writes what it makes of them, to the disk; if
    /// that fails, or @p change throws, the file stays as it is.
    /// @throws MException (256) "File \"{0}\" could not be changed. {1}", with the reason, for a
    /// file that is not understood and may be worth keeping; (0) "Could not retrieve system path."
    /// without a folder; and as files::CreatePath, MFileLock and files::ReplaceContents do
    void Change(const std::function<void(MXMLItem& configuration)>& change);

private:
    /// Reads the file if it is another than the last time; what cannot be read counts as empty.
    void Refresh();
    /// Null if there is no file, or an empty one.
    std::unique_ptr<MXMLItem> Read() const;

    const MString folder;
    const MString fileName;                  ///< with the folder
    MLock lock;                              ///< of what follows, not of the file
    files::Stamp stamp;                      ///< of the file when it was read
    std::unique_ptr<MXMLItem> configuration; ///< null for none
};
