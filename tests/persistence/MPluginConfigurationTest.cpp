#include "persistence/MPluginConfiguration.h"

#include "persistence/MGlobalConfiguration.h"
#include "tests/persistence/ConfigurationFolder.h"

namespace
{

using Plugin = MPluginConfiguration;

constexpr const char* PluginFile = "MPluginConfiguration.xml";
constexpr const char* GlobalFile = "GlobalConfiguration.xml";

TEST(MPluginConfiguration, SwitchesHaveTheirKeysAndDefaults)
{
    struct Case
    {
        const Plugin::Switch& subject;
        const char* key;
        bool isOnByDefault;
    };
    const Case cases[] = {
        {Plugin::ShowConfirmations, "showconfirmations", true},
        {Plugin::EnableOnlinePresetExchange, "enableonlinepresetexchange", false},
        {Plugin::SurroundActivated, "SurroundActivated", false},
        {Plugin::AntiDenormal, "AntiDenormal", true},
    };
    for (const Case& row : cases)
    {
        const ConfigurationFolder folder;
        Plugin configuration(folder.GetName());
        const auto load = [&](const char* value)
        {
            const std::string start("<Configuration ");
            folder.WriteText(PluginFile, start + row.key + "=\"" + value + "\"/>");
            return configuration.IsOn(row.subject);
        };
        EXPECT_EQ(configuration.IsOn(row.subject), row.isOnByDefault) << row.key;
        EXPECT_TRUE(load("1")) << row.key;
        EXPECT_FALSE(load("00")) << row.key;
        EXPECT_EQ(load("perhaps"), row.isOnByDefault) << row.key;
        configuration.Set(row.subject, !row.isOnByDefault);
        EXPECT_EQ(Plugin(folder.GetName()).IsOn(row.subject), !row.isOnByDefault) << row.key;
    }
}

TEST(MPluginConfiguration, NoLanguageIsTheSystems)
{
    const ConfigurationFolder folder;
    Plugin configuration(folder.GetName());
    EXPECT_TRUE(configuration.GetLanguage().IsEmpty());
    configuration.SetLanguage("de");
    EXPECT_EQ(Plugin(folder.GetName()).GetLanguage(), "de");
    configuration.SetLanguage({});
    EXPECT_EQ(folder.ReadText(PluginFile).find("language"), std::string::npos);
}

TEST(MGlobalConfiguration, SizesOfAProductArePositiveOrTheDefault)
{
    constexpr MGlobalConfiguration::Size Default{450, 100};
    struct Case
    {
        const char* text;
        MGlobalConfiguration::Size expected;
    };
    const Case cases[] = {
        {"640 480", {640, 480}}, {"1 32767", {1, 32767}}, {"640", Default},
        {"640 ", Default},       {" 480", Default},       {"0 480", Default},
        {"640 -1", Default},     {"640 32768", Default},  {"99999999999 1", Default},
        {"wide high", Default},  {"", Default},
    };
    const ConfigurationFolder folder;
    MGlobalConfiguration configuration(folder.GetName());
    EXPECT_EQ(configuration.GetDefaultSize("Tonvale"), Default);
    for (const Case& row : cases)
    {
        folder.WriteText(GlobalFile, std::string("<Configuration><Tonvale DefaultSize=\"") +
                                         row.text + "\"/></Configuration>");
        EXPECT_EQ(configuration.GetDefaultSize("Tonvale"), row.expected) << row.text;
    }
    configuration.SetDefaultSize("Tonvale", {800, 200});
    configuration.SetDefaultSize("Another", {1, 2});
    MGlobalConfiguration fresh(folder.GetName());
    EXPECT_EQ(fresh.GetDefaultSize("Tonvale"), (MGlobalConfiguration::Size{800, 200}));
    EXPECT_EQ(fresh.GetDefaultSize("Another"), (MGlobalConfiguration::Size{1, 2}));
    EXPECT_NE(folder.ReadText(GlobalFile).find("DefaultSize=\"800 200\""), std::string::npos);
}

} // namespace
