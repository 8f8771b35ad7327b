/// The .wvf file: one waveform, all fields little-endian, texts with a 2-byte length. The fields in file order:
///
///     version 2 (negative: locked) | skip length 2 | sample count 4 | t4 | timeStep | t5 | calibration |
///     attenuation | start without shift | timeShift | maxValue | minValue | pointOfMax | pointOfMin | scaleUnit |
///     reserved 2 | scopeValue | t1 | t2 | t3 | offset | scopeDelay | scopeDelay2 (from version 4) |
///     scopeValue2 | scopeValue3 | units | stamp | note | old unit name | 1 as 2 | count | 1 as 4 | samples
///
/// where no width stands it is 4, and a text is its length and its characters. Reader and writer are no mirrors: the
/// reader takes any version and four texts, the writer makes version 4 and an empty fourth text.

#include "data/Waveform.h"

#include <cstdint>

#include "core/Log.h"
#include "files/DFile.h"

namespace {

char const *const extension = ".wvf";

int const binaryRead = 5;
int const binaryWrite = 6;

std::int16_t const formatVersion = 4;
std::int16_t const lockedVersion = -4;
int const versionOfScopeDelay2 = 4;

int const lockedWhenRead = 1;
int const lockOnWriting = 2;
int const ignoreLock = 4;

bool const shortPrefix = true;
int const shortPrefixWidth = 2;

/// Samples that go to the file at a time, so that their bytes fit an `int`.
int const samplesPerCall = 1 << 28;

int const sampleWidth = sizeof(float);

/// Calls `transfer(first, bytes)` for all `n` samples, piece by piece.
template <typename Transfer>
void inPieces(int n, Transfer transfer)
{
    for (int first = 0; first < n;) {
        int const piece = n - first < samplesPerCall ? n - first : samplesPerCall;
        transfer(first, piece * sampleWidth);
        first += piece;
    }
}

/// What stands between the last text and the samples: 2 + 4 + 4 bytes.
int const bytesBeforeSamples = 10;

template <typename Value>
void readValue(DFile &f, Value &value)
{
    f.BRead(&value, sizeof value);
}

template <typename Value>
void writeValue(DFile &f, Value value)
{
    f.BWrite(&value, sizeof value);
}

bool isLocked(DString const &file)
{
    DFile f;
    std::int16_t version = 0;
    if (!f.Open(file, binaryRead)) return false;
    readValue(f, version);
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
    std::int16_t skip = 0;
    std::int16_t reserved = 0;
    float start = 0;
    DString oldUnit;

    readValue(f, mark);
    if (mark < 0) lockState = lockedWhenRead;
    int const version = mark < 0 ? -mark : mark;
    readValue(f, skip);
    if (skip != 0) f.SeekRel(skip);
    readValue(f, fileCount);
    readValue(f, t4);
    readValue(f, timeStep);
    if (timeStep == 0.0f) timeStep = 1.0f;
    readValue(f, t5);
    readValue(f, calibration);
    readValue(f, attenuation);
    readValue(f, start);
    bool const hasStart = !f.IsEOF();
    readValue(f, timeShift);
    readValue(f, maxValue);
    readValue(f, minValue);
    readValue(f, pointOfMax);
    readValue(f, pointOfMin);
    readValue(f, scaleUnit);
    if (scaleUnit == 0.0f) scaleUnit = 1.0f;
    readValue(f, reserved);
    readValue(f, scopeValue);
    readValue(f, t1);
    readValue(f, t2);
    readValue(f, t3);
    readValue(f, offset);
    readValue(f, scopeDelay);
    readValue(f, scopeDelay2);
    if (version < versionOfScopeDelay2) scopeDelay2 = 0; // these bytes had no meaning yet
    if (hasStart) startTime = start - scopeDelay - scopeDelay2;
    readValue(f, scopeValue2);
    readValue(f, scopeValue3);
    f.DSRead(units, shortPrefix);
    f.DSRead(stamp, shortPrefix);
    f.DSRead(note, shortPrefix);
    f.DSRead(oldUnit, shortPrefix);
    if (~oldUnit) units << "units of " << oldUnit;
    loadSamples(f, n < 0 ? fileCount : n);
}

/// A count that the file doesn't bear out is taken all the same, with zeros for what is missing; one that memory
/// can't hold is cut to what the file has.
void Waveform::loadSamples(DFile &f, int n)
{
    if (n < 1) {
        Size(0);
        return;
    }
    f.SeekRel(bytesBeforeSamples);
    long long const present = f.Remaining() / sampleWidth;
    bool const cleared = zeroFill;
    zeroFill = present < n || cleared;
    if (!trysize(n)) Size(present < n ? static_cast<int>(present) : n);
    zeroFill = cleared;
    inPieces(npnts(), [&](int first, int bytes) { f.BRead(Data() + first, bytes); });
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
    writeValue(f, lockState & lockOnWriting ? lockedVersion : formatVersion);
    writeValue<std::int16_t>(f, 0); // skip length
    writeValue<std::int32_t>(f, npnts());
    writeValue(f, t4);
    writeValue(f, timeStep);
    writeValue(f, t5);
    writeValue(f, calibration);
    writeValue(f, attenuation);
    writeValue(f, startTime + scopeDelay + scopeDelay2);
    writeValue(f, timeShift);
    writeValue(f, maxValue);
    writeValue(f, minValue);
    writeValue(f, pointOfMax);
    writeValue(f, pointOfMin);
    writeValue(f, scaleUnit);
    writeValue<std::int16_t>(f, 0); // reserved
    writeValue(f, scopeValue);
    writeValue(f, t1);
    writeValue(f, t2);
    writeValue(f, t3);
    writeValue(f, offset);
    writeValue(f, scopeDelay);
    writeValue(f, scopeDelay2);
    writeValue(f, scopeValue2);
    writeValue(f, scopeValue3);
    f.DSWrite(units, shortPrefixWidth);
    f.DSWrite(stamp, shortPrefixWidth);
    f.DSWrite(note, shortPrefixWidth);
    writeValue<std::int16_t>(f, 0); // the old unit name
    writeValue<std::int16_t>(f, 1);
    writeValue<std::int32_t>(f, npnts());
    writeValue<std::int32_t>(f, 1);
    inPieces(npnts(), [&](int first, int bytes) { f.BWrite(Data() + first, bytes); });
}
