#include "foundation/xml/XMLEntities.h"

#include <algorithm>

#include "foundation/strings/MString.h"

namespace xmlentities
{

namespace
{

struct Entity
{
    const char* name;
    char16_t character;
};

constexpr Entity Entities[] = {
    {"amp", u'&'}, {"lt", u'<'}, {"gt", u'>'}, {"apos", u'\''}, {"quot", u'"'}, {"#10", u'\n'},
};

constexpr int LongestName = 4;

/// The entity whose name @p text begins with, or null.
const Entity* Find(std::u16string_view text)
{
    const MString start = MString::FromUTF16(text.substr(0, LongestName));
    const auto* const found =
        std::ranges::find_if(Entities,
                             [&start](const Entity& entity)
                             {
                                 const MString name = entity.name;
                                 return start.Compare(0, name, 0, name.Length()) == 0;
                             });
    return found == std::end(Entities) ? nullptr : found;
}

} // namespace

void Decode(std::u16string& text)
{
    std::size_t read = std::min(text.find(u'&'), text.size());
    std::size_t written = read;
    while (read < text.size())
    {
        if (text[read] == u'&')
            if (const Entity* const entity = Find(std::u16string_view(text).substr(read + 1)))
            {
                text[written++] = entity->character;
                read += std::char_traits<char>::length(entity->name) + 2;
                continue;
            }
        text[written++] = text[read++];
    }
    text.resize(written);
}

} // namespace xmlentities
