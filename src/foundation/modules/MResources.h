#pragma once

#include <cstddef>
#include <span>

#include "foundation/streams/MMemoryStream.h"
#include "foundation/strings/MString.h"

/// The files that come with the product: definitions, textures, fonts, translations. The first
/// place that has one counts: the folder "resources" in the data path, so that users can replace
/// each of them, then the folder that is installed with the library, then the pack inside the
/// library.
class MResources
{
public:
    /// @p name is relative with "/" between its parts, such as "locale/de.xml"; a name that leads
    /// out of the folders is never found. Any thread; what it gives lasts as long as the library.
    /// @throws MException (0) "Could not find resource \"{0}\".", and as MStdFileStream does for a
    /// file that cannot be read
    static MMemoryStream Open(const MString& name);

    /// @p pack is a resource pack that lasts as long as the library; it is read, but not copied,
    /// when it is first needed. To be called before that and while there is one thread; who links
    /// the object library tonvale_resources need not do it.
    static void SetInnerPack(std::span<const std::byte> pack) noexcept;
};
