#include "effect/parameters/ParameterSpecialBase.h"

#include <algorithm>
#include <atomic>
#include <cmath>

#include "effect/parameters/MParameterOwner.h"
#include "foundation/threads/MLockGuard.h"
#include "foundation/values/ValueTexts.h"

constinit const ParameterScale ParameterScale::Fraction = {
    .to01 = [](double number) noexcept { return number; },
    .from01 = [](double value01) noexcept { return value01; },
    .getText = &valuetexts::Percents,
    .parse = &ParameterScale::ParsePercents,
};

bool ParameterScale::ParsePercents(const MString& text, double& number)
{
    double percents = 0.0;
    if (!text.ReadDouble(percents))
        return false;
    number = percents / 100.0;
    return true;
}

ParameterSpecialMainBase::ParameterSpecialMainBase(std::int32_t objectKind,
                                                   std::span<const Value> objectValues,
                                                   const MPluginSpecialRecord& special,
                                                   MParameterOwner* parameterOwner,
                                                   const MString& section)
    : ParameterMainBase(objectKind, static_cast<int>(objectValues.size()),
                        {.name = special.name,
                         .section = section,
                         .id = special.secondName,
                         .help = {},
                         .tag = special.tag},
                        parameterOwner),
      values(objectValues)
{
}

void ParameterSpecialMainBase::SetParameter(int index, double value01, bool quiet)
{
    const IndexedValue value{.index = index, .value01 = value01};
    SetParameters(std::span(&value, 1), quiet);
}

void ParameterSpecialMainBase::SetParameters(std::span<const IndexedValue> newValues, bool quiet)
{
    const auto isTaken = [this](const IndexedValue& value) {
        return Has(value.index) && FindNumber(value.index) != nullptr && !std::isnan(value.value01);
    };
    if (std::ranges::none_of(newValues, isTaken))
        return;
    {
        const MLockGuard guard(GetProcessingLock());
        for (const IndexedValue& value : newValues)
            if (isTaken(value))
                Write(*FindNumber(value.index), At(value.index).scale->from01(value.value01));
        Rebuild();
    }
    if (!quiet)
        NotifyChange();
}

double ParameterSpecialMainBase::GetParameter(int index) const
{
    return Has(index) ? At(index).scale->to01(GetNumber(index)) : 0.0;
}

MString ParameterSpecialMainBase::GetParameterValueName(int index) const
{
    return Has(index) ? At(index).scale->getText(GetNumber(index)) : MString();
}

MString ParameterSpecialMainBase::GetParameterValueNameFrom01(int index, double value01) const
{
    if (!Has(index) || FindNumber(index) == nullptr)
        return GetParameterValueName(index);
    return At(index).scale->getText(At(index).scale->from01(value01));
}

double ParameterSpecialMainBase::ParseParameterValueName(int index, const MString& text) const
{
    double number = 0.0;
    if (!Has(index) || FindNumber(index) == nullptr || !At(index).scale->parse(text, number))
        return GetParameter(index);
    const double value01 = At(index).scale->to01(number);
    return std::isnan(value01) ? GetParameter(index) : value01;
}

bool ParameterSpecialMainBase::IsModulatable(int index) const
{
    return Has(index) && FindNumber(index) != nullptr;
}

double ParameterSpecialMainBase::GetParameterDefaultValue(int index) const
{
    return Has(index) ? At(index).default01 : 0.0;
}

MString ParameterSpecialMainBase::GetSuffix(int index) const
{
    return At(index).suffix;
}

MLock& ParameterSpecialMainBase::GetProcessingLock() noexcept
{
    return GetOwner() != nullptr ? GetOwner()->GetProcessingLock() : ownLock;
}

double ParameterSpecialMainBase::Read(double& number) noexcept
{
    return std::atomic_ref(number).load(std::memory_order_relaxed);
}

void ParameterSpecialMainBase::Write(double& number, double newNumber) noexcept
{
    std::atomic_ref(number).store(newNumber, std::memory_order_relaxed);
}

double ParameterSpecialMainBase::GetNumber(int index) const noexcept
{
    double* const number = FindNumber(index);
    return number != nullptr ? Read(*number) : At(index).scale->from01(At(index).default01);
}
