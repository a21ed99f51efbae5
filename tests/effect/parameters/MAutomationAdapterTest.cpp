#include "effect/parameters/MAutomationAdapter.h"

#include <algorithm>
#include <array>

#include <gtest/gtest.h>

#include "foundation/values/MRandom.h"

namespace
{

/// Three values, of which the second stays as it is.
class Row final : public MAutomationAdapter
{
public:
    Row() : MAutomationAdapter(3) {}

    void SetParameter(int index, double value01, bool /*quiet*/) override
    {
        values[static_cast<std::size_t>(index)] = value01;
    }
    double GetParameter(int index) const override
    {
        return values[static_cast<std::size_t>(index)];
    }
    bool IsRandomisable(int index) const override { return index != 1; }

    std::array<double, 3> values{0.5, 0.5, 1.0};
};

TEST(MAutomationAdapter, MovesAtRandomByItsAmountAndWithinTheScale)
{
    for (const double amount : {0.0, 0.1, 1.0})
        for (std::uint32_t seed = 0; seed < 50; ++seed)
        {
            Row row;
            MRandom::SetState(seed * 2654435761u);
            row.Randomize(amount);
            MRandom::SetState(seed * 2654435761u);
            const double first = 0.5 + (2.0 * MRandom::DrawUniform() - 1.0) * amount;
            const double third = 1.0 + (2.0 * MRandom::DrawUniform() - 1.0) * amount;
            EXPECT_DOUBLE_EQ(row.values[0], std::clamp(first, 0.0, 1.0));
            EXPECT_EQ(row.values[1], 0.5);
            EXPECT_DOUBLE_EQ(row.values[2], std::min(third, 1.0));
        }
}

} // namespace
