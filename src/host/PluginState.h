#pragma once

#include "foundation/streams/MMemoryStream.h"

class MAudioPlugin;

/// The state of a plugin as hosts keep it: the item "settings" in the compressed form, and nothing
/// round it, the same in all host standards.
namespace pluginstate
{

/// Not on the audio thread, which goes on meanwhile.
/// @throws MException as MAudioPlugin::Store and MXMLItem::SaveCompressed do
MMemoryStream Save(MAudioPlugin& plugin);

/// Reads @p stream to its end. What cannot be read, or is no such state, changes nothing.
/// Not on the audio thread; blocks are silent while the plugin takes the state over.
/// @throws MException as MXMLItem::LoadCompressed, CheckSettingsTree and MAudioPlugin::Store do;
/// (256) "Invalid file contents. There is no element \"settings\"." if the root is another
void Load(MAudioPlugin& plugin, MStream& stream);

} // namespace pluginstate
