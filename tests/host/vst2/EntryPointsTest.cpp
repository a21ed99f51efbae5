#include <fstream>
#include <string>

#include <gtest/gtest.h>

#include "foundation/modules/MLibrary.h"
#include "tests/host/vst2/HostUnderTest.h"

using namespace Vst2;

namespace
{

#ifdef __linux__
bool IsModuleMapped()
{
    std::ifstream maps("/proc/self/maps");
    for (std::string line; std::getline(maps, line);)
        if (line.ends_with(TONVALE_VST2_MODULE))
            return true;
    return false;
}
#endif

TEST(EntryPoints, BothGiveEffectsAndTheModuleGoesBehindThem)
{
    for (const char* const name : {"VSTPluginMain", "main", "VSTPluginMain"})
    {
        const MLibrary library{MString(TONVALE_VST2_MODULE)};
        const auto entry = library.Find<EntryFunction>(name);
        ASSERT_NE(entry, nullptr) << name;
        HostUnderTest first;
        first.effect = entry(&HostUnderTest::OnCall);
        ASSERT_NE(first.effect, nullptr);
        HostUnderTest second;
        second.effect = entry(&HostUnderTest::OnCall);
        std::vector<float> block(64);
        float* channels[] = {block.data(), block.data()};
        first.effect->processReplacing(first.effect, channels, channels, 64);
        EXPECT_EQ(first.SetChunk(second.GetChunk()), 1);
    }
#ifdef __linux__
    EXPECT_FALSE(IsModuleMapped()) << "something keeps the module";
#endif
}

} // namespace
