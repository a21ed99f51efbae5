#include "effect/MPlugin.h"

#include <memory>

#include "effect/MPluginParameterRecord.h"
#include "foundation/threads/MLockGuard.h"
#include "foundation/xml/MStorageDescriptor.h"
#include "foundation/xml/MXMLItem.h"

MPlugin::MPlugin() noexcept : lock(&ownLock) {}

std::intptr_t MPlugin::Dispatch(std::int32_t command, const MPluginCommandArguments* arguments)
{
    const auto value = [arguments](std::size_t index)
    { return arguments != nullptr ? arguments->pairs[index].value : 0; };
    const auto pointer = [value](std::size_t index)
    { return reinterpret_cast<void*>(value(index)); };
    MXMLItem* const item = static_cast<MXMLItem*>(pointer(0));

    switch (static_cast<MPluginCommand>(command))
    {
    case MPluginCommand::SetHost:
        return reinterpret_cast<std::intptr_t>(
            SetHost(pointer(0), reinterpret_cast<MPluginCall>(value(1))));
    case MPluginCommand::Destroy:
        // Lets a block in progress finish; the lock itself may die with this object.
        static_cast<void>(MLockGuard(*lock));
        delete this;
        return 0;
    case MPluginCommand::GetInfo:
        return reinterpret_cast<std::intptr_t>(&info);
    case MPluginCommand::Start:
        Start();
        return 0;
    case MPluginCommand::ParameterChanged:
    {
        const MPluginParameterRecord* const record = info.FindParameter(value(0));
        ParameterChanged(static_cast<std::int32_t>(value(0)));
        if (record == nullptr || record->Has(MPluginParameterRecord::Recalculate))
            Update();
        return 0;
    }
    case MPluginCommand::CreateEditor:
        CreateEditor(pointer(0));
        return 0;
    case MPluginCommand::DestroyEditor:
        DestroyEditor(pointer(0));
        return 0;
    case MPluginCommand::Store:
        return item != nullptr && Store(*item) ? 1 : 0;
    case MPluginCommand::Load:
        return item != nullptr && Load(*item) ? 1 : 0;
    case MPluginCommand::ReservedA:
        ReservedA();
        return 0;
    case MPluginCommand::ReservedB:
        return ReservedB(value(0));
    case MPluginCommand::Randomize:
        return value(0) != 0 ? GenerateRandomSettings(*static_cast<const double*>(pointer(0))) : 0;
    case MPluginCommand::ReservedC:
        return ReservedC(value(0), value(1));
    default:
        return -1;
    }
}

MPlugin* MPlugin::SetHost(void* newPeerInstance, MPluginCall newPeerCall)
{
    peerInstance = newPeerInstance;
    peerCall = newPeerCall;
    return this;
}

void MPlugin::ResetParameterRamps()
{
    const MLockGuard guard(*lock);
    for (std::int32_t i = 0; i < info.CountParameters(); ++i)
    {
        MPluginParameterRecord& record = *info.FindParameter(i);
        if (record.type == MParameterType::Float)
            record.range.asFloat.rampStart = record.Effective();
    }
}

bool MPlugin::Store(MXMLItem& item)
{
    for (std::int32_t i = 0; i < info.CountParameters(); ++i)
        info.FindParameter(i)->Store(item);
    StoreExtras({.storing = true, .item = item});
    return true;
}

bool MPlugin::Load(MXMLItem& item)
{
    for (std::int32_t i = 0; i < info.CountParameters(); ++i)
        info.FindParameter(i)->Load(item);
    StoreExtras({.storing = false, .item = item});
    LoadFinished();
    Update();
    ResetParameterRamps();
    return true;
}

std::function<void()> MPlugin::KeepState()
{
    const auto kept = std::make_shared<MXMLItem>("settings");
    Store(*kept);
    return [this, kept] { Load(*kept); };
}

std::int32_t MPlugin::GenerateRandomSettings(double amount)
{
    for (std::int32_t i = 0; i < info.CountParameters(); ++i)
        info.FindParameter(i)->Randomize(amount);
    Update();
    ResetParameterRamps();
    return 0;
}

std::intptr_t MPlugin::CallHost(MPluginHostCommand command)
{
    const MPluginCommandArguments none;
    return peerCall != nullptr ? peerCall(peerInstance, static_cast<std::int32_t>(command), &none)
                               : 0;
}
