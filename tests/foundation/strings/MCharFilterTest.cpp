#include "foundation/strings/MCharFilter.h"

#include <string>

#include <gtest/gtest.h>

namespace
{

struct FilterCase
{
    const char* what;
    const MCharFilter::Interface& filter;
    std::string accepted;
    int kind;
};

const std::string Digits = "0123456789";
const std::string Letters = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";

TEST(MCharFilter, EachLetsItsCharactersThrough)
{
    const FilterCase cases[] = {
        {"Alpha", MCharFilter::AlphaFilter::Get(), " -." + Digits + Letters, 7},
        {"AlphaStrict", MCharFilter::AlphaStrictFilter::Get(), Digits + Letters, 3},
        {"Letters", MCharFilter::LettersFilter::Get(), Letters, 1},
        {"Integer", MCharFilter::IntegerFilter::Get(), "-" + Digits, 2},
        {"IntegerHexa", MCharFilter::IntegerHexaFilter::Get(), Digits + "ABCDEFabcdef", 10},
        {"Float", MCharFilter::FloatFilter::Get(), "-." + Digits, 6},
    };
    for (const FilterCase& row : cases)
    {
        EXPECT_EQ(row.filter.GetKind(), row.kind) << row.what;
        const bool seesLowByte = row.filter.GetKind() == 10;
        for (int character = 0; character < 0x10000; ++character)
        {
            const int seen = seesLowByte ? character & 0xFF : character;
            const bool isAccepted =
                seen < 0x80 && row.accepted.find(static_cast<char>(seen)) != std::string::npos;
            ASSERT_EQ(row.filter.Accepts(static_cast<char16_t>(character)), isAccepted)
                << row.what << ", " << character;
        }
    }
    const MCharFilter::Interface& all = MCharFilter::AllFilter::Get();
    EXPECT_EQ(all.GetKind(), 23);
    EXPECT_TRUE(all.Accepts(0) && all.Accepts(u'\n') && all.Accepts(0xFFFF));
}

} // namespace
