#include "curves/MEnvelopeComputer.h"

MEnvelopeComputer::MEnvelopeComputer() = default;
MEnvelopeComputer::~MEnvelopeComputer() = default;
MEnvelopeComputer::MEnvelopeComputer(const MEnvelopeComputer&) = default;
MEnvelopeComputer& MEnvelopeComputer::operator=(const MEnvelopeComputer&) = default;
void MEnvelopeComputer::Compile(const MEnvelope&) {}
double MEnvelopeComputer::Get(double)
{
    return Position;
}
void MEnvelopeComputer::SeekBack(double) {}
void MEnvelopeComputer::FillFloat(float*, double, double, int) {}
void MEnvelopeComputer::FillDouble(double*, double, double, int) {}
void MEnvelopeComputer::MapFloat(float*, int) {}
