// The holder of one data object of any kind.

#include <filesystem>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "data/DataPtr.h"
#include "data/Geometry.h"
#include "data/Matrix.h"
#include "data/ParticleGroup.h"
#include "data/Waveform.h"
#include "foundation/DArray.h"
#include "support/FreshSystem.h"

namespace {

struct {
    DataType type;
    char const *extension;
} const kinds[] = {{DataWaveform, ".wvf"}, {DataMatrix, ".dmt"}, {DataParticleGroup, ".dpt"}, {DataGeometry, ".dgm"}};

/// Values that name no kind; the type of an enumeration of 0 to 4 holds 0 to 7.
std::vector<DataType> NoKinds()
{
    std::vector<DataType> types;
    for (int value : {0, 5, 6, 7}) types.push_back(static_cast<DataType>(value));
    return types;
}

class DataHolder : public testing::Test {
protected:
    DataHolder() : system(false) { SetNotify(&system.listener); }

    DString Name(std::string const &stem) const { return Dstr(system.path(stem)); }

    FreshSystem system;
};

/// A holder of a new object of the kind.
struct Held : DataPtr {
    explicit Held(DataType type) { AllocData(type); }
};

TEST_F(DataHolder, TheKindsHaveTheirNumbers)
{
    EXPECT_EQ(0, DataNone);
    EXPECT_EQ(1, DataWaveform);
    EXPECT_EQ(2, DataMatrix);
    EXPECT_EQ(3, DataParticleGroup);
    EXPECT_EQ(4, DataGeometry);
}

TEST_F(DataHolder, ANewHolderIsEmpty)
{
    DataPtr const holder;
    EXPECT_EQ(nullptr, holder.Data);
    EXPECT_EQ(DataNone, holder.Type);
    EXPECT_EQ("", Plain(holder.Name));
}

TEST_F(DataHolder, ANewObjectOfEachKindIsEmpty)
{
    Held const waveform(DataWaveform), matrix(DataMatrix), particles(DataParticleGroup), geometry(DataGeometry);
    EXPECT_EQ(0, static_cast<Waveform *>(waveform.Data)->npnts());
    EXPECT_EQ(1, static_cast<Matrix *>(matrix.Data)->Count());
    EXPECT_EQ(0, static_cast<ParticleGroup *>(particles.Data)->nParticles());
    auto const *list = static_cast<Geometry *>(geometry.Data);
    EXPECT_EQ(0, list->nObjects());
    EXPECT_EQ("", Plain(list->units + list->note + list->stamp));
    EXPECT_EQ(DataWaveform, waveform.Type);
    EXPECT_EQ(DataMatrix, matrix.Type);
    EXPECT_EQ(DataParticleGroup, particles.Type);
    EXPECT_EQ(DataGeometry, geometry.Type);
}

TEST_F(DataHolder, AnUnknownKindGivesNoObjectAndLeavesTheType)
{
    for (DataType type : NoKinds()) {
        DataPtr fresh;
        fresh.AllocData(type);
        EXPECT_EQ(nullptr, fresh.Data) << type;
        EXPECT_EQ(DataNone, fresh.Type) << type;
        Held holder(DataWaveform);
        void *const before = holder.Data;
        holder.AllocData(type);
        EXPECT_EQ(nullptr, holder.Data) << type;
        EXPECT_EQ(DataWaveform, holder.Type) << type;
        EXPECT_FALSE(holder.Read(Name("w"))) << type;
        EXPECT_FALSE(holder.Write(Name("w"))) << type;
        delete static_cast<Waveform *>(before);
    }
    EXPECT_FALSE(system.folder.Has("w.wvf"));
}

TEST_F(DataHolder, AllocDoesntReleaseTheObjectThatIsThere)
{
    Held holder(DataWaveform);
    auto *const first = static_cast<Waveform *>(holder.Data);
    holder.AllocData(DataGeometry);
    EXPECT_EQ(DataGeometry, holder.Type);
    first->Size(3); // alive
    EXPECT_EQ(3, first->npnts());
    delete first;
}

TEST_F(DataHolder, EachKindIsWrittenUnderItsExtensionAndReadAgain)
{
    for (auto const &kind : kinds) {
        Held holder(kind.type);
        if (kind.type == DataWaveform) static_cast<Waveform *>(holder.Data)->Size(1);
        EXPECT_TRUE(holder.Write(Name("data"))) << kind.extension;
        EXPECT_EQ(std::string("data") + kind.extension, system.Names("")) << "and nothing else";
        EXPECT_TRUE(Held(kind.type).Read(Name("data"))) << kind.extension;
        std::filesystem::remove(system.folder.native(std::string("data") + kind.extension));
        EXPECT_FALSE(Held(kind.type).Read(Name("data"))) << kind.extension;
        EXPECT_FALSE(holder.Write(Name("no\\where"))) << kind.extension;
    }
}

TEST_F(DataHolder, WhatWasWrittenIsReadWhole)
{
    Held waveform(DataWaveform), matrix(DataMatrix), particles(DataParticleGroup), geometry(DataGeometry);
    static_cast<Waveform *>(waveform.Data)->Size(5);
    *static_cast<Matrix *>(matrix.Data) = Matrix(2, 3, 4);
    static_cast<ParticleGroup *>(particles.Data)->Size(6);
    static_cast<Geometry *>(geometry.Data)->AddBlank(7);
    static_cast<Geometry *>(geometry.Data)->units = "u";
    for (DataPtr *holder : {static_cast<DataPtr *>(&waveform), static_cast<DataPtr *>(&matrix),
                            static_cast<DataPtr *>(&particles), static_cast<DataPtr *>(&geometry)}) {
        EXPECT_TRUE(holder->Write(Name("data")));
        DataType const type = holder->Type;
        holder->Release();
        holder->AllocData(type);
        EXPECT_TRUE(holder->Read(Name("data")));
    }
    EXPECT_EQ(5, static_cast<Waveform *>(waveform.Data)->npnts());
    EXPECT_EQ(24, static_cast<Matrix *>(matrix.Data)->Count());
    EXPECT_EQ(6, static_cast<ParticleGroup *>(particles.Data)->nParticles());
    EXPECT_EQ(7, static_cast<Geometry *>(geometry.Data)->nObjects());
    EXPECT_EQ("u", Plain(static_cast<Geometry *>(geometry.Data)->units));
}

TEST_F(DataHolder, OnlyAnEmptyWaveformReadsAsAFailure)
{
    for (auto const &kind : kinds) {
        Held holder(kind.type);
        EXPECT_TRUE(holder.Write(Name("empty"))) << kind.extension;
        EXPECT_EQ(kind.type != DataWaveform, Held(kind.type).Read(Name("empty"))) << kind.extension;
        system.folder.Write(std::string("nothing") + kind.extension); // no byte at all
        EXPECT_EQ(kind.type != DataWaveform, Held(kind.type).Read(Name("nothing"))) << kind.extension;
    }
}

TEST_F(DataHolder, WithoutAKindNothingIsReadOrWritten)
{
    for (DataType type : NoKinds()) {
        DataPtr holder;
        holder.AllocData(type);
        EXPECT_FALSE(holder.Read(Name("data"))) << type;
        EXPECT_FALSE(holder.Write(Name("data"))) << type;
        int object = 0;
        holder.Data = &object;
        holder.Type = type;
        EXPECT_FALSE(holder.Read(Name("data"))) << type;
        EXPECT_FALSE(holder.Write(Name("data"))) << type;
    }
    EXPECT_EQ("", system.Names(""));
}

TEST_F(DataHolder, ReleaseMayBeCalledTwiceAndOnAnEmptyHolder)
{
    for (auto const &kind : kinds) {
        Held holder(kind.type);
        holder.Name = "name";
        for (int round = 0; round < 2; ++round) {
            holder.Release();
            EXPECT_EQ(nullptr, holder.Data);
            EXPECT_EQ(DataNone, holder.Type);
            EXPECT_EQ("name", Plain(holder.Name));
        }
    }
    DataPtr empty;
    empty.Release();
    EXPECT_EQ(nullptr, empty.Data);
}

TEST_F(DataHolder, ReleaseForgetsAnObjectOfNoKind)
{
    for (DataType type : NoKinds()) {
        int object = 0;
        DataPtr holder;
        holder.Data = &object;
        holder.Type = type;
        holder.Release();
        EXPECT_EQ(nullptr, holder.Data) << type;
        EXPECT_EQ(DataNone, holder.Type) << type;
    }
}

TEST_F(DataHolder, ReleaseOfAKindWithoutAnObjectResetsTheKind)
{
    for (auto const &kind : kinds) {
        DataPtr holder;
        holder.Type = kind.type;
        holder.Release();
        EXPECT_EQ(DataNone, holder.Type) << kind.extension;
    }
}

// The leak checker tells what these leave behind.
TEST_F(DataHolder, ObjectsGoWithAllThatTheyHold)
{
    std::string const text(1000, 'x');
    Held waveform(DataWaveform), geometry(DataGeometry), particles(DataParticleGroup), matrix(DataMatrix);
    static_cast<Waveform *>(waveform.Data)->Size(1000);
    static_cast<Waveform *>(waveform.Data)->note = Dstr(text);
    static_cast<ParticleGroup *>(particles.Data)->Size(1000);
    static_cast<ParticleGroup *>(particles.Data)->units = Dstr(text);
    *static_cast<Matrix *>(matrix.Data) = Matrix(10, 10, 10);
    auto *list = static_cast<Geometry *>(geometry.Data);
    list->stamp = list->note = Dstr(text);
    list->AddBlank(300);
    for (int i = 0; i < 300; ++i) {
        (*list)[i].name = Dstr(text);
        (*list)[i].params.Size(100);
    }
    geometry.Release();
    EXPECT_EQ(nullptr, geometry.Data);
}

TEST_F(DataHolder, CopiesShareTheObject)
{
    Held holder(DataGeometry);
    holder.Name = "name";
    holder.Reserved = 7;
    DataPtr copy(holder), assigned;
    assigned = holder;
    for (DataPtr *other : {&copy, &assigned}) {
        EXPECT_EQ(holder.Data, other->Data);
        EXPECT_EQ(DataGeometry, other->Type);
        EXPECT_EQ(7, other->Reserved);
        EXPECT_EQ("name", Plain(other->Name));
    }
    holder.Release();
    EXPECT_NE(nullptr, copy.Data); // dangling: only one of them may release
    copy.Data = assigned.Data = nullptr;
}

TEST_F(DataHolder, AnArrayOfHoldersReleasesEachOnce)
{
    DArray<DataPtr, 1> holders;
    std::vector<void *> objects;
    for (int i = 0; i < 600; ++i) {
        holders.AddBlank(1);
        holders.Last().AllocData(kinds[i % 4].type);
        objects.push_back(holders.Last().Data);
    }
    for (int i = 0; i < 600; ++i) EXPECT_EQ(objects[static_cast<std::size_t>(i)], holders[i].Data) << i;
    holders.Remove(5, 1);
    EXPECT_EQ(objects[6], holders[5].Data);
    holders.Clear();
    EXPECT_EQ(0, holders.Count());
}

} // namespace
