/// The .dgm file: one list of shapes, little-endian, texts with a 4-byte length. The fields in file order, 4 bytes
/// each where nothing else is said:
///
///     version | skip length | number of objects | objects | maxCoords 12 |
///     minCoords 12 | units | note | stamp
///
/// and of each object: name | type | style1 | style2 | style3 | position 12 | innerRadius | outerRadius | startAngle
/// | endAngle | number of params | params | attr1 ... attr7.

#include "data/Geometry.h"

#include <cstdint>

#include "data/FileValues.h"

using namespace FileValues;

namespace {

char const *const extension = ".dgm";
std::int32_t const formatVersion = 1;

/// An object without a name and without params takes this much of a file.
int const leastObjectBytes = 80;

/// Shapes are larger in memory than in a file: fewer of them are taken on trust.
int const trustedObjects = 1 << 12;

void readObject(DFile &f, Object &object)
{
    std::int32_t nParams = 0;
    f.DSRead(object.name, longPrefix);
    readAll(f, {&object.type, &object.style1, &object.style2, &object.style3});
    f.BRead(object.position, sizeof object.position);
    readAll(f, {&object.innerRadius, &object.outerRadius, &object.startAngle, &object.endAngle});
    read(f, nParams);
    object.params.zeroFill = true; // for what the file lacks
    object.params.Size(believed(f, nParams, floatWidth));
    object.params.zeroFill = false;
    readFloats(f, object.params.Data(), object.params.Count());
    read(f, object.attr1);
    readAll(f, {&object.attr2, &object.attr3, &object.attr4, &object.attr5});
    read(f, object.attr6);
    read(f, object.attr7);
}

void writeObject(DFile &f, Object const &object)
{
    f.DSWrite(object.name, longPrefixWidth);
    writeAll(f, {object.type, object.style1, object.style2, object.style3});
    f.BWrite(object.position, sizeof object.position);
    writeAll(f, {object.innerRadius, object.outerRadius, object.startAngle, object.endAngle});
    write<std::int32_t>(f, object.params.Count());
    writeFloats(f, object.params.Data(), object.params.Count());
    write(f, object.attr1);
    writeAll(f, {object.attr2, object.attr3, object.attr4, object.attr5});
    write(f, object.attr6);
    write(f, object.attr7);
}

} // namespace

bool Geometry::Read(DString name)
{
    DFile f;
    if (!f.Open(name + extension, binaryRead)) return false;
    std::int32_t version = 0;
    std::int32_t count = 0;
    read(f, version); // there is nothing to tell apart yet
    readSkip<std::int32_t>(f);
    read(f, count);
    Cleanup();
    Size(believed(f, count, leastObjectBytes, trustedObjects));
    for (int i = 0; i < Count() && !f.IsEOF(); ++i) readObject(f, (*this)[i]);
    f.BRead(maxCoords, sizeof maxCoords);
    f.BRead(minCoords, sizeof minCoords);
    f.DSRead(units, longPrefix);
    f.DSRead(note, longPrefix);
    f.DSRead(stamp, longPrefix);
    return true;
}

bool Geometry::Write(DString name)
{
    DFile f;
    if (!f.Open(name + extension, binaryWrite)) return false;
    stamp = Now();
    write<std::int32_t>(f, formatVersion);
    write<std::int32_t>(f, 0); // skip length
    write<std::int32_t>(f, Count());
    for (int i = 0; i < Count(); ++i) writeObject(f, (*this)[i]);
    f.BWrite(maxCoords, sizeof maxCoords);
    f.BWrite(minCoords, sizeof minCoords);
    f.DSWrite(units, longPrefixWidth);
    f.DSWrite(note, longPrefixWidth);
    f.DSWrite(stamp, longPrefixWidth);
    return true;
}
