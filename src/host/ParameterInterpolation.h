#pragma once

#include <memory>
#include <optional>
#include <vector>

class MAudioPluginAutomation;
class MAutomationAdapter;

/// Draws what a host automates as straight lines through a block instead of steps at its start.
/// The block is cut into pieces; at each the effect hears a value on the way, while the value that
/// the host set stays, and with the end of the block takes over.
///
/// The audio thread under the processing lock, but for Write, GetDiverted and SetHeld, which any
/// thread may call; Prepare, Process and Finish of one block in this order. Does not allocate.
class ParameterInterpolation
{
public:
    explicit ParameterInterpolation(MAudioPluginAutomation& automatedPlugin) noexcept;
    ~ParameterInterpolation();

    /// What is interpolated from now on, indices of modulatable floats; forgets all else. Before
    /// other threads use the plugin.
    void SetParameters(const std::vector<int>& indices);
    /// Leaves the parameters of @p adapter out, which is about to end.
    void Forget(const MAutomationAdapter& adapter);
    /// The next block begins at the present values.
    void Reset() noexcept { isReset = true; }
    /// While on, a modulator holds the parameter, which is left to it; also in the midst of a
    /// block. Goes on before the modulator switches the parameter, and off behind.
    void SetHeld(int index, bool on) noexcept;

    /// Starts a block of @p samples. Returns whether anything moves, so that the block is cut.
    bool Prepare(int samples);
    /// Moves on by @p n samples.
    void Process(int n);
    /// Ends the block, also one without Prepare.
    void Finish();

    /// Sets a parameter; behind the end of the block if it is on its way. Returns false if it is
    /// none of those that are interpolated: then the caller sets it.
    bool Write(int index, double value01, bool quiet);
    /// What waits for the end of the block, if anything does.
    std::optional<double> GetDiverted(int index) const noexcept;

private:
    struct Entry;

    Entry* Find(int index) const noexcept;

    MAudioPluginAutomation& plugin;
    std::vector<std::unique_ptr<Entry>> entries; ///< by rising index
    bool isReset = true;
    bool isPrepared = false; ///< the present block has targets
    bool isMoving = false;   ///< some entry is on its way
};
