/// What the benchmark programs share. An operation of the library is measured beside the bare work that it stands for,
/// in the same run and in turns, so that the ratio of the two holds on a noisy machine too. `report.py` makes the
/// tables.
#pragma once

#include <cstdio>
#include <cstdlib>
#include <functional>
#include <string>
#include <utility>

#include <benchmark/benchmark.h>

#include "VodrelCore.h"

namespace Beside {

// ---- Files. All lie in a fresh folder, the library's per-user folder too, and go when the program ends. ----

/// The native name of a file or folder there, which isn't made.
std::string Native(std::string const &name);

/// The same as a path of the library.
DString Path(std::string const &name);

/// Writes a file of these bytes, followed by a hole as far as `size` if that is larger.
void MakeFile(std::string const &name, std::string const &bytes, long long size = 0);

void MakeFolder(std::string const &name);

/// Ends the program if what is measured doesn't do what it should.
inline void Require(bool done)
{
    if (done) return;
    std::fputs("An operation that is measured has failed.\n", stderr);
    std::abort();
}

/// Bytes through plain `fopen`, `fwrite` or `fread` and `fclose`; read into fresh memory.
void WriteBare(char const *name, char const *mode, void const *bytes, std::size_t size);
void ReadBare(char const *name, std::size_t size);

// ---- What is compared ----

/// One side of a pair: what is done in a turn. A turn may do something many times over; all figures are per unit.
struct Work {
    explicit Work(std::function<void()> what) : turn(std::move(what)) {}

    /// How many units there are in a turn.
    Work &Per(double n)
    {
        units = n;
        return *this;
    }
    /// What precedes each turn and isn't measured.
    Work &After(std::function<void()> what)
    {
        before = std::move(what);
        return *this;
    }
    /// So many turns are measured at a time, instead of as many as it takes.
    Work &Times(int n)
    {
        nTurns = n;
        return *this;
    }

    std::function<void()> turn;
    std::function<void()> before;
    double units = 1;
    int nTurns = 0;
};

/// At least this part of the bare speed.
constexpr double Speed(double part)
{
    return 1 / part;
}

double const Unbounded = 0;

/// Has both sides measured, as a row of the table. `what` has no slash; `unit` is what a unit is, empty for a call;
/// `atMost` is the ratio that the first side must not exceed.
void Measure(std::string const &what, std::string const &unit, double atMost, Work const &ours, Work const &bare);

/// Does something in a process of its own and measures how far its memory rises, beside the bytes that it is there to
/// hold and those allowed above them.
void MeasureMemory(std::string const &what, double needed, double allowed, std::function<void()> filling);

// ---- The program ----

/// `prepare` makes files and data; `declare` measures, and is all that a process for memory runs of a program.
int Run(int argc, char **argv, std::string const &concern, void (*prepare)(), void (*declare)());

} // namespace Beside
