/// The names that folders and files of an experiment bear, for the sources of `Experiment`.
#pragma once

constexpr char const *shotWord = "Shot"; ///< in front of a shot's name
constexpr char const *shotsFolder = "Shots";
constexpr char const *shotListFolder = "ShotLists";
constexpr char const *valuesFile = "Scalars.ini";
constexpr char const *valuesCacheFile = "ScalarCache.ini";

/// Between a key and the one that is asked for where it has no value; between two formulas.
constexpr char const *fallbackMark = "::";
