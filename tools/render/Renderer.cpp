#include "tools/render/Renderer.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <ostream>
#include <utility>

#include "foundation/strings/FileNames.h"
#include "foundation/values/ValueTexts.h"
#include "tools/plot/ShapeSheet.h"
#include "tools/render/ExpectedPitch.h"
#include "tools/render/Failure.h"
#include "tools/render/InProcessPlugin.h"
#include "tools/render/Interruption.h"
#include "tools/render/MidiFile.h"
#include "tools/render/ParameterSettings.h"
#include "tools/render/PluginChoice.h"
#include "tools/render/PluginParameter.h"
#include "tools/render/PresetCatalogue.h"
#include "tools/render/ProgressLine.h"
#include "tools/render/RenderOptions.h"
#include "tools/render/SlotWalk.h"
#include "tools/render/StateFile.h"
#include "tools/render/Text.h"
#include "tools/render/WavWriter.h"

Renderer::Renderer(const RenderOptions& renderOptions)
    : options(renderOptions),
      rate(renderOptions.rate.value_or(RenderOptions::DefaultRate))
{
    const bool isRendering = !options.output.empty();
    if (isRendering && options.input)
        OpenInput();
    ChosenPlugin chosen = ChoosePlugin(options);
    plugin = std::move(chosen.plugin);
    inside = chosen.inside;
    origin = std::move(chosen.origin);
    // A state is read for the channels that there are, all of which play unless it says otherwise.
    constexpr int UsualBlock = 512; // some plugins of others want more than a sample
    plugin->Start(options.channels, rate, UsualBlock);
    if (inside != nullptr && options.channels >= RenderOptions::MinSurroundChannels)
        inside->GetShell().SetChannelMode(MChannelMode::Surround);
    if (options.state)
        LoadState();
    if (options.preset)
        LoadPreset();
    ApplyPluginOptions();
    ApplySettings();
    if (options.morph || !options.morphPath.empty())
        Morph();
    LoadAutomation();
    if (!isRendering)
        return;
    for (const int note : options.notes)
        events.AddMessage({0, {0x90, static_cast<std::uint8_t>(note), 127}});
    LoadMidi();
}

Renderer::~Renderer() = default;

void Renderer::OpenInput()
{
    input.emplace(*options.input);
    const auto fail = [this](const std::string& what)
    { throw Failure("cannot mix in " + Quoted(*options.input), what); };
    if (input->GetRate() < RenderOptions::MinRate || input->GetRate() > RenderOptions::MaxRate)
        fail("its sample rate, " + std::to_string(input->GetRate()) +
             " Hz, is outside the range of 101 to 6144000 Hz");
    if (options.rate && *options.rate != input->GetRate())
        fail("its sample rate is " + std::to_string(input->GetRate()) + " Hz, not " +
             std::to_string(*options.rate) + " Hz as --rate says");
    if (input->GetChannels() > options.channels)
        fail("it has " + std::to_string(input->GetChannels()) + " channels; give --channels " +
             std::to_string(input->GetChannels()));
    rate = input->GetRate();
}

void Renderer::LoadState()
{
    const auto state = statefile::IsSettings(plugin->SaveState())
                           ? statefile::LoadSettings(*options.state)
                           : statefile::Load(*options.state);
    GiveState("cannot load " + Quoted(*options.state), state);
}

void Renderer::LoadPreset()
{
    const PresetCatalogue presets(options.presetsFile);
    const auto state = presets.Load(*options.preset);
    if (!statefile::IsSettings(plugin->SaveState()))
        throw Failure("--preset", "the plugin has other presets");
    GiveState("cannot load preset \"" + *options.preset + '"', state);
}

void Renderer::GiveState(const std::string& subject, std::span<const std::byte> state)
{
    try
    {
        plugin->LoadState(state);
    }
    catch (const MException& failure)
    {
        throw Failure(subject, failure.text.ToUTF8());
    }
}

void Renderer::ApplyPluginOptions()
{
    if (options.channelMode)
        inside->GetShell().SetChannelMode(*options.channelMode);
    if (options.upsampling || options.isHighQuality)
        ApplyUpsampling();
    if (options.isBypassed && !plugin->SetBypassed(*options.isBypassed))
        throw Failure(*options.isBypassed ? "--bypass" : "--no-bypass",
                      "the plugin has no bypass of its own");
    if (options.tempo)
        plugin->SetTempo(*options.tempo);
}

void Renderer::ApplyUpsampling()
{
    auto& shell = inside->GetShell();
    shell.SetUpsampling(options.upsampling.value_or(shell.GetWantedUpsampling()),
                        options.isHighQuality.value_or(shell.IsHighQualityUpsampling()));
    // It makes do with less than the state wants, but not with less than the user does.
    if (options.upsampling && shell.GetUpsamplingFactor() < *options.upsampling)
        throw Failure("--upsampling " + std::to_string(*options.upsampling),
                      "at " + std::to_string(rate) + " Hz it can be " +
                          std::to_string(shell.GetUpsamplingFactor()) + " at most");
}

