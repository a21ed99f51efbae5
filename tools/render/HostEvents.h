#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "tools/render/NotePlan.h"

class HostedPlugin;

/// What a host sends to the plugin in the course of a sound.
class HostEvents
{
public:
    static constexpr std::int64_t Never = INT64_MAX;

    // Frames count from the start.

    /// In the order of time.
    void AddMessage(const ScheduledMessage& message) { messages.push_back(message); }
    /// The parameter @p index goes to @p value01, 0.0 to 1.0.
    void AddValue(std::int64_t frame, int index, double value01);

    const std::vector<ScheduledMessage>& GetMessages() const noexcept { return messages; }

    /// Sets the values that are due at @p position, where a block begins.
    void SetDueValues(HostedPlugin& plugin, std::int64_t position);
    /// Sends the messages that are due at @p position, and returns the frame of the next, where a
    /// block has to begin, so that it is exact; Never behind the last.
    std::int64_t SendDueMessages(HostedPlugin& plugin, std::int64_t position);

private:
    struct Value
    {
        std::int64_t frame;
        int index;
        double value01;
    };

    std::vector<ScheduledMessage> messages;
    std::size_t nextMessage = 0;
    std::vector<Value> values; ///< in the order of time
    std::size_t nextValue = 0;
};
