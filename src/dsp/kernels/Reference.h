#pragma once

/// The kernels once more as plain loops: what a kernel has to equal, and what it has to beat.
/// ReadCycle differs within the rounding of phases, SumSquares within that of its sum, and the
/// others in nothing. For tests and measurements.
namespace kernels::reference
{

void Fill(float* dst, float v, int n) noexcept;
void FillDouble(double* dst, double v, int n) noexcept;
void Scale(float* dst, const float* src, float k, int n) noexcept;
void Add(float* dst, const float* src, int n) noexcept;
void ScaleAdd(float* dst, const float* src, float k, int n) noexcept;
void Mix(float* dst, const float* a, float ka, const float* b, float kb, int n) noexcept;

float PeakAbs(const float* src, int n) noexcept;
double SumSquares(const float* src, int n) noexcept;

void RampScale(float* dst, float start, float step, int n) noexcept;
void RampScaleAdd(float* dst, const float* src, float start, float step, int n) noexcept;
void RampMix(float* dst, const float* src, float dstStart, float dstStep, float srcStart,
             float srcStep, int n) noexcept;

/// Adds up the phase sample by sample; all phases must be finite, 0 or more and below 2^49.
double ReadCycle(float* dst, const float* table, double phase, double step, int n) noexcept;

} // namespace kernels::reference
