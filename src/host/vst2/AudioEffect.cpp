#include "host/vst2/AudioEffect.h"

#include <algorithm>
#include <string>

#include "foundation/strings/UTF8.h"

namespace
{

using namespace Vst2;

AudioEffect* Of(AEffect* effect) noexcept
{
    return effect != nullptr ? static_cast<AudioEffect*>(effect->object) : nullptr;
}

/// The host's buffer at @p ptr.
std::span<char> TextAt(void* ptr, std::size_t size) noexcept
{
    return {static_cast<char*>(ptr), ptr != nullptr ? size : 0};
}

const VstSpeakerArrangement* ArrangementAt(std::intptr_t address) noexcept
{
    return reinterpret_cast<const VstSpeakerArrangement*>(address);
}

} // namespace

void Vst2::CopyText(const MString& text, std::span<char> buffer)
{
    if (buffer.empty())
        return;
    const std::string bytes = text.ToUTF8();
    std::size_t length = std::min(bytes.size(), buffer.size() - 1);
    while (length > 0 && length < bytes.size() &&
           utf8::IsContinuation(static_cast<unsigned char>(bytes[length])))
        --length;
    *std::copy_n(bytes.begin(), length, buffer.begin()) = '\0';
}

AudioEffect::AudioEffect(HostCallback hostCallback, int programs, int parameters) noexcept
    : host(hostCallback)
{
    record.dispatcher = &OnDispatch;
    record.process = [](AEffect* effect, float** inputs, float** outputs, std::int32_t samples)
    {
        if (AudioEffect* const self = Of(effect))
            self->process(inputs, outputs, samples);
    };
    record.processReplacing =
        [](AEffect* effect, float** inputs, float** outputs, std::int32_t samples)
    {
        if (AudioEffect* const self = Of(effect))
            self->processReplacing(inputs, outputs, samples);
    };
    record.setParameter = [](AEffect* effect, std::int32_t index, float value)
    {
        if (AudioEffect* const self = Of(effect))
            self->setParameter(index, value);
    };
    record.getParameter = [](AEffect* effect, std::int32_t index)
    {
        AudioEffect* const self = Of(effect);
        return self != nullptr ? self->getParameter(index) : 0.0f;
    };
    record.numPrograms = programs;
    record.numParams = parameters;
    record.object = this;
}

std::intptr_t AudioEffect::OnDispatch(AEffect* effect, std::int32_t opcode, std::int32_t index,
                                      std::intptr_t value, void* ptr, float opt) noexcept
{
    AudioEffect* const self = Of(effect);
    return self != nullptr
               ? self->Dispatch(static_cast<EffectOpcode>(opcode), index, value, ptr, opt)
               : 0;
}

std::intptr_t AudioEffect::Dispatch(EffectOpcode opcode, std::int32_t index, std::intptr_t value,
                                    void* ptr, float opt) noexcept
{
    using enum EffectOpcode;
    switch (opcode)
    {
    case Close:
        delete this;
        return 1;
    case GetProgramName:
        getProgramName(TextAt(ptr, TextSize::ProgramName));
        return 0;
    case GetParamLabel:
        getParameterLabel(index, TextAt(ptr, TextSize::ParameterText));
        return 0;
    case GetParamDisplay:
        getParameterDisplay(index, TextAt(ptr, TextSize::ParameterText));
        return 0;
    case GetParamName:
        getParameterName(index, TextAt(ptr, TextSize::ParameterName));
        return 0;
    case SetSampleRate:
        setSampleRate(opt);
        return 0;
    case SetBlockSize:
        setBlockSize(value);
        return 0;
    case MainsChanged:
        if (value != 0)
            resume();
        return 0;
    case EditIdle:
        idle();
        return 0;
    case Identify:
        return IdentifyCode;
    case GetChunk:
        return ptr != nullptr ? getChunk(*static_cast<void**>(ptr), index != 0) : 0;
    case SetChunk:
        return setChunk(ptr, value, index != 0);
    case ProcessEvents:
        return processEvents(static_cast<const VstEvents*>(ptr));
    case CanBeAutomated:
        return canParameterBeAutomated(index);
    case String2Parameter:
        return string2parameter(index, static_cast<const char*>(ptr));
    case GetProgramNameIndexed:
        return getProgramNameIndexed(index, TextAt(ptr, TextSize::ProgramName));
    case ConnectInput:
    case ConnectOutput:
    case KeysRequired: // the answer that wants no keys
        return 1;
    case GetInputProperties:
        return ptr != nullptr && getInputProperties(index, *static_cast<VstPinProperties*>(ptr));
    case GetOutputProperties:
        return ptr != nullptr && getOutputProperties(index, *static_cast<VstPinProperties*>(ptr));
    case GetPlugCategory:
        return static_cast<std::intptr_t>(getPlugCategory());
    case SetSpeakerArrangement:
        return setSpeakerArrangement(ArrangementAt(value),
                                     static_cast<const VstSpeakerArrangement*>(ptr));
    case SetBlockSizeAndSampleRate:
        setBlockSize(value);
        setSampleRate(opt);
        return 1;
    case GetEffectName:
        return getEffectName(TextAt(ptr, TextSize::EffectName));
    case GetVendorString:
        return getVendorString(TextAt(ptr, TextSize::Vendor));
    case GetProductString:
        return getProductString(TextAt(ptr, TextSize::Product));
    case GetVendorVersion:
        return getVendorVersion();
    case CanDo:
        return ptr != nullptr ? canDo(static_cast<const char*>(ptr)) : 0;
    case GetVstVersion:
        return InterfaceVersion;
    case SetTotalSampleToProcess:
        return value;
    // One program, no editor, no bypass of its own, no tail that is known, nothing by 64 bits.
    case Open:
    case SetProgram:
    case GetProgram:
    case SetProgramName:
    case EditGetRect:
    case EditOpen:
    case EditClose:
    case SetBypass:
    case VendorSpecific:
    case GetTailSize:
    case GetParameterProperties:
    case EditKeyDown:
    case EditKeyUp:
    case GetSpeakerArrangement:
    case StartProcess:
    case StopProcess:
    case SetProcessPrecision:
        return 0;
    }
    return 0; // what else hosts may have come to ask
}

std::intptr_t AudioEffect::CallHost(HostOpcode opcode, std::int32_t index, std::intptr_t value,
                                    const void* ptr, float opt) noexcept
{
    // The interface knows no const; hosts only read what they are handed here.
    return host != nullptr ? host(&record, static_cast<std::int32_t>(opcode), index, value,
                                  const_cast<void*>(ptr), opt)
                           : 0;
}

const VstTimeInfo* AudioEffect::getTimeInfo(std::int32_t mask) noexcept
{
    return reinterpret_cast<const VstTimeInfo*>(CallHost(HostOpcode::GetTime, 0, mask));
}

bool AudioEffect::canHostDo(const char* text) noexcept
{
    return CallHost(HostOpcode::CanDo, 0, 0, text) > 0;
}

void AudioEffect::wantEvents() noexcept
{
    CallHost(HostOpcode::WantMidi, 0, 1);
}

void AudioEffect::updateDisplay() noexcept
{
    CallHost(HostOpcode::UpdateDisplay);
}
