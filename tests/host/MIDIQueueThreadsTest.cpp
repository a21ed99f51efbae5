#include "host/MIDIQueue.h"

#include <thread>

#include <gtest/gtest.h>

namespace
{

TEST(MIDIQueueThreads, HandsOverAllMessagesInTheirOrder)
{
    constexpr int Messages = 3000; // fewer than fit, as nobody may come to take them
    MIDIQueue queue;
    std::thread writer(
        [&queue]
        {
            for (int i = 0; i < Messages; ++i)
            {
                const std::uint8_t bytes[] = {0x90, static_cast<std::uint8_t>(i & 127), 100};
                queue.Add(i, bytes);
            }
        });
    int next = 0;
    while (next < Messages)
        for (const MIDIQueue::Message& message : queue.Take())
        {
            ASSERT_EQ(message.offset, next);
            ASSERT_EQ(message.bytes[1], next & 127);
            ++next;
        }
    writer.join();
}

TEST(MIDIQueue, DropsWhatComesWhileItIsFull)
{
    constexpr std::uint8_t Bytes[] = {0x90, 60, 100};
    MIDIQueue queue;
    for (int round = 0; round < 2; ++round)
    {
        for (std::size_t i = 0; i < MIDIQueue::Capacity + 5; ++i)
            queue.Add(0, Bytes);
        EXPECT_EQ(queue.Take().size(), MIDIQueue::Capacity);
        EXPECT_TRUE(queue.Take().empty());
    }
}

} // namespace
