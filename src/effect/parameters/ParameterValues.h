#pragma once

#include "effect/parameters/ParameterBase.h"

/// How the values of one type of record map and show; defined where ParameterValueT is.
namespace parametermappings
{

struct Float;
struct Int;
struct Enum;
struct Bool;
struct Group;

} // namespace parametermappings

/// The parameter object over a record of one type. @p Base is ParameterBase or ParameterBaseCustom,
/// whose constructor it has.
template <typename Base, typename Mapping>
class ParameterValueT final : public Base
{
public:
    using Base::Base;

    MAutomationType GetParameterType(int index) const override;
    double GetParameterDefaultValue(int index) const override;

protected:
    using Draft = ParameterRecordBase::Draft;

    double To01(const MPluginParameterRecord& from) const noexcept override;
    void From01(MPluginParameterRecord& to, double value01) const noexcept override;
    double ToRestorable01(const MPluginParameterRecord& from) const noexcept override;
    MString GetPlainText(const MPluginParameterRecord& from) const override;
    void ParsePlainText(MPluginParameterRecord& to, const MString& text) const override;
    void CopyRange(Draft& to) const noexcept override;
};

/// A double on a scale that bends by the record's law. The default, unlike the value, is placed
/// without the law.
template <typename Base>
using ParameterFloatT = ParameterValueT<Base, parametermappings::Float>;

/// A whole number. What is set is cut toward zero, so the maximum is reached only at 1.0, and who
/// means a whole number asks for GetRestorableParameter. What no int can hold is not set.
template <typename Base>
using ParameterIntT = ParameterValueT<Base, parametermappings::Int>;

/// One of some names. Set, the entries take equal pieces of the scale; read, they stand at equal
/// distances with the first and the last at its ends: on purpose, so that both ends are reached.
template <typename Base>
using ParameterEnumT = ParameterValueT<Base, parametermappings::Enum>;

/// Off or, from 0.5 on, on.
template <typename Base>
using ParameterBoolT = ParameterValueT<Base, parametermappings::Bool>;

/// The same over a byte elsewhere; off, and not to be set, where there is none.
template <typename Base>
using ParameterGroupT = ParameterValueT<Base, parametermappings::Group>;

extern template class ParameterValueT<ParameterBase, parametermappings::Float>;
extern template class ParameterValueT<ParameterBase, parametermappings::Int>;
extern template class ParameterValueT<ParameterBase, parametermappings::Enum>;
extern template class ParameterValueT<ParameterBase, parametermappings::Bool>;
extern template class ParameterValueT<ParameterBase, parametermappings::Group>;
extern template class ParameterValueT<ParameterBaseCustom, parametermappings::Float>;
extern template class ParameterValueT<ParameterBaseCustom, parametermappings::Bool>;
