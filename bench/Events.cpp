// What it costs to fire an event and to take a lock, beside a plain loop and the C++ library.

#include <cstdint>
#include <memory>
#include <mutex>
#include <shared_mutex>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include "foundation/threads/MERWLock.h"
#include "foundation/threads/MEvent.h"
#include "foundation/threads/MLock.h"
#include "foundation/threads/MLockGuard.h"

namespace
{

struct Params
{
    std::int64_t value;
};

class Subscriber : public MEventTarget
{
public:
    void OnFire(Params& params) { sum += params.value; }

    std::int64_t sum = 0;
};

class Event
{
public:
    explicit Event(std::vector<Subscriber>& subscribers)
    {
        for (Subscriber& subscriber : subscribers)
            event.Subscribe<&Subscriber::OnFire>(subscriber);
    }

    void Fire(Params& params) { event.Fire(params); }

private:
    MEvent<Params> event;
};

/// The least that a firing can cost: no lock, and nobody may leave meanwhile.
class PlainLoop
{
public:
    explicit PlainLoop(std::vector<Subscriber>& subscribers)
    {
        for (Subscriber& subscriber : subscribers)
            calls.push_back({&subscriber, [](MEventTarget& target, Params& params)
                             { static_cast<Subscriber&>(target).OnFire(params); }});
    }

    void Fire(Params& params)
    {
        for (const Call& call : calls)
            call.function(*call.target, params);
    }

private:
    struct Call
    {
        MEventTarget* target;
        void (*function)(MEventTarget& target, Params& params);
    };

    std::vector<Call> calls;
};

template <class Caller>
void Fire(benchmark::State& state)
{
    std::vector<Subscriber> subscribers(static_cast<std::size_t>(state.range(0)));
    Caller caller(subscribers);
    Params params{1};
    benchmark::DoNotOptimize(subscribers.data());
    for (auto _ : state)
    {
        caller.Fire(params);
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

/// @p Guard holds @p Lock from construction to destruction.
template <class Lock, class Guard>
void Hold(benchmark::State& state)
{
    Lock lock;
    for (auto _ : state)
    {
        const Guard guard(lock);
        benchmark::ClobberMemory();
    }
}

struct ReadGuard : MSynchronizationGuard
{
    explicit ReadGuard(MERWLock& lock) : MSynchronizationGuard(lock, false) {}
};

struct WriteGuard : MSynchronizationGuard
{
    explicit WriteGuard(MERWLock& lock) : MSynchronizationGuard(lock, true) {}
};

template <class Caller>
void RegisterFire(const std::string& what)
{
    benchmark::RegisterBenchmark(("Events/" + what).c_str(), &Fire<Caller>)
        ->ArgName("subscribers")
        ->Arg(1)
        ->Arg(10)
        ->Arg(100);
}

template <class Lock, class Guard>
void RegisterHold(const std::string& what)
{
    benchmark::RegisterBenchmark(("Locks/" + what).c_str(), &Hold<Lock, Guard>);
}

[[maybe_unused]] const bool isRegistered = []
{
    RegisterFire<Event>("MEvent");
    RegisterFire<PlainLoop>("plain loop");
    RegisterHold<MLock, MLockGuard>("MLock");
    RegisterHold<std::recursive_mutex, std::lock_guard<std::recursive_mutex>>("recursive_mutex");
    RegisterHold<MERWLock, ReadGuard>("MERWLock, read");
    RegisterHold<MERWLock, WriteGuard>("MERWLock, write");
    RegisterHold<std::shared_mutex, std::shared_lock<std::shared_mutex>>("shared_mutex, read");
    RegisterHold<std::shared_mutex, std::unique_lock<std::shared_mutex>>("shared_mutex, write");
    return true;
}();

} // namespace
