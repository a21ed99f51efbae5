#pragma once

#include <utility>

namespace Vst3
{

/// Holds one reference of a counted object, or none. One thread at a time; copies may live on
/// others.
template <typename Interface>
class Reference
{
public:
    Reference() noexcept = default;
    /// Takes a reference more of @p newObject, which may be null.
    explicit Reference(Interface* newObject) : object(newObject)
    {
        if (object != nullptr)
            object->addRef();
    }
    Reference(const Reference& other) : Reference(other.object) {}
    Reference(Reference&& other) noexcept : object(std::exchange(other.object, nullptr)) {}
    Reference& operator=(Reference other) noexcept
    {
        std::swap(object, other.object);
        return *this;
    }
    ~Reference()
    {
        if (object != nullptr)
            object->release();
    }

    Interface* operator->() const noexcept { return object; }
    explicit operator bool() const noexcept { return object != nullptr; }

private:
    Interface* object = nullptr;
};

} // namespace Vst3
