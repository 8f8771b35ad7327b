/// The .dpt file: one particle table, little-endian, texts with a 4-byte length. The fields in file order, 4 bytes
/// each where nothing else is said:
///
///     version | skip length | geometry | particles | columns C | header1 |
///     header2 | t1 ... t5 | C maxima | C minima | units | note | stamp | rows
///
/// A row of version 1 has C numbers, one of version 2 always eight; a distance over rows counts C columns in both.
/// The writer makes version 2 with eight columns. Of more columns than eight, which no writer of ours made, the first
/// eight are kept and the rest is passed over.

#include "data/ParticleGroup.h"

#include <climits>
#include <cstdint>

#include "data/FileValues.h"
#include "files/PathUtils.h"

using namespace FileValues;

namespace {

char const *const extension = ".dpt";
std::int32_t const formatVersion = 2;
std::int32_t const versionOfEightColumns = 2;
int const lastColumn = 7;
int const rowBytes = sizeof(PGParticle);

/// Version, skip length, geometry, count, columns, two headers, five parameters, and the extremes of eight columns.
long long const fixedPart = 12 * 4 + 2 * rowBytes;
int const nTexts = 3;

/// What a number of rows and columns takes in a file, as far as a file position goes.
long long distanceOver(long long rows, int columns)
{
    long long const bytesOfRow = columns < 1 ? 0 : 4LL * columns;
    if (bytesOfRow == 0 || rows < 1) return 0;
    return rows > LLONG_MAX / bytesOfRow ? LLONG_MAX : rows * bytesOfRow;
}

/// Reads the first eight of `columns` numbers and passes over the rest.
void readColumns(DFile &f, float *target, int columns)
{
    int const kept = columns < 0 ? 0 : columns < ParticleGroup::nParticleCols ? columns : ParticleGroup::nParticleCols;
    f.BRead(target, kept * floatWidth);
    if (columns > kept) f.SeekRel(distanceOver(1, columns - kept));
}

/// Passes over the texts and gives the sum of their lengths.
long long skipTexts(DFile &f)
{
    long long sum = 0;
    for (int i = 0; i < nTexts; ++i) {
        std::int32_t length = 0;
        read(f, length);
        if (length < 1) continue;
        f.SeekRel(length);
        sum += length;
    }
    return sum;
}

} // namespace

/// What comes first in a file, and tells how to go on.
struct ParticleGroup::Layout {
    std::int32_t version = 0;
    std::int32_t skip = 0;
    std::int32_t geometry = 0;
    std::int32_t particles = 0;
    std::int32_t columns = 0;

    /// Rows can be added behind a header that has the very form of ours.
    bool isCurrent() const
    {
        return version >= versionOfEightColumns && skip == 0 && columns == ParticleGroup::nParticleCols;
    }
};

ParticleGroup::Layout ParticleGroup::readLayout(DFile &f)
{
    Layout layout;
    read(f, layout.version);
    layout.skip = readSkip<std::int32_t>(f);
    read(f, layout.geometry);
    read(f, layout.particles);
    read(f, layout.columns);
    return layout;
}

// ---- Reading ----

bool ParticleGroup::Read(DString name, int count, int first)
{
    DFile f;
    if (!f.Open(name + extension, binaryRead)) return false;
    Read(f, count, first);
    return true;
}

void ParticleGroup::Read(DFile &f, int count, int first)
{
    long long const limit = count < 0 ? MaxParticleBatch : count;
    long long const start = count < 0 ? 0 : first;
    Layout const layout = readLayout(f);
    geometry = origGeometry = layout.geometry;
    origParticles = layout.particles;
    read(f, header1);
    read(f, header2);
    readAll(f, {&t1, &t2, &t3, &t4, &t5});
    readColumns(f, maxValues, layout.columns);
    readColumns(f, minValues, layout.columns);
    f.DSRead(units, longPrefix);
    f.DSRead(note, longPrefix);
    f.DSRead(stamp, longPrefix);

    long long const behind = origParticles - start;
    long long const n = behind < limit ? behind : limit;
    if (start > 0) f.SeekRel(distanceOver(start, layout.columns));
    sizeFor(f, layout, n);
    readRows(f, layout.version, layout.columns);
}

