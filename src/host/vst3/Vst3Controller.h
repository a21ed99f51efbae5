#pragma once

#include "host/vst3/Vst3Base.h"

// The controller's half of a plugin, and what it calls at the host. The thread that made the
// object.

namespace Vst3
{

class IPlugView;

struct ParameterInfo
{
    enum Flags : std::int32_t
    {
        kCanAutomate = 1,
        kIsReadOnly = 2,
        kIsWrapAround = 4,
        kIsList = 8,
        kIsHidden = 16,
        kIsProgramChange = 0x8000,
        kIsBypass = 0x10000,
    };

    ParamID id;
    String128 title;
    String128 shortTitle;
    String128 units;
    std::int32_t stepCount; ///< 0 continuous, 1 a switch, n for n + 1 values
    double defaultNormalizedValue;
    std::int32_t unitId;
    std::int32_t flags;
};
static_assert(offsetof(ParameterInfo, title) == 4 && offsetof(ParameterInfo, shortTitle) == 260 &&
              offsetof(ParameterInfo, units) == 516 && offsetof(ParameterInfo, stepCount) == 772 &&
              offsetof(ParameterInfo, defaultNormalizedValue) == 776 &&
              offsetof(ParameterInfo, unitId) == 784 && offsetof(ParameterInfo, flags) == 788 &&
              sizeof(ParameterInfo) == 792);

inline constexpr std::int32_t kRootUnitId = 0;
inline constexpr std::int32_t kNoParentUnitId = -1;
inline constexpr std::int32_t kNoProgramListId = -1;

struct UnitInfo
{
    std::int32_t id;
    std::int32_t parentUnitId;
    String128 name;
    std::int32_t programListId;
};
static_assert(offsetof(UnitInfo, name) == 8 && offsetof(UnitInfo, programListId) == 264 &&
              sizeof(UnitInfo) == 268);

struct ProgramListInfo
{
    std::int32_t id;
    String128 name;
    std::int32_t programCount;
};
static_assert(offsetof(ProgramListInfo, name) == 4 &&
              offsetof(ProgramListInfo, programCount) == 260 && sizeof(ProgramListInfo) == 264);

/// What has changed, for restartComponent.
enum RestartFlags : std::int32_t
{
    kReloadComponent = 1,
    kIoChanged = 2,
    kParamValuesChanged = 4,
    kLatencyChanged = 8,
    kParamTitlesChanged = 16,
};

/// The host's ear for edits.
class IComponentHandler : public FUnknown
{
public:
    static constexpr Uid Id = MakeUid(0x93A0BEA3, 0x0BD045DB, 0x8E890B0C, 0xC1E46AC6);

    virtual Result beginEdit(ParamID id) = 0;
    /// The host may set the parameter in turn before it returns.
    virtual Result performEdit(ParamID id, double value) = 0;
    virtual Result endEdit(ParamID id) = 0;
    /// The host may deactivate the plugin and ask it anything before it returns.
    virtual Result restartComponent(std::int32_t flags) = 0;

protected:
    ~IComponentHandler() = default;
};

class IEditController : public IPluginBase
{
public:
    static constexpr Uid Id = MakeUid(0xDCD7BBE3, 0x7742448D, 0xA874AACC, 0x979C759E);

    virtual Result setComponentState(IBStream* state) = 0;
    virtual Result setState(IBStream* state) = 0;
    virtual Result getState(IBStream* state) = 0;
    virtual std::int32_t getParameterCount() = 0;
    virtual Result getParameterInfo(std::int32_t index, ParameterInfo& info) = 0;
    virtual Result getParamStringByValue(ParamID id, double value, char16_t* text) = 0;
    virtual Result getParamValueByString(ParamID id, char16_t* text, double& value) = 0;
    virtual double normalizedParamToPlain(ParamID id, double value) = 0;
    virtual double plainParamToNormalized(ParamID id, double plainValue) = 0;
    virtual double getParamNormalized(ParamID id) = 0;
    virtual Result setParamNormalized(ParamID id, double value) = 0;
    /// Null at the end.
    virtual Result setComponentHandler(IComponentHandler* handler) = 0;
    /// The caller owns one reference of the view; null if there is none of this name.
    virtual IPlugView* createView(const char* name) = 0;

protected:
    ~IEditController() = default;
};

class IEditController2 : public FUnknown
{
public:
    static constexpr Uid Id = MakeUid(0x7F4EFE59, 0xF3204967, 0xAC27A3AE, 0xAFB63038);

