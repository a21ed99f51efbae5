#include "foundation/threads/MEvent.h"

#include <atomic>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

namespace
{

/// What a handler does besides leaving its mark.
struct Params
{
    std::string log;
};

using TestEvent = MEvent<Params>;

/// Writes its letter into the log, then does what it was told.
class Listener : public MEventTarget
{
public:
    explicit Listener(char mark, std::function<void()> deed = nullptr)
        : letter(mark),
          action(std::move(deed))
    {
    }

    void OnFire(Params& params)
    {
        params.log += letter;
        // A copy, since the deed may end this object.
        const std::function<void()> deed = action;
        if (deed)
            deed();
    }
    void OnOther(Params& params) { params.log += '!'; }

    void Do(std::function<void()> deed) { action = std::move(deed); }

private:
    char letter;
    std::function<void()> action;
};

std::string Fire(TestEvent& event)
{
    Params params;
    event.Fire(params);
    return params.log;
}

TEST(MEvent, CallsInTheOrderOfSubscription)
{
    TestEvent event;
    EXPECT_EQ(Fire(event), "");
    Listener a('a');
    Listener b('b');
    event.Subscribe<&Listener::OnFire>(b);
    event.Subscribe<&Listener::OnFire>(a);
    event.Subscribe<&Listener::OnOther>(b);
    event.Subscribe<&Listener::OnFire>(b);
    EXPECT_EQ(Fire(event), "ba!b");
    event.Remove(b);
    EXPECT_EQ(Fire(event), "a") << "all of one target are gone";
    event.Remove(b);
    event.RemoveAll();
    EXPECT_EQ(Fire(event), "");
}

/// Each row runs against an event with the targets a, b and c, of which b acts when it is called.
struct DuringFiring
{
    const char* what;
    void (*act)(std::unique_ptr<TestEvent>& event, std::vector<std::unique_ptr<Listener>>& targets);
    const char* during; ///< letters of the firing in which b acts
    const char* after;  ///< of the next one, if there is still an event
};

constexpr DuringFiring Deeds[] = {
    {"nothing", [](auto&, auto&) {}, "abc", "abc"},
    {"removes itself", [](auto& event, auto& targets) { event->Remove(*targets[1]); }, "abc", "ac"},
    {"removes one before", [](auto& event, auto& targets) { event->Remove(*targets[0]); }, "abc",
     "bc"},
    {"removes one behind", [](auto& event, auto& targets) { event->Remove(*targets[2]); }, "ab",
     "ab"},
    {"removes all", [](auto& event, auto&) { event->RemoveAll(); }, "ab", ""},
    {"subscribes another",
     [](auto& event, auto& targets) { event->template Subscribe<&Listener::OnOther>(*targets[0]); },
     "abc", "abc!"},
    {"ends one behind", [](auto&, auto& targets) { targets[2].reset(); }, "ab", "ab"},
    {"ends itself", [](auto&, auto& targets) { targets[1].reset(); }, "abc", "ac"},
    {"ends the event", [](auto& event, auto&) { event.reset(); }, "ab", ""},
    {"ends the event, then a target",
     [](auto& event, auto& targets)
     {
         event.reset();
         targets[2].reset();
     },
     "ab", ""},
    {"moves one to the end",
     [](auto& event, auto& targets)
     {
         event->Remove(*targets[2]);
         event->template Subscribe<&Listener::OnFire>(*targets[2]);
     },
     "ab", "abc"},
};

TEST(MEvent, AHandlerMayChangeAnythingDuringAFiring)
{
    for (const DuringFiring& row : Deeds)
    {
        // As they are, and with so many more behind them that the copy is on the heap.
        for (const int more : {0, 40})
        {
            std::unique_ptr<TestEvent> event = std::make_unique<TestEvent>();
            std::vector<std::unique_ptr<Listener>> targets;
            for (const char letter : {'a', 'b', 'c'})
            {
                targets.push_back(std::make_unique<Listener>(letter));
                event->Subscribe<&Listener::OnFire>(*targets.back());
            }
            Listener others('-');
            for (int i = 0; i < more; ++i)
                event->Subscribe<&Listener::OnFire>(others);
            bool hasActed = false;
            targets[1]->Do(
                [&]
                {
                    if (!hasActed)
                        row.act(event, targets);
                    hasActed = true;
                });

            std::string log = Fire(*event);
            std::erase(log, '-');
            EXPECT_EQ(log, row.during) << row.what << ", " << more << " more";
            if (event == nullptr)
                continue;
            log = Fire(*event);
            std::erase(log, '-');
            EXPECT_EQ(log, row.after) << row.what << ", " << more << " more";
        }
    }
}

TEST(MEvent, ANestedFiringSeesThePresentListAndBothHearOfARemoval)
{
    TestEvent event;
    Params params;
    Listener a('a');
    Listener b('b');
    Listener c('c');
    int depth = 0;
    a.Do(
        [&]
        {
            if (++depth == 1)
                event.Fire(params);
            else
                event.Remove(c);
        });
    for (Listener* const target : {&a, &b, &c})
        event.Subscribe<&Listener::OnFire>(*target);
    event.Fire(params);
    EXPECT_EQ(params.log, "aabb");
}

TEST(MEvent, AnExceptionEndsTheFiringAndNothingElse)
{
    TestEvent event;
    Listener a('a', [] { throw std::runtime_error("x"); });
    Listener b('b');
    event.Subscribe<&Listener::OnFire>(a);
    event.Subscribe<&Listener::OnFire>(b);
    Params params;
    EXPECT_THROW(event.Fire(params), std::runtime_error);
    EXPECT_EQ(params.log, "a");
    a.Do(nullptr);
    EXPECT_EQ(Fire(event), "ab");
}

TEST(MEvent, ATargetOutlivesItsEventsAndTheOtherWayRound)
{
    TestEvent event;
    {
        Listener target('a');
        {
            TestEvent shortLived;
            shortLived.Subscribe<&Listener::OnFire>(target);
            event.Subscribe<&Listener::OnFire>(target);
        }
        EXPECT_EQ(Fire(event), "a");
    }
    EXPECT_EQ(Fire(event), "");
}

TEST(MEvent, FiresByItsBaseOnlyWithItsOwnParameters)
{
    TestEvent event;
    MEventBase& base = event;
    Listener a('a');
    event.Subscribe<&Listener::OnFire>(a);
    Params params;
    base.Fire(MEventParameters(params));
    EXPECT_EQ(params.log, "a");
    std::string foreign = "b";
    base.Fire(MEventParameters(foreign));
    EXPECT_EQ(params.log + foreign, "ab");
}

/// Accepts what is at most as long.
struct LengthPolicy
{
    bool Accepts(const Params& params) const { return params.log.size() <= limit; }

