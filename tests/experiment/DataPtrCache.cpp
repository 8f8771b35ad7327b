// The table of borrowed data objects, in each state of an entry.

#include <functional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "data/Geometry.h"
#include "data/Matrix.h"
#include "data/ParticleGroup.h"
#include "data/Waveform.h"
#include "support/ExperimentTest.h"

namespace {

DataType const kinds[] = {DataWaveform, DataMatrix, DataParticleGroup, DataGeometry};
DataType const memoryKinds[] = {DataWaveform, DataMatrix, DataGeometry};

class DataPtrCache : public ExperimentTest {
protected:
    /// The shot A1 of group 0 is current; B2 stands in group 2.
    DataPtrCache()
    {
        OpenWithRuns();
        MakeShot(0, "A1");
        MakeShot(2, "B2");
        Set("A1", 0);
    }

    void *Get(std::string const &data, DataType type = DataWaveform) { return expt.GetDataPtr(Dstr(data), type); }
    void *Init(std::string const &data, DataType type = DataWaveform) { return expt.InitDataPtr(Dstr(data), type); }
    bool Release(std::string const &data, void *&object, DataType type = DataWaveform)
    {
        return expt.ReleaseDataPtr(Dstr(data), type, object);
    }

    /// Writes a trace of `n` samples.
    void PutTrace(std::string const &data, int n)
    {
        Waveform w(n);
        for (int i = 0; i < n; ++i) w[i] = static_cast<float>(i);
        ASSERT_TRUE(w.Write(expt.GetDataFileName(Dstr(data))));
    }
    /// Samples in the file of a trace, -1 without one.
    int Samples(std::string const &data)
    {
        Waveform w;
        return w.Read(expt.GetDataFileName(Dstr(data)), -1) ? w.npnts() : -1;
    }
    static Waveform *Trace(void *object) { return static_cast<Waveform *>(object); }

