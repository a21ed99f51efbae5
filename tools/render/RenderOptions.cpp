#include "tools/render/RenderOptions.h"

#include <algorithm>
#include <filesystem>

#include <CLI/CLI.hpp>

#include "tools/render/Failure.h"
#include "tools/render/OptionTexts.h"

namespace
{

constexpr const char* Description =
    "Plays Tonvale, or another plugin, into a WAV file of 32-bit floats.";

constexpr const char* Notes =
    R"(The oscillator plays one note at a time and never stops: it begins with C5
or the note of the state, changes with each note that is switched on, and notes
that are switched off change nothing but what modulators make of them. With
--midi, a table tells the frequency of each note as it should be, by the
parameters at the start, and as measured in the first channel that the oscillator
plays, unless that is bypassed.

It runs as hosts run it, from the bundle Tonvale.vst3 in the first of these
places: vst3 and lib/vst3 beside the folder of this program, .vst3 in your home
folder. Without one, and for options that hosts do not have (--table, --stats,
--channel-mode, --upsampling, --hq, --no-hq) and more than 2 --channels, it runs
inside this program. The report begins with what ran, and how.

The plugin tells hosts by how much it is late, which it is with upsampling. Like
them, this tool renders as many samples more and leaves out the first, so that
the input stays where it was. What the oscillator makes does not take the way in
and comes earlier: by 32 to 36 samples in high quality, by 2 in standard quality.

Automation is set at the start of the first --block at or behind T. In a block of
more than 256 samples, at the rate that the plugin works at, it then draws a line
to the new value that is as long as the block. T=0 counts from the first sample.

  tonvale-render --note 69 a4.wav
  tonvale-render --midi melody.mid --set Wet="-6 dB" --set Width=0.1 melody.wav
  tonvale-render --set Frequency="1000 Hz" --seconds 60 test-tone.wav
  tonvale-render --shape "30% Sine, 70% Harmonics" --table cycle.wav
  tonvale-render --state sound.xml --set Wet="-6 dB" --save-state quieter.xml
  tonvale-render --preset "Leads/Saw lead" --midi melody.mid --save-state lead.xml \
                 lead.wav
  tonvale-render --preset "Morphing/Sine, saw, square and triangle" --seconds 8 \
                 --morph-path 0=0:0,4=1:0,8=1:1 walk.wav
  tonvale-render --upsampling 4 --automate Pitch:0=0.5,2=0.7 --block 4800 up.wav
  tonvale-render --input voice.wav --channel-mode Mono --set01 Dry=1 voice2.wav
  tonvale-render --list
  tonvale-render --plugin other.vst3 --midi melody.mid other.wav

OUT.wav may be left out with --table, --shapes, --save-state and --list. Your
presets are in Tonvalepresets.xml, in the folder of this product among your data;
those that came with this program are in share/tonvale beside its folder.)";

/// The texts of the options, to be read once the command line as a whole makes sense.
struct Texts
{
    std::vector<std::string> notes, texts, values01, shapes, automations;
    std::string seconds, rate, block, channels, channelMode, upsampling, tempo, morph, morphPath;
    bool isHigh = false, isStandard = false, isBypassed = false, isOn = false;
};

/// The options as CLI11 sees them, bound to the fields of @p texts and @p options.
class Parser
{
public:
    Parser(RenderOptions& target) : options(target), app(Description, "tonvale-render")
    {
        app.get_formatter()->column_width(22);
        app.get_formatter()->label("OPTIONS", "options");
        app.set_help_flag("-h,--help", "Show this text");
        app.set_version_flag("--version", std::string("Tonvale ") + TONVALE_VERSION,
                             "Show the version");
        app.footer(Notes);
        AddOptions();
    }

    void Parse(int argumentCount, const char* const* arguments)
    {
        try
        {
            app.parse(argumentCount, arguments);
        }
        catch (const CLI::CallForHelp&)
        {
            options.answer = app.help();
            return;
        }
        catch (const CLI::CallForVersion&)
        {
            options.answer = app.version() + "\n";
            return;
        }
        catch (const CLI::ParseError& error)
        {
            throw Failure(std::string(error.what()) + "; --help tells more");
        }
        ReadTexts();
    }

private:
    template <typename Target>
    CLI::Option* Add(const char* name, Target& target, const char* type, const char* help)
    {
        return app.add_option(name, target, help)->type_name(type)->allow_extra_args(false);
    }

