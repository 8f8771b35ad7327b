/// A table of particles of a shot: each a row of eight single-precision numbers, with extremes for each column. On
/// disk a .dpt file, which can grow in place.
///
/// Columns, from 0: 0 and 1 the position in a plane (x, y, or radius, angle in radians), 3 and 4 a vector in that
/// plane, which turns with the position; the others are carried.
#pragma once

#include "foundation/DArray.h"
#include "foundation/DString.h"

class DFile;

/// One row, as it stands in memory and in the file.
struct PGParticle {
    float column[8];
};

/// The most particles that one `Read` with a negative count delivers.
extern VODREL_API int const MaxParticleBatch;

class VODREL_API ParticleGroup : public DArray<float, 0> {
public:
    static int const nParticleCols; ///< 8

    /// `n` rows of undefined values, below 0 none.
    explicit ParticleGroup(int n = 0);
    ParticleGroup(ParticleGroup const &other);
    ParticleGroup &operator=(ParticleGroup const &other);
    ~ParticleGroup() override;

    /// Parameters, texts and geometry, and the number of particles of `other`; not the extremes. The rows stay as they
    /// are: of more rows than that number `Write` and `Append` put out the first ones.
    void CopyHeader(ParticleGroup const &other);

    // Sizes in rows.
    void Size(int n);   ///< drops the rows
    void ReSize(int n); ///< keeps the rows
    void Reserve(int n);

    int nParticles() const { return particles; }         ///< in memory
    int nOrigParticles() const { return origParticles; } ///< in the file, after `Read` or `Append`
    int Geometry() const { return geometry; }            ///< 0 rectangular, anything else polar
    PGParticle *PData() { return reinterpret_cast<PGParticle *>(Data()); }

    /// The stored extremes of a column; 0 for one that there isn't.
    float Min(int column) const { return isColumn(column) ? minValues[column] : 0.0f; }
    float Max(int column) const { return isColumn(column) ? maxValues[column] : 0.0f; }

    /// Finds the extremes of each column; a NaN changes nothing.
    void Scale();
    /// Removes every row with a NaN. A row that goes is replaced by the last one, so the order changes.
    void CleanUp();
    /// Converts all rows to the geometry; always true. Only the test against 0 counts: a change from 1 to 2 converts
    /// rows that are polar already once more.
    bool SetGeometry(int g);
    /// "t1" to "t5", and "np", the number of particles in the file, in any case; -DFMax for anything else.
    float GetPGroupParam(DString const &code) const;

    // ---- File. `name` comes without the extension ".dpt". False only if the
    // file can't be opened. ----

    /// Reads `count` rows from row `first` on; 0 the header alone; below 0 all from row 0, up to MaxParticleBatch,
    /// whatever `first` says. A `first` below 0 asks for as many rows more behind the end. Rows that the file lacks are
    /// 0; but of more than MaxParticleBatch rows of which it lacks more than half only those that it has are taken.
    bool Read(DString name, int count, int first);
    bool Write(DString name); ///< stamps the object with the time
    /// Adds the rows in memory, whose extremes are to be up to date, to a file in place; writes one that is missing.
    /// What the file holds of geometry and parameters comes into this object, its texts stay; the rows aren't
    /// converted. A file of the old version, or with another header, is rewritten first, with a new date. A file that
    /// lacks more than a batch of the rows it announces is left alone, and this object too.
    bool Append(DString name);

    float header1 = 0; ///< set by callers, carried in the file
    float header2 = 0;
    float t1 = 0; ///< free parameters
    float t2 = 0;
    float t3 = 0;
    float t4 = 0;
    float t5 = 0;
    DString note;
    DString units;
    DString stamp;        ///< date and time of the last full write
    int origGeometry = 0; ///< with which the file was read
    float maxValues[8] = {};
    float minValues[8] = {};

protected:
    void Read(DFile &f, int count, int first);
    void Write(DFile &f);
    void Append(DFile &f);

    int particles = 0;
    int geometry = 0;
    int origParticles = 0;

private:
    static bool isColumn(int column) { return column >= 0 && column < nParticleCols; }
    struct Layout;
    static Layout readLayout(DFile &f);
    void sizeFor(DFile &f, Layout const &layout, long long n);
    void readRows(DFile &f, int version, int columns);
    void writeFixedPart(DFile &f, int nRows);
    void writeRows(DFile &f);
    static void upgrade(DFile &f);
    void copyparameters(ParticleGroup const &other);
    void takeHeader(ParticleGroup const &other);
};
