#pragma once

#include "foundation/strings/MString.h"

/// How a number of a modulator shows as the value of a parameter.
struct MModulatorText
{
    MString (*show)(double number);
    /// The number that shows so, as far as its decimals tell, or what users type in its place.
    /// Returns false, leaving @p number, if @p text holds none.
    bool (*read)(const MString& text, double& number);
};

namespace modulatortexts
{

extern const MModulatorText Percents;  ///< of a fraction: "2.5%"
extern const MModulatorText Decibels;  ///< "-50.0 dB"
extern const MModulatorText Seconds;   ///< "10 ms"; reads "0.5 s" as well
extern const MModulatorText Hertz;     ///< "0.1000 Hz"; reads "1.5 kHz" as well
extern const MModulatorText LogHertz;  ///< the same of a decimal logarithm of Hz
extern const MModulatorText Factor;    ///< "0.71"
extern const MModulatorText WholeStep; ///< octaves, semitones: "+1", or with decimals "-0.5000"
extern const MModulatorText Cents;     ///< "+7.5"
extern const MModulatorText Octaves;   ///< finer: "-0.25"

} // namespace modulatortexts
