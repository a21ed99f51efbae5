#pragma once

#include <cstdint>
#include <iosfwd>
#include <optional>
#include <vector>

#include "tools/render/HostEvents.h"
#include "tools/render/NoteTable.h"
#include "tools/render/PluginRunner.h"
#include "tools/render/RunStatistics.h"
#include "tools/render/SoundBlocks.h"
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
    void OpenInput();
    void LoadState();
    void ApplyPluginOptions();
    void ApplySettings();
    void LoadAutomation();
    void LoadMidi();
    /// Without --seconds; @p midiSeconds only counts with a MIDI file.
    double DefaultSeconds(double midiSeconds) const;
    void SetLength(double seconds);

    void SaveState();
    void WriteTable();
    void Render();
    void MakeNoteTable();
    void RenderBlocks(WavWriter& writer);
    void ProcessBlock(SoundBlocks& blocks, int frames);
    void FeedNoteTable(const SoundBlocks& blocks, int frames);

    /// Of the last Render.
    void PrintReport(std::ostream& stream);

    const RenderOptions& options;
    PluginRunner runner;
    std::optional<WavReader> input;
    int rate; ///< Hz
    std::int64_t totalFrames = 0;
    HostEvents events;
    std::optional<NoteTable> noteTable; ///< with --midi, if the oscillator is heard
    RunStatistics statistics;
    float peak = 0.0f;
    double processingSeconds = 0.0;
};
