#include "tools/render/Text.h"

#include <gtest/gtest.h>

namespace
{

TEST(Text, ReadsNumbersOnlyAsAWhole)
{
    struct Case
    {
        const char* text;
        std::optional<std::int64_t> integer;
        std::optional<double> number;
    };
    const Case cases[] = {
        {"12", 12, 12.0},
        {"+7", 7, 7.0},
        {"-7", -7, -7.0},
        {"010", 10, 10.0},
        {"1e2", std::nullopt, 100.0},
        {".5", std::nullopt, 0.5},
        {"", std::nullopt, std::nullopt},
        {"+", std::nullopt, std::nullopt},
        {"+-7", std::nullopt, std::nullopt},
        {"12x", std::nullopt, std::nullopt},
        {"0x10", std::nullopt, std::nullopt},
        {"nan", std::nullopt, std::nullopt},
        {"inf", std::nullopt, std::nullopt},
        {"1e999", std::nullopt, std::nullopt},
        {"99999999999999999999", std::nullopt, 1e20},
    };
    for (const Case& row : cases)
    {
        EXPECT_EQ(text::ReadInteger(row.text), row.integer) << row.text;
        EXPECT_EQ(text::ReadNumber(row.text), row.number) << row.text;
    }
}

TEST(Text, CountsCharactersInsteadOfBytes)
{
    EXPECT_EQ(text::Right("\xC3\xA4", 3), "  \xC3\xA4");
    EXPECT_EQ(text::Left("abcd", 3), "abcd");
}

TEST(Text, NamesNotesByOctavesFromMinusOne)
{
    EXPECT_EQ(text::NoteName(0), "C-1");
    EXPECT_EQ(text::NoteName(60), "C4");
    EXPECT_EQ(text::NoteName(69), "A4");
    EXPECT_EQ(text::NoteName(127), "G9");
}

} // namespace
