#pragma once

#include <cstddef>
#include <cstdint>
#include <iosfwd>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "tools/render/HostEvents.h"
#include "tools/render/NoteTable.h"
#include "tools/render/RunStatistics.h"
#include "tools/render/SoundBlocks.h"
#include "tools/render/SoundPlot.h"
#include "tools/render/WavReader.h"

struct RenderOptions;
class HostedPlugin;
class InProcessPlugin;
class WavWriter;

/// Does what the options ask for: writes state, cycle and sound, and reports on them.
class Renderer
{
public:
    /// Opens the files to read and sets the parameters. @p renderOptions outlives this.
    /// @throws MException if anything about them is wrong.
    explicit Renderer(const RenderOptions& renderOptions);
    ~Renderer();

    /// @throws MException if a file cannot be written; an older one then stays.
    void Run(std::ostream& report);

private:
    void OpenInput();
    void LoadState();
    void LoadPreset();
    /// @p subject, what brings it, stands in front of a complaint.
    void GiveState(const std::string& subject, std::span<const std::byte> state);
    void ApplyPluginOptions();
    void ApplyUpsampling();
    void ApplySettings();
    void LoadAutomation();
    void Morph();
    void LoadMidi();
    /// Without --seconds; @p midiSeconds only counts with a MIDI file.
    double DefaultSeconds(double midiSeconds) const;
    void SetLength(double seconds);

    void WriteTable();
    void DrawShapes() const;
    void Render();
    /// One in process with the present state; null for plugins of others.
    std::unique_ptr<InProcessPlugin> MakeTwin();
    void MakeNoteTable();
    void RenderBlocks(WavWriter& writer);
    void ProcessBlock(SoundBlocks& blocks, int frames);
    void FeedNoteTable(const SoundBlocks& blocks, int frames);

    /// Of the last Render.
    void PrintReport(std::ostream& stream);

    const RenderOptions& options;
    std::string origin; ///< what runs, and how
    std::unique_ptr<HostedPlugin> plugin;
    /// The plugin, if it is in process; or one that takes its state over when the sound begins and
    /// tells what it should sound like; null for those of others.
    InProcessPlugin* inside = nullptr;
    std::unique_ptr<InProcessPlugin> twin; ///< owns inside, unless that is the plugin
    std::optional<WavReader> input;
    int rate; ///< Hz
    std::int64_t totalFrames = 0;
    HostEvents events;
    std::optional<NoteTable> noteTable; ///< with --midi, if the oscillator is heard
    std::optional<SoundPlot> plot;      ///< with --plot
    RunStatistics statistics;
    float peak = 0.0f;
    double processingSeconds = 0.0;
};
