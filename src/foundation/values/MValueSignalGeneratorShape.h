#pragma once

#include "foundation/values/MValueNumber.h"
#include "foundation/values/ValueTexts.h"

/// A position among the shapes of the signal generator, 0 to 15, shown by their names and read as
/// names or a number. The shapes belong to the effect, which therefore says what they are called.
class MValueSignalGeneratorShape : public MValueDouble
{
public:
    explicit MValueSignalGeneratorShape(Binding binding = {}, double lowest = 0.0,
                                        double highest = valuetexts::ShapeCount - 1);

    MValueContent GetContentFrom01(double position) const override;
    bool ParseDisplayText(const MString& text) override;

    /// For all values of the process, before the first is shown; until then shapes go by their
    /// numbers. Null is as before.
    static void InstallNames(valuetexts::ShapeNames newNames) noexcept;

protected:
    MString TextOf(double value) const override;
};
