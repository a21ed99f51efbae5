#pragma once

#include "curves/MEnvelope.h"
#include "curves/MEnvelopeComputer.h"

class MLock;
class MXMLItem;

/// One running note of an MADSR, kept by whoever plays it.
struct MADSRState
{
    /// No note is over before it is switched off; at the start all are silent.
    static constexpr double Held = 1e50;

    double X = Held;                ///< place on the curve, in samples
    double ReleaseCountdown = Held; ///< steps until X may leave the sustain
};

/// A delay, attack, hold, decay, sustain, release envelope. Its stages become one curve over
/// samples, along which each note runs as a cursor that waits at the sustain; so shapes, curvature
/// and smoothing are those of every curve, and a drawn attack and release can take its place.
///
/// Whoever writes a field calls Rebuild. Rebuild takes the processing lock, if one was given; the
/// notes belong to the audio thread, under the same lock.
class MADSR
{
public:
    static constexpr double MaxSeconds = 3600.0; ///< of each stage; stored ones are clamped to it

    /// @p processingLock outlives it; null for none.
    explicit MADSR(MLock* processingLock = nullptr);

    /// Makes the curve from the fields and compiles it. Allocates only if it grows.
    void Rebuild();
    /// Takes the place of all that is stored, and rebuilds.
    void SetState(const MADSR& state);
    /// In Hz, 0 for what is no rate; rebuilds.
    void SetSampleRate(double newSampleRate);

    /// Returns the level at the cursor, then moves it by @p step samples, or, at the sustain,
    /// counts one step of the countdown.
    double Advance(MADSRState& state, double step);
    /// A note that has ended starts at @p startX, one before its decay goes on, and any other
    /// enters the attack again at its level. That place is exact for attacks without a shape, and
    /// searched for with smoothing or drawn curves; with a shape alone the attack is taken for a
    /// line.
    void NoteOn(MADSRState& state, double startX);
    /// Lets the note leave the sustain, @p delaySamples steps from now.
    void NoteOff(MADSRState& state, double delaySamples) const noexcept;

    /// Writes what the present form uses to @p item, in place of all that it held.
    void Store(MXMLItem& item) const;
    /// What is missing keeps its value, but for CustomShape; all is clamped to its range. Ends in a
    /// rebuild, and holds the lock until then.
    /// @throws MException (256) as CheckSettingsTree does, with the old envelope whole
    void Load(MXMLItem& item);

    double Delay = 0.0;       ///< seconds before the attack
    double Attack = 0.01;     ///< seconds from 0 to 1
    double Hold = 0.0;        ///< seconds at 1
    double Decay = 0.1;       ///< seconds from 1 to Sustain
    double Release = 0.1;     ///< seconds from Sustain to 0
    double Sustain = 0.5;     ///< level, 0.0 to 1.0
    double Smoothing = 0.0;   ///< of the joints of the stages, 0.0 to 1.0
    double AttackShape = 0.0; ///< curvatures, -1.0 to 1.0
    double DecayShape = 0.0;
    double ReleaseShape = 0.0;
    double SampleRate = 44100.0; ///< Hz
    // Places on the curve, in samples, after a rebuild:
    double DelayEnd = 0.0;
    double AttackEnd = 0.0;
    double HoldEnd = 0.0;
    double SustainStart = 0.0; ///< where a note waits
    double SustainEnd = 0.0;   ///< where it leaves from
    double TotalEnd = 0.0;
    MEnvelope Curve;
    MEnvelopeComputer Computer; ///< of Curve
    bool CustomShape = false;   ///< the next two replace the stages
    MEnvelope EnvelopeAttack;   ///< x 0.0 to 1.0 is the attack
    MEnvelope EnvelopeRelease;  ///< x 0.0 to 1.0 is the release

private:
    void MakeStages();
    void JoinDrawnCurves();
    double ReadLevel(double x);
    double FindInAttack(double level);

    MLock* lock; ///< null for none
};
