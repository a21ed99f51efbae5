#include "tools/render/ParameterSettings.h"

#include <algorithm>
#include <ostream>

#include "effect/MPluginInfo.h"
#include "effect/MPluginParameterRecord.h"
#include "tools/render/EffectRunner.h"
#include "tools/render/Failure.h"
#include "tools/render/ParameterText.h"
#include "tools/render/Text.h"

void ParameterSettings::SetText(const std::string& name, const std::string& text)
{
    MPluginParameterRecord& record = Find(name);
    try
    {
        ReadParameterText(record, text);
    }
    catch (const MException& failure)
    {
        throw Failure("--set " + name + "=" + text, failure.text.ToUTF8());
    }
    runner.NotifyChange(record);
}

void ParameterSettings::Set01(const std::string& name, double value01)
{
    MPluginParameterRecord& record = Find(name);
    if (!(value01 >= 0.0 && value01 <= 1.0))
        throw Failure("--set01 " + name + "=" + text::Short(value01),
                      "it is outside the range of 0 to 1");
    record.Set01(value01);
    runner.NotifyChange(record);
}

void ParameterSettings::List(std::ostream& stream) const
{
    const auto line = [&stream](const std::string& name, const std::string& value,
                                const std::string& value01, const std::string& range)
    {
        stream << text::Left(name, 12) << text::Left(value, 18) << text::Left(value01, 12) << range
               << '\n';
    };
    line("Parameter", "Value", "Normalised", "Range");
    const MPluginInfo& info = runner.GetInfo();
    for (std::int32_t i = 0; i < info.CountParameters(); ++i)
    {
        MPluginParameterRecord& record = *info.FindParameter(i);
        line(record.name.ToUTF8(), record.GetValueText().ToUTF8(), text::Fixed(record.Get01(), 4),
             ShownAt(record, 0.0) + " to " + ShownAt(record, 1.0));
    }
}

MPluginParameterRecord& ParameterSettings::Find(const std::string& name) const
{
    if (MPluginParameterRecord* const record = runner.FindParameter(MString::FromUTF8(name)))
        return *record;
    throw Failure("there is no parameter \"" + name + "\"; there are " + ListNames());
}

std::string ParameterSettings::ListNames() const
{
    std::string names;
    const MPluginInfo& info = runner.GetInfo();
    for (std::int32_t i = 0; i < info.CountParameters(); ++i)
        names += (i == 0 ? "" : ", ") + info.FindParameter(i)->name.ToUTF8();
    return names;
}
