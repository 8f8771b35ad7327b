/// The .dmt file: one matrix, little-endian, texts with a 4-byte length. The fields in file order, 4 bytes each where
/// nothing else is said:
///
///     version | skip length | rank | per dimension: size, step, first
///     coordinate or (step 0) all coordinates | maxValue | minValue |
///     calibration (from version 4) | scaleUnit | t1 ... t5 | units | note |
///     stamp | values
///
/// A number of values that the file doesn't bear out is taken all the same, with zeros for what is missing, up to a
/// million or if half of it is there; otherwise only the slices that the file has. Whatever a file says, the number of
/// values stays the product of the axes.

#include "data/Matrix.h"

#include <cstdint>

#include "data/FileValues.h"
#include "files/PathUtils.h"

using namespace FileValues;

namespace {

char const *const extension = ".dmt";
std::int32_t const formatVersion = 4;
std::int32_t const versionOfCalibration = 4;

/// Takes "[first, count]" off the end of a name.
void takeSelection(DString &name, int &count, int &first)
{
    DString selection = name.AfterFirst('[', true); // a folder may hold a comma
    DString const from = selection.BeforeFirst(',', true).Trim();
    DString const end = selection.AfterFirst(',', true).BeforeFirst(']', true).Trim();
    name = name.BeforeFirst('[', true);
    if (!from.ToInt(first)) first = 0;
    if (!end.ToInt(count)) count = -1;
}

} // namespace

// ---- Reading ----

bool Matrix::Read(DString name, int count, int first)
{
    if (name.Find('[') != npos) takeSelection(name, count, first);
    DFile f;
    if (!f.Open(name + extension, binaryRead)) return false;
    Read(f, count, first);
    return true;
}

void Matrix::Read(DFile &f, int count, int first)
{
    std::int32_t version = formatVersion;
    read(f, version);
    readSkip<std::int32_t>(f);
    read(f, rank);
    if (rank > nDims) return;
    for (int d = 0; d < usedDims(); ++d) readAxis(f, dims[d]);
    read(f, maxValue);
    read(f, minValue);
    if (version >= versionOfCalibration) read(f, calibration);
    else calibration = 1.0f;
    read(f, scaleUnit);
    readAll(f, {&t1, &t2, &t3, &t4, &t5});
    f.DSRead(units, longPrefix);
    f.DSRead(note, longPrefix);
    f.DSRead(stamp, longPrefix);

    MDim &last = dims[usedDims() > 0 ? usedDims() - 1 : 0];
    bool const partial = count >= 0 || first > 0;
    readValues(f, last, partial ? cutSlices(last, count, first) : 0);
}

void Matrix::readAxis(DFile &f, MDim &dim)
{
    std::int32_t size = 0;
    read(f, size);
    read(f, dim.step);
    dim.origSize = size;
    dim.DArray<float, 0>::Size(believed(f, size, floatWidth));
    if (dim.step == 0.0f) {
        readFloats(f, dim.Data(), dim.Count());
        return;
    }
    float start = 0;
    read(f, start);
    for (int i = 0; i < dim.Count(); ++i) dim[i] = static_cast<float>(i) * dim.step + start;
}

/// Cuts the axis to the slices that are wanted and gives the number of the first. `count` is an end, not a number of
/// slices, and at least 1.
int Matrix::cutSlices(MDim &dim, int count, int first)
{
    int const size = dim.Count();
    int const wanted = count < size ? count : size;
    int const end = wanted > 1 ? wanted : 1;
    int begin = first < end - 1 ? first : end - 1;
    if (begin < 0) begin = 0;
    dim.ReSize(end - begin);
    return begin;
}

void Matrix::readValues(DFile &f, MDim &last, int first)
{
    long long const inOne = product(&last);
    // The distance is one of 32 bits in this format.
    std::uint32_t const distance = static_cast<std::uint32_t>(inOne) * static_cast<std::uint32_t>(first) * 4u;
    if (first > 0) f.SeekRel(static_cast<std::int32_t>(distance));
    int const total = believed(f, product(), floatWidth);
    if (total < product()) {
        long long const slices = inOne > 0 ? total / inOne : 0;
        last.ReSize(slices < last.Count() ? static_cast<int>(slices) : 0);
    }
    bool const complete = f.Remaining() / floatWidth >= product();
    sizefor(static_cast<int>(product()), !complete);
    readFloats(f, Data(), Count());
}

// ---- Writing ----

bool Matrix::Write(DString name)
{
    DFile f;
    if (!f.Open(name + extension, binaryWrite)) return false;
    Write(f);
    return true;
}

void Matrix::Write(DFile &f)
{
    write<std::int32_t>(f, formatVersion);
    write<std::int32_t>(f, 0); // skip length
    write<std::int32_t>(f, usedDims());
    for (int d = 0; d < usedDims(); ++d) writeAxis(f, dims[d]);
    write(f, maxValue);
    write(f, minValue);
    write(f, calibration);
    write(f, scaleUnit);
    writeAll(f, {t1, t2, t3, t4, t5});
    stamp = Now();
    f.DSWrite(units, longPrefixWidth);
    f.DSWrite(note, longPrefixWidth);
    f.DSWrite(stamp, longPrefixWidth);
    writeFloats(f, Data(), Count());
}

void Matrix::writeAxis(DFile &f, MDim const &dim)
{
    write<std::int32_t>(f, dim.Count());
    write(f, dim.step);
    if (dim.step == 0.0f) writeFloats(f, dim.Data(), dim.Count());
    else write(f, dim.Count() > 0 ? dim[0] : 0.0f);
}

bool Matrix::Append(DString name)
{
    DString file = name + extension;
    if (!FileExists(file)) return Write(name);
    DFile f;
    if (!f.Open(file, binaryUpdate)) return false;
    Append(f);
    return true;
}

void Matrix::Append(DFile &) {}
