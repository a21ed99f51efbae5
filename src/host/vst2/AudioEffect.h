#pragma once

#include <cstdint>
#include <span>

#include "foundation/strings/MString.h"
#include "host/vst2/Vst2Interface.h"
#include "host/vst2/Vst2Records.h"

namespace Vst2
{

/// Copies @p text as UTF-8, cut before the first character that does not fit with the terminator.
/// An empty @p buffer stays as it is. @throws std::bad_alloc
void CopyText(const MString& text, std::span<char> buffer);

/// The layer between the interface and an effect: owns the record that the host sees, and turns
/// opcodes into operations; opcodes without one it answers as an effect that has nothing to tell.
/// The operations keep the names by which the interface knows them. Buffers for texts are as long
/// as the interface allows, or empty if the host gave none. None of them may throw.
/// It lives on the heap and ends itself when the host closes it.
class AudioEffect
{
public:
    AudioEffect(HostCallback hostCallback, int programs, int parameters) noexcept;
    virtual ~AudioEffect() = default;
    AudioEffect(const AudioEffect&) = delete;
    AudioEffect& operator=(const AudioEffect&) = delete;

    /// Stays where it is until the end of this object.
    AEffect& GetAEffect() noexcept { return record; }

protected:
    // Audio thread. The host gives as many channels as the record tells.
    virtual void process(float** inputs, float** outputs, std::int32_t samples) noexcept = 0;
    virtual void processReplacing(float** inputs, float** outputs,
                                  std::int32_t samples) noexcept = 0;
    virtual std::int32_t processEvents(const VstEvents* events) noexcept = 0;

    // Any thread.
    virtual void setParameter(std::int32_t index, float value) noexcept = 0;
    virtual float getParameter(std::int32_t index) noexcept = 0;

    // All others: the host's main thread.
    virtual void resume() noexcept = 0;
    virtual void setSampleRate(float rate) noexcept = 0; ///< Hz
    virtual void setBlockSize(std::intptr_t samples) noexcept = 0;

    virtual void getProgramName(std::span<char> text) noexcept = 0;
    virtual bool getProgramNameIndexed(std::int32_t index, std::span<char> text) noexcept = 0;
    virtual void getParameterLabel(std::int32_t index, std::span<char> text) noexcept = 0;
    virtual void getParameterDisplay(std::int32_t index, std::span<char> text) noexcept = 0;
    virtual void getParameterName(std::int32_t index, std::span<char> text) noexcept = 0;
    virtual bool canParameterBeAutomated(std::int32_t index) noexcept = 0;
    /// @p text is null to ask whether it is possible at all.
    virtual bool string2parameter(std::int32_t index, const char* text) noexcept = 0;

    /// Bytes at @p data, which stay until the next call or the end; 0 and null if there are none.
    virtual std::intptr_t getChunk(void*& data, bool isPreset) noexcept = 0;
    /// 1 if it was taken.
    virtual std::int32_t setChunk(const void* data, std::intptr_t size, bool isPreset) noexcept = 0;

    virtual bool getInputProperties(std::int32_t index, VstPinProperties& properties) noexcept = 0;
    virtual bool getOutputProperties(std::int32_t index, VstPinProperties& properties) noexcept = 0;
    /// Either may be null.
    virtual bool setSpeakerArrangement(const VstSpeakerArrangement* inputs,
                                       const VstSpeakerArrangement* outputs) noexcept = 0;

    virtual PlugCategory getPlugCategory() noexcept = 0;
    /// False leaves the buffer as it was.
    virtual bool getEffectName(std::span<char> text) noexcept = 0;
    virtual bool getVendorString(std::span<char> text) noexcept = 0;
    virtual bool getProductString(std::span<char> text) noexcept = 0;
    virtual std::int32_t getVendorVersion() noexcept = 0;
    /// 1 yes, 0 unknown, -1 no.
    virtual std::int32_t canDo(const char* text) noexcept = 0;
    /// Now and then, also without an editor.
    virtual void idle() noexcept = 0;

    // What the effect asks of the host. Without one all answers are 0.
    std::intptr_t CallHost(HostOpcode opcode, std::int32_t index = 0, std::intptr_t value = 0,
                           const void* ptr = nullptr, float opt = 0.0f) noexcept;
    /// Valid until the host is called again or the block ends; null if the host tells none.
    const VstTimeInfo* getTimeInfo(std::int32_t mask) noexcept;
    bool canHostDo(const char* text) noexcept;
    void wantEvents() noexcept;
    void updateDisplay() noexcept;

    AEffect record;

private:
    static std::intptr_t OnDispatch(AEffect* effect, std::int32_t opcode, std::int32_t index,
                                    std::intptr_t value, void* ptr, float opt) noexcept;
    std::intptr_t Dispatch(EffectOpcode opcode, std::int32_t index, std::intptr_t value, void* ptr,
                           float opt) noexcept;

    HostCallback host; ///< null if there is none
};

} // namespace Vst2
