#include "foundation/values/MValueSignalGeneratorShape.h"

#include <atomic>

namespace
{

MString NumberOf(int index)
{
    return MString::FromInteger(index);
}

std::atomic<valuetexts::ShapeNames> installedNames = &NumberOf;

} // namespace

MValueSignalGeneratorShape::MValueSignalGeneratorShape(Binding binding, double lowest,
                                                       double highest)
    : MValueDouble(binding, lowest, highest)
{
}

MValueContent MValueSignalGeneratorShape::GetContentFrom01(double position) const
{
    return {.text = TextOf(position * (valuetexts::ShapeCount - 1))};
}

bool MValueSignalGeneratorShape::ParseDisplayText(const MString& text)
{
    double position = 0.0;
    return valuetexts::ParseShape(text, installedNames, position) && Set(position);
}

void MValueSignalGeneratorShape::InstallNames(valuetexts::ShapeNames newNames) noexcept
{
    installedNames = newNames != nullptr ? newNames : &NumberOf;
}

MString MValueSignalGeneratorShape::TextOf(double value) const
{
    return valuetexts::Shape(value, installedNames);
}
