#include "foundation/threads/MEventProcessor.h"

#include <array>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "foundation/threads/MException.h"
#include "foundation/threads/MGuard.h"

namespace
{

std::string traced;

class Writer : public MEventTarget
{
public:
    explicit Writer(std::string& text) : log(text) {}

    void OnWrite(char letter) { log += letter; }
    void OnDo(std::function<void()>& deed) { deed(); }

private:
    std::string& log;
};

struct MEventProcessorTest : testing::Test
{
    void Write(char letter) { processor.Post<&Writer::OnWrite>(*writer, letter); }
    void Do(std::function<void()> deed) { processor.Post<&Writer::OnDo>(*writer, std::move(deed)); }

    std::string log;
    MEventProcessor processor;
    std::unique_ptr<Writer> writer = std::make_unique<Writer>(log);
};

TEST_F(MEventProcessorTest, WorksInOrderAndLeavesNewItemsForTheNextTime)
{
    Write('a');
    Do([this] { Write('c'); });
    Write('b');
    processor.Process();
    EXPECT_EQ(log, "ab");
    processor.Process();
    EXPECT_EQ(log, "abc");
    processor.Process();
    EXPECT_EQ(log, "abc");
}

TEST_F(MEventProcessorTest, AModalLoopGoesOnWithTheNextItem)
{
    Write('a');
    Do(
        [this]
        {
            Write('c');
            processor.Process();
            Write('d');
        });
    Write('b');
    processor.Process();
    EXPECT_EQ(log, "abc");
    processor.Process();
    EXPECT_EQ(log, "abcd");
}

TEST_F(MEventProcessorTest, ForgetsTheItemsOfTargetsThatEnd)
{
    Writer other(log);
    Write('a');
    processor.Post<&Writer::OnWrite>(other, 'b');
    processor.Post<&Writer::OnDo>(other, std::function<void()>([this] { writer.reset(); }));
    Write('c');
    processor.Post<&Writer::OnWrite>(other, 'd');
    processor.Process();
    EXPECT_EQ(log, "abd");

    processor.Post<&Writer::OnWrite>(other, 'e');
    processor.Remove(other);
    processor.Post<&Writer::OnWrite>(other, 'f');
    processor.Process();
    EXPECT_EQ(log, "abdf");
    processor.Post<&Writer::OnWrite>(other, 'g');
    processor.RemoveAll();
    processor.Process();
    EXPECT_EQ(log, "abdf");
}

TEST_F(MEventProcessorTest, ATargetMayOutliveTheQueue)
{
    {
        MEventProcessor shortLived;
        shortLived.Post<&Writer::OnWrite>(*writer, 'x');
    }
    Write('a');
    writer.reset();
    processor.Process();
    EXPECT_EQ(log, "");
}

TEST_F(MEventProcessorTest, AFailingItemIsTracedAndTheOthersRun)
{
    const MTraceFunction before = SetTraceFunction([](const char* message) { traced += message; });
    traced.clear();
    Do([] { throw MException("No."); });
    Write('a');
    Do([] { throw std::runtime_error("x"); });
    Write('b');
    processor.Process();
    SetTraceFunction(before);
    EXPECT_EQ(log, "ab");
    EXPECT_EQ(traced, "SYSTEM EXCEPTION! MEventProcessor::Process");
}

class Collector : public MEventTarget
{
public:
    struct Item
    {
        int poster;
        int number;
    };

    void OnItem(const Item& item)
    {
        EXPECT_EQ(item.number, counts[static_cast<std::size_t>(item.poster)]++);
        ++total;
    }

    int total = 0;

private:
    std::array<int, 3> counts{};
};

TEST(MEventProcessorThreads, KeepsTheOrderOfEachPostingThread)
{
    constexpr int Posts = 1000;
    MEventProcessor processor;
    Collector collector;
    std::vector<std::thread> posters;
    posters.reserve(3);
    for (int poster = 0; poster < 3; ++poster)
        posters.emplace_back(
            [&, poster]
            {
                for (int number = 0; number < Posts; ++number)
                    processor.Post<&Collector::OnItem>(collector, Collector::Item{poster, number});
            });
    for (int i = 0; i < 100; ++i)
        processor.Process();
    for (std::thread& poster : posters)
        poster.join();
    processor.Process();
    EXPECT_EQ(collector.total, 3 * Posts);
}

} // namespace
