#pragma once

#include <vector>

/// Where modulators write to. Audio thread, under the processing lock.
class MModulationWriter
{
public:
    /// Sets the parameter @p index, and tells who watches.
    virtual void SetParameter(int index, double value01) = 0;
    /// From now on what is set moves the alternate value, and the user's stays; or no longer.
    virtual void SetModulated(int index, bool on) = 0;
    /// Whether the parameter has an alternate value; others are really written.
    virtual bool HasAlternate(int index) const = 0;
    virtual ~MModulationWriter() = default;
};

/// Counts who modulates which parameter of one plugin, so that it is modulated from the first that
/// comes to the last that goes. Parameters without an alternate value get back what they were.
/// All but Resize: under the processing lock; does not allocate.
class MModulationCounter
{
public:
    explicit MModulationCounter(MModulationWriter& parameterWriter) noexcept
        : writer(parameterWriter)
    {
    }

    /// For indices below @p parameterCount; others cannot be modulated. Before processing.
    void Resize(int parameterCount);

    /// @p backup is what the parameter was, negative for unknown; the first one known counts.
    void Acquire(int index, double backup);
    void Release(int index);
    /// The same, when a state that comes brings what the parameter is from now on.
    void Forget(int index);

    MModulationWriter& GetWriter() const noexcept { return writer; }

private:
    struct Holders
    {
        int count = 0;
        double backup = -1.0;
    };

    Holders* Find(int index) noexcept;
    /// Returns what the parameter was if its last holder has gone, else a negative number.
    double Drop(int index);

    MModulationWriter& writer;
    std::vector<Holders> parameters;
};
