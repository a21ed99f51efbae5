// The presets that the product comes with, as built: their list, and whether they sound as their
// names say.

#include <algorithm>
#include <cmath>
#include <numbers>
#include <set>
#include <sstream>

#include <gtest/gtest.h>

#include "shell/PluginPresets.h"
#include "tests/TemporaryFolder.h"
#include "tests/tools/PresetSound.h"
#include "tools/render/InProcessPlugin.h"
#include "tools/render/PresetCatalogue.h"
#include "tools/render/SlotWalk.h"

namespace
{

const char* const Folders[] = {"Calibration", "Test signals", "Basses",          "Leads",
                               "Textures",    "Stereo width", "Pads and organs", "Morphing"};

/// Of all presets below @p folder, or of all.
std::vector<std::string> ListPaths(const std::string& file, const std::string& folder = {})
{
    std::stringstream list;
    PresetCatalogue(file).List(list);
    std::vector<std::string> paths;
    for (std::string path; std::getline(list, path);)
        if (path.starts_with(folder))
            paths.push_back(path);
    return paths;
}

TEST(FactoryPresets, AreThoseOfTheSourceAndReadByTheManager)
{
    const std::vector<std::string> paths = ListPaths(TONVALE_BANK);
    EXPECT_EQ(paths, ListPaths(TONVALE_BANK_SOURCE));
    EXPECT_GE(paths.size(), 40u);
    EXPECT_EQ(std::set(paths.begin(), paths.end()).size(), paths.size());
    for (const std::string& path : paths)
        EXPECT_NE(std::ranges::find(Folders, path.substr(0, path.find('/'))), std::end(Folders))
            << path << " is not tested below";

    const TemporaryFolder folder;
    std::filesystem::copy_file(TONVALE_BANK, folder / "Tonvalepresets.xml");
    InProcessPlugin plugin;
    PluginPresets presets(plugin.GetShell(), MString::FromUTF8(folder.GetPath().string()));
    std::vector<std::string> managed;
    for (MXMLItem* const preset : presets.GetManager().ListPresets())
    {
        managed.push_back(MPresetManagerBase::GetPath(*preset).ToUTF8());
        EXPECT_TRUE(preset->HasAttribute("compressed")) << managed.back();
        presets.Load(*preset);
    }
    EXPECT_EQ(managed, paths);
}

class FactoryPresetsOf : public testing::TestWithParam<const char*>
{
protected:
    bool Is(const char* folder) const { return GetParam() == std::string(folder); }
    bool IsPlayed() const { return Is("Basses") || Is("Leads") || Is("Pads and organs"); }
    int GetNote() const { return Is("Basses") ? 40 : 57; }

