#pragma once

#include <cstddef>
#include <vector>

class MEnvelope;
struct EnvelopeItemSlot;

/// A curve compiled for reading: items in the order of x, each a function with its coefficients
/// worked out, so that reading a run of samples is one loop over a polynomial. The items cover all
/// x: the first value holds before the curve, the last behind it. Until it has compiled a curve it
/// is 0 everywhere.
///
/// Built and read by one thread at a time, under the lock of its owner. It keeps the storage of its
/// items, so that compiling again allocates only if the curve has grown.
class MEnvelopeComputer
{
public:
    class Item; // EnvelopeItems.h has this and its kinds
    class ItemConstant;
    class ItemLinear;
    class ItemQuadratic;
    class ItemFourthOrder;
    class ItemExponencial;
    class ItemBezier;
    class ItemCubic;
    class ItemStairs;
    class ItemPulses;

    static constexpr double EndOfAll = 1.7e308; ///< where the last item ends

    MEnvelopeComputer();
    ~MEnvelopeComputer();
    MEnvelopeComputer(const MEnvelopeComputer&);
    MEnvelopeComputer& operator=(const MEnvelopeComputer&);

    /// Replaces the items. Puts the cursor to the left end.
    /// @throws MException "Invalid control point type.", with the old items whole
    void Compile(const MEnvelope& curve);

    /// The value at @p x, which lies at or behind the last one read; else SeekBack comes first.
    double Get(double x);
    /// Makes an @p x before the last one read readable.
    void SeekBack(double x);

    /// Writes the @p count values at x, x + dx, ...; like Get they run forward from the cursor.
    /// With a @p dx that is not above 0 and finite, each value is sought by itself, both ways.
    void FillFloat(float* out, double x, double dx, int count);
    void FillDouble(double* out, double x, double dx, int count);
    /// Replaces each of @p count positions by the value there, in any order of positions.
    void MapFloat(float* values, int count);

    /// From here on the curve is zero; EndOfAll if it never ends so.
    double GetSilentFromX() const noexcept { return SilentFromX; }
    double GetMinX() const noexcept { return MinX; }
    double GetMaxX() const noexcept { return MaxX; }

private:
    void MakeRoom(std::size_t itemCount);
    void MoveForward(double x);
    bool IsAtLastItem() const noexcept { return CurrentItem + 1 == items.size(); }
    template <class Sample>
    void Fill(Sample* out, double x, double dx, int count);
    template <class Sample>
    void FillOneByOne(Sample* out, double x, double dx, int count);

    std::vector<EnvelopeItemSlot> slots; ///< where the items live; never shrinks
    std::vector<Item*> items;            ///< in the order of x, never empty
    std::size_t CurrentItem = 0;         ///< the cursor
    double Position = 0.0;               ///< all items before the cursor end at or before it
    double MinX = 0.0;
    double MaxX = 0.0;
    double SilentFromX = EndOfAll;
};
