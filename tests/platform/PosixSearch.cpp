#include <gtest/gtest.h>
#include <string>
#include <sys/time.h>

#include "PlatformVocabulary.h"

using Platform::Detail;
using Platform::Entry;

namespace {

Entry FirstFound(std::string const &pattern)
{
    Entry entry;
    Platform::Search(pattern.c_str(), Detail::Full).Next(entry);
    return entry;
}

bool SetTimes(std::string const &native, long seconds, long nanoseconds)
{
    timespec const times[] = {{0, UTIME_OMIT}, {seconds, nanoseconds}};
    return utimensat(AT_FDCWD, native.c_str(), times, 0) == 0;
}

} // namespace

TEST(Search, GivesMatchesSortedApartFromCase)
{
    TempFolder folder;
    for (char const *name : {"b.dat", "A.dat", "c.DAT", "a.dat", ".dat", "B.txt", "a.data"}) folder.Write(name);
    folder.MakeFolder("Ab.dat");
    EXPECT_EQ((Names{".dat", "A.dat", "a.dat", "Ab.dat/", "b.dat", "c.DAT"}), Found(folder.path("*.dat")));
    EXPECT_EQ((Names{".dat", "A.dat", "a.dat", "Ab.dat/", "b.dat", "c.DAT"}),
              Found(folder.path("*.dat"), Detail::Full));
    EXPECT_EQ(8u, Found(folder.path("*")).size());
    EXPECT_EQ(8u, Found(folder.path("*.*")).size());
}

TEST(Search, NameWithoutWildcardsTakesTheSpellingOnTheDisk)
{
    TempFolder folder;
    folder.Write("Data.txt");
    folder.MakeFolder("Folder");
    EXPECT_EQ(Names{"Data.txt"}, Found(folder.path("DATA.TXT")));
    EXPECT_EQ(Names{"Folder/"}, Found(folder.path("folder")));
    EXPECT_EQ(Names{"Folder/"}, Found(folder.path("Folder"), Detail::Full));
    EXPECT_EQ(Names{}, Found(folder.path("Missing")));
}

TEST(Search, SomePathsMatchNothing)
{
    TempFolder folder;
    folder.Write("sub/file");
    for (std::string const &path :
         {folder.path("sub\\"), folder.path("*\\"), folder.path("*\\file"), folder.path("s?b\\file"),
          folder.path("sub\\."), folder.path("sub\\.."), folder.path("missing\\*"), folder.path("sub\\file\\*"),
          std::string("Z:"), std::string("Z:\\"), std::string("\\"), std::string("\\\\"),
          std::string("\\\\server\\share"), std::string(), std::string(".")})
        EXPECT_EQ(Names{}, Found(path)) << path;
}

TEST(Search, NeverGivesDotEntriesNorNamesNoPathCanSay)
{
    TempFolder folder;
    folder.Write("a\\b");
    folder.Write("plain");
    EXPECT_EQ(Names{"plain"}, Found(folder.path("*")));
    EXPECT_EQ(Names{}, Found(folder.path(".*\\")));
    EXPECT_EQ(Names{}, Found(folder.path(".?")));
}

TEST(Search, ALinkIsWhatItLeadsTo)
{
    TempFolder folder;
    folder.MakeFolder("folder");
    folder.Write("file", "12345");
    ASSERT_TRUE(Link("folder", folder.native("l1")) && Link("file", folder.native("l2")) &&
                Link("nowhere", folder.native("l3")));
    for (Detail detail : {Detail::Names, Detail::Full}) {
        EXPECT_EQ((Names{"l1/", "l2", "l3"}), Found(folder.path("l*"), detail));
        EXPECT_EQ(Names{"l1/"}, Found(folder.path("l1"), detail));
        EXPECT_EQ(Names{"l3"}, Found(folder.path("L3"), detail));
    }
    EXPECT_EQ(5, FirstFound(folder.path("l2")).size);
}

TEST(Search, FullDetailHasSizeAndTimesInHundredsOfNanosecondsSince1601)
{
    TempFolder folder;
    folder.Write("file", "12345");
    // One second and 1,234,500 ns behind 1970.
    ASSERT_TRUE(SetTimes(folder.native("file"), 1, 1234567));
    for (char const *pattern : {"file", "FILE", "f*"}) {
        Entry const entry = FirstFound(folder.path(pattern));
        EXPECT_EQ(5, entry.size) << pattern;
        EXPECT_EQ(116444736000000000 + 10000000 + 12345, entry.modified) << pattern;
    }
}

TEST(Search, TimesBefore1970AreFound)
{
    TempFolder folder;
    folder.Write("file");
    ASSERT_TRUE(SetTimes(folder.native("file"), -10, 0));
    EXPECT_EQ(116444736000000000 - 100000000, FirstFound(folder.path("file")).modified);
}

TEST(Search, CreationTimeIsThatOfTheBirthAndNotTouchedByWriting)
{
    TempFolder folder;
    folder.Write("file");
    struct statx born;
    ASSERT_EQ(0, statx(AT_FDCWD, folder.native("file").c_str(), 0, STATX_BTIME, &born));
    if (!(born.stx_mask & STATX_BTIME)) GTEST_SKIP() << "the file system keeps no birth times";
    Settle();
    folder.Write("file", "more");
    Entry const entry = FirstFound(folder.path("file"));
    EXPECT_EQ((born.stx_btime.tv_sec + 11644473600) * 10000000 + born.stx_btime.tv_nsec / 100, entry.created);
    EXPECT_LT(entry.created, entry.modified);
}

TEST(Search, EntriesThatVanishMeanwhileAreSkipped)
{
    TempFolder folder;
    for (char const *name : {"a", "b", "c"}) folder.Write(name);
    Platform::Search search(folder.path("*").c_str(), Detail::Full);
    Entry entry;
    ASSERT_TRUE(search.Next(entry));
    ASSERT_EQ(0, std::remove(folder.native("b").c_str()));
    ASSERT_TRUE(search.Next(entry));
    EXPECT_EQ("c", entry.name);
    EXPECT_FALSE(search.Next(entry));
    EXPECT_FALSE(search.Next(entry)) << "the end stays the end";
}

TEST(Search, NothingOfTheLastEntryStaysInTheNext)
{
    TempFolder folder;
    folder.MakeFolder("a");
    folder.Write("b", "123");
    Platform::Search search(folder.path("*").c_str(), Detail::Names);
    Entry entry;
    entry.size = 99;
    ASSERT_TRUE(search.Next(entry) && entry.isFolder);
    EXPECT_EQ(0, entry.size);
    ASSERT_TRUE(search.Next(entry));
    EXPECT_FALSE(entry.isFolder);
}
