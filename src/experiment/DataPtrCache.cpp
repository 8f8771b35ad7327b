/// The table of data objects that callers have borrowed. Entries are found by their object, or by a name that begins
/// with "@"; file contents aren't cached. The holders move in the array, the objects don't.

#include "experiment/Experiment.h"

namespace {

/// Objects that live in memory only have such a name. Particle groups have no such life.
bool isMemoryName(DString const &name, DataType type)
{
    return name.StartsWith("@") && type != DataParticleGroup;
}

} // namespace

/// Appends an entry in place: a copied holder would share its object.
DataPtr &Experiment::appendDataPtr(DataType type)
{
    DataPtrs.AddBlank(1);
    DataPtrs.Last().AllocData(type);
    return DataPtrs.Last();
}

void *Experiment::GetDataPtr(DString const &name, DataType type)
{
    if (isMemoryName(name, type)) {
        for (int i = 0; i < DataPtrs.Count(); ++i) {
            if ((DataPtrs[i].Name %= name) && DataPtrs[i].Type == type) return DataPtrs[i].Data;
        }
        return nullptr;
    }
    DataPtr &entry = appendDataPtr(type);
    if (!name) return entry.Data;
    DString const file = GetDataFileName(name);
    if (~file && entry.Read(file)) {
        entry.Name = name;
        return entry.Data;
    }
    DataPtrs.Remove(DataPtrs.Count() - 1, 1);
    return nullptr;
}

void *Experiment::InitDataPtr(DString const &name, DataType type)
{
    if (!name || type == DataParticleGroup) return nullptr;
    DataPtr &entry = appendDataPtr(type);
    entry.Name = name;
    return entry.Data;
}

bool Experiment::ReleaseDataPtr(DString const &name, DataType type, void *&data)
{
    bool result = true;
    void const *const wanted = data;
    for (int i = 0; i < DataPtrs.Count(); ++i) {
        DataPtr &entry = DataPtrs[i];
        if (entry.Data != wanted || entry.Type != type) continue;
        data = nullptr;
        if (isMemoryName(name, type)) {
            entry.Name = name;
            continue;
        }
        DString const file = !name ? DString() : GetDataFileName(name);
        if (~file) result = entry.Write(file);
        DataPtrs.Remove(i, 1);
    }
    return result;
}

void Experiment::ClearDataPtrs()
{
    DataPtrs.Clear();
}
