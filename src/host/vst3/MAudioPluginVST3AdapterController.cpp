// The adapter as a controller: parameters and units.

#include <algorithm>

#include "foundation/threads/MGuard.h"
#include "host/vst3/MAudioPluginVST3Adapter.h"
#include "host/vst3/Vst3Text.h"

using namespace Vst3;

Result MAudioPluginVST3Adapter::setComponentState(IBStream* /*state*/)
{
    return kResultOk;
}

std::int32_t MAudioPluginVST3Adapter::getParameterCount()
{
    return parameters.Count();
}

Result MAudioPluginVST3Adapter::getParameterInfo(std::int32_t index, ParameterInfo& info)
{
    return MGuarded("MAudioPluginVST3Adapter::getParameterInfo", kResultFalse,
                    [&]
                    {
                        if (index < 0 || index >= parameters.Count())
                            return kInvalidArgument;
                        parameters.Describe(index, info);
                        return kResultTrue;
                    });
}

Result MAudioPluginVST3Adapter::getParamStringByValue(ParamID id, double value, char16_t* text)
{
    return MGuarded("MAudioPluginVST3Adapter::getParamStringByValue", kResultFalse,
                    [&]
                    {
                        if (text == nullptr || !parameters.Has(id))
                            return kResultFalse;
                        CopyText(text, parameters.GetText(id, value));
                        return kResultTrue;
                    });
}

Result MAudioPluginVST3Adapter::getParamValueByString(ParamID id, char16_t* text, double& value)
{
    return MGuarded("MAudioPluginVST3Adapter::getParamValueByString", kResultFalse,
                    [&]
                    {
                        if (text == nullptr || !parameters.Has(id))
                            return kResultFalse;
                        value = parameters.Parse(id, ReadText(text));
                        return kResultTrue;
                    });
}

double MAudioPluginVST3Adapter::normalizedParamToPlain(ParamID id, double value)
{
    if (id != Parameters::BypassId)
        return value;
    return value >= 0.5 ? 1.0 : 0.0;
}

double MAudioPluginVST3Adapter::plainParamToNormalized(ParamID id, double plainValue)
{
    return normalizedParamToPlain(id, plainValue);
}

double MAudioPluginVST3Adapter::getParamNormalized(ParamID id)
{
    return MGuarded("MAudioPluginVST3Adapter::getParamNormalized", 0.0,
                    [&] { return parameters.Has(id) ? parameters.Get(id) : 0.0; });
}

Result MAudioPluginVST3Adapter::setParamNormalized(ParamID id, double value)
{
    return MGuarded("MAudioPluginVST3Adapter::setParamNormalized", kResultFalse,
                    [&]
                    {
                        if (!parameters.Has(id))
                            return kResultFalse;
                        if (!IgnoresHostParameters())
                            parameters.Set(id, value);
                        return kResultTrue;
                    });
}

IPlugView* MAudioPluginVST3Adapter::createView(const char* /*name*/)
{
    return nullptr;
}

Result MAudioPluginVST3Adapter::setKnobMode(std::int32_t /*mode*/)
{
    return kResultFalse;
}

Result MAudioPluginVST3Adapter::openHelp(Bool /*onlyCheck*/)
{
    return kResultFalse;
}

Result MAudioPluginVST3Adapter::openAboutBox(Bool /*onlyCheck*/)
{
    return kResultFalse;
}

std::int32_t MAudioPluginVST3Adapter::getUnitCount()
{
    return 1;
}

Result MAudioPluginVST3Adapter::getUnitInfo(std::int32_t index, UnitInfo& info)
{
    if (index != 0)
        return kInvalidArgument;
    info = {};
    info.id = kRootUnitId;
    info.parentUnitId = kNoParentUnitId;
    info.programListId = kNoProgramListId;
    CopyText(info.name, "Root");
    return kResultTrue;
}

std::int32_t MAudioPluginVST3Adapter::getProgramListCount()
{
    return 0;
}

Result MAudioPluginVST3Adapter::getProgramListInfo(std::int32_t /*index*/,
                                                   ProgramListInfo& /*info*/)
{
    return kResultFalse;
}

Result MAudioPluginVST3Adapter::getProgramName(std::int32_t /*list*/, std::int32_t /*program*/,
                                               char16_t* /*name*/)
{
    return kResultFalse;
}

Result MAudioPluginVST3Adapter::getProgramInfo(std::int32_t /*list*/, std::int32_t /*program*/,
                                               const char* /*attribute*/, char16_t* /*value*/)
{
    return kResultFalse;
}

Result MAudioPluginVST3Adapter::hasProgramPitchNames(std::int32_t /*list*/,
                                                     std::int32_t /*program*/)
{
    return kResultFalse;
}

Result MAudioPluginVST3Adapter::getProgramPitchName(std::int32_t /*list*/, std::int32_t /*program*/,
                                                    std::int16_t /*pitch*/, char16_t* /*name*/)
{
    return kResultFalse;
}

std::int32_t MAudioPluginVST3Adapter::getSelectedUnit()
{
    return kRootUnitId;
}

Result MAudioPluginVST3Adapter::selectUnit(std::int32_t unit)
{
    return unit == kRootUnitId ? kResultTrue : kResultFalse;
}

Result MAudioPluginVST3Adapter::getUnitByBus(std::int32_t media, std::int32_t direction,
                                             std::int32_t bus, std::int32_t /*channel*/,
                                             std::int32_t& unit)
{
    if (!buses.Has(media, direction, bus))
        return kResultFalse;
    unit = kRootUnitId;
    return kResultTrue;
}

Result MAudioPluginVST3Adapter::setUnitProgramData(std::int32_t /*listOrUnit*/,
                                                   std::int32_t /*program*/, IBStream* /*data*/)
{
    return kResultFalse;
}

Result MAudioPluginVST3Adapter::getMidiControllerAssignment(std::int32_t /*bus*/,
                                                            std::int16_t /*channel*/,
                                                            std::int16_t /*controller*/,
                                                            ParamID& /*id*/)
{
    return kResultFalse;
}
