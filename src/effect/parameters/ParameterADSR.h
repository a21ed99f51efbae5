#pragma once

#include "effect/parameters/ParameterSpecialBase.h"

class MADSR;
class MADSREditor;

/// An envelope as eleven values: five times of 0 to 10 seconds, whose square root is linear so that
/// short ones are fine, sustain, smoothing, three curvatures, and one that never changes. @p Base
/// is ParameterSpecialBase or ParameterSpecialBaseCustom over it.
template <typename Base>
class ParameterADSRT final : public Base
{
public:
    /// @p section is empty for none.
    ParameterADSRT(const MPluginSpecialRecord& special, MParameterOwner* parameterOwner,
                   const MString& section = {});

protected:
    double* FindNumber(int index) const noexcept override;
    void Rebuild() override;
};

extern template class ParameterADSRT<ParameterSpecialBase<MADSR, MADSREditor>>;
extern template class ParameterADSRT<ParameterSpecialBaseCustom<MADSR, MADSREditor>>;
