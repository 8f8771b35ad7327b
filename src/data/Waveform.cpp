/// The record: construction, copying, scaling. The file is in WaveformFile.cpp, the lookups in WaveformSampling.cpp.

#include "data/Waveform.h"

#include <cmath>

#include "data/AxisTicks.h"

template class DArray<Waveform, 1>;

Waveform::Waveform(int n) : DArray<float, 0>(n), fileCount(n > 0 ? n : 0) {}

Waveform::Waveform(Waveform const &other) : DArray<float, 0>(other)
{
    CopyHeader(other);
}

Waveform::~Waveform() = default;

Waveform &Waveform::operator=(Waveform const &other)
{
    if (this == &other) return *this;
    DArray<float, 0>::operator=(other);
    CopyHeader(other);
    return *this;
}

void Waveform::CopyHeader(Waveform const &other)
{
    timeStep = other.timeStep;
    timeShift = other.timeShift;
    startTime = other.startTime;
    scaleUnit = other.scaleUnit;
    copyparameters(other);
    scopeDelay = other.scopeDelay;
    scopeValue = other.scopeValue;
    scopeValue2 = other.scopeValue2;
    scopeValue3 = other.scopeValue3;
    scopeDelay2 = other.scopeDelay2;
    units = other.units;
    stamp = other.stamp;
    note = other.note;
    fileCount = other.fileCount;
    attenuation = other.attenuation;
    calibration = other.calibration;
    offset = other.offset;
    maxValue = other.maxValue;
    minValue = other.minValue;
    pointOfMax = other.pointOfMax;
    pointOfMin = other.pointOfMin;
}

void Waveform::copyparameters(Waveform const &other)
{
    t1 = other.t1;
    t2 = other.t2;
    t3 = other.t3;
    t4 = other.t4;
    t5 = other.t5;
}

Waveform &Waveform::InitFrom(Waveform const &other, bool withT, bool withCalAtt)
{
    if (this == &other) return *this;
    Size(other.npnts());
    timeStep = other.timeStep;
    scopeDelay = scopeDelay2 = 0;
    scopeValue = scopeValue2 = scopeValue3 = 0;
    offset = 0;
    timeShift = other.timeShift;
    startTime = other.scopeDelay + other.startTime + other.scopeDelay2;
    if (withT) {
        copyparameters(other);
    }
    if (withCalAtt) {
        calibration = other.calibration;
        attenuation = other.attenuation;
    }
    return *this;
}

void Waveform::Zero()
{
    for (int i = 0; i < npnts(); ++i) Data()[i] = 0.0f;
}

void Waveform::Scale()
{
    double const lowestMinimum = -9.9e33;
    maxValue = -DFMax;
    minValue = DFMax;
    pointOfMax = pointOfMin = 0;
    float *const y = Data();
    int const n = npnts();
    for (int i = 0; i < n; ++i) {
        if (!IsUsable(y[i])) y[i] = -DFMax;
        float const value = y[i];
        if (value > maxValue) {
            maxValue = value;
            pointOfMax = i + 1;
        }
        if (minValue > value && static_cast<double>(value) > lowestMinimum) {
            minValue = value;
            pointOfMin = i + 1;
        }
    }
    float magnitude = std::fmax(std::fabs(maxValue), std::fabs(minValue));
    if (static_cast<double>(magnitude) < smallestMagnitude) {
        magnitude = static_cast<float>(smallestMagnitude);
        pointOfMax = 0;
    }
    scaleUnit = TickSize(magnitude);
}

void Waveform::SetCalAttOff(float cal, float att, float off)
{
    float const newCalibration = cal != 0.0f && IsVF(cal) ? cal : calibration;
    float const newAttenuation = att != 0.0f && IsVF(att) ? att : attenuation;
    float const newOffset = IsVF(off) ? off / (attenuation * calibration) : offset;
    float const shift = (newOffset - offset) * calibration * attenuation;
    float const factor = (newCalibration * newAttenuation) / (calibration * attenuation);
    for (int i = 0; i < npnts(); ++i) Data()[i] = (Data()[i] - shift) * factor;
    calibration = newCalibration;
    attenuation = newAttenuation;
    offset = newOffset;
}

float *Waveform::Slot(int i)
{
    static float Waveform::*const slots[] = {&Waveform::scaleUnit,  &Waveform::t1,         &Waveform::t2,
                                             &Waveform::t3,         &Waveform::t4,         &Waveform::t5,
                                             &Waveform::scopeDelay, &Waveform::scopeValue, &Waveform::scopeValue2,
                                             &Waveform::scopeValue3};
    int const nSlots = sizeof slots / sizeof *slots;
    return i >= 0 && i < nSlots ? &(this->*slots[i]) : nullptr;
}
