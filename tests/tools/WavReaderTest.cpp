#include "tools/render/WavReader.h"

#include <gtest/gtest.h>

#include "foundation/threads/MException.h"
#include "tests/TemporaryFolder.h"
#include "tests/tools/Signals.h"
#include "tests/tools/WavSound.h"

namespace
{

/// What the reader says against a file; empty if nothing.
std::string Complaint(const std::filesystem::path& path)
{
    try
    {
        const WavReader reader(path);
        return {};
    }
    catch (const MException& failure)
    {
        return failure.text.ToUTF8();
    }
}

TEST(WavReader, ReadsAllFormatsOfSamples)
{
    const TemporaryFolder folder;
    const WavSound sound{44100, {MakeSine(5000, 440.0, 44100.0), MakeSine(5000, 550.0, 44100.0)}};
    for (const int format : {SF_FORMAT_PCM_U8, SF_FORMAT_PCM_16, SF_FORMAT_PCM_24, SF_FORMAT_PCM_32,
                             SF_FORMAT_FLOAT, SF_FORMAT_DOUBLE})
    {
        WavSound file = sound;
        file.format = SF_FORMAT_WAV | format;
        file.Write(folder / "a.wav");
        WavReader reader(folder / "a.wav");
        EXPECT_EQ(reader.GetRate(), 44100);
        EXPECT_EQ(reader.GetFrames(), 5000);
        ASSERT_EQ(reader.GetChannels(), 2);

        std::vector<std::vector<float>> blocks(2, std::vector<float>(4999));
        reader.Read(blocks, 4999);
        for (std::size_t channel = 0; channel < 2; ++channel)
            for (std::size_t i = 0; i < 4999; ++i)
                ASSERT_NEAR(blocks[channel][i], sound.channels[channel][i],
                            format == SF_FORMAT_PCM_U8 ? 1e-2 : 1e-4)
                    << format << ", " << i;
        reader.Read(blocks, 3);
        EXPECT_NEAR(blocks[0][0], sound.channels[0][4999], 1e-2);
        EXPECT_EQ(blocks[0][1], 0.0f) << "silence behind the end";
        EXPECT_EQ(blocks[1][2], 0.0f);
    }
}

TEST(WavReader, RefusesATruncatedFileWhereverItIsCut)
{
    const TemporaryFolder folder;
    WavSound{48000, {MakeSine(100, 440.0, 48000.0)}}.Write(folder / "whole.wav");
    ASSERT_EQ(Complaint(folder / "whole.wav"), "");
    const auto whole = folder.Read("whole.wav");
    for (std::size_t length = 0; length < whole.size(); ++length)
    {
        folder.Write("cut.wav", std::span(whole).first(length));
        EXPECT_NE(Complaint(folder / "cut.wav"), "") << length;
    }
}

TEST(WavReader, RefusesWhatIsNoSound)
{
    const TemporaryFolder folder;
    folder.Write("text.wav", std::vector<std::uint8_t>(1000, 'x'));
    std::filesystem::create_directory(folder / "folder.wav");
    WavSound{48000, std::vector<std::vector<float>>(9, std::vector<float>(10))}.Write(folder /
                                                                                      "nine.wav");
    WavSound{48000, {{0.0f}}, SF_FORMAT_AIFF | SF_FORMAT_PCM_16}.Write(folder / "a.aiff");
    EXPECT_NE(Complaint(folder / "missing.wav").find("No such file"), std::string::npos);
    EXPECT_NE(Complaint(folder / "folder.wav").find("is a folder"), std::string::npos);
    EXPECT_NE(Complaint(folder / "text.wav").find("not a WAV file"), std::string::npos);
    EXPECT_NE(Complaint(folder / "a.aiff").find("not a WAV file"), std::string::npos);
    EXPECT_NE(Complaint(folder / "nine.wav").find("9 channels"), std::string::npos);
}

} // namespace
