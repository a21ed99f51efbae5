#pragma once

#include <span>

#include "effect/MPluginSpecialRecord.h"
#include "effect/parameters/ParameterMainBase.h"
#include "foundation/threads/MLock.h"

/// How a number behind a parameter maps to a scale of 0.0 to 1.0, and how it shows.
struct ParameterScale
{
    double (*to01)(double number) noexcept;
    double (*from01)(double value01) noexcept;
    MString (*getText)(double number);
    /// False, leaving @p number, if @p text holds none.
    bool (*parse)(const MString& text, double& number);

    /// 0.0 to 1.0 as it is, in percents.
    static const ParameterScale Fraction;
    static bool ParsePercents(const MString& text, double& number);
};

/// The parameter object over a row of numbers of a complex object. A write takes the processing
/// lock, writes the number and rebuilds the object, on whatever thread, also when quiet: nobody
/// else would. There are no alternates, so a modulator moves the number itself.
class ParameterSpecialMainBase : public ParameterMainBase
{
public:
    void SetParameter(int index, double value01, bool quiet) final;
    void SetParameters(std::span<const IndexedValue> newValues, bool quiet) final;
    double GetParameter(int index) const final;
    MString GetParameterValueName(int index) const final;
    MString GetParameterValueNameFrom01(int index, double value01) const final;
    double ParseParameterValueName(int index, const MString& text) const final;
    bool IsModulatable(int index) const final;
    double GetParameterDefaultValue(int index) const final;

    struct Value
    {
        const char* suffix; ///< behind the name of the object
        const ParameterScale* scale;
        double default01;
    };

protected:
    /// @p objectValues is a table that lives as long as the program.
    ParameterSpecialMainBase(std::int32_t objectKind, std::span<const Value> objectValues,
                             const MPluginSpecialRecord& special, MParameterOwner* parameterOwner,
                             const MString& section);

    MString GetSuffix(int index) const final;
    /// Null for a value that is always at its default. @p index is one of the row.
    virtual double* FindNumber(int index) const noexcept = 0;
    virtual void Rebuild() = 0;

    /// The owner's; one of its own until it is wired.
    MLock& GetProcessingLock() noexcept;
    // Numbers are read without the lock.
    static double Read(double& number) noexcept;
    static void Write(double& number, double newNumber) noexcept;

private:
    const Value& At(int index) const noexcept { return values[static_cast<std::size_t>(index)]; }
    double GetNumber(int index) const noexcept;

    std::span<const Value> values;
    MLock ownLock;
};

/// Over an @p Object of the effect, for which an @p Editor may be open.
template <typename Object, typename Editor>
class ParameterSpecialBase : public ParameterSpecialMainBase
{
public:
    Object& GetData() const noexcept { return *data; }
    /// Null while none is open.
    Editor* GetEditor() const noexcept { return editorSlot != nullptr ? *editorSlot : nullptr; }

protected:
    ParameterSpecialBase(std::int32_t objectKind, std::span<const Value> objectValues,
                         const MPluginSpecialRecord& special, MParameterOwner* parameterOwner,
                         const MString& section)
        : ParameterSpecialMainBase(objectKind, objectValues, special, parameterOwner, section),
          data(static_cast<Object*>(special.data)),
          editorSlot(static_cast<Editor**>(special.editorSlot))
    {
    }

    void NotifyChange() override { UpdateEditor(); }

private:
    Object* data;
    Editor** editorSlot;
};

/// The same over an object that the owner keeps itself.
template <typename Object, typename Editor>
class ParameterSpecialBaseCustom : public ParameterSpecialBase<Object, Editor>
{
protected:
    using ParameterSpecialBase<Object, Editor>::ParameterSpecialBase;

    void NotifyChange() override
    {
        this->InformOwner();
        this->UpdateEditor();
    }
};
