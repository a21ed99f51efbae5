#include "foundation/threads/MGuard.h"

#include <stdexcept>
#include <string>

#include <gtest/gtest.h>

namespace
{

std::string traced;

TEST(MGuard, AnswersNeutrallyAndTracesOnlyForeignFailures)
{
    const MTraceFunction before = SetTraceFunction([](const char* message) { traced = message; });
    traced.clear();
    EXPECT_EQ(MGuarded("A::b", -1, [] { return 5; }), 5);
    EXPECT_EQ(MGuarded("A::b", -1, []() -> int { throw MException("No."); }), -1);
    EXPECT_EQ(traced, "");
    EXPECT_EQ(MGuarded("A::b", -1, []() -> int { throw std::runtime_error("x"); }), -1);
    EXPECT_EQ(traced, "SYSTEM EXCEPTION! A::b");
    SetTraceFunction(before);
    EXPECT_EQ(MGuarded("A::b", -1, []() -> int { throw 1; }), -1) << "without a trace function";
}

} // namespace
