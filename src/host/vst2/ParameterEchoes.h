#pragma once

#include <atomic>
#include <cstddef>
#include <limits>
#include <vector>

namespace Vst2
{

/// What the host set each parameter to. It is read back as long as the parameter stays where that
/// took it, as hosts expect of their values, although whole numbers and switches round them.
/// Any thread, without a lock.
class ParameterEchoes
{
public:
    explicit ParameterEchoes(int count) : echoes(static_cast<std::size_t>(count)) {}

    /// The host set the parameter @p index to @p value, which it now shows as @p own.
    void Note(int index, float value, float own) noexcept
    {
        echoes[static_cast<std::size_t>(index)] = Echo{.value = value, .own = own};
    }
    /// The host's value for the parameter @p index, which shows as @p own.
    float Read(int index, float own) const noexcept;

private:
    struct alignas(8) Echo // for one access, with every compiler
    {
        float value = 0.0f;
        float own = std::numeric_limits<float>::quiet_NaN(); ///< nothing set yet
    };

    std::vector<std::atomic<Echo>> echoes;
};

} // namespace Vst2
