#pragma once

#include <cstdint>
#include <iosfwd>
#include <optional>
#include <vector>

#include "tools/render/EffectRunner.h"
#include "tools/render/NotePlan.h"
#include "tools/render/NoteTable.h"
#include "tools/render/WavReader.h"

struct RenderOptions;
class WavWriter;

/// Does what the options ask for: writes state, cycle and sound, and reports on them.
class Renderer
{
public:
    /// Opens the files to read and sets the parameters. @p renderOptions outlives this.
    /// @throws MException if anything about them is wrong.
    explicit Renderer(const RenderOptions& renderOptions);

    /// @throws MException if a file cannot be written; an older one then stays.
    void Run(std::ostream& report);

private:
    void ApplySettings();
    void OpenInput();
    void LoadMidi();
    /// Without --seconds; @p midiSeconds only counts with a MIDI file.
    double DefaultSeconds(double midiSeconds) const;
    void SetLength(double seconds);

    void SaveState();
    void WriteTable();
    void Render();
    /// Of the last Render.
    void PrintReport(std::ostream& stream) const;
    void RenderBlocks(WavWriter& writer);
    /// Sends the messages that are due, and returns the frame of the next.
    std::int64_t SendDueMessages(std::int64_t position);
    void ProcessBlock(int frames);

    const RenderOptions& options;
    EffectRunner runner;
    std::optional<WavReader> input;
    int rate = 0; ///< Hz
    std::int64_t totalFrames = 0;
    std::vector<ScheduledMessage> messages;
    std::size_t nextMessage = 0;
    std::optional<NoteTable> noteTable; ///< with --midi
    // One block of each channel.
    std::vector<std::vector<float>> inputBlocks;
    std::vector<std::vector<float>> outputBlocks;
    std::vector<const float*> inputPointers; ///< one per channel, null where there is no input
    std::vector<float*> outputPointers;
    float peak = 0.0f;
    double processingSeconds = 0.0;
};