    std::size_t limit = 0;
};

TEST(MEvent, AsksThePolicyOfEachSubscription)
{
    MEvent<Params, LengthPolicy> event;
    Listener a('a');
    Listener b('b');
    event.Subscribe<&Listener::OnFire>(a, {0});
    event.Subscribe<&Listener::OnFire>(b, {0});
    event.Subscribe<&Listener::OnFire>(a, {1});
    event.Subscribe<&Listener::OnFire>(b, {1});
    Params params;
    event.Fire(params);
    EXPECT_EQ(params.log, "aa");
}

TEST(MCallback, CallsOnlyTheLatestSubscriber)
{
    MCallback<Params> callback;
    Listener a('a');
    Params params;
    {
        Listener b('b');
        callback.Subscribe<&Listener::OnFire>(a);
        callback.Subscribe<&Listener::OnFire>(b);
        callback.Fire(params);
    }
    callback.Fire(params);
    EXPECT_EQ(params.log, "b") << "the first does not come back";
    callback.Subscribe<&Listener::OnFire>(a);
    callback.Fire(params);
    EXPECT_EQ(params.log, "ba");
}

class CountingListener : public MEventTarget
{
public:
    void OnFire(Params& /*params*/) { ++calls; }

    std::atomic<int> calls = 0;
};

TEST(MEventThreads, SubscribingAndRemovingGoOnDuringFirings)
{
    constexpr int Rounds = 500;
    TestEvent event;
    CountingListener steady;
    CountingListener changing[2];
    event.Subscribe<&CountingListener::OnFire>(steady);

    std::vector<std::thread> threads;
    for (CountingListener& target : changing)
        threads.emplace_back(
            [&event, &target]
            {
                for (int i = 0; i < Rounds; ++i)
                {
                    for (int times = 0; times <= i % 20; ++times)
                        event.Subscribe<&CountingListener::OnFire>(target);
                    event.Remove(target);
                }
            });
    threads.emplace_back(
        [&event]
        {
            for (int i = 0; i < Rounds; ++i)
                Fire(event);
        });
    for (int i = 0; i < Rounds; ++i)
        Fire(event);
    for (std::thread& thread : threads)
        thread.join();

    EXPECT_EQ(steady.calls, 2 * Rounds);
    const int before = changing[0].calls + changing[1].calls;
    Fire(event);
    EXPECT_EQ(changing[0].calls + changing[1].calls, before);
}

} // namespace
