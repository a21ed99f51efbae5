#pragma once

#include <array>
#include <cstddef>

/// A filter of second order in double precision: b0 + b1/z + b2/z² over 1 + a1/z + a2/z².
struct MBiquad
{
    static constexpr double LeastLevel = 1.0000000036274937e-15; ///< keeps off denormal numbers

    struct State
    {
        double one = 0.0;
        double two = 0.0;
    };

    /// @p hz is limited to 0.49 times @p rate, @p q to 0.05 to 10.
    static MBiquad LowPass(double hz, double q, double rate) noexcept;
    static MBiquad HighPass(double hz, double q, double rate) noexcept;

    double Process(State& state, double x) const noexcept
    {
        const double y = b0 * x + state.one + LeastLevel;
        state.one = b1 * x - a1 * y + state.two;
        state.two = b2 * x - a2 * y;
        return y;
    }

    double b0 = 1.0;
    double b1 = 0.0;
    double b2 = 0.0;
    double a1 = 0.0;
    double a2 = 0.0;
};

/// A high-pass and behind it a low-pass, for up to eight channels.
/// Does not allocate. One thread at a time.
class MBandPass
{
public:
    static constexpr std::size_t Channels = 8;

    /// Keeps what the filters hold. Costs nothing if all is as it was.
    void Design(double lowHz, double highHz, double q, double rate) noexcept;
    void Reset() noexcept { states.fill({}); }

    double Process(std::size_t channel, double x) noexcept
    {
        ChannelState& state = states[channel];
        return lowPass.Process(state.low, highPass.Process(state.high, x));
    }

private:
    struct ChannelState
    {
        MBiquad::State high;
        MBiquad::State low;
    };

    MBiquad highPass;
    MBiquad lowPass;
    std::array<double, 4> designed{}; ///< as of the last design
    std::array<ChannelState, Channels> states;
};
