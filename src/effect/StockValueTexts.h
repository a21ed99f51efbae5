#pragma once

#include "effect/MPluginParameterRecord.h"

/// Value texts that effects share. Those of gains show decibels and read them, and by their
/// identity tell MRampedGain how the value maps to the gain.
namespace valuetexts
{

/// The value is the gain.
void LinearGain(MString& result, MPluginParameterRecord& record, const MString& input,
                const MString& format);
/// The gain is the value squared.
void SquaredGain(MString& result, MPluginParameterRecord& record, const MString& input,
                 const MString& format);
/// The gain is the fourth power of the value.
void FourthPowerGain(MString& result, MPluginParameterRecord& record, const MString& input,
                     const MString& format);

/// The value is the decimal logarithm of a frequency in Hz; the bottom of the range means
/// "Disabled". Reads Hz above 0.
void OptionalFrequency(MString& result, MPluginParameterRecord& record, const MString& input,
                       const MString& format);

} // namespace valuetexts
