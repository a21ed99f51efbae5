#pragma once

#include <complex>

/// Blocks of complex numbers; see Arithmetic.h for what all kernels share. Lengths count complex
/// numbers, not floats.
namespace kernels
{

using Complex = std::complex<float>;

/// dst = a * b, by the plain formula: infinite numbers get no special treatment.
void MultiplySpectra(Complex* dst, const Complex* a, const Complex* b, int n) noexcept;

/// dst = |dst|^2, with an imaginary part of 0
void PowerSpectrum(Complex* dst, int n) noexcept;

} // namespace kernels
