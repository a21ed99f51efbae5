#include "persistence/MPluginConfiguration.h"

#include "persistence/FamilyFolder.h"

namespace
{

constexpr const char* LanguageKey = "language";

} // namespace

MPluginConfiguration::MPluginConfiguration(const MString& familyFolder)
    : file(familyFolder, "MPluginConfiguration.xml")
{
}

MPluginConfiguration& MPluginConfiguration::Get()
{
    static MPluginConfiguration ofThisProcess(FindFamilyFolder());
    return ofThisProcess;
}

bool MPluginConfiguration::IsOn(const Switch& wanted)
{
    double number = 0.0;
    return file.Get(wanted.key, {}).ReadDouble(number) ? number != 0.0 : wanted.isOnByDefault;
}

void MPluginConfiguration::Set(const Switch& changed, bool on)
{
    file.Change([&](MXMLItem& configuration)
                { configuration.SetAttribute(changed.key, on ? 1 : 0); });
}

MString MPluginConfiguration::GetLanguage()
{
    return file.Get(LanguageKey, {});
}

void MPluginConfiguration::SetLanguage(const MString& code)
{
    file.Change(
        [&](MXMLItem& configuration)
        {
            if (code.IsEmpty())
                configuration.RemoveAttribute(LanguageKey);
            else
                configuration.SetAttribute(LanguageKey, code);
        });
}
