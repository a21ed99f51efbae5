#include "host/vst3/MAudioPluginVST3Adapter.h"

#include <algorithm>
#include <utility>

#include "foundation/threads/MGuard.h"
#include "foundation/threads/MLockGuard.h"

using namespace Vst3;

namespace
{

/// The first of @p Interfaces, bases of @p object, that has the id; null for none.
template <typename... Interfaces, typename Object>
void* FindInterface(Object* object, const std::uint8_t* id) noexcept
{
    void* found = nullptr;
    (void)((IsUid(id, Interfaces::Id) && (found = static_cast<Interfaces*>(object))) || ...);
    return found;
}

} // namespace

/// While it lives, the host itself causes what may change the latency, and asks for it behind.
class MAudioPluginVST3Adapter::PreparationScope
{
public:
    explicit PreparationScope(MAudioPluginVST3Adapter& owner) noexcept : adapter(owner)
    {
        adapter.preparations.fetch_add(1);
    }
    ~PreparationScope() { adapter.preparations.fetch_sub(1); }
    PreparationScope(const PreparationScope&) = delete;
    PreparationScope& operator=(const PreparationScope&) = delete;

private:
    MAudioPluginVST3Adapter& adapter;
};

MAudioPluginVST3Adapter::MAudioPluginVST3Adapter(std::unique_ptr<MAudioPlugin> ownedPlugin)
    : plugin(std::move(ownedPlugin))
{
}

Result MAudioPluginVST3Adapter::queryInterface(const std::uint8_t* id, void** object)
{
    if (object == nullptr)
        return kInvalidArgument;
    *object = nullptr;
    if (id == nullptr)
        return kInvalidArgument;
    if (IsUid(id, FUnknown::Id) || IsUid(id, IPluginBase::Id))
        *object = static_cast<IComponent*>(this);
    else
        *object = FindInterface<IComponent, IAudioProcessor, IEditController, IEditController2,
                                IUnitInfo, IConnectionPoint, IMidiMapping>(this, id);
    if (*object == nullptr)
        return kNoInterface;
    addRef();
    return kResultOk;
}

std::uint32_t MAudioPluginVST3Adapter::addRef()
{
    return references.fetch_add(1, std::memory_order_relaxed) + 1;
}

std::uint32_t MAudioPluginVST3Adapter::release()
{
    // What other threads did with the object is done before it ends.
    const std::uint32_t left = references.fetch_sub(1, std::memory_order_acq_rel) - 1;
    if (left == 0)
        delete this;
    return left;
}

Result MAudioPluginVST3Adapter::initialize(FUnknown* context)
{
    return MGuarded("MAudioPluginVST3Adapter::initialize", kResultFalse,
                    [&]
                    {
                        if (isInitialized.load())
                            return kResultFalse;
                        MModule::Get().SetHostName("VST3");
                        plugin->SetAdapter(this);
                        plugin->SetChannels(2, 2);
                        plugin->SetHostSampleRate(44100);
                        Prepare();
                        buses.Build();
                        parameters.Build();
                        if (plugin->SendsMIDIOutput() && outputEvents == nullptr)
                            outputEvents = std::make_unique<MIDIQueue>();
                        hostContext = Reference<FUnknown>(context);
                        isInitialized = true;
                        return kResultOk;
                    });
}

Result MAudioPluginVST3Adapter::terminate()
{
    return MGuarded("MAudioPluginVST3Adapter::terminate", kResultFalse,
                    [&]
                    {
                        isInitialized = false;
                        isActive = false;
                        buses.Clear();
                        parameters.Clear();
                        setComponentHandler(nullptr);
                        hostContext = {};
                        return kResultOk;
                    });
}

void MAudioPluginVST3Adapter::Prepare()
{
    const PreparationScope scope(*this);
    plugin->InitProcessing();
    RefreshTimes();
}

void MAudioPluginVST3Adapter::RefreshTimes()
{
    latency = std::max(0, plugin->GetEffectiveLatency());
    tail = std::max(0, plugin->GetTail());
}

Result MAudioPluginVST3Adapter::connect(IConnectionPoint* other)
{
    return other != nullptr ? kResultOk : kInvalidArgument;
}

Result MAudioPluginVST3Adapter::disconnect(IConnectionPoint* other)
{
    return other != nullptr ? kResultOk : kInvalidArgument;
}

Result MAudioPluginVST3Adapter::notify(IMessage* message)
{
    return message != nullptr ? kResultFalse : kInvalidArgument;
}

Result MAudioPluginVST3Adapter::setComponentHandler(IComponentHandler* newHandler)
{
    return MGuarded("MAudioPluginVST3Adapter::setComponentHandler", kResultFalse,
                    [&]
                    {
                        Reference<IComponentHandler> next(newHandler);
                        const MLockGuard guard(handlerLock);
                        std::swap(handler, next);
                        return kResultOk;
                    });
}

Reference<IComponentHandler> MAudioPluginVST3Adapter::GetHandler()
{
    const MLockGuard guard(handlerLock);
    return handler;
}

void MAudioPluginVST3Adapter::Restart(std::int32_t flags)
{
    if (const auto present = GetHandler())
        present->restartComponent(flags);
}

void MAudioPluginVST3Adapter::SendEdit(ParamID id, double value)
{
    MGuarded("MAudioPluginVST3Adapter::SendAutomation", 0,
             [&]
             {
                 const auto present = GetHandler();
                 if (!present)
                     return 0;
                 const bool wasIgnoring = ignoreHostParameters.exchange(true);
                 present->beginEdit(id);
                 present->performEdit(id, value);
                 present->endEdit(id);
                 ignoreHostParameters = wasIgnoring;
                 return 0;
             });
}

void MAudioPluginVST3Adapter::SendAutomation(int index, double value01)
{
    if (index >= 0 && index < plugin->GetParameterCount())
        SendEdit(static_cast<ParamID>(index), value01);
}

void MAudioPluginVST3Adapter::SendBypassAutomation(bool isBypassed)
{
    SendEdit(Parameters::BypassId, isBypassed ? 1.0 : 0.0);
}

bool MAudioPluginVST3Adapter::ChangeEditorSize(int /*width*/, int /*height*/)
{
    return false;
}

void MAudioPluginVST3Adapter::LatencyChanged()
{
    MGuarded("MAudioPluginVST3Adapter::LatencyChanged", 0,
             [&]
             {
                 RefreshTimes();
                 if (preparations.load() == 0)
                     Restart(kLatencyChanged);
                 return 0;
             });
}
