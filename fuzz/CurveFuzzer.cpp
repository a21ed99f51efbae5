// Loads curves and envelopes from trees of any kind, then reads and plays them. Whatever comes, the
// points end up in their box and in order, what is stored comes back, and levels are finite.

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <optional>
#include <span>

#include <fuzzer/FuzzedDataProvider.h>

#include "curves/MADSR.h"
#include "foundation/xml/MXMLItem.h"

namespace
{

constexpr const char* StageKeys[] = {
    "Delay",       "Attack",     "Hold",      "Decay",        "Release",     "Sustain",
    "AttackShape", "DecayShape", "Smoothing", "ReleaseShape", "CustomShape",
};
constexpr const char* PointKeys[] = {
    "x", "y", "c", "cx", "Flags", "fixed", "Type", "SmoothingType", "SmoothX1", "SmoothX2",
};
constexpr const char* Names[] = {
    "Mode 1", "Mode 2", "Mode 3", "Free 1", "Smooth 1", "Smooth 2", "Stairs", "Pulses",
};
constexpr const char* Numbers[] = {"0", "1", "-1", "0.5", "64", "1e-10", "1e300", "-1e999", "nan"};
constexpr double Rates[] = {0.0, 1.0, 44100.0, 6.144e6};
constexpr double Widths[] = {1.0, 2.0, 1e9, 0.0};

void Require(bool isTrue)
{
    if (!isTrue)
        std::abort();
}

bool IsWithin(double value, double min, double max)
{
    return value >= min && value <= max;
}

void CheckPoints(const MEnvelope& curve)
{
    std::optional<double> left;
    for (const MEnvelopePoint& point : curve.GetPoints())
    {
        const bool mayStand = point.Has(MEnvelopePoint::Fixed) || point.Has(MEnvelopePoint::Exempt);
        Require(mayStand || !left || point.X > *left);
        left = point.X;
        Require(IsWithin(point.X, curve.MinX, curve.MaxX));
        Require(IsWithin(point.Y, curve.MinY, curve.MaxY));
        Require(IsWithin(point.Curvature, -1.0, 1.0) && IsWithin(point.CurvatureX, -1.0, 1.0));
        Require(IsWithin(point.SmoothX1, 0.0, 1.0) && IsWithin(point.SmoothX2, 0.0, 1.0));
    }
}

bool AreEqual(const MXMLItem& a, const MXMLItem& b)
{
    const auto areAlike = [](const MAttribute& one, const MAttribute& other)
    { return one.name == other.name && one.value == other.value; };
    return a.GetName() == b.GetName() &&
           std::ranges::equal(a.GetAttributes(), b.GetAttributes(), areAlike) &&
           std::ranges::equal(a.GetSubItems(), b.GetSubItems(),
                              [](const auto& one, const auto& other)
                              { return AreEqual(*one, *other); });
}

/// The first time, numbers lose what is beyond their decimals; from then on nothing changes.
template <typename Object>
void CheckStoredForm(Object& object)
{
    MXMLItem first("settings");
    object.Store(first);
    object.Load(first);
    object.Store(first);
    object.Load(first);
    MXMLItem second("settings");
    object.Store(second);
    Require(AreEqual(first, second));
}

class Driver
{
public:
    explicit Driver(FuzzedDataProvider& source) : data(source) {}

    void ReadCurve()
    {
        MXMLItem item("settings");
        FillCurve(item);
        const double start = data.ConsumeBool() ? 0.0 : -1.0;
        MEnvelope curve(start, start + data.PickValueInArray(Widths), -1.0, 1.0);
        curve.Load(item);
        CheckPoints(curve);

        MEnvelopeComputer computer;
        computer.Compile(curve);
        std::array<float, 64> values{};
        const double x = curve.MinX - 0.25 + 0.25 * data.ConsumeIntegralInRange(0, 5);
        const double step = (curve.MaxX - curve.MinX) / 60.0;
        computer.SeekBack(x);
        computer.FillFloat(values.data(), x, step, static_cast<int>(values.size()));
        for (const float value : values)
            Require(std::isfinite(value));
        CheckStoredForm(curve);
        CheckPoints(curve);
    }

    void PlayNotes()
    {
        MXMLItem item("settings");
        SetAttributes(item, StageKeys, 12);
        FillCurve(item.AddSubItem("EnvelopeAttack"));
        if (data.ConsumeBool())
            FillCurve(item.AddSubItem("EnvelopeRelease"));
        MADSR adsr;
        adsr.Load(item);
        adsr.SetSampleRate(data.PickValueInArray(Rates));
        CheckPoints(adsr.EnvelopeAttack);
        CheckPoints(adsr.EnvelopeRelease);

        MADSRState state;
        for (int step = data.ConsumeIntegralInRange(0, 40); step > 0; --step)
        {
            const int action = data.ConsumeIntegralInRange(0, 7);
            if (action == 0)
                adsr.NoteOn(state, data.ConsumeIntegralInRange(-1, 100));
            if (action == 1)
                adsr.NoteOff(state, data.ConsumeIntegralInRange(-1, 3));
            Require(std::isfinite(adsr.Advance(state, adsr.TotalEnd / 30.0 * action + action)));
        }
        CheckStoredForm(adsr);
    }

private:
    void SetAttributes(MXMLItem& item, std::span<const char* const> keys, int most)
    {
        for (int i = data.ConsumeIntegralInRange(0, most); i > 0; --i)
            item.SetAttribute(keys[data.ConsumeIntegralInRange<std::size_t>(0, keys.size() - 1)],
                              MakeValue());
    }

    MString MakeValue()
    {
        switch (data.ConsumeIntegralInRange(0, 4))
        {
        case 0:
            return MString::FromDouble(data.ConsumeFloatingPointInRange(-1.5, 1.5), 15);
        case 1:
            return MString::FromInteger(data.ConsumeIntegral<std::uint8_t>());
        case 2:
            return data.PickValueInArray(Numbers);
        case 3:
            return data.PickValueInArray(Names);
        default:
            return MString::FromUTF8(data.ConsumeRandomLengthString(12));
        }
    }

    void FillCurve(MXMLItem& item)
    {
        constexpr const char* Switches[] = {"DrawingMode", "SnapToGridX", "SnapToGridY"};
        SetAttributes(item, Switches, 3);
        for (int i = data.ConsumeIntegralInRange(0, 12); i > 0; --i)
            SetAttributes(item.AddSubItem("Point"), PointKeys, 10);
    }

    FuzzedDataProvider& data;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size)
{
    FuzzedDataProvider data(bytes, size);
    Driver driver(data);
    if (data.ConsumeBool())
        driver.ReadCurve();
    else
        driver.PlayNotes();
    return 0;
}
