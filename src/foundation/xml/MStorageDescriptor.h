#pragma once

class MXMLItem;

/// Lets one routine serve both directions: it writes to @ref item or reads from it.
struct MStorageDescriptor
{
    bool storing;
    MXMLItem& item;
};
