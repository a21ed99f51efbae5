#pragma once

/// Where the host stands, as of the start of a block. The adapter writes it before each block, the
/// plugin reads it within; both on the audio thread.
struct MAudioPluginTime
{
    double position = 0.0; ///< quarters; at the start of the present sub-block
    double tempo = 0.0;    ///< quarters a minute; 0.0 while the host has not told it
    double barStart = 0.0; ///< quarters
    int timeSigNumerator = 4;
    int timeSigDenominator = 4;
    double loopStart = -1.0; ///< quarters; both -1.0 without a loop
    double loopEnd = -1.0;
    bool playing = false;
    bool transportJumped = false;
    bool transportChanged = false;
};
