#pragma once

#include <cstdint>

#include "dsp/kernels/Polyphase.h"
#include "dsp/kernels/Spectra.h"

/// The kernels once more as plain loops: what a kernel has to equal, and what it has to beat.
/// ReadCycle differs within the rounding of phases, SumSquares within that of its sum, PowerRamp
/// within what it promises, and the others in nothing. Resample is a plain loop itself. For tests
/// and measurements.
namespace kernels::reference
{

void Zero(float* dst, int n) noexcept;
void Fill(float* dst, float v, int n) noexcept;
void FillDouble(double* dst, double v, int n) noexcept;
void FillPixels(std::uint32_t* dst, std::uint32_t v, int n) noexcept;
void Copy(float* dst, const float* src, int n) noexcept;
void Scale(float* dst, const float* src, float k, int n) noexcept;
void Add(float* dst, const float* src, int n) noexcept;
void ScaleAdd(float* dst, const float* src, float k, int n) noexcept;
void Mix(float* dst, const float* a, float ka, const float* b, float kb, int n) noexcept;
void AddConstant(float* dst, float k, int n) noexcept;
void Clamp(float* dst, float limit, int n) noexcept;
void ZeroNonFinite(float* dst, int n) noexcept;
void MidSide(float* l, float* r, int n) noexcept;
void SumDifference(float* m, float* s, int n) noexcept;

void BlendPixels(std::uint32_t* dst, std::uint32_t v, int alpha, int n) noexcept;
void BlitPixels(std::uint32_t* dst, const std::uint32_t* src, int tint, int n) noexcept;
void MixPixels(std::uint32_t* dst, const std::uint32_t* a, const std::uint32_t* b, int weight,
               int n) noexcept;
void MixNeighbours(std::uint32_t* dst, const std::uint32_t* src, const std::int32_t* places,
                   const std::uint32_t* weights, int n) noexcept;

float PeakAbs(const float* src, int n) noexcept;
double SumSquares(const float* src, int n) noexcept;

void RampScale(float* dst, float start, float step, int n) noexcept;
void RampScaleAdd(float* dst, const float* src, float start, float step, int n) noexcept;
void RampMix(float* dst, const float* src, float dstStart, float dstStep, float srcStart,
             float srcStep, int n) noexcept;

/// Adds up the phase sample by sample; all phases must be finite, 0 or more and below 2^49.
double ReadCycle(float* dst, const float* table, double phase, double step, int n) noexcept;
void Lookup(float* dst, const float* source, const float* position, int n, int mask) noexcept;

void Lookup(float* dst, const float* source, const double* position, int n, int mask) noexcept;
void AddStrided(float* dst, const float* source, int first, int stride, float gain, int n,
                int mask) noexcept;
void PowerRamp(double* dst, double step, double exponent, int first, int n) noexcept;

void Polynomial(float* dst, const double* c, int order, double x, double dx, int n) noexcept;
void Polynomial(double* dst, const double* c, int order, double x, double dx, int n) noexcept;

void FIR(float* dst, const float* src, const float* taps, int tapCount, int n, int stride) noexcept;

void MultiplySpectra(Complex* dst, const Complex* a, const Complex* b, int n) noexcept;
void PowerSpectrum(Complex* dst, int n) noexcept;

void StretchFIR(float* dst, const float* src, const PolyphaseFilter& filter, int n) noexcept;
void SqueezeFIR(float* dst, const float* src, const PolyphaseFilter& filter, int n) noexcept;

} // namespace kernels::reference
