#include "tools/hosting/Vst3HostObjects.h"

#include <algorithm>
#include <cstring>
#include <string_view>
#include <utility>

using namespace Vst3;

Result Vst3HostApplication::getName(char16_t* name)
{
    constexpr std::u16string_view Name = u"Tonvale host";
    *std::ranges::copy(Name, name).out = u'\0';
    return kResultOk;
}

Result Vst3HostApplication::createInstance(const std::uint8_t* /*classId*/,
                                           const std::uint8_t* /*interfaceId*/, void** object)
{
    *object = nullptr;
    return kNotImplemented;
}

Result Vst3ComponentHandler::beginEdit(ParamID /*id*/)
{
    ++openEdits;
    return kResultOk;
}

Result Vst3ComponentHandler::performEdit(ParamID id, double value)
{
    if (onEdit)
        onEdit(id, value);
    return kResultOk;
}

Result Vst3ComponentHandler::endEdit(ParamID /*id*/)
{
    --openEdits;
    return kResultOk;
}

Result Vst3ComponentHandler::restartComponent(std::int32_t flags)
{
    restartFlags |= flags;
    return kResultOk;
}

Result Vst3MemoryStream::read(void* buffer, std::int32_t count, std::int32_t* bytesRead)
{
    if (buffer == nullptr || count < 0)
        return kInvalidArgument;
    const std::size_t length = std::min(static_cast<std::size_t>(count), bytes.size() - position);
    if (length > 0)
        std::memcpy(buffer, bytes.data() + position, length);
    position += length;
    if (bytesRead != nullptr)
        *bytesRead = static_cast<std::int32_t>(length);
    return kResultOk;
}

Result Vst3MemoryStream::write(void* buffer, std::int32_t count, std::int32_t* bytesWritten)
{
    if (buffer == nullptr || count < 0)
        return kInvalidArgument;
    const auto length = static_cast<std::size_t>(count);
    bytes.resize(std::max(bytes.size(), position + length));
    if (length > 0)
        std::memcpy(bytes.data() + position, buffer, length);
    position += length;
    if (bytesWritten != nullptr)
        *bytesWritten = count;
    return kResultOk;
}

Result Vst3MemoryStream::seek(std::int64_t offset, std::int32_t mode, std::int64_t* newPosition)
{
    const auto size = static_cast<std::int64_t>(bytes.size());
    const auto present = static_cast<std::int64_t>(position);
    const std::int64_t base = mode == kIBSeekSet ? 0 : mode == kIBSeekCur ? present : size;
    position = static_cast<std::size_t>(
        std::clamp(base + std::clamp(offset, -size, size), std::int64_t{0}, size));
    return newPosition != nullptr ? tell(newPosition) : kResultOk;
}

Result Vst3MemoryStream::tell(std::int64_t* tellPosition)
{
    if (tellPosition == nullptr)
        return kInvalidArgument;
    *tellPosition = static_cast<std::int64_t>(position);
    return kResultOk;
}

Result Vst3EventList::getEvent(std::int32_t index, Event& event)
{
    if (index < 0 || index >= getEventCount())
        return kInvalidArgument;
    event = events[static_cast<std::size_t>(index)];
    return kResultOk;
}

Result Vst3EventList::addEvent(Event& event)
{
    events.push_back(event);
    return kResultOk;
}

Result Vst3ParameterQueue::getPoint(std::int32_t index, std::int32_t& sampleOffset, double& value)
{
    if (index < 0 || index >= getPointCount())
        return kInvalidArgument;
    const Point& point = points[static_cast<std::size_t>(index)];
    sampleOffset = point.offset;
    value = point.value;
    return kResultOk;
}

Result Vst3ParameterQueue::addPoint(std::int32_t sampleOffset, double value, std::int32_t& index)
{
    auto place = std::ranges::lower_bound(points, sampleOffset, {}, &Point::offset);
    if (place == points.end() || place->offset != sampleOffset)
        place = points.insert(place, {sampleOffset, value});
    place->value = value;
    index = static_cast<std::int32_t>(place - points.begin());
    return kResultOk;
}

IParamValueQueue* Vst3ParameterChanges::getParameterData(std::int32_t index)
{
    const bool isInside = index >= 0 && index < getParameterCount();
    return isInside ? queues[static_cast<std::size_t>(index)].get() : nullptr;
}

IParamValueQueue* Vst3ParameterChanges::addParameterData(const ParamID& id, std::int32_t& index)
{
    auto place = std::ranges::find_if(queues, [id](const auto& queue)
                                      { return queue->getParameterId() == id; });
    if (place == queues.end())
        place = queues.insert(place, std::make_unique<Vst3ParameterQueue>(id));
    index = static_cast<std::int32_t>(place - queues.begin());
    return place->get();
}

void Vst3ParameterChanges::Add(ParamID id, std::int32_t offset, double value)
{
    std::int32_t ignored = 0;
    addParameterData(id, ignored)->addPoint(offset, value, ignored);
}
