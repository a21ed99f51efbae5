#pragma once

#include <cstdint>
#include <iterator>
#include <span>
#include <type_traits>

#include "foundation/values/MNameTable.h"
#include "foundation/values/MValueBinding.h"
#include "foundation/values/MValueChoice.h"
#include "foundation/values/Rounding.h"

/// The names of an enumeration whose values are 0, 1, 2... Who declares such an enumeration
/// specialises it with a static array of literals, Names.
template <typename Enum>
struct MEnumNames;

template <typename Enum>
concept MNamedEnum = std::is_enum_v<Enum> &&(std::size(MEnumNames<Enum>::Names) > 0);

/// A value of an enumeration.
template <MNamedEnum Enum>
class MValueEnum : public MValueChoice
{
public:
    using Binding = MValueBinding<Enum>;

    /// Limits the variable; what it then holds is the default.
    explicit MValueEnum(Binding binding = {})
        : local(binding.GetLocal()),
          variable(binding.GetVariable() != nullptr ? binding.GetVariable() : &local)
    {
        TakeDefault();
    }

    Enum Get() const noexcept { return *variable; }
    Enum GetDefault() const noexcept { return static_cast<Enum>(GetDefaultIndex()); }

protected:
    int GetCount() const override { return static_cast<int>(std::size(MEnumNames<Enum>::Names)); }
    MString NameOf(int index) const override
    {
        return MEnumNames<Enum>::Names[static_cast<std::size_t>(index)];
    }
    int Find(const MString& name) const override
    {
        static const MNameTable table{std::span<const char* const>(MEnumNames<Enum>::Names)};
        return table.Find(name);
    }
    int GetIndex() const override { return Saturated<int>(static_cast<std::int64_t>(*variable)); }
    void PutIndex(int index) override
    {
        *variable = static_cast<Enum>(Saturated<std::underlying_type_t<Enum>>(index));
    }

private:
    Enum local; ///< the variable of a value that is bound to none
    Enum* variable;
};
