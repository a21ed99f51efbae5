#pragma once

#include <cstdint>
#include <functional>

#include "effect/MPluginCommands.h"
#include "effect/MPluginInfo.h"
#include "foundation/threads/MEventTarget.h"
#include "foundation/threads/MLock.h"

class MXMLItem;
struct MStorageDescriptor;

/// A sound-making object behind an entry point. It knows nothing of hosts: it publishes records,
/// and whoever drives it does the rest, through commands or the virtual operations.
///
/// Everything that it publishes is guarded by one lock, which an operation that touches it takes,
/// after any wait. Update may come from any thread at any time.
class MPlugin : public MEventTarget
{
public:
    MPlugin() noexcept;

    /// Answers a command; -1 for one that it does not know. @p arguments null means four zeros.
    virtual std::intptr_t Dispatch(std::int32_t command, const MPluginCommandArguments* arguments);
    /// Remembers the way back to the host; returns this.
    virtual MPlugin* SetHost(void* newPeerInstance, MPluginCall newPeerCall);
    virtual void Start() {}
    /// Lets the next block begin at the present values instead of ramping to them.
    virtual void ResetParameterRamps();
    virtual void ParameterChanged(std::int32_t /*index*/) {}
    /// Works out what depends on the parameters.
    virtual void Update() {}
    /// @p block points to a word that holds the parent control. GUI thread.
    virtual void CreateEditor(void* /*block*/) {}
    virtual void DestroyEditor(void* /*block*/) {}
    virtual bool Store(MXMLItem& item);
    /// Tolerant: what is missing takes its default. Ends with no ramp under way.
    virtual bool Load(MXMLItem& item);
    /// What brings the present state back, for who is about to load another; it is dropped if all
    /// goes well. Plugins that load often keep values in place of the stored texts.
    virtual std::function<void()> KeepState();
    /// For state beyond the records, in both directions.
    virtual void StoreExtras(const MStorageDescriptor& /*storage*/) {}
    virtual void LoadFinished() {}
    virtual void ReservedA() {}
    virtual std::int32_t ReservedB(std::intptr_t /*a0*/) { return -1; }
    /// Moves each randomisable parameter by at most @p amount of its range, 0.0 to 1.0.
    virtual std::int32_t GenerateRandomSettings(double amount);
    virtual std::int32_t ReservedC(std::intptr_t /*a0*/, std::intptr_t /*a1*/) { return -1; }

    const MPluginInfo& GetInfo() const noexcept { return info; }
    /// Shares the lock of whoever drives the plugin, which has to outlive it. Only before the first
    /// block.
    void SetLock(MLock& sharedLock) noexcept { lock = &sharedLock; }

protected:
    /// Sends @p command, without arguments, to the host; 0 without one.
    std::intptr_t CallHost(MPluginHostCommand command);
    MLock& GetLock() const noexcept { return *lock; }

    MPluginInfo info;

private:
    MPluginCall peerCall = nullptr;
    void* peerInstance = nullptr;
    MLock ownLock;
    MLock* lock; ///< ownLock until SetLock
};
