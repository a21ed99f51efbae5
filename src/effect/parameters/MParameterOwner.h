#pragma once

class MAutomationAdapter;
class MLock;

/// What parameter objects need of whoever drives the effect.
class MParameterOwner
{
public:
    /// Held while a block is made and while an object behind a parameter changes.
    virtual MLock& GetProcessingLock() noexcept = 0;
    /// An open editor should show the value anew. Any thread; waits for no one but other callers.
    virtual void NeedUpdateEditor(MAutomationAdapter& adapter) = 0;
    /// A parameter of the owner's own, which the effect does not know, has changed.
    virtual void OnCustomParameterChanged(MAutomationAdapter& adapter) = 0;

protected:
    ~MParameterOwner() = default;
};
