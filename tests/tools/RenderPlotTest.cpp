// tonvale-render as a whole: the pictures that it draws.

#include <gtest/gtest.h>

#include "foundation/streams/MStdFileStream.h"
#include "gui/drawing/MBitmap.h"
#include "gui/images/PNG.h"
#include "tests/TemporaryFolder.h"
#include "tests/tools/RenderProgram.h"
#include "tools/plot/PlotStyle.h"

namespace
{

/// Pixels as dark as lines and letters are in the rows from @p top to @p bottom.
int CountDark(const MBitmap& bitmap, int top, int bottom)
{
    int count = 0;
    for (int y = top; y <= bottom; ++y)
        for (int x = 0; x < bitmap.GetWidth(); ++x)
            count += bitmap.GetRow(y, x)->GetRed() < 200;
    return count;
}

TEST(RenderPlot, DrawsWhatASoundAndTheShapesAreLike)
{
    const TemporaryFolder folder;
    struct Case
    {
        const char* what;
        std::vector<std::string> arguments;
        int width;
        int height;
    };
    const Case cases[] = {
        {"short, without a spectrogram",
         {"--seconds", "0.5", "--channels", "1", "--plot", "p.png", "p.wav"},
         1640,
         942},
        {"long",
         {"--seconds", "2", "--midi", std::string(TONVALE_EXAMPLES) + "/melody.mid", "--plot",
          "p.png", "p.wav"},
         1640,
         1374},
        {"of one frame", {"--seconds", "0.00001", "--plot", "p.png", "p.wav"}, 1640, 942},
        {"of silence",
         {"--set01", "Wet=0", "--seconds", "0.1", "--plot", "p.png", "p.wav"},
         1640,
         942},
        {"shapes", {"--shapes", "p.png"}, 1558, 1652},
    };
    for (const Case& row : cases)
    {
        const RenderProgram::Result result = RenderProgram::Run(folder.GetPath(), row.arguments);
        ASSERT_EQ(result.exitCode, 0) << row.what << result.errors;
        MStdFileStream file(MString::FromUTF8((folder / "p.png").generic_string()),
                            MStdFileStream::Opening::Existing);
        MBitmap bitmap;
        images::LoadPNG(file, bitmap);
        EXPECT_EQ(bitmap.GetWidth(), row.width) << row.what;
        EXPECT_EQ(bitmap.GetHeight(), row.height) << row.what;
        EXPECT_EQ(*bitmap.GetRow(0), plotstyle::Paper) << row.what;
        EXPECT_GT(CountDark(bitmap, 0, 80), 300) << row.what << ": the title";
        EXPECT_GT(CountDark(bitmap, 90, row.height - 1), 6000)
            << row.what << ": two frames or more";
    }
}

TEST(RenderPlot, RefusesWhatCannotBeDrawn)
{
    const TemporaryFolder folder;
    for (const std::vector<std::string>& arguments :
         {std::vector<std::string>{"--plot", "p.png"},
          {"--plot", "p.wav", "p.wav"},
          {"--shapes", "missing/p.png"},
          {"--seconds", "0.1", "--plot", "missing/p.png", "p.wav"},
          {"--presets", "--shapes", "p.png"}})
    {
        const RenderProgram::Result result = RenderProgram::Run(folder.GetPath(), arguments);
        EXPECT_EQ(result.exitCode, 2) << arguments[1];
        EXPECT_TRUE(result.errors.starts_with("tonvale-render: ")) << result.errors;
    }
}

} // namespace
