#pragma once

#include <concepts>

/// What a value starts from: a number of its own, a variable outside, or nothing. Made where a
/// value is constructed and done with then.
template <typename Stored>
class MValueBinding
{
public:
    MValueBinding() noexcept = default;
    MValueBinding(Stored value) noexcept : local(value), hasValue(true) {}
    /// @p outside has to outlive the value; null is nothing. (A template, so that 0 is a number.)
    template <std::same_as<Stored*> Pointer>
    MValueBinding(Pointer outside) noexcept : variable(outside),
                                              hasValue(outside != nullptr)
    {
    }

    /// This one, or @p fallback in the place of nothing.
    MValueBinding Or(Stored fallback) const noexcept { return hasValue ? *this : fallback; }

    /// Null unless it is bound to a variable outside.
    Stored* GetVariable() const noexcept { return variable; }
    /// The number of its own; 0 unless it has one.
    Stored GetLocal() const noexcept { return local; }

private:
    Stored local{};
    Stored* variable = nullptr;
    bool hasValue = false;
};
