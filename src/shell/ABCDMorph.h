#pragma once

#include <array>
#include <vector>

#include "effect/parameters/MAutomationAdapter.h"
#include "shell/PresetSlots.h"

class MQuillfernAudioEffectPlugin;

/// What one parameter has in the slots A, B, C and D, 0.0 to 1.0.
using MABCDValues = std::array<double, 4>;

/// A walk over the square between the slots A, B, C and D: each point of it sets every parameter to
/// the bilinear blend of its four values. The window of the morph holds one while it is open; then
/// either Cancel or Confirm ends it.
/// GUI thread. The plugin has to live on, and its slots are left to the morph meanwhile.
class ABCDMorph
{
public:
    static constexpr int CornerCount = 4;
    static constexpr int FreeSlot = 4; ///< E, where the blend may go so that the corners stay
    /// A parameter that is nearer than this to the blend is left alone.
    static constexpr double LeastChange = 1e-5;

    /// Reads the corners, the current slot as it is now, from a plugin of its own, so that the
    /// sound goes on. @throws MException if that fails
    explicit ABCDMorph(MQuillfernAudioEffectPlugin& morphedPlugin);

    /// 0.0 to 1.0 each, the nearest one otherwise: A is at 0, 0, B at 1, 0, C at 0, 1 and D at
    /// 1, 1. Tells the host of what moved.
    void MoveTo(double x, double y);
    double GetX() const noexcept { return X; }
    double GetY() const noexcept { return Y; }
    const std::vector<MABCDValues>& GetValues() const noexcept { return values; }

    /// Brings back the state from before. @throws MException as a load does
    void Cancel();
    /// Whether the blend is about to replace one of its own corners, so that the user is asked.
    bool IsCornerCurrent() const;
    /// "Preset {0} is currently selected, ..." with the letter of the current slot.
    MString GetQuestion() const;
    /// @p keepsCorners: slot E becomes the current one and takes the blend, and the corner that was
    /// current has what it had.
    void Confirm(bool keepsCorners);

private:
    /// Sets what of @p adapter is not at the blend, and adds its indices to @p moved.
    void Move(MAutomationAdapter& adapter, std::vector<int>& moved);

    MQuillfernAudioEffectPlugin& plugin;
    PresetSlots::State before; ///< of the current slot
    std::vector<MABCDValues> values;
    std::vector<MAutomationAdapter::IndexedValue> changes; ///< of one adapter; keeps its room
    double X = 0.5;
    double Y = 0.5;
};
