// The adapter's parameters, both ways, its one program and the state.

#include "foundation/threads/MGuard.h"
#include "host/PluginState.h"
#include "host/vst2/MAudioPluginVSTAdapter.h"

using namespace Vst2;

namespace
{

/// Reports a value to the host, whose echo on this thread is left out meanwhile.
class EchoScope
{
public:
    explicit EchoScope(std::atomic<std::thread::id>& ignored) noexcept
        : thread(ignored),
          before(ignored.exchange(std::this_thread::get_id()))
    {
    }
    ~EchoScope() { thread = before; }
    EchoScope(const EchoScope&) = delete;
    EchoScope& operator=(const EchoScope&) = delete;

private:
    std::atomic<std::thread::id>& thread;
    std::thread::id before;
};

} // namespace

bool MAudioPluginVSTAdapter::HasParameter(std::int32_t index) const noexcept
{
    return index >= 0 && index < record.numParams;
}

void MAudioPluginVSTAdapter::setParameter(std::int32_t index, float value) noexcept
{
    MGuarded("MAudioPluginVSTAdapter::setParameter", 0,
             [&]
             {
                 if (HasParameter(index))
                     plugin->SetParameterFromHostSafely(index, value);
                 return 0;
             });
}

float MAudioPluginVSTAdapter::getParameter(std::int32_t index) noexcept
{
    // Some hosts keep the values they read as the state, and set them later.
    return MGuarded("MAudioPluginVSTAdapter::getParameter", 0.0f,
                    [&] { return static_cast<float>(plugin->GetRestorableParameter(index)); });
}

void MAudioPluginVSTAdapter::getProgramName(std::span<char> text) noexcept
{
    getProgramNameIndexed(0, text);
}

bool MAudioPluginVSTAdapter::getProgramNameIndexed(std::int32_t index,
                                                   std::span<char> text) noexcept
{
    return MGuarded("MAudioPluginVSTAdapter::getProgramNameIndexed", false,
                    [&]
                    {
                        if (index != 0)
                            return false;
                        CopyText(plugin->GetName(), text);
                        return !text.empty();
                    });
}

void MAudioPluginVSTAdapter::getParameterName(std::int32_t index, std::span<char> text) noexcept
{
    MGuarded("MAudioPluginVSTAdapter::getParameterName", 0,
             [&]
             {
                 CopyText(plugin->GetParameterName(index), text);
                 return 0;
             });
}

void MAudioPluginVSTAdapter::getParameterDisplay(std::int32_t index, std::span<char> text) noexcept
{
    MGuarded("MAudioPluginVSTAdapter::getParameterDisplay", 0,
             [&]
             {
                 CopyText(plugin->GetParameterValueName(index), text);
                 return 0;
             });
}

void MAudioPluginVSTAdapter::getParameterLabel(std::int32_t index, std::span<char> text) noexcept
{
    MGuarded("MAudioPluginVSTAdapter::getParameterLabel", 0,
             [&]
             {
                 CopyText(plugin->GetParameterUnitsName(index), text);
                 return 0;
             });
}

bool MAudioPluginVSTAdapter::canParameterBeAutomated(std::int32_t index) noexcept
{
    return HasParameter(index);
}

bool MAudioPluginVSTAdapter::string2parameter(std::int32_t index, const char* text) noexcept
{
    return MGuarded("MAudioPluginVSTAdapter::string2parameter", false,
                    [&]
                    {
                        if (!HasParameter(index))
                            return false;
                        if (text != nullptr)
                            plugin->SetParameterFromHostSafely(
                                index,
                                plugin->ParseParameterValueName(index, MString::FromUTF8(text)));
                        return true;
                    });
}

std::intptr_t MAudioPluginVSTAdapter::getChunk(void*& data, bool /*isPreset*/) noexcept
{
    data = nullptr;
    return MGuarded("MAudioPluginVSTAdapter::getChunk", std::intptr_t{0},
                    [&]
                    {
                        chunk = pluginstate::Save(*plugin);
                        const std::span<const std::byte> bytes = chunk.GetData();
                        data = const_cast<std::byte*>(bytes.data()); // hosts only read
                        return static_cast<std::intptr_t>(bytes.size());
                    });
}

std::int32_t MAudioPluginVSTAdapter::setChunk(const void* data, std::intptr_t size,
                                              bool /*isPreset*/) noexcept
{
    return MGuarded("MAudioPluginVSTAdapter::setChunk", 0,
                    [&]
                    {
                        if (data == nullptr || size <= 0)
                            return 0;
                        MMemoryStream stream = MMemoryStream::Refer(
                            {static_cast<const std::byte*>(data), static_cast<std::size_t>(size)});
                        pluginstate::Load(*plugin, stream);
                        updateDisplay();
                        return 1;
                    });
}

void MAudioPluginVSTAdapter::SendAutomation(int index, double value01)
{
    if (!HasParameter(index))
        return;
    const EchoScope scope(ignoreHostParameters);
    CallHost(HostOpcode::BeginEdit, index);
    CallHost(HostOpcode::Automate, index, 0, nullptr, static_cast<float>(value01));
    CallHost(HostOpcode::EndEdit, index);
}

bool MAudioPluginVSTAdapter::IgnoresHostParameters() const noexcept
{
    return ignoreHostParameters.load(std::memory_order_relaxed) == std::this_thread::get_id();
}
