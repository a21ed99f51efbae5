#pragma once

#include <algorithm>
#include <atomic>
#include <cstring>
#include <deque>
#include <string>
#include <vector>

#include "host/vst3/Vst3Component.h"
#include "host/vst3/Vst3Controller.h"
#include "host/vst3/Vst3PluginFactory.h"

/// A host as simple as can be: its objects live where they are made, and count their references.
namespace fakehost
{

template <typename Interface>
class Counted : public Interface
{
public:
    virtual ~Counted() = default;
    Vst3::Result queryInterface(const std::uint8_t*, void** object) override
    {
        *object = nullptr;
        return Vst3::kNoInterface;
    }
    std::uint32_t addRef() override { return ++references; }
    std::uint32_t release() override { return --references; }

    std::atomic<std::uint32_t> references = 0;
};

class Handler final : public Counted<Vst3::IComponentHandler>
{
public:
    Vst3::Result beginEdit(Vst3::ParamID id) override
    {
        log += "begin " + std::to_string(id) + ";";
        return Vst3::kResultOk;
    }
    Vst3::Result performEdit(Vst3::ParamID id, double value) override
    {
        log += "perform " + std::to_string(id) + ";";
        if (echo != nullptr)
            echo->setParamNormalized(id, 1.0 - value); // what must not reach the plugin
        return Vst3::kResultOk;
    }
    Vst3::Result endEdit(Vst3::ParamID id) override
    {
        log += "end " + std::to_string(id) + ";";
        return Vst3::kResultOk;
    }
    Vst3::Result restartComponent(std::int32_t flags) override
    {
        log += "restart " + std::to_string(flags) + ";";
        return Vst3::kResultOk;
    }

    Vst3::IEditController* echo = nullptr;
    std::string log;
};

class Stream final : public Counted<Vst3::IBStream>
{
public:
    Vst3::Result read(void* buffer, std::int32_t count, std::int32_t* bytesRead) override
    {
        const auto n = std::min({static_cast<std::size_t>(count), most, bytes.size() - position});
        std::memcpy(buffer, bytes.data() + position, n);
        position += n;
        if (bytesRead != nullptr)
            *bytesRead = claim != 0 ? claim : static_cast<std::int32_t>(n);
        return n > 0 ? Vst3::kResultOk : Vst3::kResultFalse;
    }
    Vst3::Result write(void* buffer, std::int32_t count, std::int32_t* bytesWritten) override
    {
        const std::size_t n =
            std::min({static_cast<std::size_t>(count), most, room - bytes.size()});
        bytes.append(static_cast<const char*>(buffer), n);
        if (bytesWritten != nullptr)
            *bytesWritten = static_cast<std::int32_t>(n);
        return Vst3::kResultOk;
    }
    Vst3::Result seek(std::int64_t, std::int32_t, std::int64_t*) override
    {
        return Vst3::kNotImplemented;
    }
    Vst3::Result tell(std::int64_t*) override { return Vst3::kNotImplemented; }

    std::string bytes;
    std::size_t position = 0;
    std::size_t most = 1 << 30; ///< bytes of one call
    std::size_t room = 1 << 30;
    std::int32_t claim = 0; ///< told instead of the bytes that were read
};

class Queue final : public Counted<Vst3::IParamValueQueue>
{
public:
    Queue(Vst3::ParamID parameter, std::vector<double> values)
        : id(parameter),
          points(std::move(values))
    {
    }
    Vst3::ParamID getParameterId() override { return id; }
    std::int32_t getPointCount() override { return static_cast<std::int32_t>(points.size()); }
    Vst3::Result getPoint(std::int32_t index, std::int32_t& offset, double& value) override
    {
        if (index < 0 || index >= getPointCount())
            return Vst3::kInvalidArgument;
        offset = index;
        value = points[static_cast<std::size_t>(index)];
        return Vst3::kResultOk;
    }
    Vst3::Result addPoint(std::int32_t, double value, std::int32_t&) override
    {
        points.push_back(value);
        return Vst3::kResultOk;
    }

    Vst3::ParamID id;
    std::vector<double> points;
};

class Changes final : public Counted<Vst3::IParameterChanges>
{
public:
    std::int32_t getParameterCount() override
    {
        return static_cast<std::int32_t>(queues.size()) + 1;
    }
    /// The first is null.
    Vst3::IParamValueQueue* getParameterData(std::int32_t index) override
    {
        return index > 0 ? &queues[static_cast<std::size_t>(index) - 1] : nullptr;
    }
    Vst3::IParamValueQueue* addParameterData(const Vst3::ParamID& id, std::int32_t&) override
    {
        return &queues.emplace_back(id, std::vector<double>{});
    }

