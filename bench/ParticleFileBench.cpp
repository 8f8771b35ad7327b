/// Particle tables to and from the disk, and rows added to a file in place.

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include <unistd.h>

#include "Beside.h"

namespace {

std::size_t const rowBytes = sizeof(PGParticle);
int const nRows = 4000000;
std::size_t const nBytes = nRows * rowBytes;
int const nAppended = 1000000;
std::size_t const appendedBytes = nAppended * rowBytes;
int const nLarge = 10000000;
int const nSmall = 10;

/// Of a file: where the number of rows stands, and how long a header without texts but for the date is.
long const positionOfCount = 12;
long const headerBytes = 12 * 4 + 2 * 8 * 4 + 3 * 4 + 19;

ParticleGroup stored, appended, fewRows(nSmall);

void fill(ParticleGroup &group, int n)
{
    group.Size(n);
    for (int i = 0; i < group.Count(); ++i) group[i] = static_cast<float>(i % 1000);
    group.Scale();
}

/// Makes a file of `n` rows of which only the first ten stand on the disk.
void makeWithHole(std::string const &name, int n)
{
    std::string const file = Beside::Native(name + ".dpt");
    Beside::Require(fewRows.Write(Beside::Path(name)));
    std::FILE *const stream = std::fopen(file.c_str(), "r+b");
    std::fseek(stream, positionOfCount, SEEK_SET);
    std::int32_t const count = n;
    std::fwrite(&count, sizeof count, 1, stream);
    Beside::Require(std::fclose(stream) == 0);
    Beside::Require(truncate(file.c_str(), headerBytes + n * static_cast<long>(rowBytes)) == 0);
}

void prepare()
{
    fill(stored, nRows);
    fill(appended, nAppended);
    fill(fewRows, nSmall);
    stored.Write(Beside::Path("Stored"));
    Beside::MakeFile("Base.bare", std::string(appendedBytes, '\x3F'));
}

// ---- All rows ----

void writeOurs()
{
    Beside::Require(stored.Write(Beside::Path("Written")));
}

void writeBare()
{
    Beside::WriteBare("Written.bare", "wb", stored.Data(), nBytes);
}

void readOurs()
{
    ParticleGroup group;
    Beside::Require(group.Read(Beside::Path("Stored"), -1, 0) && group.nParticles() == nRows);
    benchmark::DoNotOptimize(group.Data());
}

void readBare()
{
    Beside::ReadBare("Stored.dpt", nBytes);
}

// ---- Rows behind others ----

void appendOurs()
{
    Beside::Require(appended.Append(Beside::Path("Base")) && appended.nOrigParticles() == 2 * nAppended);
}

void appendBare()
{
    Beside::WriteBare("Base.bare", "ab", appended.Data(), appendedBytes);
}

Beside::Work appendingTo(std::string const &name, int n)
{
    int const appendsPerTurn = 100;
    auto const appendAll = [name, n] {
        for (int i = 0; i < appendsPerTurn; ++i) fewRows.Append(Beside::Path(name));
        Beside::Require(fewRows.nOrigParticles() == n + appendsPerTurn * nSmall);
    };
    return Beside::Work(appendAll).Per(appendsPerTurn).After([name, n] { makeWithHole(name, n); }).Times(20);
}

void declare()
{
    using namespace Beside;
    std::string const none;
    Measure("ParticleGroup::Write of 4 million particles, beside fwrite", none, Speed(0.9), Work(writeOurs),
            Work(writeBare));
    Measure("ParticleGroup::Read of 4 million particles, beside fread", none, Speed(0.9), Work(readOurs),
            Work(readBare));
    Measure("ParticleGroup::Append of a million particles, beside fwrite", none, Speed(0.9),
            Work(appendOurs).After([] { appended.Write(Path("Base")); }).Times(3),
            Work(appendBare).After([] { MakeFile("Base.bare", std::string(appendedBytes, '\x3F')); }).Times(3));
    Measure("ParticleGroup::Append of 10 to 10 million, beside to 10", none, 1.25, appendingTo("Large", nLarge),
            appendingTo("Small", nSmall));
}

} // namespace

int main(int argc, char **argv)
{
    return Beside::Run(argc, argv, "Particle files", prepare, declare);
}
