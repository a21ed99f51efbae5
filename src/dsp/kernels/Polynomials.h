#pragma once

/// Polynomials along a line of samples; see Arithmetic.h for what all kernels share.
namespace kernels
{

/// dst[i] = c[0] + c[1] * u + ... + c[order] * u^order at u = x + i * dx.
/// @p c has order + 1 coefficients; an @p order below 0 makes the call do nothing. All is reckoned
/// in f64 by Horner's rule, so a value has the bits of the same rule at the same u alone, and one
/// in f32 is that value rounded.
void Polynomial(float* dst, const double* c, int order, double x, double dx, int n) noexcept;
void Polynomial(double* dst, const double* c, int order, double x, double dx, int n) noexcept;

} // namespace kernels
