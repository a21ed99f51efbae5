#pragma once

#include <memory>

#include "foundation/streams/Files.h"
#include "foundation/streams/MFileLock.h"
#include "foundation/xml/MXMLItem.h"

/// Reads a file of presets whole: one that ends within an element is refused, too, since what is
/// missing would go for good with the next save. An empty file gives null.
/// @throws MException (256) as MXMLItem::Load does, "Invalid file contents. The file is too long."
/// or "... The file is not complete."; (257) "File \"{0}\" could not be open. Make sure it exists."
std::unique_ptr<MXMLItem> ReadPresetTree(const MString& fileName);

/// The folder of this product's data; empty if the system has no such place.
MString FindProductFolder();

/// The file of a preset manager: one item "presets" in the readable form, UTF-8. Other managers,
/// in this and other programs, may have the same file open; who changes it holds the lock from
/// before it reads until it has written. One thread.
class PresetFile
{
public:
    static constexpr const char* RootName = "presets";

    /// An empty folder means that there is no place for the file.
    PresetFile(const MString& usedFolder, const MString& name);

    /// Makes the folder unless it is there. @throws MException (0) "Could not retrieve system
    /// path." without a folder, and as files::CreatePath and MFileLock do
    MFileLock Lock() const;
    /// The contents, if others have written since the last Read or Write; null if not, and for a
    /// file that is missing or empty. What cannot be read stays changed.
    /// @throws MException as ReadPresetTree does; (256) "Invalid file contents. There is no element
    /// \"presets\"."
    std::unique_ptr<MXMLItem> ReadIfChanged();
    /// To the disk, or not at all. @throws MException as files::ReplaceContents does; (256) for
    /// what could not be read again
    void Write(const MXMLItem& root);

private:
    const MString folder;
    const MString fileName; ///< with the folder
    files::Stamp stamp;     ///< of the contents that were read or written last
};
