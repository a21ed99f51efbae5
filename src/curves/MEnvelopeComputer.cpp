#include "curves/MEnvelopeComputer.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <span>
#include <type_traits>

#include "curves/EnvelopeItemTable.h"
#include "curves/EnvelopeItems.h"
#include "curves/EnvelopeSegments.h"
#include "curves/EnvelopeSmoothing.h"
#include "curves/MEnvelope.h"

MEnvelopeComputer::MEnvelopeComputer()
{
    Compile(MEnvelope(0.0, 1.0, 0.0, 0.0));
}

MEnvelopeComputer::~MEnvelopeComputer() = default;

MEnvelopeComputer::MEnvelopeComputer(const MEnvelopeComputer& other)
{
    *this = other;
}

MEnvelopeComputer& MEnvelopeComputer::operator=(const MEnvelopeComputer& other)
{
    if (this == &other)
        return *this;
    MakeRoom(other.items.size());
    items.assign(other.items.size(), nullptr);
    for (std::size_t i = 0; i < items.size(); ++i)
        items[i] = other.items[i]->Clone(slots[i]);
    CurrentItem = other.CurrentItem;
    Position = other.Position;
    MinX = other.MinX;
    MaxX = other.MaxX;
    SilentFromX = other.SilentFromX;
    return *this;
}

void MEnvelopeComputer::Compile(const MEnvelope& curve)
{
    const std::span<const MEnvelopePoint> points = curve.GetPoints();
    envelopes::CheckSegments(points);
    MakeRoom(EnvelopeItemTable::GetSize(points.size()));

    EnvelopeItemTable table(points.size(), slots, items);
    SilentFromX = EndOfAll;
    if (points.size() >= 2)
    {
        envelopes::MakeSegments(points, table);
        SilentFromX = envelopes::SmoothPoints(points, table);
    }
    else if (points.size() == 1)
    {
        table.SetLeft<ItemConstant>(0, EndOfAll, points[0].Y);
        if (std::abs(points[0].Y) < 1e-50)
            SilentFromX = points[0].X;
    }
    else
        table.SetLeft<ItemConstant>(0, EndOfAll, 0.5 * (curve.MinY + curve.MaxY));
    std::erase(items, nullptr);

    CurrentItem = 0;
    MinX = curve.MinX;
    MaxX = curve.MaxX;
    Position = MinX;
}

void MEnvelopeComputer::MakeRoom(std::size_t itemCount)
{
    items.reserve(itemCount);
    if (slots.size() >= itemCount)
        return;
    std::vector<EnvelopeItemSlot> grown(itemCount);
    items.clear();
    slots.swap(grown);
}

double MEnvelopeComputer::Get(double x)
{
    MoveForward(x);
    return items[CurrentItem]->Get(x);
}

void MEnvelopeComputer::SeekBack(double x)
{
    if (!(x < Position))
        return;
    while (CurrentItem > 0 && items[CurrentItem - 1]->EndX > x)
        --CurrentItem;
    Position = x;
}

void MEnvelopeComputer::MoveForward(double x)
{
    while (!IsAtLastItem() && items[CurrentItem]->EndX <= x)
        ++CurrentItem;
    Position = std::max(Position, x);
}

void MEnvelopeComputer::FillFloat(float* out, double x, double dx, int count)
{
    Fill(out, x, dx, count);
}

void MEnvelopeComputer::FillDouble(double* out, double x, double dx, int count)
{
    Fill(out, x, dx, count);
}

template <class Sample>
void MEnvelopeComputer::Fill(Sample* out, double x, double dx, int count)
{
    if (!(dx > 0.0) || std::isinf(dx))
        return FillOneByOne(out, x, dx, count);

    for (int done = 0; done < count;)
    {
        MoveForward(x);
        const Item& item = *items[CurrentItem];
        const int rest = count - done;
        const int part = IsAtLastItem() ? rest : CountSamplesBefore(item.EndX, x, dx, rest);
        if constexpr (std::is_same_v<Sample, float>)
            item.FillFloat(out + done, x, dx, part);
        else
            item.FillDouble(out + done, x, dx, part);
        done += part;
        x += part * dx;
        // Samples of a table have to leave the item even where rounding holds them back.
        if (std::is_same_v<Sample, float> && done < count)
            x = std::max(x, item.EndX);
    }
}

template <class Sample>
void MEnvelopeComputer::FillOneByOne(Sample* out, double x, double dx, int count)
{
    for (int i = 0; i < count; ++i, x += dx)
    {
        SeekBack(x);
        out[i] = static_cast<Sample>(Get(x));
    }
}

void MEnvelopeComputer::MapFloat(float* values, int count)
{
    constexpr double Infinity = std::numeric_limits<double>::infinity();
    for (int i = 0; i < count;)
    {
        SeekBack(values[i]);
        MoveForward(values[i]);
        const Item& item = *items[CurrentItem];
        const double start = CurrentItem > 0 ? items[CurrentItem - 1]->EndX : -Infinity;
        const double end = IsAtLastItem() ? Infinity : item.EndX;
        // What is not a number belongs to any item.
        int run = 1;
        while (i + run < count && !(values[i + run] < start || values[i + run] >= end))
            ++run;
        item.MapFloat(values + i, run);
        i += run;
    }
}
