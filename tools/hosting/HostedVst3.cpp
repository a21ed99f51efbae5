// What a VST3 plugin is: its halves, parameters and state. The other file has what it does.

#include "tools/hosting/HostedVst3.h"

#include <cstring>
#include <string_view>

#include "foundation/strings/MString.h"
#include "host/vst3/Vst3Factory.h"
#include "tools/hosting/PluginModule.h"

using namespace Vst3;

namespace
{

/// The text in a field of a record, which may have no end.
template <std::size_t Size>
std::string Text(const char (&field)[Size])
{
    return {field, strnlen(field, Size)};
}

template <std::size_t Size>
std::string Text(const char16_t (&field)[Size])
{
    const std::u16string_view whole(field, Size);
    return MString::FromUTF16(whole.substr(0, whole.find(u'\0'))).ToUTF8();
}

} // namespace

HostedVst3::HostedVst3(std::shared_ptr<PluginModule> pluginModule) : module(std::move(pluginModule))
{
    IPluginFactory* const factory = module->GetFactory();
    if (const auto factory3 = Vst3Pointer<IPluginFactory3>::Query(factory))
        factory3->setHostContext(&application);
    PClassInfo info{};
    FindClass(info);
    const auto* const classId = reinterpret_cast<const char*>(info.cid.data());
    component = Vst3Pointer<IComponent>::Take(
        [&](void** object)
        {
            return factory->createInstance(
                classId, reinterpret_cast<const char*>(IComponent::Id.data()), object);
        });
    if (!component || component->initialize(&application) != kResultOk)
        throw module->Failure("the plugin refuses to be made");
    processor = Vst3Pointer<IAudioProcessor>::Query(component.Get());
    if (!processor || processor->canProcessSampleSize(kSample32) != kResultOk)
        throw module->Failure("the plugin does not process 32-bit samples");
    MakeController();
    ListParameters();
}

void HostedVst3::FindClass(PClassInfo& info)
{
    IPluginFactory* const factory = module->GetFactory();
    std::int32_t index = 0;
    const std::int32_t count = factory->countClasses();
    while (index < count && (factory->getClassInfo(index, &info) != kResultOk ||
                             Text(info.category) != AudioModuleCategory))
        ++index;
    if (index >= count)
        throw module->Failure("there is no audio plugin in it");
    name = Text(info.name);
    if (const auto factory2 = Vst3Pointer<IPluginFactory2>::Query(factory))
        if (PClassInfo2 more{}; factory2->getClassInfo2(index, &more) == kResultOk)
        {
            maker = Text(more.vendor);
            version = Text(more.version);
        }
    if (PFactoryInfo own{}; maker.empty() && factory->getFactoryInfo(&own) == kResultOk)
        maker = Text(own.vendor);
}

void HostedVst3::MakeController()
{
    controller = Vst3Pointer<IEditController>::Query(component.Get());
    Uid controllerId{};
    if (!controller && component->getControllerClassId(controllerId.data()) == kResultOk)
    {
        ownController = Vst3Pointer<IEditController>::Take(
            [&](void** object)
            {
                return module->GetFactory()->createInstance(
                    reinterpret_cast<const char*>(controllerId.data()),
                    reinterpret_cast<const char*>(IEditController::Id.data()), object);
            });
        if (ownController && ownController->initialize(&application) != kResultOk)
            throw module->Failure("the plugin's controller refuses to be made");
        controller = Vst3Pointer<IEditController>::Query(ownController.Get());
    }
    if (!controller)
        return;
    controller->setComponentHandler(&handler);
    mapping = Vst3Pointer<IMidiMapping>::Query(controller.Get());
    if (HasOwnController())
        ConnectHalves();
}

void HostedVst3::ConnectHalves()
{
    handler.onEdit = [this](ParamID id, double value) { changes.Add(id, 0, value); };
    componentPoint = Vst3Pointer<IConnectionPoint>::Query(component.Get());
    controllerPoint = Vst3Pointer<IConnectionPoint>::Query(controller.Get());
    if (componentPoint && controllerPoint)
    {
        componentPoint->connect(controllerPoint.Get());
        controllerPoint->connect(componentPoint.Get());
    }
    Vst3MemoryStream state;
    if (component->getState(&state) == kResultOk)
    {
        state.seek(0, IBStream::kIBSeekSet, nullptr);
        controller->setComponentState(&state);
    }
}

