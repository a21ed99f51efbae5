#include "foundation/xml/SettingsTree.h"

#include <algorithm>

#include "foundation/limits.h"
#include "foundation/threads/MException.h"
#include "foundation/xml/MXMLItem.h"

namespace
{

struct Bound
{
    const char* name; ///< of the subitems that one item may have
    int most;
    const char* refusal;
};

constexpr Bound Bounds[] = {
    {"Point", limits::CurvePoints, "Invalid file contents. Too many points in a curve."},
    {"Parameter", limits::Targets, "Invalid file contents. Too many targets."},
};

} // namespace

void CheckSettingsTree(const MXMLItem& settings)
{
    const auto& subItems = settings.GetSubItems();
    for (const Bound& bound : Bounds)
    {
        // Nearly all items have too few of any name for the names to matter.
        if (std::ssize(subItems) <= bound.most)
            continue;
        const MString name = bound.name;
        if (std::ranges::count_if(subItems, [&name](const auto& item)
                                  { return item->GetName() == name; }) > bound.most)
            throw MException(bound.refusal, MException::BadData);
    }
    for (const auto& item : subItems)
        CheckSettingsTree(*item);
}
