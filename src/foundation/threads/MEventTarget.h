#pragma once

/// What may receive events: the base of everything with handlers. Identity matters, so it is not
/// copied.
class MEventTarget
{
public:
    MEventTarget() = default;
    virtual ~MEventTarget() = default;
    MEventTarget(const MEventTarget&) = delete;
    MEventTarget& operator=(const MEventTarget&) = delete;
};
