#pragma once

#include <cstddef>
#include <memory>
#include <vector>

class MEnvelope;

/// A curve compiled for reading: items in the order of x, each a function with its coefficients
/// worked out, so that reading is a polynomial in plain x. The items cover all x: the first value
/// holds before the curve, the last behind it.
///
/// Built and read by one thread at a time, under the lock of its owner. It keeps the storage of its
/// items, so that compiling again allocates only if the curve has grown.
class MEnvelopeComputer
{
public:
    class Item;

    MEnvelopeComputer();
    ~MEnvelopeComputer();
    MEnvelopeComputer(const MEnvelopeComputer&);
    MEnvelopeComputer& operator=(const MEnvelopeComputer&);

    /// Replaces the items. Puts the cursor to the left end.
    /// @throws MException "Invalid control point type."
    void Compile(const MEnvelope& curve);

    /// The value at @p x, which lies at or behind the last one read; else SeekBack comes first.
    double Get(double x);
    /// Makes an @p x before the last one read readable.
    void SeekBack(double x);

    /// Writes the @p count values at x, x + dx, ...; like Get they run forward from the cursor.
    void FillFloat(float* out, double x, double dx, int count);
    void FillDouble(double* out, double x, double dx, int count);
    /// Replaces each of @p count positions by the value there, in any order of positions.
    void MapFloat(float* values, int count);

    /// From here on the curve is zero; 1.7e308 if it never ends so.
    double GetSilentFromX() const noexcept { return SilentFromX; }
    double GetMinX() const noexcept { return MinX; }
    double GetMaxX() const noexcept { return MaxX; }

private:
    double Position = 0.0; ///< the cursor's last x
    double MinX = 0.0;
    double MaxX = 0.0;
    double SilentFromX = 1.7e308;
};
