/// What the flat functions for C and for IDL have in common: from a host's names and arrays to data objects and back.
#pragma once

#include "data/Waveform.h"
#include "experiment/Experiment.h"
#include "foundation/DString.h"

/// A folder in the system's form, which the host may have given in its own.
DString fromHost(char const *hostName);

/// Reads a data object of the current experiment; it stays as it is if the name leads to no file.
template <typename Data, typename... Range>
void load(Data &data, char const *name, Range... range)
{
    DString const file = Expt.GetDataFileName(name);
    if (~file) data.Read(file, range...);
}

/// Writes a data object, scaled. A name that leads nowhere is dropped, as a failed write is.
template <typename Data>
void store(Data &data, char const *name)
{
    data.Scale();
    DString const file = Expt.GetDataFileName(name);
    if (~file) data.Write(file);
}

/// A waveform of the host's samples; 0 if there are none, a negative `n` counts as 0.
Waveform waveformOf(int n, float start, float step, float const *data);

/// Fills an array of `n` values of the host, with 0 behind the end of the waveform.
void copySamples(Waveform const &wave, int n, float *out);
