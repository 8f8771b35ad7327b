#include "data/DataPtr.h"

#include <new>

#include "data/Geometry.h"
#include "data/Matrix.h"
#include "data/ParticleGroup.h"
#include "data/Waveform.h"

namespace {

/// What can be done with an object of each kind.
struct Kind {
    DataType type;
    void *(*make)();
    bool (*read)(void *object, DString const &file);
    bool (*write)(void *object, DString const &file);
    void (*destroy)(void *object);
};

template <typename T>
bool writeObject(void *object, DString const &file)
{
    return static_cast<T *>(object)->Write(file);
}

template <typename T>
void destroyObject(void *object)
{
    delete static_cast<T *>(object);
}

bool readWaveform(void *object, DString const &file)
{
    auto *const wave = static_cast<Waveform *>(object);
    return wave->Read(file, -1) && wave->npnts() > 0;
}

bool readMatrix(void *object, DString const &file)
{
    return static_cast<Matrix *>(object)->Read(file, -1, 0);
}

bool readParticles(void *object, DString const &file)
{
    return static_cast<ParticleGroup *>(object)->Read(file, -1, 0);
}

bool readGeometry(void *object, DString const &file)
{
    return static_cast<Geometry *>(object)->Read(file);
}

template <typename T>
void *makeObject()
{
    return new (std::nothrow) T();
}

Kind const kinds[] = {
    {DataWaveform, makeObject<Waveform>, readWaveform, writeObject<Waveform>, destroyObject<Waveform>},
    {DataMatrix, makeObject<Matrix>, readMatrix, writeObject<Matrix>, destroyObject<Matrix>},
    {DataParticleGroup, makeObject<ParticleGroup>, readParticles, writeObject<ParticleGroup>,
     destroyObject<ParticleGroup>},
    {DataGeometry, makeObject<Geometry>, readGeometry, writeObject<Geometry>, destroyObject<Geometry>},
};

Kind const *kindOf(DataType type)
{
    for (Kind const &kind : kinds) {
        if (kind.type == type) return &kind;
    }
    return nullptr;
}

} // namespace

template class DArray<DataPtr, 1>;

DataPtr::~DataPtr()
{
    Release();
}

void DataPtr::AllocData(DataType type)
{
    Kind const *const kind = kindOf(type);
    Data = kind ? kind->make() : nullptr;
    if (Data) Type = type;
}

bool DataPtr::Read(DString file)
{
    Kind const *const kind = kindOf(Type);
    return kind && Data && kind->read(Data, file);
}

bool DataPtr::Write(DString file)
{
    Kind const *const kind = kindOf(Type);
    return kind && Data && kind->write(Data, file);
}

void DataPtr::Release()
{
    Kind const *const kind = kindOf(Type);
    if (kind && Data) kind->destroy(Data);
    Type = DataNone;
    Data = nullptr;
}
