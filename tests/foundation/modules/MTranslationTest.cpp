#include "foundation/modules/MTranslation.h"

#include <gtest/gtest.h>

#include "foundation/threads/MException.h"
#include "tests/foundation/modules/DataUnderTest.h"

namespace
{

TEST(MTranslation, KnowsTheCaptionsOfTheProductInGerman)
{
    const DataUnderTest under;
    LoadTranslation(MLocale::FindLanguage("de"));
    EXPECT_EQ(Translate("High-quality upsampling").ToUTF8(), "Upsampling in hoher Qualität");
    for (const char* caption : {"Show confirmations for destructive actions", "Activate surround",
                                "Enable online preset exchange", "Set default editor size"})
        EXPECT_NE(Translate(caption), caption);
    LoadTranslation(MLocale::FindLanguage("en"));
    EXPECT_EQ(Translate("Activate surround"), "Activate surround");
}

TEST(MTranslation, RefusesTextsWithOtherArguments)
{
    struct Case
    {
        const char* english;
        const char* translated;
        bool counts;
    };
    constexpr Case Cases[] = {
        {"Save", "Rett", true},
        {"{0} of {1}", "{1}: {0;.2}", true},
        {"{0} twice", "{0}, {0}", true},
        {"{} first", "{0}", true},
        {"Brace {{0} here", "Klammer {{5}", true},
        {"Keep {0} here", "Weg", false},
        {"Keep {0} there", "{0} {1}", false},
        {"None there", "{0}", false},
        {"Open {0", "{0}", false},
        {"Bad {40}", "{40}", false},
        {"Empty", "", false},
    };
    const DataUnderTest under;
    std::string file = "<translation language=\"nb\">";
    for (const Case& row : Cases)
        file += std::string("<t e=\"") + row.english + "\" v=\"" + row.translated + "\"/>";
    under.Write("Quillfern/Tonvale/resources/locale/nb.xml", file + "</translation>");

    MTranslation translation;
    translation.Load(MLocale::FindLanguage("nb"));
    for (const Case& row : Cases)
        EXPECT_EQ(translation.Translate(row.english), row.counts ? row.translated : row.english)
            << row.english;
    EXPECT_EQ(translation.Translate("save").ToUTF8(), "save") << "another text";
    EXPECT_EQ(translation.Translate(MString::FromNarrow("Save")), "Rett") << "no literal";
}

TEST(MTranslation, KeepsItsTextsIfAFileIsBroken)
{
    const DataUnderTest under;
    MTranslation translation;
    translation.Load(MLocale::FindLanguage("de"));
    for (const char* text : {"<translation language=\"nb\"><t", "no tree",
                             "<translation><t e=\"a\" v=\"b\"/></translation>",
                             "<other language=\"fr\"/>", "<translation language=\"de\"/>"})
    {
        under.Write("Quillfern/Tonvale/resources/locale/fr.xml", text);
        EXPECT_THROW(translation.Load(MLocale::FindLanguage("fr")), MException) << text;
        EXPECT_EQ(translation.Translate("Activate surround"), "Surround aktivieren");
    }
    translation.Load(MLocale::FindLanguage("es"));
    EXPECT_EQ(translation.Translate("Activate surround"), "Activate surround") << "no file";
}

} // namespace
