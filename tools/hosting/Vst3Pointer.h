#pragma once

#include <utility>

#include "host/vst3/Vst3Base.h"

/// Owns one reference of a VST3 interface, or is null.
template <typename Interface>
class Vst3Pointer
{
public:
    Vst3Pointer() noexcept = default;
    Vst3Pointer(Vst3Pointer&& other) noexcept : object(std::exchange(other.object, nullptr)) {}
    Vst3Pointer& operator=(Vst3Pointer&& other) noexcept
    {
        std::swap(object, other.object);
        return *this;
    }
    ~Vst3Pointer() { Reset(); }

    /// Another interface of @p source, which may be null; null if it has none.
    template <typename Source>
    static Vst3Pointer Query(Source* source)
    {
        Vst3Pointer found;
        void* object = nullptr;
        if (source != nullptr &&
            source->queryInterface(Interface::Id.data(), &object) == Vst3::kResultOk)
            found.object = static_cast<Interface*>(object);
        return found;
    }
    /// What @p give writes to the pointer that it is called with, with the reference that comes.
    template <typename Function>
    static Vst3Pointer Take(Function give)
    {
        Vst3Pointer taken;
        void* object = nullptr;
        if (give(&object) == Vst3::kResultOk)
            taken.object = static_cast<Interface*>(object);
        return taken;
    }

    void Reset() noexcept
    {
        if (object != nullptr)
            std::exchange(object, nullptr)->release();
    }
    Interface* Get() const noexcept { return object; }
    Interface* operator->() const noexcept { return object; }
    explicit operator bool() const noexcept { return object != nullptr; }

private:
    Interface* object = nullptr;
};
