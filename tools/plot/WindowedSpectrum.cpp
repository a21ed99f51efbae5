#include "tools/plot/WindowedSpectrum.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace
{

/// The seven cosines of a Blackman-Harris window; Albrecht, "A family of cosine-sum windows for
/// high-resolution measurements", 2001.
constexpr double Cosines[] = {0.27105140069342,  -0.43329793923448, 0.21812299954311,
                              -0.06592544638803, 0.01081174209837,  -0.00077658482522,
                              0.00001388721735};

std::vector<float> MakeWindow(int length)
{
    std::vector<float> window(static_cast<std::size_t>(length));
    const double step = 2.0 * std::numbers::pi / length;
    const double gain = 2.0 / (length * Cosines[0]);
    for (std::size_t i = 0; i < window.size(); ++i)
    {
        double sum = 0.0;
        for (std::size_t k = 0; k < std::size(Cosines); ++k)
            sum += Cosines[k] * std::cos(step * static_cast<double>(i * k));
        window[i] = static_cast<float>(gain * sum);
    }
    return window;
}

} // namespace

WindowedSpectrum::WindowedSpectrum(int pieceLength)
    : fft(pieceLength),
      window(MakeWindow(pieceLength)),
      windowed(window.size()),
      spectrum(window.size() / 2 + 1),
      power(spectrum.size())
{
}

std::span<const double> WindowedSpectrum::Measure(std::span<const float> piece)
{
    const std::size_t heard = std::min(piece.size(), window.size());
    std::fill(std::transform(piece.begin(), piece.begin() + static_cast<std::ptrdiff_t>(heard),
                             window.begin(), windowed.begin(), std::multiplies<>()),
              windowed.end(), 0.0f);
    fft.Forward(windowed.data(), spectrum.data());
    std::ranges::transform(spectrum, power.begin(),
                           [](const kernels::Complex& bin)
                           { return std::norm(std::complex<double>(bin)); });
    return power;
}