void Renderer::ApplySettings()
{
    ParameterSettings parameters(*plugin);
    for (const RenderOptions::Setting& setting : options.settings)
    {
        if (setting.value01)
            parameters.Set01(setting.name, *setting.value01);
        else if (setting.name.empty())
            parameters.SetShape(setting.text);
        else
            parameters.SetText(setting.name, setting.text);
    }
}

void Renderer::LoadAutomation()
{
    const ParameterSettings parameters(*plugin);
    for (const RenderOptions::Automation& automation : options.automations)
    {
        const int index = parameters.Find(automation.name).index;
        for (const RenderOptions::Point& point : automation.points)
            events.AddValue(std::llround(point.seconds * rate), index, point.value01);
    }
}

void Renderer::Morph()
{
    // The plugin may lie behind a host standard, which knows nothing of slots but has the same
    // parameters in the same order.
    auto walker = MakeTwin();
    if (walker == nullptr)
        throw Failure(options.morph ? "--morph" : "--morph-path", "the plugin has no slots");
    SlotWalk walk(std::move(walker));
    if (options.morph)
    {
        walk.MoveTo(*options.morph);
        GiveState("--morph", walk.SaveState());
    }

    if (options.morphPath.empty())
        return;
    constexpr double ShortestStep = 0.005; // seconds
    constexpr double MaxSteps = 100000.0;  // what is kept of a path of hours has to fit
    const double length = options.morphPath.back().seconds - options.morphPath.front().seconds;
    walk.Follow(
        options.morphPath,
        std::max({static_cast<double>(options.block) / rate, ShortestStep, length / MaxSteps}),
        [&](double seconds, int index, double value01)
        { events.AddValue(std::llround(seconds * rate), index, value01); });
}

void Renderer::LoadMidi()
{
    if (!options.midi)
    {
        SetLength(options.seconds.value_or(DefaultSeconds(0.0)));
        return;
    }
    const MidiFile file = MidiFile::Load(*options.midi);
    for (const MidiEvent& event : file.GetEvents())
        events.AddMessage({std::llround(event.seconds * rate), event.bytes});
    SetLength(options.seconds.value_or(DefaultSeconds(file.GetSeconds())));
}

double Renderer::DefaultSeconds(double midiSeconds) const
{
    if (options.midi)
        return midiSeconds + RenderOptions::TailSeconds;
    if (!input)
        return RenderOptions::DefaultSeconds;
    if (input->GetFrames() == 0)
        throw Failure("cannot mix in " + Quoted(*options.input), "it is empty; give --seconds");
    return static_cast<double>(input->GetFrames()) / rate;
}

void Renderer::SetLength(double seconds)
{
    if (seconds > RenderOptions::MaxSeconds)
        throw Failure("the sound would last " + text::Fixed(seconds, 0) +
                      " s; give --seconds, at most " + text::Short(RenderOptions::MaxSeconds));
    totalFrames = std::max<std::int64_t>(1, std::llround(seconds * rate));
    const std::int64_t frameBytes = options.channels * std::int64_t{sizeof(float)};
    const std::int64_t maxFrames = WavWriter::MaxBytes / frameBytes;
    if (totalFrames > maxFrames)
        throw Failure("the sound does not fit into the 4 GiB of a WAV file; give --seconds, at "
                      "most " +
                      text::Fixed(std::floor(static_cast<double>(maxFrames) / rate), 0) +
                      ", or fewer --channels");
}

void Renderer::Run(std::ostream& report)
{
    if (options.saveState)
        statefile::Save(*options.saveState, plugin->SaveState());
    if (options.table)
        WriteTable();
    if (options.shapeSheet)
        DrawShapes();
    if (options.isList || !options.output.empty())
        report << origin << '\n';
    if (options.isList)
        ParameterSettings(*plugin).List(report);
    if (options.output.empty())
        return;
    Render();
    if (options.isList)
        report << '\n';
    PrintReport(report);
}

void Renderer::WriteTable()
{
    const std::span<const float> cycle = inside->GetCycle();
    WavWriter writer(*options.table, 1, options.rate.value_or(RenderOptions::DefaultRate));
    const std::vector<float> block(cycle.begin(), cycle.end());
    writer.Write(std::span(&block, 1), static_cast<int>(block.size()));
    writer.Commit();
}

void Renderer::DrawShapes() const
{
    try
    {
        shapesheet::Save(FileNameFromBytes(*options.shapeSheet));
    }
    catch (const MException& failure)
    {
        throw Failure("cannot write " + Quoted(*options.shapeSheet), failure.text.ToUTF8());
    }
}

void Renderer::Render()
{
    WavWriter writer(options.output, options.channels, rate);
    events.SetDueValues(*plugin, 0); // before the start, so that nothing moves there
    if (inside == nullptr)
    {
        twin = MakeTwin();
        inside = twin.get();
    }
    if (options.plot)
        plot.emplace(options, rate, totalFrames);
    RenderBlocks(writer);
    writer.Commit();
    if (plot)
        plot->Save(origin);
}

