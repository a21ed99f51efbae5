#pragma once

#include <vector>

#include "foundation/strings/MString.h"
#include "foundation/threads/MRelaxed.h"
#include "host/vst3/Vst3Controller.h"

class MAudioPlugin;

namespace Vst3
{

/// The parameters of a plugin by the host's ids: their indices, and one more for the bypass, behind
/// all others in the host's list. Values are normalised, and plain ones are the same numbers.
/// Owned by the adapter; any thread but for Build and Clear.
class Parameters
{
public:
    static constexpr ParamID BypassId = 0x7FFF;

    explicit Parameters(MAudioPlugin& describedPlugin) noexcept : plugin(describedPlugin) {}

    void Build();
    void Clear() noexcept { echoes.clear(); }

    /// With the bypass; 0 before Build.
    int Count() const noexcept { return static_cast<int>(echoes.size()); }
    bool Has(ParamID id) const noexcept
    {
        return Count() > 0 && (id == BypassId || id < echoes.size() - 1);
    }
    // The others ask Has first.

    /// @p index is 0 to Count() - 1.
    void Describe(int index, ParameterInfo& info) const;
    MString GetText(ParamID id, double value) const;
    /// The present value if @p text cannot be read.
    double Parse(ParamID id, const MString& text) const;
    /// What was set last, as long as the plugin has made nothing else of it since: hosts want back
    /// what they gave, and the plugin may have rounded it.
    double Get(ParamID id) const;
    /// Sets the plugin's value and keeps @p value for Get; what is no number is left out.
    void Set(ParamID id, double value);
    /// The same without Get's knowledge, for the audio thread.
    void Apply(ParamID id, double value) const;
    /// The plugin's own value.
    double GetOwn(ParamID id) const;
    /// Whether two values differ by more than the way through 32 bits may change them.
    static bool IsOther(double a, double b) noexcept;
    /// From now on Get tells the plugin's own values.
    void ForgetSet() noexcept;

private:
    struct Echo
    {
        MRelaxed<double> set = 0.0;
        MRelaxed<double> own; ///< of the plugin, behind that; not a number: nothing was set
    };

    std::size_t PlaceOf(ParamID id) const noexcept
    {
        return id == BypassId ? echoes.size() - 1 : id;
    }

    MAudioPlugin& plugin;
    std::vector<Echo> echoes; ///< in the host's order
};

} // namespace Vst3
