#include "tools/render/Renderer.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <ostream>

#include "foundation/values/ValueTexts.h"
#include "foundation/xml/MXMLItem.h"
#include "tools/render/ExpectedPitch.h"
#include "tools/render/Failure.h"
#include "tools/render/Interruption.h"
#include "tools/render/MidiFile.h"
#include "tools/render/ParameterSettings.h"
#include "tools/render/ProgressLine.h"
#include "tools/render/RenderOptions.h"
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
    // A state is read for the channels that there are, all of which play unless it says otherwise.
    runner.Start(options.channels, rate, 1);
    if (options.channels >= RenderOptions::MinSurroundChannels)
        runner.GetPlugin().SetChannelMode(MChannelMode::Surround);
    if (options.state)
        LoadState();
    ApplyPluginOptions();
    ApplySettings();
    LoadAutomation();
    if (!isRendering)
        return;
    for (const int note : options.notes)
        events.AddMessage({0, {0x90, static_cast<std::uint8_t>(note), 127}});
    LoadMidi();
}

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
    MXMLItem state("settings");
    statefile::Load(*options.state, state);
    runner.LoadState(state);
}

void Renderer::ApplyPluginOptions()
{
    auto& plugin = runner.GetPlugin();
    if (options.channelMode)
        plugin.SetChannelMode(*options.channelMode);
    if (options.upsampling || options.isHighQuality)
        plugin.SetUpsampling(options.upsampling.value_or(plugin.GetWantedUpsampling()),
                             options.isHighQuality.value_or(plugin.IsHighQualityUpsampling()));
    // It makes do with less than the state wants, but not with less than the user does.
    if (options.upsampling && plugin.GetUpsamplingFactor() < *options.upsampling)
        throw Failure("--upsampling " + std::to_string(*options.upsampling),
                      "at " + std::to_string(rate) + " Hz it can be " +
                          std::to_string(plugin.GetUpsamplingFactor()) + " at most");
    if (options.isBypassed)
        plugin.SetBypassed(*options.isBypassed);
    if (options.tempo)
        runner.SetTempo(*options.tempo);
}

void Renderer::ApplySettings()
{
    ParameterSettings parameters(runner);
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
    const ParameterSettings parameters(runner);
    for (const RenderOptions::Automation& automation : options.automations)
    {
        const int index = parameters.Find(automation.name).index;
        for (const RenderOptions::Point& point : automation.points)
            events.AddValue(std::llround(point.seconds * rate), index, point.value01);
    }
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
        SaveState();
    if (options.table)
        WriteTable();
    if (options.isList)
        ParameterSettings(runner).List(report);
    if (options.output.empty())
        return;
    Render();
    if (options.isList)
        report << '\n';
    PrintReport(report);
}

void Renderer::SaveState()
{
    MXMLItem state("settings");
    runner.StoreState(state);
    statefile::Save(*options.saveState, state);
}

void Renderer::WriteTable()
{
    const std::span<const float> cycle = runner.GetCycle();
    WavWriter writer(*options.table, 1, options.rate.value_or(RenderOptions::DefaultRate));
    const std::vector<float> block(cycle.begin(), cycle.end());
    writer.Write(std::span(&block, 1), static_cast<int>(block.size()));
    writer.Commit();
}

void Renderer::Render()
{
    WavWriter writer(options.output, options.channels, rate);
    events.SetDueValues(runner, 0); // before the start, so that nothing moves there
    RenderBlocks(writer);
    writer.Commit();
}

void Renderer::RenderBlocks(WavWriter& writer)
{
    auto& plugin = runner.GetPlugin();
    // All buffers of the plugin hold the upsampled block.
    const int blockFrames = static_cast<int>(
        std::min({totalFrames + plugin.GetEffectiveLatency(), std::int64_t{options.block},
                  std::int64_t{RenderOptions::MaxBlock / plugin.GetUpsamplingFactor()}}));
    runner.Start(options.channels, rate, blockFrames);
    if (options.midi && !plugin.IsBypassed())
        MakeNoteTable();

    SoundBlocks blocks(options.channels, input ? input->GetChannels() : 0, blockFrames);
    ProgressLine progress(totalFrames);
    const std::int64_t latency = plugin.GetEffectiveLatency();
    const std::int64_t end = totalFrames + latency;
    for (std::int64_t position = 0; position < end;)
    {
        interruption::Check();
        events.SetDueValues(runner, position);
        const std::int64_t next = std::min(end, events.SendDueMessages(runner, position));
        const auto frames = static_cast<int>(std::min<std::int64_t>(blockFrames, next - position));
        ProcessBlock(blocks, frames);

        const auto late = static_cast<int>(std::clamp<std::int64_t>(latency - position, 0, frames));
        blocks.DropOutput(late, frames);
        writer.Write(blocks.GetOutputs(), frames - late);
        peak = std::max(peak, blocks.FindPeak(frames - late));
        if (noteTable)
            FeedNoteTable(blocks, frames - late);
        position += frames;
        progress.Show(std::max<std::int64_t>(0, position - latency));
    }
}

void Renderer::MakeNoteTable()
{
    // At most 36 samples early, and smeared by as many to either side.
    constexpr int FilterReach = 80;
    const bool isUpsampled = runner.GetPlugin().GetUpsamplingFactor() > 1;
    noteTable.emplace(PlanNotes(events.GetMessages(), totalFrames),
                      ExpectedPitch(runner, runner.GetPlugin().GetEffectChannels()), rate,
                      isUpsampled ? FilterReach : 0);
}

void Renderer::ProcessBlock(SoundBlocks& blocks, int frames)
{
    using Clock = std::chrono::steady_clock;
    if (input)
        input->Read(blocks.GetInputs(), frames);
    statistics.Count(frames);
    const auto start = Clock::now();
    blocks.Process(runner, frames);
    processingSeconds += std::chrono::duration<double>(Clock::now() - start).count();
}

void Renderer::FeedNoteTable(const SoundBlocks& blocks, int frames)
{
    const auto count = static_cast<std::size_t>(frames);
    const auto outputs = blocks.GetOutputs();
    const MChannelMode mode =
        outputs.size() == 2 ? runner.GetPlugin().GetChannelMode() : MChannelMode::LeftRight;
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
        statistics.Print(stream, runner.GetPlugin());
    if (noteTable)
    {
        stream << '\n';
        noteTable->Print(stream);
    }
}
