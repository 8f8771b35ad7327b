// What a listing of Windows brings in of its own: short names, "." and "..", devices in every folder.
#include <ctime>

#include <gtest/gtest.h>

#include "windows/WindowsVocabulary.h"

namespace {

class WindowsSearch : public testing::Test {
protected:
    TempFolder const folder;
};

} // namespace

TEST_F(WindowsSearch, NeverGoesByShortNames)
{
    for (char const *name : {"x.data", "y.dat", "a long name.dat", "z.da"}) folder.Write(name);
    EXPECT_EQ((Names{"a long name.dat", "y.dat"}), Found(folder.path("*.dat")));
    EXPECT_EQ(Names{}, Found(folder.path("*~1*")));
    EXPECT_EQ(Names{"x.data"}, Found(folder.path("*.data")));
}

TEST_F(WindowsSearch, NeverHasTheEntriesOfTheFolderItself)
{
    folder.Write("sub/.hidden");
    EXPECT_EQ(Names{".hidden"}, Found(folder.path("sub\\*")));
    EXPECT_EQ(Names{".hidden"}, Found(folder.path("sub\\.*")));
    EXPECT_EQ(Names{"sub/"}, Found(folder.path("*")));
    for (char const *name : {"sub\\.", "sub\\..", ".", "..", "sub\\"})
        EXPECT_EQ(Names{}, Found(folder.path(name))) << name;
}

TEST_F(WindowsSearch, IgnoresCaseAndTellsTheSpellingOfTheDisk)
{
    folder.Write("Mixed.Dat");
    for (char const *name : {"mixed.dat", "MIXED.DAT", "Mixed.Dat", "MIX*", "?ixed.dat"})
        EXPECT_EQ(Names{"Mixed.Dat"}, Found(folder.path(name))) << name;
}

TEST_F(WindowsSearch, IsSortedWithoutRegardToCase)
{
    for (char const *name : {"b", "A", "c", "B2", "a1"}) folder.Write(name);
    EXPECT_EQ((Names{"A", "a1", "b", "B2", "c"}), Found(folder.path("*")));
}

TEST_F(WindowsSearch, TellsSizeAndTimes)
{
    folder.Write("file", "12345");
    Platform::Entry entry;
    ASSERT_TRUE(Platform::Search(folder.path("file").c_str(), Platform::Detail::Full).Next(entry));
    EXPECT_EQ(5, entry.size);
    long long const second = 10000000, until1970 = 11644473600 * second;
    long long const now = until1970 + static_cast<long long>(std::time(nullptr)) * second;
    EXPECT_NEAR(static_cast<double>(now), static_cast<double>(entry.modified), static_cast<double>(60 * second));
    EXPECT_NEAR(static_cast<double>(now), static_cast<double>(entry.created), static_cast<double>(60 * second));
}

TEST_F(WindowsSearch, FindsNothingInTheNamesOfDevices)
{
    for (char const *name : {"C:", "C:\\", "\\\\", "\\\\server", "\\\\server\\share", ""})
        EXPECT_EQ(Names{}, Found(name)) << name;
}

TEST_F(WindowsSearch, DevicesDoNotOpen)
{
    for (char const *name : {"NUL", "CON", "nul", "con", "CONIN$", "CONOUT$", "COM1", "LPT1", "AUX", "PRN"}) {
        for (char const *mode : {"rb", "wb", "a+b", "r+b"}) {
            EXPECT_FALSE(Opens(name, mode)) << name << " " << mode;
            EXPECT_FALSE(Opens(folder.path(name), mode)) << name << " " << mode;
        }
    }
}

TEST_F(WindowsSearch, FoldersAndPatternsDoNotOpen)
{
    folder.Write("sub/file");
    for (char const *name : {"sub", "sub\\", "sub\\*", "sub\\fil?", "sub\\.", "missing\\file"})
        for (char const *mode : {"rb", "wb", "a+b"})
            EXPECT_FALSE(Opens(folder.path(name), mode)) << name << " " << mode;
    EXPECT_EQ(Names{"file"}, Found(folder.path("sub\\*")));
}
