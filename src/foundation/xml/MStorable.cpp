#include "foundation/xml/MStorable.h"

#include "foundation/xml/MXMLItem.h"

MStorable::~MStorable() = default;

MString MStorable::GetAsString() const
{
    return {};
}

void MStorable::SetFromString(const MString& /*text*/) {}

bool MStorable::SetDefault()
{
    return false;
}

void MStorable::Store(MXMLItem& item) const
{
    item.SetAttribute(id, GetAsString());
}

void MStorable::Load(MXMLItem& item)
{
    if (item.HasAttribute(id))
        SetFromString(item.GetAttribute());
    else
        SetDefault();
}

void MStorable::InitFromXML(MXMLItem& item)
{
    id = item.GetAttribute("id", id);
}