    void AddOptions()
    {
        app.add_option("OUT.wav", options.output, "The file to write")->type_name("");
        Add("--plugin", options.plugin, "PATH",
            "Play another plugin: a VST2 library (.so) or a VST3\n"
            "bundle (.vst3)");
        app.add_flag("--in-process", options.isInProcess, "Play Tonvale without a plugin module");
        Add("--note", texts.notes, "N",
            "Switch on MIDI note N, 0 to 127, at the start and hold\n"
            "it. May be repeated; the last one is heard");
        Add("--midi", options.midi, "FILE", "Play a standard MIDI file");
        Add("--input", options.input, "FILE",
            "Mix in a WAV file under \"Dry\", which is silent\n"
            "unless set");
        Add("--seconds", texts.seconds, "S",
            "Length; otherwise that of the MIDI file plus 1, or\n"
            "that of the input, or 5");
        Add("--rate", texts.rate, "HZ",
            "Samples a second, 101 to 6144000; otherwise that of\n"
            "the input, or 48000");
        Add("--channels", texts.channels, "N", "1 to 8; otherwise 2");
        Add("--channel-mode", texts.channelMode, "NAME",
            "What the plugin works on: \"Left + Right\", \"Left\",\n"
            "\"Right\", \"Mono\", \"Stereo\", \"Mono + Stereo\",\n"
            "\"Left + Right (neg)\" or \"Surround\"; otherwise as the\n"
            "state says, or Surround for 3 channels or more, or\n"
            "\"Left + Right\"");
        Add("--upsampling", texts.upsampling, "N",
            "Let the plugin work at N times the rate, 1 to 16");
        app.add_flag("--hq", texts.isHigh, "Upsample in high quality, as it does unless told");
        app.add_flag("--no-hq", texts.isStandard, "Upsample in standard quality");
        app.add_flag("--bypass", texts.isBypassed, "Bypass the plugin");
        app.add_flag("--no-bypass", texts.isOn, "Do not bypass it, whatever the state says");
        Add("--tempo", texts.tempo, "BPM",
            "Let the host play at this tempo, up to 1000, from\n"
            "the start; otherwise it stands and tells none");
        Add("--block", texts.block, "N",
            "Samples that are computed at once, 1 to 16777216;\n"
            "otherwise 512");
        Add("--state", options.state, "FILE",
            "Begin with the settings in an XML file, plain or\n"
            "compressed; those below replace them");
        Add("--preset", options.preset, "NAME",
            "Begin with a preset instead, such as\n"
            "\"Calibration/440 Hz sine at -18 dB\"");
        Add("--presets-file", options.presetsFile, "FILE",
            "Take it from this file; otherwise from your presets,\n"
            "or if there are none from those that came with this");
        shapes = Add("--shape", texts.shapes, "TEXT",
                     "Set the shape: Saw, \"30% Sine, 70% Harmonics\", or a\n"
                     "number from 0 to 15. Same as --set Shape=TEXT");
        settingTexts = Add("--set", texts.texts, "NAME=TEXT",
                           "Set a parameter to what it should show, such as\n"
                           "Frequency=\"440 Hz\". May be repeated");
        settings01 = Add("--set01", texts.values01, "NAME=X",
                         "The same by position in its range, 0.0 to 1.0.\n"
                         "Later settings replace earlier ones");
        Add("--automate", texts.automations, "NAME:T=V,...",
            "Set a parameter to V, 0.0 to 1.0, at T seconds, and\n"
            "so on with rising T. May be repeated");
        Add("--morph", texts.morph, "X,Y",
            "After the settings, blend all parameters of the slots\n"
            "A (at 0,0), B (1,0), C (0,1) and D (1,1)");
        Add("--morph-path", texts.morphPath, "T=X:Y,...",
            "Be at that place at T seconds, and so on with rising\n"
            "T, and walk straight between");
        Add("--save-state", options.saveState, "FILE", "Write the settings to an XML file");
        Add("--table", options.table, "FILE",
            "Write the one cycle that is played to a WAV file:\n"
            "8192 samples, one channel");
        Add("--plot", options.plot, "FILE",
            "Draw the sound into a PNG file: a few cycles, the\n"
            "spectrum, and from 2 s on how it changes");
        Add("--shapes", options.shapeSheet, "FILE",
            "Draw the shapes that there are, and what operations\n"
            "make of them, into a PNG file");
        app.add_flag("--list", options.isList, "List the parameters as set");
        app.add_flag("--stats", options.isStatistics, "Tell how the plugin ran");
        app.add_flag("--presets", options.isPresetList, "List the presets, do nothing else");
        Add("--install-presets", options.installPresets, "FILE",
            "Add the folders of presets in FILE that your presets\n"
            "lack, do nothing else");
    }

