#pragma once

#include "curves/MEnvelope.h"
#include "curves/MEnvelopeComputer.h"
#include "foundation/strings/MString.h"
#include "shell/MTargetRange.h"

class MAudioPluginAutomation;
class MXMLItem;

/// One parameter that something moves, and how a moving value from -1.0 to 1.0 becomes its value.
/// Kept in a list by what moves it, under the lock of that.
class MModulatorTarget
{
public:
    static constexpr double NoBackup = -1.0;

    /// Drives no parameter yet; the curve is a straight line.
    MModulatorTarget();

    /// From now on it drives the parameter @p index of @p plugin, whose present value it keeps; a
    /// negative one is none. Reads names of all parameters.
    void Assign(int index, const MAudioPluginAutomation& plugin);

    /// The normalised value for @p moving. @p first is the first target of the list, which lends
    /// its range to those that ask for it. Does not allocate.
    double Map(double moving, const MModulatorTarget& first);

    /// After each change of Shape. Allocates if the curve has grown.
    /// @throws MException "Invalid control point type.", which no loaded curve has
    void CompileShape() { ShapeComputer.Compile(Shape); }

    /// Writes to @p item; doubles at their default are removed.
    void Store(MXMLItem& item) const;
    /// What is missing takes its default. A target whose parameter @p plugin has not moves nothing
    /// and is stored as it came.
    /// @throws MException as MEnvelope::Load does, with the old target half gone
    void Load(MXMLItem& item, const MAudioPluginAutomation& plugin);

    int ParameterIndex = -1; ///< negative for none
    MTargetRange Range{.value = 0.5, .mode = MTargetRange::Mode::UpAndDown};
    bool UseFirstRange = false;
    bool ParameterEnabled = true;
    bool ShapeEnabled = false;
    MEnvelope Shape{0.0, 1.0, 0.0, 1.0};
    double ValueBackup = NoBackup; ///< of the parameter when it was assigned

private:
    MString parameterName; ///< with section; these two find the parameter again
    MString parameterID;   ///< empty if no other has the name
    MEnvelopeComputer ShapeComputer;
};
