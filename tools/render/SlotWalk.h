#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <span>
#include <vector>

#include "shell/ABCDMorph.h"
#include "tools/render/RenderOptions.h"

class InProcessPlugin;

/// Walks a plugin in process over the square between its slots A, B, C and D, and tells which of
/// its parameters that moves: what a host would record of a morph, and another plugin can play.
class SlotWalk
{
public:
    using Listener = std::function<void(double seconds, int index, double value01)>;

    /// @throws MException if the slots cannot be read
    explicit SlotWalk(std::unique_ptr<InProcessPlugin> walkingPlugin);
    ~SlotWalk();

    void MoveTo(const RenderOptions::Place& place) { morph.MoveTo(place.x, place.y); }
    std::vector<std::byte> SaveState();
    /// Walks straight from one place of @p path to the next, and looks every @p step seconds what
    /// has moved.
    void Follow(std::span<const RenderOptions::PlaceInTime> path, double step,
                const Listener& listener);

private:
    void Tell(double seconds, const Listener& listener);

    std::unique_ptr<InProcessPlugin> plugin;
    ABCDMorph morph;
    std::vector<double> last; ///< what was told of each parameter
};
