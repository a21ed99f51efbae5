#pragma once

#include "foundation/values/MValueNumber.h"

/// A number that snaps to multiples of a step, and then to its range.
class MValueStepDouble : public MValueDouble
{
public:
    /// 0 to 100 in steps of 0.01.
    MValueStepDouble() : MValueStepDouble({}, 0.01, 0.0, 100.0) {}
    /// Without a step (0, or not a finite number) it does not snap.
    MValueStepDouble(Binding binding, double initialStep, double lowest, double highest);

    /// Also "step".
    void InitFromXML(MXMLItem& item) override;

    double GetStep() const noexcept { return step; }

protected:
    double Limited(double value) const override;

private:
    void SetStep(double newStep) noexcept;

    double step = 0.0;
    double invStep = 0.0; ///< 0 if there is no step
};

/// A fraction that snaps, shown and read in percents.
class MValueStepPercents : public MValueStepDouble
{
public:
    /// 0% to 100% in steps of 1%.
    MValueStepPercents() : MValueStepPercents({}, 0.01, 0.0, 1.0) {}
    using MValueStepDouble::MValueStepDouble;

protected:
    MString TextOf(double value) const override;
    std::optional<double> FromTyped(double typed) const override;
};
