#include "persistence/MGlobalConfiguration.h"

#include "foundation/strings/MStringFormatter.h"
#include "persistence/FamilyFolder.h"

namespace
{

constexpr const char* DefaultSizeKey = "DefaultSize";

} // namespace

MGlobalConfiguration::MGlobalConfiguration(const MString& familyFolder)
    : file(familyFolder, "GlobalConfiguration.xml")
{
}

MGlobalConfiguration& MGlobalConfiguration::Get()
{
    static MGlobalConfiguration ofThisProcess(FindFamilyFolder());
    return ofThisProcess;
}

MGlobalConfiguration::Size MGlobalConfiguration::GetDefaultSize(const MString& product)
{
    const MString text = file.Get(product, DefaultSizeKey, {});
    const int blank = text.Find(u' ');
    const auto isSide = [](std::int64_t side) { return side >= 1 && side <= MaxSize; };
    const std::int64_t width = text.Mid(0, std::max(0, blank)).ToInteger();
    const std::int64_t height = text.Mid(blank + 1, text.Length()).ToInteger();
    if (blank < 0 || !isSide(width) || !isSide(height))
        return FirstDefaultSize;
    return {static_cast<int>(width), static_cast<int>(height)};
}

void MGlobalConfiguration::SetDefaultSize(const MString& product, const Size& size)
{
    file.Change(
        [&](MXMLItem& configuration)
        {
            configuration.GetOrAddSubItem(product).SetAttribute(
                DefaultSizeKey,
                MStringFormatter("{0} {1}").Add(size.width).Add(size.height).Result());
        });
}
