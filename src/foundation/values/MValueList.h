#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <ranges>

#include "foundation/values/MValueBinding.h"
#include "foundation/values/MValueChoice.h"
#include "foundation/values/Rounding.h"

/// A sequence of names.
template <typename Names, typename Name>
concept MNameSequence =
    std::convertible_to<Name, MString> && std::ranges::random_access_range<Names> &&
    std::convertible_to<std::ranges::range_reference_t<Names>, Name>;

/// One of a list of names that is known at run time: @p Names is a std::span of literals, or a
/// reference to a list, which has to outlive the value and may change its length meanwhile.
template <typename Name, MNameSequence<Name> Names, std::signed_integral Index = int>
class MValueList : public MValueChoice
{
public:
    using Binding = MValueBinding<Index>;

    /// Limits the variable; what it then holds is the default.
    explicit MValueList(Names allNames, Binding binding = {})
        : names(allNames),
          local(binding.GetLocal()),
          variable(binding.GetVariable() != nullptr ? binding.GetVariable() : &local)
    {
        TakeDefault();
    }

    Index Get() const noexcept { return *variable; }

protected:
    int GetCount() const override { return Saturated<int>(std::ranges::ssize(names)); }
    MString NameOf(int index) const override { return std::ranges::begin(names)[index]; }
    int Find(const MString& name) const override
    {
        int index = 0;
        for (const Name& candidate : names)
        {
            if (name == candidate)
                return index;
            ++index;
        }
        return -1;
    }
    int GetIndex() const override { return Saturated<int>(*variable); }
    void PutIndex(int index) override { *variable = Saturated<Index>(index); }

private:
    Names names;
    Index local; ///< the variable of a value that is bound to none
    Index* variable;
};
