#include "host/vst2/AudioEffect.h"

#include <string>

#include <gtest/gtest.h>

#include "tests/host/vst2/HostUnderTest.h"

using namespace Vst2;

namespace
{

TEST(AudioEffect, TextsAreCutBeforeTheCharacterThatDoesNotFit)
{
    struct Case
    {
        const char* utf8;
        std::size_t size;
        const char* expected;
    };
    constexpr Case Cases[] = {
        {"1234567", 8, "1234567"},
        {"12345678", 8, "1234567"},
        {"12345\xC3\xA4", 8, "12345\xC3\xA4"},
        {"123456\xC3\xA4", 8, "123456"},
        {"1234\xF0\x9D\x84\x9E", 8, "1234"},
        {"\xE2\x88\x9E", 3, ""},
        {"", 1, ""},
        {"x", 1, ""},
    };
    for (const Case& row : Cases)
    {
        std::vector<char> buffer(row.size + 1, '#'); // one more, to see a slip
        CopyText(MString::FromUTF8(row.utf8), std::span(buffer).first(row.size));
        EXPECT_STREQ(buffer.data(), row.expected);
        EXPECT_EQ(buffer.back(), '#') << row.utf8;
    }
    CopyText("x", {});
}

TEST(AudioEffect, AnswersEachOpcodeAsHostsCountOn)
{
    HostUnderTest host;
    host.Load();
    std::array<char, 256> text{};
    struct Case
    {
        int opcode, index;
        std::intptr_t value;
        void* ptr;
        std::intptr_t expected;
    };
    const Case cases[] = {
        {0, 0, 0, nullptr, 0}, // open, and again
        {0, 0, 0, nullptr, 0},
        {2, 0, 7, nullptr, 0}, // programs
        {3, 0, 0, nullptr, 0},
        {4, 0, 0, text.data(), 0},
        {9, 0, 0, nullptr, 0},
        {13, 0, 0, nullptr, 0}, // no editor
        {14, 0, 0, text.data(), 0},
        {15, 0, 0, nullptr, 0},
        {19, 0, 0, nullptr, 0},
        {22, 0, 0, nullptr, 0x4E764566},
        {26, 0, 0, nullptr, 1}, // parameters
        {26, 11, 0, nullptr, 1},
        {26, 115, 0, nullptr, 1},
        {26, 116, 0, nullptr, 0},
        {26, -1, 0, nullptr, 0},
        {27, 0, 0, nullptr, 1},
        {27, 116, 0, nullptr, 0},
        {29, 0, -1, text.data(), 1},
        {29, 0, -1, nullptr, 0},
        {29, 1, -1, text.data(), 0},
        {29, -1, -1, text.data(), 0},
        {31, 0, 1, nullptr, 1},
        {32, 0, 1, nullptr, 1},
        {33, 2, 0, text.data(), 0}, // pins
        {33, -1, 0, text.data(), 0},
        {34, 2, 0, text.data(), 0},
        {34, 0, 0, nullptr, 0},
        {35, 0, 0, nullptr, 1},
        {43, 0, 512, nullptr, 1},
        {44, 0, 0, nullptr, 0}, // or a host takes over the bypass
        {44, 0, 1, nullptr, 0},
        {45, 0, 0, text.data(), 1},
        {45, 0, 0, nullptr, 0},
        {47, 0, 0, text.data(), 1},
        {48, 0, 0, text.data(), 1},
        {49, 0, 0, nullptr, 503},
        {50, 0x50726553, 0x41654373, nullptr, 0},
        {51, 0, 0, nullptr, 0},
        {52, 0, 0, nullptr, 0},
        {56, 0, 0, text.data(), 0},
        {57, 0, 0, nullptr, 1},
        {58, 0, 0, nullptr, 2400},
        {59, 'a', 0, nullptr, 0},
        {60, 'a', 0, nullptr, 0},
        {69, 0, 0, text.data(), 0}, // or a host reads pointers that nobody set
        {70, 0, 0, text.data(), 0},
        {71, 0, 0, nullptr, 0},
        {73, 0, 4711, nullptr, 4711},
        {77, 0, 1, nullptr, 0},
        {-1, 0, 0, text.data(), 0},
        {80, 0, 0, text.data(), 0},
        {0x7FFFFFFF, -1, -1, text.data(), 0},
    };
    for (const Case& row : cases)
        EXPECT_EQ(
            host.effect->dispatcher(host.effect, row.opcode, row.index, row.value, row.ptr, 0.0f),
            row.expected)
            << row.opcode << ", " << row.index;
}

TEST(AudioEffect, TextsNeverExceedTheHostsBuffers)
{
    struct Case
    {
        EffectOpcode opcode;
        std::size_t size;
        const char* ofFirst; ///< null if the index decides
    };
    constexpr Case Cases[] = {
        {EffectOpcode::GetParamLabel, 8, nullptr},
        {EffectOpcode::GetParamDisplay, 8, nullptr},
        {EffectOpcode::GetParamName, 32, nullptr},
        {EffectOpcode::GetProgramName, 24, "Tonvale"},
        {EffectOpcode::GetEffectName, 32, "Tonvale"},
        {EffectOpcode::GetVendorString, 64, "Quillfern"},
        {EffectOpcode::GetProductString, 64, "Tonvale"},
    };
    HostUnderTest host;
    host.Load();
    for (const Case& row : Cases)
        for (int index = -2; index <= host.effect->numParams + 1; ++index)
        {
            std::array<char, 80> buffer;
            buffer.fill('#');
            host.Ask(row.opcode, index, 0, buffer.data());
            const std::string text(buffer.begin(), std::ranges::find(buffer, '\0'));
            EXPECT_LT(text.size(), row.size) << index;
            EXPECT_EQ(std::string(buffer.begin() + row.size, buffer.end()),
                      std::string(buffer.size() - row.size, '#'));
            const bool hasOne = index >= 0 && index < host.effect->numParams;
            if (row.ofFirst != nullptr || !hasOne)
            {
                EXPECT_EQ(text, row.ofFirst != nullptr ? row.ofFirst : "") << index;
            }
            else if (row.opcode != EffectOpcode::GetParamLabel)
            {
                EXPECT_NE(text, "") << index;
            }
        }
}

} // namespace