void HostedVst3::ListParameters()
{
    const std::int32_t count = controller ? controller->getParameterCount() : 0;
    for (std::int32_t index = 0; index < count; ++index)
    {
        ParameterInfo info{};
        if (controller->getParameterInfo(index, info) != kResultOk)
            continue;
        if ((info.flags & ParameterInfo::kIsBypass) != 0)
            bypass = info.id;
        else if ((info.flags & ParameterInfo::kIsHidden) == 0)
            parameters.push_back(info);
    }
}

HostedVst3::~HostedVst3()
{
    Stop();
    if (componentPoint && controllerPoint)
    {
        componentPoint->disconnect(controllerPoint.Get());
        controllerPoint->disconnect(componentPoint.Get());
    }
    if (controller)
        controller->setComponentHandler(nullptr);
    if (ownController)
        ownController->terminate();
    if (component)
        component->terminate();
}

const ParameterInfo& HostedVst3::GetParameterInfo(int index) const
{
    return parameters.at(static_cast<std::size_t>(index));
}

std::string HostedVst3::GetParameterName(int index) const
{
    return Text(GetParameterInfo(index).title);
}

double HostedVst3::Get01(int index) const
{
    return controller->getParamNormalized(GetParameterInfo(index).id);
}

void HostedVst3::Set01(int index, double value01)
{
    Set(GetParameterInfo(index).id, value01);
}

void HostedVst3::Set(ParamID id, double value01)
{
    // The controller shows it, the component hears of it with the next block.
    controller->setParamNormalized(id, value01);
    changes.Add(id, 0, value01);
}

std::string HostedVst3::GetText(int index) const
{
    return ReadText(index, Get01(index));
}

std::string HostedVst3::GetTextAt(int index, double value01)
{
    return ReadText(index, value01);
}

std::string HostedVst3::ReadText(int index, double value01) const
{
    const ParameterInfo& info = GetParameterInfo(index);
    String128 field{};
    if (controller->getParamStringByValue(info.id, value01, field) != kResultOk)
        return {};
    std::string text = Text(field);
    const std::string unit = Text(info.units);
    if (!unit.empty() && !text.ends_with(unit))
        text += ' ' + unit;
    return text;
}

std::optional<double> HostedVst3::Parse(int index, const std::string& text)
{
    std::u16string wide;
    const MString characters = MString::FromUTF8(text);
    for (int i = 0; i < characters.Length(); ++i)
        wide += characters.CharAt(i);
    double value01 = 0.0;
    if (controller->getParamValueByString(GetParameterInfo(index).id, wide.data(), value01) !=
        kResultOk)
        return std::nullopt;
    return value01;
}

bool HostedVst3::SetBypassed(bool on)
{
    if (bypass)
        Set(*bypass, on ? 1.0 : 0.0);
    return bypass.has_value();
}

std::vector<std::byte> HostedVst3::SaveState()
{
    if (isActive && !changes.IsEmpty())
        RunProcess(0, nullptr, nullptr); // for components that have not heard of them yet
    Vst3MemoryStream componentState;
    if (component->getState(&componentState) != kResultOk)
        throw Refusal("the plugin gives no state");
    std::vector<std::byte> state = componentState.GetBytes();
    if (!HasOwnController())
        return state;

    const auto size = static_cast<std::uint32_t>(state.size());
    const auto sizeBytes = std::as_bytes(std::span(&size, 1));
    state.insert(state.begin(), sizeBytes.begin(), sizeBytes.end());
    if (Vst3MemoryStream more; ownController->getState(&more) == kResultOk)
        state.insert(state.end(), more.GetBytes().begin(), more.GetBytes().end());
    return state;
}

void HostedVst3::LoadState(std::span<const std::byte> state)
{
    const MException refusal = Refusal("the plugin does not take this state");
    std::span<const std::byte> controllerBytes;
    if (HasOwnController())
    {
        std::uint32_t size = 0;
        if (state.size() < sizeof(size))
            throw refusal;
        std::memcpy(&size, state.data(), sizeof(size));
        state = state.subspan(sizeof(size));
        if (size > state.size())
            throw refusal;
        controllerBytes = state.subspan(size);
        state = state.first(size);
    }
    Vst3MemoryStream stream(state);
    if (component->setState(&stream) != kResultOk)
        throw refusal;
    changes.Clear(); // older than the state
    if (!controller)
        return;
    stream.seek(0, IBStream::kIBSeekSet, nullptr);
    controller->setComponentState(&stream);
    if (Vst3MemoryStream more(controllerBytes); !controllerBytes.empty())
        ownController->setState(&more);
}
