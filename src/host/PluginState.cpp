#include "host/PluginState.h"

#include "foundation/threads/MException.h"
#include "foundation/xml/MStorageDescriptor.h"
#include "foundation/xml/MXMLItem.h"
#include "host/MAudioPlugin.h"

MMemoryStream pluginstate::Save(MAudioPlugin& plugin)
{
    MXMLItem settings("settings");
    plugin.Store({.storing = true, .item = settings});
    MMemoryStream stream;
    settings.SaveCompressed(stream, "utf-8");
    stream.Seek(0, MStream::FromStart);
    return stream;
}

void pluginstate::Load(MAudioPlugin& plugin, MStream& stream)
{
    MXMLItem settings("settings");
    settings.LoadCompressed(stream);
    if (settings.GetName() != "settings")
        throw MException("Invalid file contents. There is no element \"settings\".", 256);
    plugin.Store({.storing = false, .item = settings});
}
