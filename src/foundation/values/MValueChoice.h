#pragma once

#include "foundation/values/MValue.h"

/// One of a number of names, kept as its index. What enumerations and lists have in common.
/// Stored as the index; definitions tell it by name. An unknown name is index 0.
class MValueChoice : public MValue
{
public:
    MString GetAsString() const override;
    void SetFromString(const MString& text) override;
    bool SetDefault() override;
    void Load(MXMLItem& item) override;
    /// Also "default" and "value" (either is both, unless both are given), as names.
    void InitFromXML(MXMLItem& item) override;

    MString GetDisplayText() const override { return TextOf(GetIndex()); }
    MValueContent GetContentFrom01(double position) const override;
    bool ParseDisplayText(const MString& text) override;
    void Limit() override;
    /// As Step: indices have no size of step.
    bool StepScaled(int steps, double exponent) override;
    bool Step(int steps) override;
    /// The index through the number of the names less one: not a number for a single name, so
    /// that such values are not to be mapped.
    double Get01() const override;
    bool Set01(double position) override;
    int GetItemCount() const override { return GetCount(); }

    /// Whether the variable was written through this object since the owner last cleared this.
    bool IsChanged() const noexcept { return changed; }
    void ClearChanged() noexcept { changed = false; }

    int GetDefaultIndex() const noexcept { return defaultIndex; }

protected:
    MValueChoice() = default;

    virtual int GetCount() const = 0;
    /// @p index is 0 to GetCount() - 1.
    virtual MString NameOf(int index) const = 0;
    /// The index of the first name that equals @p name, or -1.
    virtual int Find(const MString& name) const = 0;
    virtual int GetIndex() const = 0;
    /// Any index, as far as the variable can hold it.
    virtual void PutIndex(int index) = 0;

    /// To be called at the end of construction.
    void TakeDefault();

private:
    int IndexFrom01(double position) const;
    /// In the range; 0 if there are no names.
    int Limited(int index) const;
    MString TextOf(int index) const;
    /// Of a name; 0 if it is unknown.
    int IndexOf(const MString& name) const;
    void Put(int index);
    bool Set(int index);

    bool changed = false;
    int defaultIndex = 0;
};