    void ReadTexts()
    {
        using namespace optiontexts;
        const auto readInteger =
            [](const char* option, const std::string& text, int min, int max, auto& target)
        {
            if (!text.empty())
                target = ReadInteger(option, text, min, max);
        };
        readInteger("--rate", texts.rate, RenderOptions::MinRate, RenderOptions::MaxRate,
                    options.rate);
        readInteger("--block", texts.block, 1, RenderOptions::MaxBlock, options.block);
        readInteger("--channels", texts.channels, 1, RenderOptions::MaxChannels, options.channels);
        readInteger("--upsampling", texts.upsampling, 1, RenderOptions::MaxUpsampling,
                    options.upsampling);
        if (!texts.seconds.empty())
            options.seconds = ReadPositive("--seconds", texts.seconds, RenderOptions::MaxSeconds);
        if (!texts.tempo.empty())
            options.tempo = ReadPositive("--tempo", texts.tempo, RenderOptions::MaxTempo);
        for (const std::string& note : texts.notes)
            options.notes.push_back(ReadInteger("--note", note, 0, 127));
        for (const std::string& automation : texts.automations)
            options.automations.push_back(ReadAutomation("--automate", automation));
        if (!texts.morph.empty())
            options.morph = ReadPlace("--morph", texts.morph);
        if (!texts.morphPath.empty())
            options.morphPath = ReadPath("--morph-path", texts.morphPath);
        ReadMode();
        ReadSettings();

        CheckPlugin();
        CheckFiles();
    }

    /// Which of --name and --no-name is given, if any.
    static std::optional<bool> ReadChoice(const std::string& name, bool isYes, bool isNo)
    {
        if (isYes && isNo)
            throw Failure("--" + name + " and --no-" + name + " exclude each other");
        return isYes || isNo ? std::optional(isYes) : std::nullopt;
    }

    void ReadMode()
    {
        if (!texts.channelMode.empty())
            options.channelMode = optiontexts::ReadChannelMode("--channel-mode", texts.channelMode);
        if (options.channelMode == MChannelMode::Surround &&
            options.channels < RenderOptions::MinSurroundChannels)
            throw Failure("--channel-mode " + texts.channelMode, "it takes 3 --channels or more");
        options.isHighQuality = ReadChoice("hq", texts.isHigh, texts.isStandard);
        options.isBypassed = ReadChoice("bypass", texts.isBypassed, texts.isOn);
    }

    void CheckPlugin() const
    {
        if (!options.plugin)
            return;
        if (options.isInProcess)
            throw Failure("--plugin and --in-process exclude each other");
        if (const char* const option = options.FindInsideOption())
            throw Failure(option, "hosts cannot do that; leave out --plugin");
    }

    void CheckFiles() const
    {
        if (options.state && options.preset)
            throw Failure("--state and --preset exclude each other");
        std::vector<std::filesystem::path> written;
        if (!options.output.empty())
            written.emplace_back(options.output);
        if (options.plot && options.output.empty())
            throw Failure("--plot", "it draws the sound; the name of a WAV file is missing");
        for (const auto& file :
             {options.saveState, options.table, options.plot, options.shapeSheet})
            if (file)
                written.emplace_back(*file);
        if (!written.empty() && options.IsPresetsOnly())
            throw Failure(
                "--presets and --install-presets write no sound, state, table or picture");
        if (written.empty() && !options.isList && !options.IsPresetsOnly())
            throw Failure("the name of the WAV file to write is missing; --help tells more");
        for (std::filesystem::path& path : written)
            path = path.lexically_normal();
        std::ranges::sort(written);
        if (const auto same = std::ranges::adjacent_find(written); same != written.end())
            throw Failure("two things cannot be written to " + Quoted(*same));
    }

    void ReadSettings()
    {
        using namespace optiontexts;
        std::size_t textsRead = 0;
        std::size_t values01Read = 0;
        std::size_t shapesRead = 0;
        for (const CLI::Option* const option : app.parse_order())
        {
            if (option == settingTexts)
                options.settings.push_back(ReadSetting("--set", texts.texts.at(textsRead++)));
            else if (option == settings01)
                options.settings.push_back(
                    ReadSetting01("--set01", texts.values01.at(values01Read++)));
            else if (option == shapes)
                options.settings.push_back({{}, texts.shapes.at(shapesRead++), std::nullopt});
        }
    }

    RenderOptions& options;
    Texts texts;
    CLI::App app;
    const CLI::Option* settingTexts = nullptr;
    const CLI::Option* settings01 = nullptr;
    const CLI::Option* shapes = nullptr;
};

} // namespace

const char* RenderOptions::FindInsideOption() const noexcept
{
    const std::pair<bool, const char*> options[] = {{table.has_value(), "--table"},
                                                    {isStatistics, "--stats"},
                                                    {channelMode.has_value(), "--channel-mode"},
                                                    {upsampling.has_value(), "--upsampling"},
                                                    {isHighQuality == true, "--hq"},
                                                    {isHighQuality == false, "--no-hq"}};
    for (const auto& [isGiven, name] : options)
        if (isGiven)
            return name;
    return nullptr;
}

RenderOptions RenderOptions::Parse(int argumentCount, const char* const* arguments)
{
    RenderOptions options;
    Parser(options).Parse(argumentCount, arguments);
    return options;
}