    bool HasFile(std::string const &file) const { return Has(ShotIn(0, "A1") + "/" + file); }
};

// ---- Lent with a file name ----

TEST_F(DataPtrCache, AFileIsLoadedWhole)
{
    PutTrace("W", 7);
    void *const object = Get("W");
    ASSERT_NE(nullptr, object);
    EXPECT_EQ(7, Trace(object)->npnts());
    EXPECT_EQ(6.0f, (*Trace(object))[6]);
}

TEST_F(DataPtrCache, EachKindComesFromItsFile)
{
    PutTrace("D", 1);
    DString const file = expt.GetDataFileName("D");
    ASSERT_TRUE(Matrix(2, 3, 1).Write(file));
    ASSERT_TRUE(ParticleGroup(4).Write(file));
    Geometry list;
    list.AddBlank(5);
    ASSERT_TRUE(list.Write(file));
    EXPECT_EQ(1, static_cast<Waveform *>(Get("D", DataWaveform))->npnts());
    EXPECT_EQ(6, static_cast<Matrix *>(Get("D", DataMatrix))->Count());
    EXPECT_EQ(4, static_cast<ParticleGroup *>(Get("D", DataParticleGroup))->nParticles());
    EXPECT_EQ(5, static_cast<Geometry *>(Get("D", DataGeometry))->nObjects());
}

TEST_F(DataPtrCache, EachCallReadsTheFileIntoAnObjectOfItsOwn)
{
    PutTrace("W", 7);
    void *const first = Get("W");
    PutTrace("W", 9);
    void *const second = Get("W");
    EXPECT_NE(first, second);
    EXPECT_EQ(7, Trace(first)->npnts());
    EXPECT_EQ(9, Trace(second)->npnts());
}

TEST_F(DataPtrCache, NamesLeadToOtherShotsAndFolders)
{
    PutTrace("B2\\W", 3);
    EXPECT_TRUE(Has(ShotIn(2, "B2") + "/W.wvf"));
    EXPECT_EQ(3, Trace(Get("B2\\W"))->npnts());
    PutTrace(".\\loose", 4);
    EXPECT_TRUE(Has("X/E/loose.wvf"));
    EXPECT_EQ(4, Trace(Get(".\\loose"))->npnts());
}

TEST_F(DataPtrCache, WhatCantBeReadIsNull)
{
    PutTrace("W", 7);
    system.folder.MakeFolder(ShotIn(0, "A1") + "/F.wvf");
    for (char const *data : {"missing", "Z9\\W", "F", "no\\where\\W", "W.wvf", " "})
        EXPECT_EQ(nullptr, Get(data)) << data;
    for (DataType type : {DataMatrix, DataParticleGroup, DataGeometry}) EXPECT_EQ(nullptr, Get("W", type)) << type;
}

TEST_F(DataPtrCache, AnEmptyTraceCantBeReadAnotherEmptyObjectCan)
{
    PutTrace("E", 0);
    ASSERT_TRUE(ParticleGroup(0).Write(expt.GetDataFileName("E")));
    ASSERT_TRUE(Geometry().Write(expt.GetDataFileName("E")));
    EXPECT_EQ(nullptr, Get("E", DataWaveform));
    EXPECT_NE(nullptr, Get("E", DataParticleGroup));
    EXPECT_NE(nullptr, Get("E", DataGeometry));
}

TEST_F(DataPtrCache, AnUnknownKindIsNull)
{
    PutTrace("W", 7);
    for (int value : {0, 5, 7}) {
        auto const type = static_cast<DataType>(value);
        EXPECT_EQ(nullptr, Get("W", type)) << value;
        EXPECT_EQ(nullptr, Get("", type)) << value;
        EXPECT_EQ(nullptr, Get("@W", type)) << value;
        EXPECT_EQ(nullptr, Init("@W", type)) << value;
        EXPECT_EQ(nullptr, Get("@W", type)) << value;
        void *none = nullptr;
        EXPECT_TRUE(Release("", none, type)) << value;
        EXPECT_TRUE(Release("", none, type)) << value;
    }
}

TEST_F(DataPtrCache, AnEmptyNameDiscardsChanges)
{
    PutTrace("W", 7);
    void *object = Get("W");
    Trace(object)->Size(2);
    EXPECT_TRUE(Release("", object));
    EXPECT_EQ(nullptr, object);
    EXPECT_EQ(7, Samples("W"));
}

TEST_F(DataPtrCache, TheNameOfTheLoadSavesChanges)
{
    PutTrace("W", 7);
    void *object = Get("W");
    Trace(object)->Size(2);
    EXPECT_TRUE(Release("W", object));
    EXPECT_EQ(nullptr, object);
    EXPECT_EQ(2, Samples("W"));
}

TEST_F(DataPtrCache, AnotherNameSavesThere)
{
    PutTrace("W", 7);
    void *object = Get("W");
    EXPECT_TRUE(Release("B2\\V", object));
    EXPECT_EQ(nullptr, object);
    EXPECT_EQ(7, Samples("B2\\V"));
}

TEST_F(DataPtrCache, AnObjectFromAFileCanLiveOnInMemory)
{
    PutTrace("W", 7);
    void *object = Get("W");
    void *const same = object;
    EXPECT_TRUE(Release("@kept", object));
    EXPECT_EQ(nullptr, object);
    EXPECT_EQ(same, Get("@kept"));
    EXPECT_EQ(7, Trace(same)->npnts());
    EXPECT_FALSE(HasFile("@kept.wvf"));
}

TEST_F(DataPtrCache, OfTwoLoadsOfAFileEachIsGivenBackAlone)
{
    PutTrace("W", 7);
    void *first = Get("W"), *second = Get("W");
    Trace(second)->Size(3);
    EXPECT_TRUE(Release("", first));
    EXPECT_EQ(3, Trace(second)->npnts()); // alive
    EXPECT_TRUE(Release("W", second));
    EXPECT_EQ(3, Samples("W"));
}

// ---- Lent without a name ----

TEST_F(DataPtrCache, AnEmptyNameLendsANewObject)
{
    for (DataType type : kinds) {
        void *object = Get("", type), *other = Get("", type);
        ASSERT_NE(nullptr, object) << type;
        EXPECT_NE(object, other) << type;
        EXPECT_TRUE(Release("", object, type)) << type;
        EXPECT_EQ(nullptr, object) << type;
        EXPECT_TRUE(Release("N", other, type)) << type;
        EXPECT_EQ(nullptr, other) << type;
    }
    for (char const *file : {"N.wvf", "N.dmt", "N.dpt", "N.dgm"}) EXPECT_TRUE(HasFile(file)) << file;
    EXPECT_EQ("N.dgm N.dmt N.dpt N.wvf", system.Names(ShotIn(0, "A1")).substr(0, 23));
}

TEST_F(DataPtrCache, ANewObjectGetsItsMemoryNameWithTheRelease)
{
    for (DataType type : memoryKinds) {
        void *object = Get("", type);
        void *const same = object;
        EXPECT_EQ(nullptr, Get("@new", type)) << type;
        EXPECT_TRUE(Release("@new", object, type)) << type;
        EXPECT_EQ(nullptr, object) << type;
        EXPECT_EQ(same, Get("@new", type)) << type;
    }
}

// ---- Named in memory ----

TEST_F(DataPtrCache, AMemoryNameIsFoundByEveryCaller)
{
    for (DataType type : memoryKinds) {
        EXPECT_EQ(nullptr, Get("@m", type)) << type;
        void *const object = Init("@m", type);
        ASSERT_NE(nullptr, object) << type;
        EXPECT_EQ(object, Get("@m", type)) << type;
        EXPECT_EQ(object, Get("@M", type)) << type;
    }
}

TEST_F(DataPtrCache, TheWholeNameCountsAndItsCaseDoesnt)
{
    void *const object = Init("@Name\xC9");
    EXPECT_EQ(object, Get("@nAME\xC9"));
    for (std::string const &data : {std::string("@"), std::string("@Name"), std::string("@Name\xC9x"),
                                    std::string("@Name\xE9"), std::string("@Name\xC9\0", 7), std::string("@Nam\xC9")})
        EXPECT_EQ(nullptr, Get(data)) << testing::PrintToString(data);
}

TEST_F(DataPtrCache, AnAtSignAloneIsAName)
{
    void *const object = Init("@");
    EXPECT_EQ(object, Get("@"));
    EXPECT_EQ(nullptr, Get("@x"));
}

TEST_F(DataPtrCache, AMemoryNameNeverComesFromAFile)
{
    Write(ShotIn(0, "A1") + "/@W.wvf", Read(ShotIn(0, "A1") + "/none"));
    PutTrace("@W", 7);
    EXPECT_TRUE(HasFile("@W.wvf"));
    EXPECT_EQ(nullptr, Get("@W"));
}

TEST_F(DataPtrCache, EachKindHasNamesOfItsOwn)
{
    void *const trace = Init("@m", DataWaveform), *const matrix = Init("@m", DataMatrix);
    EXPECT_EQ(trace, Get("@m", DataWaveform));
    EXPECT_EQ(matrix, Get("@m", DataMatrix));
    EXPECT_EQ(nullptr, Get("@m", DataGeometry));
}

TEST_F(DataPtrCache, NoObjectIsMadeWithoutANameOrForParticles)
{
    EXPECT_EQ(nullptr, Init(""));
    for (char const *data : {"@p", "p", ""}) EXPECT_EQ(nullptr, Init(data, DataParticleGroup)) << data;
}

TEST_F(DataPtrCache, OfTwoOfOneNameTheFirstIsFound)
{
    void *first = Init("@m"), *const second = Init("@m");
    EXPECT_NE(first, second);
    EXPECT_EQ(first, Get("@m"));
    EXPECT_TRUE(Release("", first));
    EXPECT_EQ(second, Get("@m"));
}

TEST_F(DataPtrCache, AnotherNameIsReachedByThePointerAlone)
{
    void *object = Init("W");
    ASSERT_NE(nullptr, object);
    EXPECT_EQ(nullptr, Get("W")); // there is no such file
    Trace(object)->Size(4);
    EXPECT_TRUE(Release("W", object));
    EXPECT_EQ(4, Samples("W"));
}

TEST_F(DataPtrCache, ReleaseKeepsAMemoryObjectAndItsChanges)
{
    void *object = Init("@m");
    void *const same = object;
    Trace(object)->Size(4);
    EXPECT_TRUE(Release("@m", object));
    EXPECT_EQ(nullptr, object);
    EXPECT_EQ(same, Get("@m"));
    EXPECT_EQ(4, Trace(same)->npnts());
}

TEST_F(DataPtrCache, ReleaseUnderAnotherMemoryNameRenames)
{
    void *object = Init("@old");
    void *const same = object;
    EXPECT_TRUE(Release("@new", object));
    EXPECT_EQ(nullptr, Get("@old"));
    EXPECT_EQ(same, Get("@new"));
}

TEST_F(DataPtrCache, ReleaseUnderAFileNameSavesAndDrops)
{
    void *object = Init("@m");
    Trace(object)->Size(4);
    EXPECT_TRUE(Release("W", object));
    EXPECT_EQ(nullptr, object);
    EXPECT_EQ(4, Samples("W"));
    EXPECT_EQ(nullptr, Get("@m"));
}

TEST_F(DataPtrCache, ReleaseUnderAnEmptyNameDrops)
{
    void *object = Init("@m"), *const other = Init("@n");
    EXPECT_TRUE(Release("", object));
    EXPECT_EQ(nullptr, object);
    EXPECT_EQ(nullptr, Get("@m"));
    EXPECT_EQ(other, Get("@n"));
}

TEST_F(DataPtrCache, ClearDropsAllAndSavesNothing)
{
    PutTrace("W", 7);
    Trace(Get("W"))->Size(2);
    Init("@m");
    Get("", DataGeometry);
    expt.ClearDataPtrs();
    EXPECT_EQ(nullptr, Get("@m"));
    EXPECT_EQ(7, Samples("W"));
    void *const again = Init("@m");
    EXPECT_EQ(again, Get("@m"));
    expt.ClearDataPtrs();
    expt.ClearDataPtrs();
}

// ---- Particle groups ----

TEST_F(DataPtrCache, ParticlesUnderAMemoryNameTakeTheFileRoute)
{
    EXPECT_EQ(nullptr, Get("@p", DataParticleGroup));
    ASSERT_TRUE(ParticleGroup(4).Write(expt.GetDataFileName("@p")));
    void *first = Get("@p", DataParticleGroup), *second = Get("@p", DataParticleGroup);
    ASSERT_NE(nullptr, first);
    EXPECT_NE(first, second);
    static_cast<ParticleGroup *>(first)->Size(9);
    EXPECT_TRUE(Release("@p", first, DataParticleGroup));
    EXPECT_EQ(nullptr, first);
    EXPECT_EQ(9, static_cast<ParticleGroup *>(Get("@p", DataParticleGroup))->nParticles());
    EXPECT_TRUE(HasFile("@p.dpt"));
    EXPECT_TRUE(Release("", second, DataParticleGroup));
}

// ---- What isn't in the table, and what can't be written ----

TEST_F(DataPtrCache, AnUnknownPointerStaysAsItIs)
{
    int own = 0;
    void *object = &own;
    for (char const *data : {"", "@m", "W", "Z9\\W"}) {
        EXPECT_TRUE(Release(data, object)) << data;
        EXPECT_EQ(&own, object) << data;
    }
    EXPECT_FALSE(HasFile("W.wvf"));
    void *none = nullptr;
    EXPECT_TRUE(Release("W", none));
    EXPECT_EQ(nullptr, none);
}

TEST_F(DataPtrCache, APointerUnderAnotherKindIsUnknown)
{
    void *const object = Init("@m");
    void *data = object;
    for (DataType type : {DataNone, DataMatrix, DataParticleGroup, DataGeometry}) {
        EXPECT_TRUE(Release("", data, type)) << type;
        EXPECT_EQ(object, data) << type;
    }
    EXPECT_EQ(object, Get("@m"));
}

TEST_F(DataPtrCache, GivenBackTwiceIsUnknownTheSecondTime)
{
    void *object = Get("");
    void *again = object;
    EXPECT_TRUE(Release("", object));
    EXPECT_TRUE(Release("W", again));
    EXPECT_NE(nullptr, again);
    EXPECT_FALSE(HasFile("W.wvf"));
}

TEST_F(DataPtrCache, AFileThatCantBeWrittenIsToldAndTheObjectIsGone)
{
    system.folder.MakeFolder(ShotIn(0, "A1") + "/F.wvf");
    for (char const *data : {"F", ".\\no\\where"}) {
        void *object = Init("@m");
        EXPECT_FALSE(Release(data, object)) << data;
        EXPECT_EQ(nullptr, object) << data;
        EXPECT_EQ(nullptr, Get("@m")) << data;
    }
}

TEST_F(DataPtrCache, AShotThatIsntThereDropsTheObjectSilently)
{
    void *object = Init("@m");
    EXPECT_TRUE(Release("Z9\\W", object));
    EXPECT_EQ(nullptr, object);
    EXPECT_EQ(nullptr, Get("@m"));
}

/// A host that does something with the table as soon as it hears of a locked file.
struct BusyHost : DNotify {
    explicit BusyHost(std::function<void()> what) : act(std::move(what)) {}
    void Notify(int, int, DString const &) override
    {
        std::exchange(act, [] {})();
    }
    std::function<void()> act;
};

TEST_F(DataPtrCache, ARefusedWriteThatTheHostHearsOfDropsThatObjectAlone)
{
    Waveform locked(3);
    locked.lockState = 2;
    ASSERT_TRUE(locked.Write(expt.GetDataFileName("L")));
    void *other = Get(""), *object = Get(""), *const kept = Init("@kept");
    void *given = object;
    BusyHost host([&] { EXPECT_TRUE(Release("", other)); });
    SetNotify(&host);
    EXPECT_FALSE(Release("L", given));
    EXPECT_EQ(nullptr, given);
    EXPECT_EQ(nullptr, other);
    EXPECT_EQ(kept, Get("@kept"));
    Release("", given = object);
    EXPECT_EQ(object, given); // unknown by now

    given = Get("");
    host.act = [this] { expt.ClearDataPtrs(); };
    EXPECT_FALSE(Release("L", given));
    EXPECT_EQ(nullptr, given);
    EXPECT_EQ(nullptr, Get("@kept"));
}

TEST_F(DataPtrCache, NothingIsSaidAboutFailures)
{
    std::string const log = system.Log();
    system.Heard();
    Get("missing");
    void *object = Get("");
    Release(".\\no\\where", object);
    EXPECT_EQ("", system.Heard());
    EXPECT_EQ(log, system.Log());
}

// ---- The table as a whole ----

TEST_F(DataPtrCache, ObjectsStayWhereTheyAreWhileTheTableGrows)
{
    std::vector<void *> objects;
    for (int i = 0; i < 700; ++i) objects.push_back(Init("@m" + std::to_string(i), memoryKinds[i % 3]));
    EXPECT_EQ(700u, std::set<void *>(objects.begin(), objects.end()).size());
    for (int i = 0; i < 700; ++i) {
        EXPECT_EQ(objects[static_cast<std::size_t>(i)], Get("@m" + std::to_string(i), memoryKinds[i % 3])) << i;
    }
    for (int i = 0; i < 700; i += 2) EXPECT_TRUE(Release("", objects[static_cast<std::size_t>(i)], memoryKinds[i % 3]));
    for (int i = 0; i < 700; ++i) {
        void *const found = Get("@m" + std::to_string(i), memoryKinds[i % 3]);
        EXPECT_EQ(objects[static_cast<std::size_t>(i)], found) << i; // null for the even
    }
}

TEST_F(DataPtrCache, OpeningAnExperimentOrSelectingAShotKeepsTheTable)
{
    PutTrace("W", 7);
    void *const object = Init("@m");
    void *lent = Get("W");
    Set("B2", 2);
    EXPECT_EQ(object, Get("@m"));
    Open();
    EXPECT_EQ(object, Get("@m"));
    Set("B2", 2);
    EXPECT_TRUE(Release("W", lent)); // into the shot that is current now
    EXPECT_EQ(7, Samples("B2\\W"));
}

TEST_F(DataPtrCache, AFailedLoadLeavesTheOthers)
{
    void *const object = Init("@m");
    EXPECT_EQ(nullptr, Get("missing"));
    void *const other = Init("@n");
    EXPECT_EQ(nullptr, Get("Z9\\W"));
    EXPECT_EQ(object, Get("@m"));
    EXPECT_EQ(other, Get("@n"));
}

TEST_F(DataPtrCache, ObjectsGoWithTheExperiment)
{
    Experiment own; // the leak checker would tell
    for (DataType type : kinds) own.GetDataPtr(DString(), type);
    EXPECT_NE(nullptr, own.InitDataPtr("@m", DataMatrix));
}

TEST_F(DataPtrCache, NamesMayHoldReferencesToValues)
{
    PutTrace("W7", 5);
    Store("Run", "7");
    void *object = Get("W[Run]");
    ASSERT_NE(nullptr, object);
    EXPECT_EQ(5, Trace(object)->npnts());
    EXPECT_TRUE(Release("V[Run]", object));
    EXPECT_EQ(5, Samples("V7"));
}

} // namespace
