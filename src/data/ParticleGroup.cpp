/// The table: sizes, copies, extremes, geometry. The file is in ParticleGroupFile.cpp.

#include "data/ParticleGroup.h"

#include <climits>
#include <cmath>
#include <cstring>
#include <new>

#include "platform/Platform.h"

namespace {

enum Column { PositionX = 0, PositionY = 1, VectorX = 3, VectorY = 4 };

bool hasNaN(PGParticle const &row)
{
    for (float value : row.column) {
        if (std::isnan(value)) return true;
    }
    return false;
}

double wide(float value)
{
    return static_cast<double>(value);
}

// Products are taken in double precision on single-precision operands, and stored as single.

void toRectangular(PGParticle &row)
{
    float *const p = row.column;
    float const r = p[PositionX];
    float const u = p[VectorX];
    float const v = p[VectorY];
    auto const c = static_cast<float>(Platform::Cos(wide(p[PositionY])));
    auto const s = static_cast<float>(Platform::Sin(wide(p[PositionY])));
    p[PositionX] = static_cast<float>(wide(c) * wide(r));
    p[PositionY] = static_cast<float>(wide(s) * wide(r));
    p[VectorX] = static_cast<float>(wide(c) * wide(u) - wide(s) * wide(v));
    p[VectorY] = static_cast<float>(wide(s) * wide(u) + wide(c) * wide(v));
}

void toPolar(PGParticle &row)
{
    float *const p = row.column;
    float const x = p[PositionX];
    float const y = p[PositionY];
    float const u = p[VectorX];
    float const v = p[VectorY];
    p[PositionX] = static_cast<float>(std::sqrt(wide(y) * wide(y) + wide(x) * wide(x)));
    p[PositionY] = static_cast<float>(std::atan2(wide(y), wide(x)));
    auto const s = static_cast<float>(Platform::Sin(wide(p[PositionY])));
    auto const c = static_cast<float>(Platform::Cos(wide(p[PositionY])));
    p[VectorX] = static_cast<float>(wide(s) * wide(v) + wide(c) * wide(u));
    p[VectorY] = static_cast<float>(wide(c) * wide(v) - wide(s) * wide(u));
}

/// Floats of `n` rows, below 0 none.
int floatsOf(int n)
{
    if (n > INT_MAX / ParticleGroup::nParticleCols) throw std::bad_alloc();
    return n < 0 ? 0 : n * ParticleGroup::nParticleCols;
}

} // namespace

ParticleGroup::ParticleGroup(int n)
{
    Size(n);
    origParticles = particles;
}

ParticleGroup::ParticleGroup(ParticleGroup const &other) : DArray<float, 0>(other)
{
    CopyHeader(other);
}

ParticleGroup::~ParticleGroup() = default;

ParticleGroup &ParticleGroup::operator=(ParticleGroup const &other)
{
    if (this == &other) return *this;
    DArray<float, 0>::operator=(other);
    CopyHeader(other);
    return *this;
}

void ParticleGroup::copyparameters(ParticleGroup const &other)
{
    header1 = other.header1;
    header2 = other.header2;
    t1 = other.t1;
    t2 = other.t2;
    t3 = other.t3;
    t4 = other.t4;
    t5 = other.t5;
}

void ParticleGroup::CopyHeader(ParticleGroup const &other)
{
    copyparameters(other);
    geometry = other.geometry;
    note = other.note;
    units = other.units;
    stamp = other.stamp;
    particles = other.particles;
    origParticles = other.particles;
    origGeometry = other.geometry;
}

void ParticleGroup::Size(int n)
{
    DArray<float, 0>::Size(floatsOf(n));
    particles = n < 0 ? 0 : n;
}

void ParticleGroup::ReSize(int n)
{
    DArray<float, 0>::ReSize(floatsOf(n));
    particles = n < 0 ? 0 : n;
}

void ParticleGroup::Reserve(int n)
{
    DArray<float, 0>::Reserve(floatsOf(n));
}

void ParticleGroup::Scale()
{
    for (int column = 0; column < nParticleCols; ++column) {
        maxValues[column] = -DFMax;
        minValues[column] = DFMax;
    }
    PGParticle const *const rows = PData();
    int const n = Count() / nParticleCols;
    for (int i = 0; i < n; ++i) {
        for (int column = 0; column < nParticleCols; ++column) {
            float const value = rows[i].column[column];
            if (value > maxValues[column]) maxValues[column] = value;
            if (value < minValues[column]) minValues[column] = value;
        }
    }
}

void ParticleGroup::CleanUp()
{
    PGParticle *const rows = PData();
    int kept = Count() / nParticleCols;
    for (int i = 0; i < kept;) {
        if (hasNaN(rows[i])) rows[i] = rows[--kept]; // and look at what came in
        else ++i;
    }
    ReSize(kept);
}

bool ParticleGroup::SetGeometry(int g)
{
    if (geometry == g) return true;
    geometry = g;
    PGParticle *const rows = PData();
    int const n = Count() / nParticleCols;
    for (int i = 0; i < n; ++i) {
        if (g == 0) toRectangular(rows[i]);
        else toPolar(rows[i]);
    }
    return true;
}

float ParticleGroup::GetPGroupParam(DString const &code) const
{
    struct Row {
        char const *code;
        float value;
    };
    Row const rows[] = {{"t1", t1}, {"t2", t2}, {"t3", t3},
                        {"t4", t4}, {"t5", t5}, {"np", static_cast<float>(origParticles)}};
    for (Row const &row : rows) {
        if (code.Len() == 2 && (code %= row.code)) return row.value;
    }
    return -DFMax;
}