    virtual Result setKnobMode(std::int32_t mode) = 0;
    virtual Result openHelp(Bool onlyCheck) = 0;
    virtual Result openAboutBox(Bool onlyCheck) = 0;

protected:
    ~IEditController2() = default;
};

class IMidiMapping : public FUnknown
{
public:
    static constexpr Uid Id = MakeUid(0xDF0FF9F7, 0x49B74669, 0xB63AB732, 0x7ADBF5E5);

    virtual Result getMidiControllerAssignment(std::int32_t bus, std::int16_t channel,
                                               std::int16_t controller, ParamID& id) = 0;

protected:
    ~IMidiMapping() = default;
};

class IUnitInfo : public FUnknown
{
public:
    static constexpr Uid Id = MakeUid(0x3D4BD6B5, 0x913A4FD2, 0xA886E768, 0xA5EB92C1);

    virtual std::int32_t getUnitCount() = 0;
    virtual Result getUnitInfo(std::int32_t index, UnitInfo& info) = 0;
    virtual std::int32_t getProgramListCount() = 0;
    virtual Result getProgramListInfo(std::int32_t index, ProgramListInfo& info) = 0;
    virtual Result getProgramName(std::int32_t list, std::int32_t program, char16_t* name) = 0;
    virtual Result getProgramInfo(std::int32_t list, std::int32_t program, const char* attribute,
                                  char16_t* value) = 0;
    virtual Result hasProgramPitchNames(std::int32_t list, std::int32_t program) = 0;
    virtual Result getProgramPitchName(std::int32_t list, std::int32_t program, std::int16_t pitch,
                                       char16_t* name) = 0;
    virtual std::int32_t getSelectedUnit() = 0;
    virtual Result selectUnit(std::int32_t unit) = 0;
    virtual Result getUnitByBus(std::int32_t media, std::int32_t direction, std::int32_t bus,
                                std::int32_t channel, std::int32_t& unit) = 0;
    virtual Result setUnitProgramData(std::int32_t listOrUnit, std::int32_t program,
                                      IBStream* data) = 0;

protected:
    ~IUnitInfo() = default;
};

class IAttributeList : public FUnknown
{
public:
    static constexpr Uid Id = MakeUid(0x1E5F0AEB, 0xCC7F4533, 0xA2544011, 0x38AD5EE4);

    virtual Result setInt(const char* id, std::int64_t value) = 0;
    virtual Result getInt(const char* id, std::int64_t& value) = 0;
    virtual Result setFloat(const char* id, double value) = 0;
    virtual Result getFloat(const char* id, double& value) = 0;
    virtual Result setString(const char* id, const char16_t* text) = 0;
    virtual Result getString(const char* id, char16_t* text, std::uint32_t bytes) = 0;
    virtual Result setBinary(const char* id, const void* data, std::uint32_t bytes) = 0;
    virtual Result getBinary(const char* id, const void*& data, std::uint32_t& bytes) = 0;

protected:
    ~IAttributeList() = default;
};

class IMessage : public FUnknown
{
public:
    static constexpr Uid Id = MakeUid(0x936F033B, 0xC6C047DB, 0xBB0882F8, 0x13C1E613);

    virtual const char* getMessageID() = 0;
    virtual void setMessageID(const char* id) = 0;
    /// Borrowed.
    virtual IAttributeList* getAttributes() = 0;

protected:
    ~IMessage() = default;
};

class IConnectionPoint : public FUnknown
{
public:
    static constexpr Uid Id = MakeUid(0x70A4156F, 0x6E6E4026, 0x989148BF, 0xAA60D8D1);

    virtual Result connect(IConnectionPoint* other) = 0;
    virtual Result disconnect(IConnectionPoint* other) = 0;
    virtual Result notify(IMessage* message) = 0;

protected:
    ~IConnectionPoint() = default;
};

/// The context of initialize, as a rule.
class IHostApplication : public FUnknown
{
public:
    static constexpr Uid Id = MakeUid(0x58E595CC, 0xDB2D4969, 0x8B6AAF8C, 0x36A664E5);

    /// Up to 127 characters.
    virtual Result getName(char16_t* name) = 0;
    virtual Result createInstance(const std::uint8_t* classId, const std::uint8_t* interfaceId,
                                  void** object) = 0;

protected:
    ~IHostApplication() = default;
};

} // namespace Vst3
