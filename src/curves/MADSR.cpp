#include "curves/MADSR.h"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <numeric>
#include <optional>
#include <span>

#include "foundation/threads/MLockGuard.h"
#include "foundation/xml/MXMLItem.h"
#include "foundation/xml/SettingsTree.h"

namespace
{

constexpr double SustainSeconds = 0.05; ///< of the curve, on which a note waits as long as it likes

struct StoredValue
{
    const char* key;
    double MADSR::*field;
    double min;
    double max;
};

constexpr StoredValue CommonValues[] = {
    {"Attack", &MADSR::Attack, 0.0, MADSR::MaxSeconds},
    {"Release", &MADSR::Release, 0.0, MADSR::MaxSeconds},
};

/// Those that drawn curves leave without effect.
constexpr StoredValue StageValues[] = {
    {"Delay", &MADSR::Delay, 0.0, MADSR::MaxSeconds},
    {"Hold", &MADSR::Hold, 0.0, MADSR::MaxSeconds},
    {"Decay", &MADSR::Decay, 0.0, MADSR::MaxSeconds},
    {"AttackShape", &MADSR::AttackShape, -1.0, 1.0},
    {"DecayShape", &MADSR::DecayShape, -1.0, 1.0},
    {"ReleaseShape", &MADSR::ReleaseShape, -1.0, 1.0},
    {"Sustain", &MADSR::Sustain, 0.0, 1.0},
    {"Smoothing", &MADSR::Smoothing, 0.0, 1.0},
};

void StoreValues(MXMLItem& item, const MADSR& from, std::span<const StoredValue> values)
{
    for (const StoredValue& value : values)
        item.SetAttribute(value.key, from.*value.field);
}

void LoadValues(MXMLItem& item, MADSR& to, std::span<const StoredValue> values)
{
    for (const StoredValue& value : values)
        if (item.HasAttribute(value.key))
            to.*value.field = std::clamp(item.GetAttribute().ToDouble(), value.min, value.max);
}

void LoadCurve(MXMLItem& item, const char* key, MEnvelope& curve)
{
    if (item.HasSubItem(key))
        curve.Load(item.GetSubItem());
}

/// How a drawn curve becomes a part of another one.
struct Placement
{
    double start;       ///< samples
    double length;      ///< samples
    double scale = 1.0; ///< of y
};

void Append(MEnvelope& curve, const MEnvelope& drawn, const Placement& placement)
{
    for (MEnvelopePoint point : drawn.GetPoints())
    {
        point.X = point.X * placement.length + placement.start;
        point.Y *= placement.scale;
        // What is over at once is a step: its points lie on one another, and are to stay there.
        if (placement.length < 1.0)
            point.Flags |= MEnvelopePoint::Exempt;
        curve.GetPoints().push_back(point);
    }
}

/// The scale at which the release starts where the attack ends.
double JointScale(const MEnvelope& attack, const MEnvelope& release)
{
    if (attack.GetCount() == 0 || release.GetCount() == 0)
        return 1.0;
    const double first = release.GetPoints().front().Y;
    return first == 0.0 ? 1.0 : attack.GetPoints().back().Y / first;
}

} // namespace

MADSR::MADSR(MLock* processingLock) : lock(processingLock)
{
    EnvelopeAttack.AddEndPoints(0.0, 1.0);
    EnvelopeRelease.AddEndPoints(1.0, 0.0);
    Rebuild();
}

void MADSR::SetState(const MADSR& state)
{
    // Parameter objects read these without a lock.
    const auto take = [&](std::span<const StoredValue> values)
    {
        for (const StoredValue& value : values)
            std::atomic_ref(this->*value.field)
                .store(state.*value.field, std::memory_order_relaxed);
    };
    std::optional<MLockGuard> guard;
    if (lock != nullptr)
        guard.emplace(*lock);
    take(CommonValues);
    take(StageValues);
    CustomShape = state.CustomShape;
    EnvelopeAttack = state.EnvelopeAttack;
    EnvelopeRelease = state.EnvelopeRelease;
    Rebuild();
}

void MADSR::Rebuild()
{
    std::optional<MLockGuard> guard;
    if (lock != nullptr)
        guard.emplace(*lock);
    Curve.Clear();
    if (CustomShape)
        JoinDrawnCurves();
    else
        MakeStages();
    Computer.Compile(Curve);
}

