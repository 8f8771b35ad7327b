/// A holder of one data object of any kind, with the kind beside it. The cache of `Experiment` makes, loads, saves
/// and destroys objects through it and hands callers a plain pointer.
#pragma once

#include "foundation/DString.h"

enum DataType { DataNone = 0, DataWaveform = 1, DataMatrix = 2, DataParticleGroup = 3, DataGeometry = 4 };

/// A copy shares the object of its source, and only one of them may release it: arrays of holders grow and shrink in
/// place alone.
class VODREL_API DataPtr {
public:
    DataPtr() = default;
    DataPtr(DataPtr const &other) = default;
    DataPtr &operator=(DataPtr const &other) = default;
    /// Releases.
    ~DataPtr();

    /// Makes a new object. One that is held already isn't released. For an unknown kind `Data` becomes null and
    /// `Type` stays.
    void AllocData(DataType type);
    /// Loads the held object, whole. A waveform without samples counts as a failure, another empty object doesn't.
    bool Read(DString file);
    bool Write(DString file);
    /// Destroys the held object; may be called twice.
    void Release();

    void *Data = nullptr;
    DataType Type = DataNone;
    int Reserved = 0; ///< copied with the others
    DString Name;     ///< in the cache
};
