/// One experiment with every kind of file, made, extended and printed by the library's own operations. A program of
/// these, built for two systems, shows whether both write the same bytes and read each other's. So nothing here may
/// differ between systems: the clock stands until it is moved, numbers come from a sequence of our own, and no text
/// holds the name of a machine.
#pragma once

#include <cstdint>
#include <string>

#include "data/Geometry.h"
#include "data/Matrix.h"
#include "data/ParticleGroup.h"
#include "data/Waveform.h"
#include "foundation/DStringArray.h"

/// The folder in which everything lies, by its fully qualified path (`Z:\...`).
class Tree {
public:
    explicit Tree(char const *folder) : root(folder) {}
    DString Path(char const *relative) const { return root + '\\' + relative; }
    DString const &Root() const { return root; }
    DString Experiment() const { return Path("X\\E"); }

    /// Starts the library with the per-user folder of the tree.
    void Start(bool logging) const;
    void Open() const;

private:
    DString const root;
};

/// Moves the clock, which stands at 8:13:20 UTC on 10 June 2024 to begin with.
void PassTime(long long seconds);

/// A sequence of numbers that is the same everywhere.
class Numbers {
public:
    explicit Numbers(std::uint32_t seed) : state(seed) {}
    std::uint32_t Next();
    float AnyBits();      ///< a number of any kind: of any magnitude, infinite, none
    float AnyMagnitude(); ///< a finite number
    double AnyDouble();   ///< a finite number
    float Signal();       ///< within -1 and 1

private:
    std::uint32_t state;
};

/// Texts and data that the tree is made of; `kind` distinguishes them.
DString AllBytes(); ///< but NUL and the ends of lines
Waveform SomeWaveform(int samples, std::uint32_t kind);
Waveform BadWaveform(std::uint32_t kind);
Matrix SomeMatrix(int n1, int n2, int n3, std::uint32_t kind);
ParticleGroup SomeParticles(int rows, std::uint32_t kind);
Geometry SomeGeometry(std::uint32_t kind);

/// Formulas and labels over shot A001 of the tree.
extern char const *const formulas[];
extern char const *const labels[];
extern int const nFormulas;
extern int const nLabels;

DString Hex(float value);
DString Hex(double value);
/// A text with all its bytes visible.
DString Shown(DString const &text);
/// Prints such a text.
void PrintLine(DString const &text);

// ---- What the program does; each is one of its modes.

void MakeTree(Tree const &tree);
void ExtendTree(Tree const &tree);
void ListTree(Tree const &tree);
/// Functions, powers, conversions of numbers and dates with many arguments; needs no tree.
void ListResults();