std::unique_ptr<InProcessPlugin> Renderer::MakeTwin()
{
    const std::vector<std::byte> state = plugin->SaveState();
    if (!statefile::IsSettings(state))
        return nullptr;
    auto made = std::make_unique<InProcessPlugin>();
    made->Start(options.channels, rate, 1);
    made->LoadState(state);
    return made;
}

void Renderer::RenderBlocks(WavWriter& writer)
{
    // All buffers of the plugin hold the upsampled block.
    const int factor = inside != nullptr ? inside->GetShell().GetUpsamplingFactor() : 1;
    const int blockFrames =
        static_cast<int>(std::min({totalFrames + plugin->GetLatency(), std::int64_t{options.block},
                                   std::int64_t{RenderOptions::MaxBlock / factor}}));
    plugin->Start(options.channels, rate, blockFrames);
    if (options.midi && inside != nullptr && !inside->GetShell().IsBypassed())
        MakeNoteTable();

    SoundBlocks blocks(options.channels, input ? input->GetChannels() : 0, blockFrames);
    ProgressLine progress(totalFrames);
    const std::int64_t latency = plugin->GetLatency();
    const std::int64_t end = totalFrames + latency;
    for (std::int64_t position = 0; position < end;)
    {
        interruption::Check();
        events.SetDueValues(*plugin, position);
        const std::int64_t next = std::min(end, events.SendDueMessages(*plugin, position));
        const auto frames = static_cast<int>(std::min<std::int64_t>(blockFrames, next - position));
        ProcessBlock(blocks, frames);

        const auto late = static_cast<int>(std::clamp<std::int64_t>(latency - position, 0, frames));
        blocks.DropOutput(late, frames);
        writer.Write(blocks.GetOutputs(), frames - late);
        peak = std::max(peak, blocks.FindPeak(frames - late));
        if (noteTable)
            FeedNoteTable(blocks, frames - late);
        if (plot)
            plot->Feed(blocks.GetOutputs(), frames - late);
        position += frames;
        progress.Show(std::max<std::int64_t>(0, position - latency));
    }
}

void Renderer::MakeNoteTable()
{
    // At most 36 samples early, and smeared by as many to either side.
    constexpr int FilterReach = 80;
    const bool isUpsampled = inside->GetShell().GetUpsamplingFactor() > 1;
    noteTable.emplace(PlanNotes(events.GetMessages(), totalFrames),
                      ExpectedPitch(*inside, inside->GetShell().GetEffectChannels()), rate,
                      isUpsampled ? FilterReach : 0);
}

void Renderer::ProcessBlock(SoundBlocks& blocks, int frames)
{
    using Clock = std::chrono::steady_clock;
    if (input)
        input->Read(blocks.GetInputs(), frames);
    statistics.Count(frames);
    const auto start = Clock::now();
    blocks.Process(*plugin, frames);
    processingSeconds += std::chrono::duration<double>(Clock::now() - start).count();
}

void Renderer::FeedNoteTable(const SoundBlocks& blocks, int frames)
{
    const auto count = static_cast<std::size_t>(frames);
    const auto outputs = blocks.GetOutputs();
    const MChannelMode mode =
        outputs.size() == 2 ? inside->GetShell().GetChannelMode() : MChannelMode::LeftRight;
    if (mode != MChannelMode::MonoStereo)
    {
        const std::size_t first = mode == MChannelMode::Right ? 1 : 0;
        noteTable->Feed(std::span(outputs[first]).first(count));
        return;
    }
    // The first channel of the oscillator is the middle of the two.
    std::vector<float> middle(count);
    std::transform(outputs[0].begin(), outputs[0].begin() + frames, outputs[1].begin(),
                   middle.begin(), [](float left, float right) { return (left + right) * 0.5f; });
    noteTable->Feed(middle);
}

void Renderer::PrintReport(std::ostream& stream)
{
    const double seconds = static_cast<double>(totalFrames) / rate;
    stream << options.output << ": " << rate << " Hz, " << options.channels
           << (options.channels == 1 ? " channel, " : " channels, ") << totalFrames
           << (totalFrames == 1 ? " frame, " : " frames, ") << text::Fixed(seconds, 3) << " s\n";
    // Gain texts are relative to full scale here.
    stream << "Peak level: " << valuetexts::Gain(peak).ToUTF8() << (peak > 0.0f ? "FS" : "")
           << '\n';
    stream << "Speed: " << text::Fixed(seconds / std::max(processingSeconds, 1e-9), 0)
           << " times real time (" << text::Fixed(processingSeconds, 4) << " s)\n";
    if (options.isStatistics)
        statistics.Print(stream, inside->GetShell());
    if (noteTable)
    {
        stream << '\n';
        noteTable->Print(stream);
    }
}