    std::deque<Queue> queues;
};

class Events final : public Counted<Vst3::IEventList>
{
public:
    std::int32_t getEventCount() override { return static_cast<std::int32_t>(list.size()); }
    Vst3::Result getEvent(std::int32_t index, Vst3::Event& event) override
    {
        if (index < 0 || index >= getEventCount())
            return Vst3::kInvalidArgument;
        event = list[static_cast<std::size_t>(index)];
        return Vst3::kResultOk;
    }
    Vst3::Result addEvent(Vst3::Event& event) override
    {
        list.push_back(event);
        return Vst3::kResultOk;
    }

    std::vector<Vst3::Event> list;
};

/// A note on, a note off, or a pressure.
inline Vst3::Event Note(std::uint16_t type, int channel, int pitch, float velocity, int offset)
{
    Vst3::Event event{};
    event.type = type;
    event.sampleOffset = offset;
    if (type == Vst3::Event::kNoteOffEvent)
        event.noteOff = {std::int16_t(channel), std::int16_t(pitch), velocity, -1, 0.0f};
    else if (type == Vst3::Event::kPolyPressureEvent)
        event.polyPressure = {std::int16_t(channel), std::int16_t(pitch), velocity, -1};
    else
        event.noteOn = {std::int16_t(channel), std::int16_t(pitch), 0.0f, velocity, 0, -1};
    return event;
}

/// One of the plugin's own, from the factory, with all interfaces that the tests use.
class Instance
{
public:
    Instance()
    {
        Vst3::PClassInfo info{};
        Vst3::PluginFactory& factory = Vst3::PluginFactory::Get();
        factory.getClassInfo(0, &info);
        factory.createInstance(reinterpret_cast<const char*>(info.cid.data()),
                               reinterpret_cast<const char*>(Vst3::IComponent::Id.data()),
                               reinterpret_cast<void**>(&component));
        // NOLINTBEGIN(cppcoreguidelines-prefer-member-initializer): they ask the component
        processor = Ask<Vst3::IAudioProcessor>();
        controller = Ask<Vst3::IEditController>();
        // NOLINTEND(cppcoreguidelines-prefer-member-initializer)
    }
    ~Instance() { component->release(); }
    Instance(const Instance&) = delete;
    Instance& operator=(const Instance&) = delete;

    void Start(int rate = 48000, int maxBlock = 512) const
    {
        component->initialize(nullptr);
        Vst3::ProcessSetup setup{Vst3::kRealtime, Vst3::kSample32, maxBlock, double(rate)};
        processor->setupProcessing(setup);
        component->setActive(1);
    }

    /// Borrowed; null if there is no such interface.
    template <typename Interface>
    Interface* Ask() const
    {
        void* found = nullptr;
        component->queryInterface(Interface::Id.data(), &found);
        if (found != nullptr)
            component->release();
        return static_cast<Interface*>(found);
    }

    Vst3::IComponent* component = nullptr;
    Vst3::IAudioProcessor* processor = nullptr;
    Vst3::IEditController* controller = nullptr;
};

/// Blocks of one bus on each side, to be changed before Run.
class Block
{
public:
    explicit Block(int sampleCount, int channels = 2, float input = 0.0f)
    {
        for (int i = 0; i < channels; ++i)
        {
            inputs.emplace_back(static_cast<std::size_t>(sampleCount), input);
            outputs.emplace_back(static_cast<std::size_t>(sampleCount), Untouched);
        }
        for (std::size_t i = 0; i < inputs.size(); ++i)
        {
            inputPointers.push_back(inputs[i].data());
            outputPointers.push_back(outputs[i].data());
        }
        inputBus = {channels, 0, {inputPointers.data()}};
        outputBus = {channels, ~std::uint64_t{0}, {outputPointers.data()}};
        data.numSamples = sampleCount;
        data.numInputs = 1;
        data.numOutputs = 1;
        data.inputs = &inputBus;
        data.outputs = &outputBus;
    }
    Block(const Block&) = delete;
    Block& operator=(const Block&) = delete;

    static constexpr float Untouched = 77.0f;

    std::vector<std::vector<float>> inputs;
    std::vector<std::vector<float>> outputs;
    std::vector<float*> inputPointers;
    std::vector<float*> outputPointers;
    Vst3::AudioBusBuffers inputBus{};
    Vst3::AudioBusBuffers outputBus{};
    Vst3::ProcessData data{};
};

} // namespace fakehost
