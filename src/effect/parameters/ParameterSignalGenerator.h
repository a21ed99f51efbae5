#pragma once

#include "effect/parameters/ParameterSpecialBase.h"

class MSignalGenerator;
class MSignalGeneratorEditor;

/// A signal generator as four values: the shape, the depths of the free curve and of the steps, and
/// the smoothness. @p Base is ParameterSpecialBase or ParameterSpecialBaseCustom over it.
template <typename Base>
class ParameterSignalGeneratorT final : public Base
{
public:
    /// @p section is empty for none.
    ParameterSignalGeneratorT(const MPluginSpecialRecord& special, MParameterOwner* parameterOwner,
                              const MString& section = {});

    /// What Randomize moves; it leaves the smoothness.
    bool IsRandomisable(int index) const override;
    /// The shape moves by at most @p amount, the free curve takes any depth; the steps move a
    /// little, or from 1.0 on take any depth, mostly hardly any. In one rebuild.
    void Randomize(double amount) override;

protected:
    double* FindNumber(int index) const noexcept override;
    void Rebuild() override;
};

extern template class ParameterSignalGeneratorT<
    ParameterSpecialBase<MSignalGenerator, MSignalGeneratorEditor>>;
extern template class ParameterSignalGeneratorT<
    ParameterSpecialBaseCustom<MSignalGenerator, MSignalGeneratorEditor>>;
