#pragma once

#include <cstdint>

#include "foundation/strings/MString.h"
#include "foundation/xml/MStorable.h"

/// What a control shows of a value.
struct MValueContent
{
    static constexpr std::int32_t Text = 8;

    std::int32_t type = Text;
    MString text;
};

/// A typed value with a range and all that a control needs to know about it: its place between
/// 0.0 and 1.0, its text in both directions, its steps, how it is stored. Controls therefore know
/// no units. The value owns its variable or is bound to one outside, which is plain memory: another
/// thread may read it, without a lock. Apart from that one thread at a time, as a rule that of the
/// editor.
///
/// The range applies where Limit is called, by every operation that takes what a user does; what is
/// loaded stays as it is until then. Operations that return bool tell whether the value is another
/// than before. None fails: a place that is not a number, or text that holds none, changes nothing.
class MValue : public MStorable
{
public:
    /// What the user sees: by the text callback, if there is one, else GetDisplayText.
    virtual MString GetText() const;
    virtual MString GetDisplayText() const = 0;
    virtual MValueContent GetContent() const;
    /// What the value would show at the place @p position, 0.0 to 1.0.
    virtual MValueContent GetContentFrom01(double position) const = 0;
    /// Takes what the user typed; true if a text callback did.
    virtual bool SetText(const MString& text);
    virtual bool ParseDisplayText(const MString& text) = 0;
    /// Brings the variable into its range.
    virtual void Limit() = 0;
    /// Moves by @p steps steps, each 2 to the power of @p exponent times its usual size, up to the
    /// largest step.
    virtual bool StepScaled(int steps, double exponent) = 0;
    virtual bool Step(int steps) = 0;
    virtual double Get01() const = 0;
    virtual bool Set01(double position) = 0;
    /// How many whole values there are, as for a menu of them. 0 if the range is empty.
    virtual int GetItemCount() const = 0;
    /// Of an item, 0 to GetItemCount() - 1.
    virtual MValueContent GetItemContent(int index) const;
    virtual int IsSpecial() const { return 0; }
    virtual bool SetItem(int index);

private:
    /// Items lie at equal distances.
    double ItemPosition(int index) const;
};
