#pragma once

#include <atomic>
#include <cstddef>
#include <functional>
#include <memory>
#include <span>
#include <vector>

#include "host/vst3/Vst3Controller.h"
#include "host/vst3/Vst3Process.h"

/// What a VST3 host is made of besides the plugin. Plugins count references as they like, but the
/// host owns the object, and outlives the plugin; plugins that hold one at their end show by the
/// count.
template <typename Interface>
class Vst3HostObject : public Interface
{
public:
    virtual ~Vst3HostObject() = default;
    Vst3HostObject() = default;
    Vst3HostObject(const Vst3HostObject&) = delete;
    Vst3HostObject& operator=(const Vst3HostObject&) = delete;

    Vst3::Result queryInterface(const std::uint8_t* id, void** object) final
    {
        const bool isKnown = Vst3::IsUid(id, Interface::Id) || Vst3::IsUid(id, Vst3::FUnknown::Id);
        *object = isKnown ? static_cast<Interface*>(this) : nullptr;
        if (!isKnown)
            return Vst3::kNoInterface;
        addRef();
        return Vst3::kResultOk;
    }
    std::uint32_t addRef() final { return references.fetch_add(1) + 1; }
    std::uint32_t release() final { return references.fetch_sub(1) - 1; }

    /// That others hold.
    std::uint32_t CountReferences() const noexcept { return references.load(); }

private:
    std::atomic<std::uint32_t> references = 0;
};

/// Says who the host is; has no messages to give.
class Vst3HostApplication final : public Vst3HostObject<Vst3::IHostApplication>
{
public:
    Vst3::Result getName(char16_t* name) override;
    Vst3::Result createInstance(const std::uint8_t* classId, const std::uint8_t* interfaceId,
                                void** object) override;
};

/// Passes on what the plugin changes by itself.
class Vst3ComponentHandler final : public Vst3HostObject<Vst3::IComponentHandler>
{
public:
    Vst3::Result beginEdit(Vst3::ParamID id) override;
    Vst3::Result performEdit(Vst3::ParamID id, double value) override;
    Vst3::Result endEdit(Vst3::ParamID id) override;
    Vst3::Result restartComponent(std::int32_t flags) override;

    std::function<void(Vst3::ParamID, double)> onEdit; ///< may be empty
    std::int32_t restartFlags = 0;                     ///< all that came
    int openEdits = 0;                                 ///< begun and not ended
};

/// Bytes in memory.
class Vst3MemoryStream final : public Vst3HostObject<Vst3::IBStream>
{
public:
    Vst3MemoryStream() = default;
    explicit Vst3MemoryStream(std::span<const std::byte> content)
        : bytes(content.begin(), content.end())
    {
    }

    Vst3::Result read(void* buffer, std::int32_t count, std::int32_t* bytesRead) override;
    Vst3::Result write(void* buffer, std::int32_t count, std::int32_t* bytesWritten) override;
    Vst3::Result seek(std::int64_t offset, std::int32_t mode, std::int64_t* newPosition) override;
    Vst3::Result tell(std::int64_t* tellPosition) override;

    const std::vector<std::byte>& GetBytes() const noexcept { return bytes; }

private:
    std::vector<std::byte> bytes;
    std::size_t position = 0; ///< at most the size
};

class Vst3EventList final : public Vst3HostObject<Vst3::IEventList>
{
public:
    std::int32_t getEventCount() override { return static_cast<std::int32_t>(events.size()); }
    Vst3::Result getEvent(std::int32_t index, Vst3::Event& event) override;
    Vst3::Result addEvent(Vst3::Event& event) override;

    std::vector<Vst3::Event> events;
};

/// The points of one parameter, by rising offset.
class Vst3ParameterQueue final : public Vst3HostObject<Vst3::IParamValueQueue>
{
public:
    struct Point
    {
        std::int32_t offset; ///< samples
        double value;
    };

    explicit Vst3ParameterQueue(Vst3::ParamID parameterId) noexcept : id(parameterId) {}

    Vst3::ParamID getParameterId() override { return id; }
    std::int32_t getPointCount() override { return static_cast<std::int32_t>(points.size()); }
    Vst3::Result getPoint(std::int32_t index, std::int32_t& sampleOffset, double& value) override;
    /// A point at the same offset is replaced.
    Vst3::Result addPoint(std::int32_t sampleOffset, double value, std::int32_t& index) override;

private:
    Vst3::ParamID id;
    std::vector<Point> points;
};

class Vst3ParameterChanges final : public Vst3HostObject<Vst3::IParameterChanges>
{
public:
    std::int32_t getParameterCount() override { return static_cast<std::int32_t>(queues.size()); }
    Vst3::IParamValueQueue* getParameterData(std::int32_t index) override;
    Vst3::IParamValueQueue* addParameterData(const Vst3::ParamID& id, std::int32_t& index) override;

    void Add(Vst3::ParamID id, std::int32_t offset, double value);
    void Clear() { queues.clear(); }
    bool IsEmpty() const noexcept { return queues.empty(); }

private:
    std::vector<std::unique_ptr<Vst3ParameterQueue>> queues;
};
