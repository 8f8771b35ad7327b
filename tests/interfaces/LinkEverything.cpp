// A program that has of the library nothing but its headers and the shared library, and uses every class, every array,
// every constant and every function that these offer. Whatever isn't exported keeps it from being linked.

#include <climits>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <type_traits>

#include <gtest/gtest.h>

#include "VodrelCore.h"
#include "interfaces/VodrelC.h"
#include "interfaces/VodrelIDL.h"
#include "support/HostUserFolder.h"
#include "support/TempFolder.h"

// The members of these come from the library, none is made here. For Windows each program makes those that it uses.
#if !defined _WIN32
extern template class DArray<float, 0>;
extern template class DArray<int, 0>;
extern template class DArray<short, 0>;
extern template class DArray<unsigned char, 0>;
extern template class DArray<double, 0>;
extern template class DArray<long long, 0>;
extern template class DArray<bool, 0>;
extern template class DArray<void *, 0>;
extern template class DArray<DString, 1>;
extern template class DArray<DStringArray, 1>;
extern template class DArray<DataPtr, 1>;
extern template class DArray<GroupCue, 1>;
extern template class DArray<GroupName, 1>;
extern template class DArray<Matrix, 1>;
extern template class DArray<Object, 1>;
extern template class DArray<Waveform, 1>;
#endif

namespace {

// ---- Arrays ----

template <typename Element, int kind>
struct ArrayOf {
    using Type = Element;
    static int const flag = kind;
};

template <typename Kind>
class LinkedArrays : public testing::Test {
protected:
    using Element = typename Kind::Type;
    using Array = DArray<Element, Kind::flag>;

    /// An array of a host, which tells when it goes and lets at the protected members.
    class Derived : public Array {
    public:
        using Array::alloc;
        using Array::clear;
        using Array::countplace;
        using Array::rawplace;
        using Array::realloc;
        using Array::resize;
        using Array::sizefor;
        explicit Derived(int *goneCount = nullptr) : gone(goneCount) {}
        ~Derived() override
        {
            if (gone) ++*gone;
        }

    private:
        int *gone;
    };

    /// So many elements, with the bits 0 where they are plain data.
    static Array Filled(int n)
    {
        Array array;
        array.zeroFill = true;
        for (int i = 0; i < n; ++i) array.InsertBlank(i, 1);
        return array;
    }
};

using Kinds = testing::Types<ArrayOf<float, 0>, ArrayOf<int, 0>, ArrayOf<short, 0>, ArrayOf<unsigned char, 0>,
                             ArrayOf<double, 0>, ArrayOf<long long, 0>, ArrayOf<bool, 0>, ArrayOf<void *, 0>,
                             ArrayOf<DString, 1>, ArrayOf<DStringArray, 1>, ArrayOf<DataPtr, 1>, ArrayOf<GroupCue, 1>,
                             ArrayOf<GroupName, 1>, ArrayOf<Matrix, 1>, ArrayOf<Object, 1>, ArrayOf<Waveform, 1>>;
TYPED_TEST_SUITE(LinkedArrays, Kinds);

TYPED_TEST(LinkedArrays, GrowAndShrink)
{
    auto array = TestFixture::Filled(3);
    array.Add(array[0]);
    array.Insert(array.Data(), 1, 2);
    EXPECT_EQ(6, array.Count());
    array.Remove(0, 4);
    array.AddBlank(1);
    EXPECT_EQ(3, array.Count());
    array.ReSize(5);
    array.Reserve(300);
    EXPECT_EQ(5, array.Count());
    EXPECT_LE(300, array.Capacity());
    array.Clear();
    EXPECT_EQ(0, array.Count());
}

TYPED_TEST(LinkedArrays, TakeAShape)
{
    auto array = TestFixture::Filled(1);
    array.Size(2, 3);
    EXPECT_EQ(2, array.RCount());
    EXPECT_EQ(3, array.CCount());
    EXPECT_EQ(&array[3], &array(1, 1));
    EXPECT_EQ(&array[5], &array.Last());
    array.ReSize(3, 3);
    EXPECT_EQ(9, array.Count());
    typename TestFixture::Array const table(4, 2), list(4);
    EXPECT_EQ(8, table.Count());
    EXPECT_EQ(4, list.Count());
}

TYPED_TEST(LinkedArrays, AreCopiedExchangedAndSorted)
{
    auto array = TestFixture::Filled(4);
    auto copy = array;
    copy.Size(2);
    EXPECT_TRUE(array.SwapData(copy));
    EXPECT_EQ(2, array.Count());
    array = copy;
    EXPECT_EQ(4, array.Count());
    array.Replace(copy.Data(), 0, 2);
    array.Reorder(0, 3, 1);
    array.Sort([](void const *, void const *) { return 0; });
    EXPECT_EQ(4, array.Count());
}

TYPED_TEST(LinkedArrays, AreTheBaseOfClassesOfTheHost)
{
    int gone = 0;
    auto *const derived = new typename TestFixture::Derived(&gone);
    derived->sizefor(2, true);
    derived->resize(3);
    derived->realloc(10);
    ::new (derived->rawplace()) typename TestFixture::Element();
    derived->countplace();
    EXPECT_EQ(4, derived->Count());
    typename TestFixture::Array *const base = derived;
    delete base;
    EXPECT_EQ(1, gone);
}

// ---- Classes ----

/// A start of the library in a fresh folder, which is ready for an experiment.
class LinkedClasses : public testing::Test {
protected:
    LinkedClasses() : user(folder.native("user")) { CoreInit(Path("vodrel")); }
    ~LinkedClasses() override
    {
        SetNotify(nullptr);
        SetQNotify(nullptr);
        Expt = Experiment();
        VoIni = DIni();
    }

