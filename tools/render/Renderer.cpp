#include "tools/render/Renderer.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <ostream>

#include "effect/MPluginInfo.h"
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

Renderer::Renderer(const RenderOptions& renderOptions) : options(renderOptions)
{
    ApplySettings();
    if (options.output.empty())
        return;
    OpenInput();
    for (const int note : options.notes)
        messages.push_back({0, {0x90, static_cast<std::uint8_t>(note), 127}});
    LoadMidi();
}

void Renderer::ApplySettings()
{
    if (options.state)
    {
        MXMLItem state("settings");
        statefile::Load(*options.state, state);
        runner.LoadState(state);
    }
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

void Renderer::OpenInput()
{
    rate = options.rate.value_or(RenderOptions::DefaultRate);
    if (!options.input)
        return;
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

void Renderer::LoadMidi()
{
    if (!options.midi)
    {
        SetLength(options.seconds.value_or(DefaultSeconds(0.0)));
        return;
    }
    const MidiFile file = MidiFile::Load(*options.midi);
    for (const MidiEvent& event : file.GetEvents())
        messages.push_back({std::llround(event.seconds * rate), event.bytes});
    SetLength(options.seconds.value_or(DefaultSeconds(file.GetSeconds())));
    noteTable.emplace(PlanNotes(messages, totalFrames), ExpectedPitch(runner, options.channels),
                      rate);
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
    RenderBlocks(writer);
    writer.Commit();
}

void Renderer::RenderBlocks(WavWriter& writer)
{
    const auto blockFrames =
        static_cast<int>(std::min({totalFrames, std::int64_t{options.block},
                                   std::int64_t{runner.GetInfo().maxProcessingBlock}}));
    const auto channels = static_cast<std::size_t>(options.channels);
    const std::vector<float> silence(static_cast<std::size_t>(blockFrames));
    outputBlocks.assign(channels, silence);
    for (std::vector<float>& block : outputBlocks)
        outputPointers.push_back(block.data());
    inputPointers.assign(channels, nullptr);
    if (input)
    {
        inputBlocks.assign(static_cast<std::size_t>(input->GetChannels()), silence);
        for (std::size_t channel = 0; channel < channels; ++channel)
            if (inputBlocks.size() == 1 || channel < inputBlocks.size())
                inputPointers[channel] = inputBlocks[inputBlocks.size() == 1 ? 0 : channel].data();
    }

    runner.Start(options.channels, rate);
    ProgressLine progress(totalFrames);
    for (std::int64_t position = 0; position < totalFrames;)
    {
        interruption::Check();
        const std::int64_t end = std::min(totalFrames, SendDueMessages(position));
        const auto frames = static_cast<int>(std::min<std::int64_t>(blockFrames, end - position));
        ProcessBlock(frames);
        writer.Write(outputBlocks, frames);
        position += frames;
        progress.Show(position);
    }
}

std::int64_t Renderer::SendDueMessages(std::int64_t position)
{
    for (; nextMessage < messages.size(); ++nextMessage)
    {
        const ScheduledMessage& message = messages[nextMessage];
        if (message.frame > position)
            return message.frame;
        runner.Send(message.bytes);
    }
    return totalFrames;
}

void Renderer::ProcessBlock(int frames)
{
    using Clock = std::chrono::steady_clock;
    if (input)
        input->Read(inputBlocks, frames);
    const auto start = Clock::now();
    runner.Process(inputPointers.data(), outputPointers.data(), frames);
    processingSeconds += std::chrono::duration<double>(Clock::now() - start).count();

    for (const std::vector<float>& block : outputBlocks)
        for (const float sample : std::span(block).first(static_cast<std::size_t>(frames)))
            peak = std::max(peak, std::abs(sample));
    if (noteTable)
        noteTable->Feed(std::span(outputBlocks[0]).first(static_cast<std::size_t>(frames)));
}

void Renderer::PrintReport(std::ostream& stream) const
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
    if (noteTable)
    {
        stream << '\n';
        noteTable->Print(stream);
    }
}
