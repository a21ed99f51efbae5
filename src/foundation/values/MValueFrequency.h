#pragma once

#include "foundation/values/MValueNumber.h"

/// Hertz, at places that go by the logarithm: each octave has the same room. Both ends have to be
/// above 0; with others the place is 0 and none can be set.
class MValueFrequency : public MValueDouble
{
public:
    explicit MValueFrequency(Binding binding = {}, double lowest = 20.0, double highest = 20000.0);

    void InitFromXML(MXMLItem& item) override;
    /// Of a value out of range below 0.0 or above 1.0. 1.0 if the range is one value.
    double Get01() const override;
    /// Tells of the change by the value before it is limited.
    bool Set01(double position) override;

protected:
    MString TextOf(double value) const override;
    double From01(double position) const override;

private:
    void TakeLogarithms() noexcept;

    double logMin = 0.0;
    double logMax = 0.0;
};

/// The decimal logarithm of hertz, shown and read in hertz. What is typed has to be above 0.
class MValueFrequencyLog : public MValueDouble
{
public:
    /// The variable holds the logarithm, the range is given in hertz.
    explicit MValueFrequencyLog(Binding binding = {}, double lowestHz = 20.0,
                                double highestHz = 20000.0);

protected:
    MString TextOf(double value) const override;
    std::optional<double> FromTyped(double typed) const override;
};

/// Hertz, each with the same room.
class MValueFrequencyLinear : public MValueDouble
{
public:
    explicit MValueFrequencyLinear(Binding binding = {}, double lowest = 20.0,
                                   double highest = 20000.0);

protected:
    MString TextOf(double value) const override;
};
