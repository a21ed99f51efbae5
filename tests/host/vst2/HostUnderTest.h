#pragma once

#include <algorithm>
#include <functional>
#include <memory>
#include <vector>

#include "foundation/threads/MException.h"
#include "host/vst2/MAudioPluginVSTAdapter.h"
#include "tests/host/AutomationUnderTest.h"

namespace Vst2
{

/// A host that keeps what it is called with, and drives one effect through its record alone.
/// One at a time: the effect's calls go to the last one that was made.
class HostUnderTest
{
public:
    struct Call
    {
        HostOpcode opcode;
        std::int32_t index;
        std::intptr_t value;
        float opt;
    };

    explicit HostUnderTest(std::intptr_t hostVersion = 2400) : version(hostVersion)
    {
        current = this;
    }
    ~HostUnderTest()
    {
        if (effect != nullptr)
            Ask(EffectOpcode::Close);
    }
    HostUnderTest(const HostUnderTest&) = delete;
    HostUnderTest& operator=(const HostUnderTest&) = delete;

    static std::intptr_t OnCall(AEffect* /*effect*/, std::int32_t opcode, std::int32_t index,
                                std::intptr_t value, void* ptr, float opt)
    {
        return current->Answer(static_cast<HostOpcode>(opcode), index, value, ptr, opt);
    }

    /// Loads the product.
    AEffect& Load() { return *(effect = CreateEffect(&OnCall)); }
    /// Loads @p plugin, which then is the effect's.
    MAudioPluginVSTAdapter& Load(std::unique_ptr<MAudioPlugin> plugin)
    {
        auto* const adapter = new MAudioPluginVSTAdapter(&OnCall, std::move(plugin));
        effect = &adapter->GetAEffect();
        return *adapter;
    }
    std::intptr_t Ask(EffectOpcode opcode, std::int32_t index = 0, std::intptr_t value = 0,
                      void* ptr = nullptr, float opt = 0.0f) const
    {
        return effect->dispatcher(effect, static_cast<std::int32_t>(opcode), index, value, ptr,
                                  opt);
    }
    int Count(HostOpcode opcode) const
    {
        return static_cast<int>(std::ranges::count(calls, opcode, &Call::opcode));
    }
    std::vector<std::byte> GetChunk(int index = 0) const
    {
        void* data = nullptr;
        const std::intptr_t size = Ask(EffectOpcode::GetChunk, index, 0, &data);
        const auto* const bytes = static_cast<const std::byte*>(data);
        return {bytes, bytes + size};
    }
    std::intptr_t SetChunk(std::vector<std::byte> bytes, int index = 0) const
    {
        return Ask(EffectOpcode::SetChunk, index, static_cast<std::intptr_t>(bytes.size()),
                   bytes.data());
    }
    std::vector<float> GetParameters() const
    {
        std::vector<float> values;
        values.reserve(static_cast<std::size_t>(effect->numParams));
        for (int i = 0; i < effect->numParams; ++i)
            values.push_back(effect->getParameter(effect, i));
        return values;
    }
    /// Sends one channel message.
    std::intptr_t Send(int offset, std::array<std::uint8_t, 4> bytes) const
    {
        VstMidiEvent event;
        event.deltaFrames = offset;
        event.midiData = bytes;
        VstEvents events;
        events.numEvents = 1;
        events.events[0] = reinterpret_cast<VstEvent*>(&event);
        return Ask(EffectOpcode::ProcessEvents, 0, 0, &events);
    }

    std::intptr_t version;
    AEffect* effect = nullptr;
    std::vector<Call> calls;
    std::vector<std::vector<VstMidiEvent>> sent; ///< by call
    const VstTimeInfo* time = nullptr;
    std::function<void(const Call&)> onCall;

private:
    std::intptr_t Answer(HostOpcode opcode, std::int32_t index, std::intptr_t value, void* ptr,
                         float opt)
    {
        const Call call{opcode, index, value, opt};
        calls.push_back(call);
        if (onCall)
            onCall(call);
        if (opcode == HostOpcode::Version)
            return version;
        if (opcode == HostOpcode::GetTime)
            return reinterpret_cast<std::intptr_t>(time);
        if (opcode == HostOpcode::ProcessEvents)
        {
            const auto* const events = static_cast<const VstEvents*>(ptr);
            const VstEvent* const* const records = events->events.data();
            std::vector<VstMidiEvent>& list = sent.emplace_back();
            for (int i = 0; i < events->numEvents; ++i)
                list.push_back(*reinterpret_cast<const VstMidiEvent*>(records[i]));
        }
        return opcode == HostOpcode::CanDo || opcode == HostOpcode::SizeWindow;
    }

    static inline HostUnderTest* current = nullptr;
};

/// A plugin that keeps what it is handed, and answers as told.
class PluginUnderTest final : public MAudioPlugin
{
public:
    struct Event
    {
        int offset;
        int note;
        bool operator==(const Event&) const = default;
    };

    PluginUnderTest(int busesIn, int busesOut, int busChannels)
    {
        SetBuses(busesIn, busesOut, busChannels);
        AddAdapter(row);
    }
    void InitProcessing() override
    {
        ++preparations;
        TakeLayout();
        if (std::exchange(latency, nextLatency) != nextLatency && GetAdapter() != nullptr)
            GetAdapter()->LatencyChanged();
    }
    void ProcessAudio(const float* const* blockInputs, float* const* blockOutputs, int,
                      bool) noexcept override
    {
        ++blocks;
        std::copy_n(blockInputs, MaxChannels, inputs.begin());
        std::copy_n(blockOutputs, MaxChannels, outputs.begin());
        for (const auto& [offset, note] : toSend)
        {
            const std::uint8_t bytes[] = {0x90, static_cast<std::uint8_t>(note), 100};
            GenerateMIDIEvent(offset, bytes);
        }
        toSend.clear();
    }
    bool ProcessMIDIEvent(int offset, const std::uint8_t* bytes) override
    {
        received.push_back({offset, bytes[1]});
        return true;
    }
    void Store(const MStorageDescriptor&) override { throw MException("This state is lost."); }
    void StoreSettings(const MStorageDescriptor&) override {}
    bool IsBypassed() const noexcept override { return false; }
    void SetBypassed(bool) override {}
    void OnCustomParameterChanged(MAutomationAdapter&) override {}

    void SetMIDI(bool wants, bool sends)
    {
        wantsMIDIInput = wants;
        sendsMIDIOutput = sends;
    }

    RowAdapter row{2};
    int nextLatency = 0;
    int preparations = 0;
    int blocks = 0;
    std::array<const float*, MaxChannels> inputs{};
    std::array<float*, MaxChannels> outputs{};
    std::vector<Event> received;
    std::vector<Event> toSend; ///< with the next block
};

} // namespace Vst2