    DString Path(char const *relative) const { return DString(folder.path(relative).c_str()); }

    TempFolder const folder;
    HostUserFolder const user;
};

TEST_F(LinkedClasses, Strings)
{
    DString text("Shot");
    text << 12 << ' ' << 0.5f << " " << true;
    EXPECT_TRUE(text == "Shot12 0.5 True");
    EXPECT_TRUE("a" + text + 'b' + DString("c") == "aShot12 0.5 Truebc");
    EXPECT_EQ(6, text.Find(' '));
    int number = 0;
    EXPECT_EQ(4, DString("Shot12").EndNumber(number));
    DStringArray list("a,b,c", ",", 0);
    list << "d";
    EXPECT_TRUE(list.Join("-") == "a-b-c-d");
    std::unique_ptr<DArray<DString, 1>> const base(new DStringArray(list));
    EXPECT_EQ(4, base->Count());
}

TEST_F(LinkedClasses, FilesAndSettings)
{
    DFile file;
    EXPECT_TRUE(file.Open(Path("data"), 6));
    file.DSWrite("text", 4);
    file.Close();
    EXPECT_EQ(std::string("\4\0\0\0text", 8), folder.Read("data"));
    DFile::WriteText(Path("text"), "a\r\nb");
    DIni ini(Path("settings.ini"));
    ini.SetSection("General");
    ini.SetKeyValue("Key", "value");
    EXPECT_EQ("[General]\r\nKey=value", folder.Read("settings.ini"));
    class Settings : public DIni {
    public:
        using DIni::keyindex;
        using DIni::loadstring;
    } settings;
    settings.loadstring();
    int at = 0;
    EXPECT_EQ(-1, settings.keyindex("Key", at));
}

TEST_F(LinkedClasses, Waveforms)
{
    class Trace : public Waveform {
    public:
        using Waveform::offset;
        using Waveform::Waveform;
    };
    Trace trace(3);
    trace.Zero();
    trace[1] = 2;
    trace.offset = 0;
    trace.Scale();
    EXPECT_TRUE(trace.Write(Path("W")));
    Waveform copy(trace);
    EXPECT_TRUE(copy.Read(Path("W"), -1));
    EXPECT_EQ(2.0f, copy.GetTraceParam("mx"));
    std::unique_ptr<DArray<float, 0>> const base(new Waveform(copy));
    EXPECT_EQ(3, base->Count());
}

TEST_F(LinkedClasses, Matrices)
{
    class Image : public Matrix {
    public:
        using Matrix::Matrix;
        using Matrix::setcoords;
    };
    Image image(2, 3, 1);
    image.Zero();
    image(1, 2) = 5;
    image.SetStep(1, 0.5f, 10);
    image.Scale();
    EXPECT_TRUE(image.Write(Path("M")));
    Matrix copy(image);
    EXPECT_TRUE(copy.Read(Path("M"), -1, 0));
    EXPECT_EQ(5.0f, copy.GetMatrixParam("mx"));
    Matrix::MDim const axis = copy.dims[0];
    EXPECT_EQ(10.5f, axis[1]);
    std::unique_ptr<DArray<float, 0>> const base(new Matrix::MDim(axis)), other(new Matrix(copy));
    EXPECT_EQ(2, base->Count());
    EXPECT_EQ(6, other->Count());
}

TEST_F(LinkedClasses, Particles)
{
    class Beam : public ParticleGroup {
    public:
        using ParticleGroup::geometry;
        using ParticleGroup::ParticleGroup;
    };
    Beam beam(1);
    beam.PData()[0] = PGParticle{{1, 2, 3, 4, 5, 6, 7, 8}};
    beam.geometry = 0;
    beam.Scale();
    EXPECT_TRUE(beam.Append(Path("P")));
    EXPECT_TRUE(beam.Append(Path("P")));
    ParticleGroup copy(beam);
    EXPECT_TRUE(copy.Read(Path("P"), -1, 0));
    EXPECT_EQ(2.0f, copy.GetPGroupParam("np"));
    std::unique_ptr<DArray<float, 0>> const base(new ParticleGroup(copy));
    EXPECT_EQ(16, base->Count());
}

TEST_F(LinkedClasses, Geometries)
{
    Geometry shapes;
    Object ball;
    ball.type = 1;
    ball.params.Add(2.0f);
    shapes.Add(ball);
    shapes.Scale();
    EXPECT_EQ(2.0f, shapes.Max(0));
    EXPECT_TRUE(shapes.Write(Path("G")));
    EXPECT_TRUE(shapes.Read(Path("G")));
    shapes.DeleteObject(0);
    std::unique_ptr<DArray<Object, 1>> const base(new Geometry(shapes));
    EXPECT_EQ(0, base->Count());
}

TEST_F(LinkedClasses, AnExperimentWithItsRecordsAndBorrowedData)
{
    GroupCue cue;
    cue.Cue = "A";
    GroupName const group = {"path", "name"};
    EXPECT_TRUE(GroupCue(cue).Cue == "A" && GroupName(group).Name == "name");

    Experiment own;
    EXPECT_TRUE(own.SetExperimentFolder(Path("X\\E")));
    DString shot("A1");
    EXPECT_EQ(0, own.CreateShot(shot, "", true));
    own.SetScalarData("x", 2.5f);
    EXPECT_EQ(5.0f, own.GetScalarData("2*x", nullptr));
    EXPECT_TRUE(own.GetExpandedLabel("x is ![x]") == "x is 2.5");
    void *borrowed = own.InitDataPtr("@W", DataWaveform);
    static_cast<Waveform *>(borrowed)->Size(3);
    EXPECT_TRUE(own.ReleaseDataPtr("@W", DataWaveform, borrowed));

    DataPtr holder;
    holder.AllocData(DataMatrix);
    EXPECT_NE(nullptr, holder.Data);
    holder.Release();
}

/// A host, which counts what it hears.
class Host : public DNotify {
public:
    explicit Host(int *heardCount) : heard(heardCount) {}
    ~Host() override { *heard += 100; }
    void Notify(int, int, DString const &) override { ++*heard; }

private:
    int *heard;
};

class ShotHost : public QNotify {
public:
    void ShotChanged(DString, int, long long, bool) override { ++heard; }
    int heard = 0;
};

TEST_F(LinkedClasses, NotifiersOfAHost)
{
    int heard = 0;
    DNotify *const host = new Host(&heard);
    SetNotify(host);
    Message("a");
    EXPECT_FALSE(host->Poll());
    EXPECT_EQ(1, heard);
    SetNotify(nullptr);
    delete host;
    EXPECT_EQ(101, heard);

    class Console : public CFNotify {
    } console;
    console.CFNotify::Notify(1, 0, "dropped");
    std::unique_ptr<DNotify> const base(new CFNotify);
    base->Notify(1, 0, "dropped");

    ShotHost shots;
    shots.Reserved();
    SetQNotify(&shots);
    EXPECT_EQ(&shots, QNot);
    Expt.SetExperimentFolder(Path("X\\E"));
    EXPECT_EQ(1, CreateShotC("A1"));
    EXPECT_EQ(1, shots.heard);
}

// ---- Data and functions ----

TEST_F(LinkedClasses, ConstantsAndGlobals)
{
    EXPECT_EQ(0x7FFFFFFFu, npos);
    EXPECT_STREQ("", DEmptyString);
    EXPECT_STREQ("\r\n", LDelim);
    EXPECT_EQ(2, LenLD);
    std::uint32_t bits[2];
    std::memcpy(&bits[0], &DFMax, sizeof bits[0]);
    std::memcpy(&bits[1], &pi, sizeof bits[1]);
    EXPECT_EQ(0x7F7843B0u, bits[0]);
    EXPECT_EQ(0x40490FDBu, bits[1]);
    EXPECT_EQ(10000000, MaxParticleBatch);
    EXPECT_EQ(8, ParticleGroup::nParticleCols);
    EXPECT_EQ(19, Experiment::CurDataVersion);
    EXPECT_FALSE(Logging || Silent || PublicWrite);
    EXPECT_EQ(nullptr, QNot);
    EXPECT_EQ(0, SheetData.Count());
    EXPECT_NE(0, VoIni.nSections());
    EXPECT_TRUE(Expt.GetShotName() == "");
}

/// Whether there is a function of this type.
template <typename Function>
bool Is(Function *function)
{
    return function != nullptr;
}

using Text = DString const &;

TEST_F(LinkedClasses, FunctionsOfStringsAndNumbers)
{
    EXPECT_TRUE(Is<DString(Text, Text)>(operator+));
    EXPECT_TRUE(Is<DString(Text, char const *)>(operator+));
    EXPECT_TRUE(Is<DString(Text, char)>(operator+));
    EXPECT_TRUE(Is<DString(char, Text)>(operator+));
    EXPECT_TRUE(Is<DString(char const *, Text)>(operator+));
    EXPECT_TRUE(Is<DString(int, char const *)>(Format));
    EXPECT_TRUE(Is<DString(unsigned int, char const *)>(Format));
    EXPECT_TRUE(Is<DString(float, char const *)>(Format));
    EXPECT_TRUE(Is<DString(double, char const *)>(Format));
    EXPECT_TRUE(Is<DString()>(Now));
    EXPECT_TRUE(Is<int(char const *)>(dStrlen));
    EXPECT_TRUE(Is<bool(float)>(IsVF));
}

TEST_F(LinkedClasses, FunctionsOfPathsAndFiles)
{
    EXPECT_TRUE(Is<DString(Text, Text)>(AppendPathElts));
    EXPECT_TRUE(Is<DString(Text, Text, Text)>(AppendPathElts));
    EXPECT_TRUE(Is<DString(Text, Text, Text, Text)>(AppendPathElts));
    EXPECT_TRUE(Is<DString(Text, Text, Text, Text, Text)>(AppendPathElts));
    EXPECT_TRUE(Is<void(Text, DString &, DString &)>(SplitPathElts));
    for (auto *function : {TranslateFileName, GetUNCFileName, GetLocalFileName, GetDefaultPath})
        EXPECT_TRUE(Is<DString(Text)>(function));
    for (auto *function : {IsFullQual, CreateFolder, DeleteFileD, DeleteFolder, SetCurrentDirectoryD})
        EXPECT_TRUE(Is<bool(Text)>(function));
    for (auto *function : {FileExists, FolderExists}) EXPECT_TRUE(Is<bool(DString &)>(function));
    for (auto *function : {CopyFileD, CopyFolder, RenameFile, RenameFolder})
        EXPECT_TRUE((Is<bool(Text, Text)>(function)));
    for (auto *function : {GetFiles, GetFolders}) EXPECT_TRUE((Is<bool(Text, DStringArray &, bool)>(function)));
    EXPECT_TRUE((Is<bool(Text, DStringArray &, DArray<long long, 0> &, DArray<long long, 0> &)>(GetFilesDates)));
    EXPECT_TRUE(Is<long long(Text)>(FileDate));
    EXPECT_TRUE(Is<int(Text)>(GetFileLen));
    for (auto *function :
         {GetCurrentDirectoryD, GetComputerNameD, GetLocalSettingsPath, GetVodrelPath, GetUserPath, GetWorkingPath})
        EXPECT_TRUE(Is<DString()>(function));
    EXPECT_TRUE(Is<void()>(SetComputerNameD));
    EXPECT_TRUE(Is<double()>(Timer));
    EXPECT_TRUE(Is<void(int)>(DSleep));
}

TEST_F(LinkedClasses, FunctionsOfStartLogModulesAndNodes)
{
    for (auto *function : {CoreInit, SetVodrelPath, Log, Display, Message, MsgBox, MacroCallback})
        EXPECT_TRUE(Is<void(Text)>(function));
    for (auto *function : {SetUserPath, ClearLog, UnloadModules}) EXPECT_TRUE(Is<void()>(function));
    EXPECT_TRUE(Is<void(Text, Text)>(SetDefaultPath));
    EXPECT_TRUE(Is<void(int, int, Text)>(Notify));
    EXPECT_TRUE(Is<void(DNotify *)>(SetNotify));
    EXPECT_TRUE(Is<void(QNotify *)>(SetQNotify));
    EXPECT_TRUE((Is<void *(Text, Text, char const *, bool &, int)>(GetProc)));
    EXPECT_TRUE((Is<bool(Text, int, DNotify *, DNotify *&)>(DLLConnect)));
    EXPECT_TRUE((Is<void(DStringArray &, int)>(GetNodes)));
    for (auto *function : {GetPaths, GetServers}) EXPECT_TRUE(Is<void(DStringArray &)>(function));
}

TEST_F(LinkedClasses, FlatFunctionsForIDL)
{
    for (auto *function : {InitializeVodrelIDL, CreateShotIDL, SetShotIDL, GetScalarIDL, SetScalarIDL, GetWaveformIDL,
                           GetWaveformInfoIDL, SetWaveformIDL})
        EXPECT_EQ(-1, function(0, nullptr));
}

} // namespace
