#pragma once

#include "foundation/values/MValueNumber.h"

// Numbers that show a unit. The text goes by valuetexts; what is typed is read as a plain number
// in that unit, so that "silence" or "center" is not read back.

/// A linear gain, shown in decibels.
class MValueVolume : public MValueDouble
{
public:
    explicit MValueVolume(Binding binding = {}, double lowest = 0.0, double highest = 1.0);

protected:
    MString TextOf(double value) const override;
    std::optional<double> FromTyped(double typed) const override;
};

/// A fraction, shown in percents.
class MValuePercents : public MValueDouble
{
public:
    explicit MValuePercents(Binding binding = {}, double lowest = 0.0, double highest = 1.0);

protected:
    MString TextOf(double value) const override;
    std::optional<double> FromTyped(double typed) const override;
};

/// -1.0 left, 0.0 centre, 1.0 right. Percents are read without a side: 50 is half way right.
class MValuePan : public MValueDouble
{
public:
    explicit MValuePan(Binding binding = {}, double lowest = -1.0, double highest = 1.0);

protected:
    MString TextOf(double value) const override;
    std::optional<double> FromTyped(double typed) const override;
};

/// A fraction of a turn, shown in degrees and percents, read in degrees.
class MValueDegreesFrom01 : public MValueDouble
{
public:
    explicit MValueDegreesFrom01(Binding binding = {}, double lowest = 0.0, double highest = 1.0);

protected:
    MString TextOf(double value) const override;
    std::optional<double> FromTyped(double typed) const override;
};

/// Seconds, shown in milliseconds.
class MValueTimeMS : public MValueDouble
{
public:
    explicit MValueTimeMS(Binding binding = {}, double lowest = 0.0, double highest = 100.0);

protected:
    MString TextOf(double value) const override;
    std::optional<double> FromTyped(double typed) const override;
};

/// Semitones, with their sign.
class MValuePitch : public MValueDouble
{
public:
    explicit MValuePitch(Binding binding = {}, double lowest = 0.0, double highest = 100.0);
};