void MADSR::MakeStages()
{
    DelayEnd = Delay * SampleRate;
    AttackEnd = DelayEnd + Attack * SampleRate;
    HoldEnd = AttackEnd + Hold * SampleRate;
    SustainStart = HoldEnd + Decay * SampleRate;
    SustainEnd = SustainStart + SustainSeconds * SampleRate;
    TotalEnd = SustainEnd + Release * SampleRate;

    const auto add = [this](double x, double y, double curvature, double left, double right)
    {
        MEnvelopePoint& point = Curve.Add(x, y);
        point.Flags = 0;
        point.Curvature = curvature;
        point.SmoothX1 = left;
        point.SmoothX2 = right;
    };
    // Upwards the shape bends the other way than downwards.
    add(0.0, 0.0, -AttackShape, 0.0, 0.0);
    if (DelayEnd > 0.0)
        add(DelayEnd, 0.0, -AttackShape, Smoothing, Smoothing);
    add(AttackEnd, 1.0, DecayShape, Smoothing, Smoothing);
    if (HoldEnd - 1e-20 > AttackEnd)
        add(HoldEnd, 1.0, DecayShape, Smoothing, Smoothing);
    if (std::abs(Sustain - 1.0) >= 1e-50)
        add(SustainStart, Sustain, 0.0, Smoothing, 0.0);
    add(SustainEnd, Sustain, ReleaseShape, 0.0, 0.0);
    add(TotalEnd, 0.0, 0.0, 0.0, 0.0);
    Curve.MinX = 0.0;
    Curve.MaxX = TotalEnd;
}

void MADSR::JoinDrawnCurves()
{
    const double releaseLength = Release * SampleRate;
    DelayEnd = 0.0;
    AttackEnd = Attack * SampleRate;
    HoldEnd = AttackEnd;
    SustainStart = AttackEnd;
    SustainEnd = SustainStart + SustainSeconds * SampleRate;
    TotalEnd = SustainEnd + releaseLength;

    // Sanitising may add an end point.
    Curve.GetPoints().reserve(EnvelopeAttack.GetCount() + EnvelopeRelease.GetCount() + 1);
    Append(Curve, EnvelopeAttack, {.start = 0.0, .length = AttackEnd});
    Append(Curve, EnvelopeRelease,
           {.start = SustainEnd,
            .length = releaseLength,
            .scale = JointScale(EnvelopeAttack, EnvelopeRelease)});
    Curve.MinX = 0.0;
    Curve.MaxX = TotalEnd;
    Curve.Sanitise();
}

void MADSR::SetSampleRate(double newSampleRate)
{
    SampleRate = std::isfinite(newSampleRate) ? std::max(newSampleRate, 0.0) : 0.0;
    Rebuild();
}

double MADSR::Advance(MADSRState& state, double step)
{
    const double level = ReadLevel(state.X);
    if (state.X < SustainStart || state.X >= SustainEnd)
        state.X += step;
    else if (state.ReleaseCountdown >= 1.0)
        state.ReleaseCountdown -= 1.0;
    else
        state.X = SustainEnd;
    return level;
}

void MADSR::NoteOn(MADSRState& state, double startX)
{
    state.ReleaseCountdown = MADSRState::Held;
    if (state.X < HoldEnd)
        return;
    if (state.X >= TotalEnd)
        state.X = startX;
    else
        state.X = FindInAttack(ReadLevel(state.X));
}

void MADSR::NoteOff(MADSRState& state, double delaySamples) const noexcept
{
    if (state.X < TotalEnd)
        state.ReleaseCountdown = delaySamples - std::max(0.0, SustainStart - state.X);
}

double MADSR::ReadLevel(double x)
{
    Computer.SeekBack(x);
    return Computer.Get(x);
}

double MADSR::FindInAttack(double level)
{
    if (Smoothing == 0.0 && !CustomShape)
        return (AttackEnd - DelayEnd) * level + DelayEnd;
    double left = DelayEnd;
    double right = AttackEnd;
    for (int step = 0; step < 20; ++step)
    {
        const double middle = std::midpoint(left, right);
        (ReadLevel(middle) < level ? left : right) = middle;
    }
    return std::midpoint(left, right);
}

void MADSR::Store(MXMLItem& item) const
{
    item.Clear();
    StoreValues(item, *this, CommonValues);
    if (!CustomShape)
    {
        StoreValues(item, *this, StageValues);
        return;
    }
    item.SetAttribute("CustomShape", 1);
    EnvelopeAttack.Store(item.AddSubItem("EnvelopeAttack"));
    EnvelopeRelease.Store(item.AddSubItem("EnvelopeRelease"));
}

void MADSR::Load(MXMLItem& item)
{
    CheckSettingsTree(item);
    std::optional<MLockGuard> guard;
    if (lock != nullptr)
        guard.emplace(*lock);
    LoadValues(item, *this, CommonValues);
    LoadValues(item, *this, StageValues);
    CustomShape = item.GetAttribute("CustomShape", MString()).ToInteger() != 0;
    LoadCurve(item, "EnvelopeAttack", EnvelopeAttack);
    LoadCurve(item, "EnvelopeRelease", EnvelopeRelease);
    Rebuild();
}
