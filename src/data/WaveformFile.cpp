/// The .wvf file: one waveform, all fields little-endian, texts with a 2-byte length. The fields in file order:
///
///     version 2 (negative: locked) | skip length 2 | sample count 4 | t4 |
///     timeStep | t5 | calibration | attenuation | start without shift |
///     timeShift | maxValue | minValue | pointOfMax | pointOfMin | scaleUnit |
///     reserved 2 | scopeValue | t1 | t2 | t3 | offset | scopeDelay |
///     scopeDelay2 (from version 4) | scopeValue2 | scopeValue3 | units | stamp
///     | note | old unit name | 1 as 2 | count | 1 as 4 | samples
///
/// where no width stands it is 4, and a text is its length and its characters. Reader and writer are no mirrors: the
/// reader takes any version and four texts, the writer makes version 4 and an empty fourth text.

#include "data/Waveform.h"

#include <cstdint>

#include "core/Log.h"
#include "data/FileValues.h"

using namespace FileValues;

namespace {

char const *const extension = ".wvf";

std::int16_t const formatVersion = 4;
std::int16_t const lockedVersion = -4;
int const versionOfScopeDelay2 = 4;

int const lockedWhenRead = 1;
int const lockOnWriting = 2;
int const ignoreLock = 4;

/// What stands between the last text and the samples: 2 + 4 + 4 bytes.
int const bytesBeforeSamples = 10;

bool isLocked(DString const &file)
{
    DFile f;
    std::int16_t version = 0;
    if (!f.Open(file, binaryRead)) return false;
    read(f, version);
    return version < 0;
}

} // namespace

bool Waveform::Read(DString name, int n)
{
    DFile f;
    if (!f.Open(name + extension, binaryRead)) {
        Clear();
        return false;
    }
    Read(f, n);
    return true;
}

void Waveform::Read(DFile &f, int n)
{
    std::int16_t mark = formatVersion;
    std::int16_t reserved = 0;
    float start = 0;
    DString oldUnit;

    read(f, mark);
    if (mark < 0) lockState = lockedWhenRead;
    int const version = mark < 0 ? -mark : mark;
    readSkip<std::int16_t>(f);
    read(f, fileCount);
    read(f, t4);
    read(f, timeStep);
    if (timeStep == 0.0f) timeStep = 1.0f;
    read(f, t5);
    read(f, calibration);
    read(f, attenuation);
    read(f, start);
    bool const hasStart = f.IsGood();
    read(f, timeShift);
    read(f, maxValue);
    read(f, minValue);
    read(f, pointOfMax);
    read(f, pointOfMin);
    read(f, scaleUnit);
    if (scaleUnit == 0.0f) scaleUnit = 1.0f;
    read(f, reserved);
    read(f, scopeValue);
    read(f, t1);
    read(f, t2);
    read(f, t3);
    read(f, offset);
    read(f, scopeDelay);
    read(f, scopeDelay2);
    if (version < versionOfScopeDelay2) scopeDelay2 = 0; // these bytes had no meaning yet
    if (hasStart) startTime = start - scopeDelay - scopeDelay2;
    read(f, scopeValue2);
    read(f, scopeValue3);
    f.DSRead(units, shortPrefix);
    f.DSRead(stamp, shortPrefix);
    f.DSRead(note, shortPrefix);
    f.DSRead(oldUnit, shortPrefix);
    if (~oldUnit) units << "units of " << oldUnit;
    f.SeekRel(bytesBeforeSamples);
    loadSamples(f, n < 0 ? believed(f, fileCount, floatWidth) : n);
}

void Waveform::loadSamples(DFile &f, int n)
{
    bool const complete = n < 1 || f.Remaining() / floatWidth >= n;
    sizefor(n, !complete);
    readFloats(f, Data(), npnts());
}

bool Waveform::Write(DString name)
{
    name += extension;
    if (lockState < ignoreLock && isLocked(name)) {
        Message("Could not write to " + name + " because it is locked");
        return false;
    }
    DFile f;
    if (!f.Open(name, binaryWrite)) return false;
    Write(f);
    return true;
}

void Waveform::Write(DFile &f)
{
    stamp = Now();
    write(f, lockState & lockOnWriting ? lockedVersion : formatVersion);
    write<std::int16_t>(f, 0); // skip length
    write<std::int32_t>(f, npnts());
    write(f, t4);
    write(f, timeStep);
    write(f, t5);
    write(f, calibration);
    write(f, attenuation);
    write(f, startTime + scopeDelay + scopeDelay2);
    write(f, timeShift);
    write(f, maxValue);
    write(f, minValue);
    write(f, pointOfMax);
    write(f, pointOfMin);
    write(f, scaleUnit);
    write<std::int16_t>(f, 0); // reserved
    write(f, scopeValue);
    write(f, t1);
    write(f, t2);
    write(f, t3);
    write(f, offset);
    write(f, scopeDelay);
    write(f, scopeDelay2);
    write(f, scopeValue2);
    write(f, scopeValue3);
    f.DSWrite(units, shortPrefixWidth);
    f.DSWrite(stamp, shortPrefixWidth);
    f.DSWrite(note, shortPrefixWidth);
    write<std::int16_t>(f, 0); // the old unit name
    write<std::int16_t>(f, 1);
    write<std::int32_t>(f, npnts());
    write<std::int32_t>(f, 1);
    writeFloats(f, Data(), npnts());
}
