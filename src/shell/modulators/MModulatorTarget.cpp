#include "shell/modulators/MModulatorTarget.h"

#include <cmath>
#include <limits>

#include "foundation/xml/MXMLItem.h"
#include "host/MAudioPluginAutomation.h"
#include "shell/modulators/ModulatorNumbers.h"

namespace
{

constexpr MTargetRange DefaultRange{.value = 0.5, .mode = MTargetRange::Mode::UpAndDown};

void StoreUnlessDefault(MXMLItem& item, const char* key, double number, double defaultNumber)
{
    if (std::abs(number - defaultNumber) < 1e-50)
        item.RemoveAttribute(key);
    else
        item.SetAttribute(key, number);
}

bool IsUnique(const MString& name, const MAudioPluginAutomation& plugin)
{
    int holders = 0;
    for (int index = 0; index < plugin.GetParameterCount() && holders < 2; ++index)
        holders += plugin.GetParameterName(index) == name;
    return holders < 2;
}

} // namespace

MModulatorTarget::MModulatorTarget()
{
    Shape.AddEndPoints(0.0, 1.0);
    CompileShape();
}

void MModulatorTarget::Assign(int index, const MAudioPluginAutomation& plugin)
{
    const bool isThere = index >= 0 && index < plugin.GetParameterCount();
    ParameterIndex = isThere ? index : -1;
    parameterName = isThere ? plugin.GetParameterName(index) : MString();
    parameterID = isThere && !IsUnique(parameterName, plugin) ? plugin.GetParameterID(index) : "";
    ValueBackup = isThere ? plugin.GetParameter(index) : NoBackup;
}

double MModulatorTarget::Map(double moving, const MModulatorTarget& first)
{
    if (ShapeEnabled)
    {
        const double place = (moving + 1.0) / 2.0;
        ShapeComputer.SeekBack(place);
        moving = 2.0 * ShapeComputer.Get(place) - 1.0;
    }
    MTargetRange range = UseFirstRange ? first.Range : Range;
    range.isInverted = Range.isInverted;
    return range.Map(moving);
}

void MModulatorTarget::Store(MXMLItem& item) const
{
    item.SetAttribute("ParameterName", parameterName);
    if (parameterID.IsEmpty())
        item.RemoveAttribute("ParameterID");
    else
        item.SetAttribute("ParameterID", parameterID);
    StoreUnlessDefault(item, "Value", Range.value, DefaultRange.value);
    StoreUnlessDefault(item, "MaxValue", Range.maxValue, DefaultRange.maxValue);
    StoreUnlessDefault(item, "Range", Range.range, DefaultRange.range);
    StoreUnlessDefault(item, "ValueBackup", ValueBackup, NoBackup);
    item.SetAttribute("FullRange", static_cast<int>(Range.mode));
    item.SetAttribute("Invert", Range.isInverted ? 1 : 0);
    item.SetAttribute("UseFirstRange", UseFirstRange ? 1 : 0);
    item.SetAttribute("ParameterEnabled", ParameterEnabled ? 1 : 0);
    item.SetAttribute("ShapeEnabled", ShapeEnabled ? 1 : 0);
    Shape.Store(item.GetOrAddSubItem("Shape"));
}

void MModulatorTarget::Load(MXMLItem& item, const MAudioPluginAutomation& plugin)
{
    using namespace modulatornumbers;
    *this = MModulatorTarget();
    if (item.HasSubItem("Shape"))
    {
        Shape.Load(item.GetSubItem());
        CompileShape();
    }
    parameterName = item.GetAttribute("ParameterName", {});
    parameterID = item.GetAttribute("ParameterID", {});
    if (!parameterID.IsEmpty())
        ParameterIndex = plugin.FindParameter(parameterID);
    if (ParameterIndex < 0 && !parameterName.IsEmpty())
        ParameterIndex = plugin.FindParameterByName(parameterName);

    Range.value = Read(item, "Value", DefaultRange.value, 0.0, 1.0);
    Range.maxValue = Read(item, "MaxValue", DefaultRange.maxValue, 0.0, 1.0);
    Range.range = Read(item, "Range", DefaultRange.range, 0.0, 1.0);
    ValueBackup = Read(item, "ValueBackup", NoBackup, NoBackup, 1.0);
    Range.mode = static_cast<MTargetRange::Mode>(
        ReadInt(item, "FullRange", 0, 0, std::numeric_limits<std::int32_t>::max()));
    Range.isInverted = ReadBool(item, "Invert", false);
    UseFirstRange = ReadBool(item, "UseFirstRange", false);
    ParameterEnabled = ReadBool(item, "ParameterEnabled", true);
    ShapeEnabled = ReadBool(item, "ShapeEnabled", false);
}
