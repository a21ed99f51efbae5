#pragma once

#include <atomic>
#include <memory>
#include <vector>

class MAudioPluginAutomation;
class MAutomationAdapter;

/// Draws what a host automates as straight lines through a block instead of steps at its start.
/// The block is cut into pieces; at each the effect hears a value on the way, while the value that
/// the host set stays, and with the end of the block takes over.
///
/// The audio thread under the processing lock, but for Divert; Prepare, Process and Finish of one
/// block in this order. Does not allocate.
class ParameterInterpolation
{
public:
    explicit ParameterInterpolation(MAudioPluginAutomation& automatedPlugin) noexcept;

    /// What is interpolated from now on, indices of modulatable floats; forgets all else.
    void SetParameters(const std::vector<int>& indices);
    /// The next block begins at the present values.
    void Reset() noexcept;
    /// While on, a modulator holds the parameter, which is left to it.
    void SetHeld(int index, bool on) noexcept;

    /// Starts a block of @p samples. Returns whether anything moves, so that the block is cut.
    bool Prepare(int samples);
    /// Moves on by @p n samples.
    void Process(int n);
    /// Ends the block, also one without Prepare.
    void Finish();

    /// Any thread: keeps @p value01 for Finish if the parameter is on its way, and returns true;
    /// else the caller sets it.
    bool Divert(int index, double value01) noexcept;

private:
    struct Entry;

    MAudioPluginAutomation& plugin;
    std::vector<std::unique_ptr<Entry>> entries; ///< by rising index
    bool isReset = true;
};
