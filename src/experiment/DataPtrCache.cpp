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

/// The next entry of an object from `start` on, -1 for none.
int Experiment::findDataPtr(void const *object, DataType type, int start) const
{
    for (int i = start; i < DataPtrs.Count(); ++i) {
        if (DataPtrs[i].Data == object && DataPtrs[i].Type == type) return i;
    }
    return -1;
}

bool Experiment::ReleaseDataPtr(DString const &name, DataType type, void *&data)
{
    bool result = true;
    void const *const wanted = data;
    for (int i = findDataPtr(wanted, type, 0); i >= 0; i = findDataPtr(wanted, type, i + 1)) {
        data = nullptr;
        if (isMemoryName(name, type)) {
            DataPtrs[i].Name = name;
            continue;
        }
        DString const file = !name ? DString() : GetDataFileName(name);
        if (~file) {
            result = DataPtrs[i].Write(file);
            i = findDataPtr(wanted, type, 0); // whoever heard of a locked file may have changed the table
            if (i < 0) return result;
        }
        DataPtrs.Remove(i, 1);
    }
    return result;
}

void Experiment::ClearDataPtrs()
{
    DataPtrs.Clear();
}
