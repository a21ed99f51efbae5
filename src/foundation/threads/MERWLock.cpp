#include "foundation/threads/MERWLock.h"

#include <algorithm>
#include <new>

#include "foundation/threads/MException.h"

namespace
{

constexpr std::size_t UsualThreads = 16;
constexpr const char* StorageFailure = "Could not create thread local storage.";

/// The entry of this thread, or the end. The list stays short.
auto FindOwn(auto& holders) noexcept
{
    const std::thread::id own = std::this_thread::get_id();
    return std::find_if(holders.begin(), holders.end(),
                        [own](const auto& holder) { return holder.thread == own; });
}

} // namespace

MERWLock::MERWLock()
try
{
    holders.reserve(UsualThreads);
}
catch (const std::bad_alloc&)
{
    throw MException(StorageFailure);
}

void MERWLock::OnWaitStart(bool isWrite)
{
    auto own = FindOwn(holders);
    if (own == holders.end())
    {
        try
        {
            own = holders.insert(own, Holder{.thread = std::this_thread::get_id()});
        }
        catch (const std::bad_alloc&)
        {
            throw MException(StorageFailure);
        }
    }
    if ((isWrite ? own->Writes() : own->Reads()) == MaxHolds)
        throw MException("Could not acquire emulated synchronization object.");
    if (isWrite)
    {
        ++waitingWriters;
        waitingWritersReads += own->Reads();
    }
}

bool MERWLock::CanEnter(bool isWrite) const noexcept
{
    const Holder& own = *FindOwn(holders);
    if (isWrite)
        return own.Writes() > 0 || (writers == 0 && readers == waitingWritersReads);
    return own.word != 0 || (writers == 0 && waitingWriters == 0);
}

void MERWLock::OnEnter(bool isWrite) noexcept
{
    ++(isWrite ? writers : readers);
    FindOwn(holders)->word += isWrite ? OneWrite : OneRead;
}

void MERWLock::OnWaitEnd(bool isWrite, bool /*entered*/) noexcept
{
    Holder& own = *FindOwn(holders);
    if (isWrite)
    {
        --waitingWriters;
        waitingWritersReads -= own.Reads();
    }
    Drop(own);
}

void MERWLock::OnLeave(bool isWrite) noexcept
{
    const auto own = FindOwn(holders);
    if (own == holders.end() || (isWrite ? own->Writes() : own->Reads()) == 0)
        return; // never entered
    --(isWrite ? writers : readers);
    own->word -= isWrite ? OneWrite : OneRead;
    Drop(*own);
}

void MERWLock::Drop(Holder& holder) noexcept
{
    if (holder.word != 0)
        return;
    holder = holders.back();
    holders.pop_back();
}