    void CheckFolder(const PresetSound& sound, const std::string& name) const;
};

/// The number in @p name in front of the last @p unit, if there is one.
std::optional<double> FindNumber(const std::string& name, const std::string& unit)
{
    const std::size_t end = name.rfind(unit);
    const std::size_t begin =
        end != std::string::npos ? name.find_last_not_of("-0123456789", end - 1) + 1 : end;
    return begin < end ? std::optional(std::stod(name.substr(begin))) : std::nullopt;
}

double Cents(std::optional<double> hz, std::optional<double> reference)
{
    return hz && reference ? 1200.0 * std::log2(*hz / *reference) : std::nan("");
}

void CheckNumbers(const PresetSound& sound, const std::string& name)
{
    const std::size_t loud = sound.GetRMS(1) > sound.GetRMS(0) ? 1 : 0;
    constexpr std::pair<const char*, double> Shapes[] = {
        {"sine", 1.0 / std::numbers::sqrt2},
        {"square", 1.0},
        {"triangle", 1.0 / std::numbers::sqrt3},
        {"saw", 1.0 / std::numbers::sqrt3}}; // RMS over peak
    for (const auto& [shape, height] : Shapes)
    {
        const auto hz = FindNumber(name, std::string(" Hz ") + shape);
        const auto kHz = FindNumber(name, std::string(" kHz ") + shape);
        if (!hz && !kHz)
            continue;
        EXPECT_NEAR(Cents(sound.GetFrequency(loud), hz ? *hz : 1000.0 * *kHz), 0.0, 0.01);
        if (name.find(std::string(shape) + " in ") == std::string::npos) // it goes on and on
        {
            EXPECT_NEAR(sound.GetRMS(loud) / sound.GetPeak(), height, 0.03);
        }
    }
    if (const auto level = FindNumber(name, " dB"))
    {
        EXPECT_NEAR(20.0 * std::log10(sound.GetPeak()), *level, 0.02);
    }
    if (const auto cents = FindNumber(name, " cents wide"))
    {
        EXPECT_NEAR(Cents(sound.GetFrequency(1), sound.GetFrequency(0)), *cents, 0.5);
    }
}

/// Ten seconds are 20 quarters.
constexpr std::pair<const char*, int> Rhythms[] = {{"Tremolo in quarters", 20},
                                                   {"Tremolo in eighth triplets", 60},
                                                   {"Wobble in eighths", 40},
                                                   {"bursts, 2 a second", 20},
                                                   {"Clicks, 20 a second", 200}};

void CheckWords(const PresetSound& sound, const std::string& name)
{
    const auto has = [&name](const char* word) { return name.find(word) != std::string::npos; };
    if (has("alone"))
    {
        EXPECT_LT(sound.GetRMS(has("left") ? 1 : 0), 1e-6);
    }
    if (has("left against right"))
    {
        EXPECT_NEAR(sound.GetWidth(), 2.0, 1e-3);
    }
    if (has("left and right unlike"))
    {
        EXPECT_NEAR(sound.GetWidth(), std::numbers::sqrt2, 0.05);
    }
    if (has("note on the left"))
    {
        EXPECT_NEAR(Cents(sound.GetFrequency(1), sound.GetFrequency(0)),
                    has("Octave") ? 1200.0 : 700.0, 0.1);
    }
    for (const auto& [words, swells] : Rhythms)
        if (has(words))
        {
            EXPECT_NEAR(sound.CountSwells(), swells, 1);
        }
    if (has("one a second"))
    {
        EXPECT_NEAR(*sound.GetFrequency(1) - *sound.GetFrequency(0), 1.0, 0.001);
    }
}

void FactoryPresetsOf::CheckFolder(const PresetSound& sound, const std::string& name) const
{
    if (Is("Calibration"))
    {
        EXPECT_LT(sound.GetLevelMovement(), 0.1);
        EXPECT_LT(sound.GetBrightnessMovement(), 1.01);
        if (name.find(',') == std::string::npos)
        {
            EXPECT_EQ(sound.GetWidth(), 0.0);
        }
    }
    if (Is("Textures"))
    {
        EXPECT_TRUE(sound.GetLevelMovement() > 1.5 || sound.GetBrightnessMovement() > 1.3)
            << sound.GetLevelMovement() << " dB, " << sound.GetBrightnessMovement();
    }
    if (Is("Stereo width"))
    {
        EXPECT_GT(sound.GetWidth(), 0.5);
    }
    if (IsPlayed())
    {
        const double octaves = name.find("octave down") != std::string::npos ? -1.0 : 0.0;
        const double hz = 440.0 * std::exp2((GetNote() - 69) / 12.0 + octaves);
        EXPECT_NEAR(Cents(sound.GetFrequency(), hz), 0.0, 20.0);
    }
}

TEST_P(FactoryPresetsOf, SoundAsTheirNamesSay)
{
    const auto note = static_cast<std::uint8_t>(GetNote());
    std::vector<ScheduledMessage> many;
    for (int i = 0; i < 16; ++i)
    {
        const auto step = static_cast<std::uint8_t>(note + i * 7 % 24);
        const std::int64_t frame = std::int64_t{30000} * i;
        many.push_back({frame, {0x90, step, 100}});
        many.push_back({frame + 20000, {0x80, step, 64}});
    }
    const PresetCatalogue presets{std::string(TONVALE_BANK)};
    for (const std::string& path : ListPaths(TONVALE_BANK, std::string(GetParam()) + '/'))
    {
        SCOPED_TRACE(path);
        const auto state = presets.Load(path);
        const auto held =
            PresetSound::Play(state, std::vector{ScheduledMessage{0, {0x90, note, 100}}});
        for (const PresetSound& sound : {held, PresetSound::Play(state, many)})
        {
            EXPECT_LT(sound.GetPeak(), 1.0);
            for (const std::size_t channel : {0u, 1u})
                EXPECT_LT(std::abs(sound.GetMean(channel)), 0.005 * sound.GetPeak());
            EXPECT_GT(std::max(sound.GetRMS(0), sound.GetRMS(1)), 0.01);
        }
        if (IsPlayed())
        {
            EXPECT_LT(PresetSound::Play(state, {}).GetPeak(), 1e-6) << "without a note";
        }
        CheckNumbers(held, path);
        CheckWords(held, path);
        CheckFolder(held, path);
    }
}

INSTANTIATE_TEST_SUITE_P(AllFolders, FactoryPresetsOf, testing::ValuesIn(Folders));

TEST(FactoryPresets, MorphBetweenFourSounds)
{
    const PresetCatalogue presets{std::string(TONVALE_BANK)};
    for (const std::string& path : ListPaths(TONVALE_BANK, "Morphing/"))
    {
        auto plugin = std::make_unique<InProcessPlugin>();
        plugin->LoadState(presets.Load(path));
        SlotWalk walk(std::move(plugin));
        std::set<std::string> states;
        for (const RenderOptions::Place place :
             {RenderOptions::Place{0.0, 0.0}, {1.0, 0.0}, {0.0, 1.0}, {1.0, 1.0}, {0.5, 0.5}})
        {
            walk.MoveTo(place);
            const auto state = walk.SaveState();
            states.emplace(reinterpret_cast<const char*>(state.data()), state.size());
        }
        EXPECT_EQ(states.size(), 5u) << path;
    }
}

} // namespace
