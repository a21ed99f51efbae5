#include "foundation/xml/MXMLItemIterator.h"

#include "foundation/threads/MException.h"
#include "foundation/xml/MXMLItem.h"

MXMLItemIterator::MXMLItemIterator(const MXMLItem& walkedItem, const MString& subItemName)
    : item(walkedItem),
      name(subItemName)
{
}

void MXMLItemIterator::Begin()
{
    index = 0;
    SkipOtherNames();
}

void MXMLItemIterator::Next()
{
    if (!IsValid())
        return;
    ++index;
    SkipOtherNames();
}

bool MXMLItemIterator::IsValid() const noexcept
{
    return index < item.GetSubItems().size();
}

MXMLItem& MXMLItemIterator::Current() const
{
    if (!IsValid())
        throw MException("XML item iterator has not been initialized.");
    return *item.GetSubItems()[index];
}

void MXMLItemIterator::SkipOtherNames()
{
    while (IsValid() && !name.IsEmpty() && Current().GetName() != name)
        ++index;
}