/// Makes `n` rows, cleared if the file doesn't have all their numbers. Of more than a batch of which the file lacks
/// more than half only those that it has.
void ParticleGroup::sizeFor(DFile &f, Layout const &layout, long long n)
{
    bool const isNew = layout.version >= versionOfEightColumns;
    long long const width =
        isNew || layout.columns < 1 ? rowBytes : static_cast<long long>(layout.columns) * floatWidth;
    long long const present = f.Remaining() / width;
    if (n > MaxParticleBatch && n / 2 > present) n = present;
    long long const most = largestCount / nParticleCols;
    particles = static_cast<int>(n < 0 ? 0 : n < most ? n : most);
    bool const complete = isNew && present >= particles;
    sizefor(particles * nParticleCols, !complete);
}

void ParticleGroup::readRows(DFile &f, int version, int columns)
{
    if (version >= versionOfEightColumns) {
        readFloats(f, Data(), Count());
        return;
    }
    if (columns < 1) return; // such rows have no bytes
    for (int i = 0; i < particles && !f.IsEOF(); ++i) {
        readColumns(f, PData()[i].column, columns);
        PData()[i].column[lastColumn] = 0;
    }
}

// ---- Writing ----

bool ParticleGroup::Write(DString name)
{
    DFile f;
    if (!f.Open(name + extension, binaryWrite)) return false;
    Write(f);
    return true;
}

void ParticleGroup::Write(DFile &f)
{
    writeFixedPart(f, particles);
    stamp = Now();
    f.DSWrite(units, longPrefixWidth);
    f.DSWrite(note, longPrefixWidth);
    f.DSWrite(stamp, longPrefixWidth);
    writeRows(f);
}

/// As many rows as `nParticles` says, of those that there are.
void ParticleGroup::writeRows(DFile &f)
{
    int const nRows = Count() / nParticleCols;
    writeFloats(f, Data(), nParticleCols * (particles < nRows ? particles : nRows));
}

void ParticleGroup::writeFixedPart(DFile &f, int nRows)
{
    write<std::int32_t>(f, formatVersion);
    write<std::int32_t>(f, 0); // skip length
    write<std::int32_t>(f, geometry);
    write<std::int32_t>(f, nRows);
    write<std::int32_t>(f, nParticleCols);
    write(f, header1);
    write(f, header2);
    writeAll(f, {t1, t2, t3, t4, t5});
    f.BWrite(maxValues, sizeof maxValues);
    f.BWrite(minValues, sizeof minValues);
}

// ---- Appending ----

bool ParticleGroup::Append(DString name)
{
    DString file = name + extension;
    if (!FileExists(file)) return Write(name);
    DFile f;
    if (!f.Open(file, binaryUpdate)) return false;
    Append(f);
    return true;
}

/// Only the fixed part of the header and the end of the file are touched, however much the file holds.
void ParticleGroup::Append(DFile &f)
{
    Layout layout = readLayout(f);
    if (!layout.isCurrent()) {
        upgrade(f);
        f.SeekAbs(0);
        layout = readLayout(f);
    }
    ParticleGroup header;
    readAll(f, {&header.header1, &header.header2, &header.t1, &header.t2, &header.t3, &header.t4, &header.t5});
    f.BRead(header.maxValues, sizeof header.maxValues);
    f.BRead(header.minValues, sizeof header.minValues);
    long long const texts = skipTexts(f) + nTexts * 4;
    long long const rows = distanceOver(layout.particles, nParticleCols);
    long long const total = static_cast<long long>(particles) + (layout.particles < 0 ? 0 : layout.particles);
    f.SeekAbs(0);
    long long const missing = fixedPart + texts + rows - f.Remaining();
    if (total > INT_MAX || missing > static_cast<long long>(MaxParticleBatch) * rowBytes) return; // not to be believed
    takeHeader(header);
    geometry = layout.geometry;
    origParticles = static_cast<int>(total);
    writeFixedPart(f, origParticles);
    f.SeekRel(texts + rows);
    writeRows(f);
}

/// The parameters of a file win; its extremes join ours.
void ParticleGroup::takeHeader(ParticleGroup const &other)
{
    copyparameters(other);
    for (int column = 0; column < nParticleCols; ++column) {
        if (other.maxValues[column] > maxValues[column]) maxValues[column] = other.maxValues[column];
        if (other.minValues[column] < minValues[column]) minValues[column] = other.minValues[column];
    }
}

/// Rewrites a file in place with the present header, up to one batch of particles, and no more than the file can
/// hold.
void ParticleGroup::upgrade(DFile &f)
{
    f.SeekAbs(0);
    long long const size = f.Remaining();
    ParticleGroup whole;
    whole.Read(f, -1, 0);
    if (whole.particles > size) whole.ReSize(static_cast<int>(size));
    f.SeekAbs(0);
    whole.Write(f);
}
