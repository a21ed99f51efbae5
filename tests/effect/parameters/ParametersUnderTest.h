#pragma once

#include <array>
#include <string>

#include "effect/MAudioEffectPlugin.h"
#include "effect/MPluginParameterRecord.h"
#include "effect/MPluginSpecialRecord.h"
#include "effect/parameters/MAutomationAdapter.h"
#include "effect/parameters/MParameterList.h"
#include "effect/parameters/MParameterOwner.h"

/// Counts how often it was taken.
class CountingLock final : public MLock
{
public:
    int Lock(int timeout) noexcept override
    {
        const int result = MLock::Lock(timeout);
        ++taken;
        ++depth;
        return result;
    }
    void Unlock() noexcept override
    {
        --depth;
        MLock::Unlock();
    }

    int taken = 0;
    int depth = 0;
};

/// Writes down what it is told, for one thread.
class FakeOwner : public MParameterOwner
{
public:
    FakeOwner() = default;
    FakeOwner(const FakeOwner&) = delete;
    FakeOwner& operator=(const FakeOwner&) = delete;
    virtual ~FakeOwner() = default;

    MLock& GetProcessingLock() noexcept override { return lock; }
    void NeedUpdateEditor(MAutomationAdapter& /*adapter*/) override { log += "editor "; }
    void OnCustomParameterChanged(MAutomationAdapter& /*adapter*/) override { log += "custom "; }

    CountingLock lock;
    std::string log;
};

/// Publishes what a test puts in, in either form of list, and writes into the log of its owner.
class FakePlugin final : public MAudioEffectPlugin
{
public:
    static constexpr std::size_t Count = 6;

    void Publish(bool isIndirect, int parameterCount, int specialCount)
    {
        info.parameters = records.data();
        for (std::size_t i = 0; i < Count; ++i)
            pointers[i] = &records[Count - 1 - i];
        info.parameterPointers = pointers.data();
        (isIndirect ? info.parameterPointerCount : info.parameterCount) = parameterCount;
        if (isIndirect)
            info.flags |= MPluginInfo::IndirectParameters;
        info.specials = specials.data();
        info.specialCount = specialCount;
    }
    bool SharesLock(const MLock& other) const noexcept { return &GetLock() == &other; }

    void ParameterChanged(std::int32_t index) override
    {
        owner.log += "changed" + std::to_string(index) + ' ';
    }
    void Update() override { owner.log += "update "; }
    std::int32_t InitProcessing(std::int32_t, std::int32_t) override { return 0; }
    void Process(MProcessingContext*, const float* const*, float* const*, std::int32_t) override {}

    std::array<MPluginParameterRecord, Count> records;
    std::array<MPluginParameterRecord*, Count> pointers{};
    std::array<MPluginSpecialRecord, Count> specials;
    FakeOwner owner;
};
