#include "tools/render/WavWriter.h"

#include <gtest/gtest.h>

#include "foundation/threads/MException.h"
#include "tests/TemporaryFolder.h"
#include "tests/tools/Signals.h"
#include "tests/tools/WavSound.h"

namespace
{

const std::vector<std::uint8_t> Older = {'o', 'l', 'd'};

TEST(WavWriter, WritesFloatsExactly)
{
    const TemporaryFolder folder;
    // Above full scale too, and longer than a piece of the writer.
    const std::vector<std::vector<float>> blocks = {MakeSine(10000, 440.0, 96000.0),
                                                    std::vector<float>(10000, 3.5f)};
    WavWriter writer(folder / "a.wav", 2, 96000);
    writer.Write(blocks, 10000);
    writer.Write(blocks, 1);
    writer.Commit();
    const WavSound sound = WavSound::Read(folder / "a.wav");
    EXPECT_EQ(sound.rate, 96000);
    EXPECT_EQ(sound.format, SF_FORMAT_WAV | SF_FORMAT_FLOAT);
    ASSERT_EQ(sound.channels.size(), 2u);
    ASSERT_EQ(sound.GetFrames(), 10001u);
    for (std::size_t channel = 0; channel < 2; ++channel)
        for (std::size_t i = 0; i < 10001; ++i)
            ASSERT_EQ(sound.channels[channel][i], blocks[channel][i % 10000]) << i;
}

TEST(WavWriter, LeavesTheFolderAloneUntilItCommits)
{
    const TemporaryFolder folder;
    folder.Write("a.wav", Older);
    {
        WavWriter writer(folder / "a.wav", 1, 48000);
        const std::vector<std::vector<float>> block(1, std::vector<float>(100000));
        writer.Write(block, 100000);
        EXPECT_EQ(folder.Read("a.wav"), Older);
    }
    EXPECT_EQ(folder.Read("a.wav"), Older);
    EXPECT_EQ(folder.List(), "a.wav");
}

TEST(WavWriter, WritesWhereALinkLeads)
{
    const TemporaryFolder folder;
    folder.Write("real.wav", Older);
    std::filesystem::create_symlink("real.wav", folder / "link.wav");
    WavWriter(folder / "link.wav", 1, 48000).Commit();
    EXPECT_TRUE(std::filesystem::is_symlink(folder / "link.wav"));
    EXPECT_NE(folder.Read("real.wav"), Older);
    EXPECT_EQ(folder.List(), "link.wav real.wav");
}

TEST(WavWriter, ReplacesPlainFilesOnly)
{
    const TemporaryFolder folder;
    std::filesystem::create_directory(folder / "folder.wav");
    EXPECT_THROW(WavWriter(folder / "folder.wav", 1, 48000), MException);
    EXPECT_THROW(WavWriter(folder / "missing" / "a.wav", 1, 48000), MException);
    EXPECT_THROW(WavWriter("/dev/null", 1, 48000), MException);
    EXPECT_EQ(folder.List(), "folder.wav");
}

} // namespace
