#include "platform/posix/FolderListings.h"

#include <cstdio>
#include <gtest/gtest.h>
#include <string>

#include "PlatformVocabulary.h"

using Platform::Posix::ListingsTaken;

namespace {

/// A folder with names to ask for, and a count of how often it was read.
class FolderListings : public testing::Test {
protected:
    bool Exists(std::string const &name) const { return !Found(folder.path(name)).empty(); }
    long long Read() const { return ListingsTaken() - before; }

    TempFolder folder;
    long long const before = ListingsTaken();
};

} // namespace

TEST_F(FolderListings, ExactNameNeedsNone)
{
    folder.Write("Data.txt", "x");
    EXPECT_EQ("x", Opened(folder.path("Data.txt")));
    EXPECT_TRUE(Exists("Data.txt"));
    EXPECT_EQ(0, Read());
}

TEST_F(FolderListings, ExactNameInAFolderOfAnotherCaseNeedsThatOfTheOuterFolderOnly)
{
    folder.Write("Outer/Data.txt", "x");
    Settle();
    for (int i = 0; i < 10; i++) EXPECT_EQ("x", Opened(folder.path("OUTER\\Data.txt")));
    EXPECT_EQ(1, Read());
}

TEST_F(FolderListings, AThousandMissesReadASettledFolderOnce)
{
    folder.Write("Data.txt");
    Settle();
    for (int i = 0; i < 1000; i++) EXPECT_FALSE(Exists("missing" + std::to_string(i)));
    EXPECT_EQ(1, Read());
}

TEST_F(FolderListings, AThousandOtherCasesReadASettledFolderOnce)
{
    folder.Write("Data.txt", "x");
    Settle();
    for (int i = 0; i < 1000; i++) EXPECT_EQ("x", Opened(folder.path("DATA.TXT")));
    EXPECT_EQ(1, Read());
}

TEST_F(FolderListings, SearchesShareThem)
{
    folder.Write("a.txt");
    Settle();
    for (int i = 0; i < 10; i++) EXPECT_EQ(Names{"a.txt"}, Found(folder.path("*.TXT")));
    EXPECT_EQ(1, Read());
}

TEST_F(FolderListings, AFolderThatHasJustChangedIsReadAgain)
{
    folder.Write("Data.txt");
    EXPECT_FALSE(Exists("missing"));
    EXPECT_FALSE(Exists("missing"));
    EXPECT_EQ(2, Read());
}

TEST_F(FolderListings, ChangesAreSeenAtOnce)
{
    for (int i = 0; i < 200; i++) {
        std::string const name = "Name" + std::to_string(i), asked = "NAME" + std::to_string(i);
        ASSERT_FALSE(Exists(asked)) << i;
        folder.Write(name);
        ASSERT_TRUE(Exists(asked)) << i;
        ASSERT_EQ(0, std::rename(folder.native(name).c_str(), folder.native("other").c_str()));
        ASSERT_FALSE(Exists(asked)) << i;
        ASSERT_TRUE(Exists("OTHER")) << i;
        ASSERT_EQ(0, std::remove(folder.native("other").c_str()));
        ASSERT_FALSE(Exists("OTHER")) << i;
    }
}

TEST_F(FolderListings, ChangesRightAfterAKeptListingAreSeenAtOnce)
{
    for (int i = 0; i < 5; i++) {
        Settle();
        ASSERT_FALSE(Exists("NAME")) << i;
        folder.Write("name");
        ASSERT_TRUE(Exists("NAME")) << i;
        Settle();
        ASSERT_TRUE(Exists("NAME")) << i;
        ASSERT_EQ(0, std::rename(folder.native("name").c_str(), folder.native("Other").c_str()));
        ASSERT_TRUE(Exists("OTHER")) << i;
        ASSERT_FALSE(Exists("NAME")) << i;
        ASSERT_EQ(0, std::remove(folder.native("Other").c_str()));
        ASSERT_FALSE(Exists("OTHER")) << i;
    }
}

TEST_F(FolderListings, AFolderThatTakesAnothersPlaceIsRead)
{
    folder.Write("one/Data.txt");
    folder.Write("two/other");
    Settle();
    ASSERT_TRUE(Exists("one\\DATA.TXT"));
    ASSERT_EQ(0, std::rename(folder.native("one").c_str(), folder.native("away").c_str()));
    ASSERT_EQ(0, std::rename(folder.native("two").c_str(), folder.native("one").c_str()));
    EXPECT_FALSE(Exists("one\\DATA.TXT"));
    EXPECT_TRUE(Exists("one\\OTHER"));
}

TEST_F(FolderListings, TimesSetBackDontBringAnOldListingBack)
{
    folder.Write("sub/one");
    Settle();
    struct stat old;
    ASSERT_EQ(0, stat(folder.native("sub").c_str(), &old));
    ASSERT_FALSE(Exists("sub\\TWO"));
    folder.Write("sub/two");
    timespec const times[] = {old.st_atim, old.st_mtim};
    ASSERT_EQ(0, utimensat(AT_FDCWD, folder.native("sub").c_str(), times, 0));
    EXPECT_TRUE(Exists("sub\\TWO"));
}

TEST_F(FolderListings, OnlyAFewAreKept)
{
    int const many = 40;
    for (int i = 0; i < many; i++) folder.Write(std::to_string(i) + "/Name");
    Settle();
    for (int i = 0; i < many; i++) EXPECT_TRUE(Exists(std::to_string(i) + "\\NAME"));
    EXPECT_EQ(many, Read());
    EXPECT_TRUE(Exists(std::to_string(many - 1) + "\\NAME"));
    EXPECT_EQ(many, Read()) << "the last one is kept";
    EXPECT_TRUE(Exists("0\\NAME"));
    EXPECT_EQ(many + 1, Read()) << "the first one had to go";
}

TEST_F(FolderListings, LinksAreLookedAtEachTime)
{
    folder.MakeFolder("target");
    ASSERT_TRUE(Link(folder.native("target"), folder.native("link")));
    Settle();
    EXPECT_EQ(Names{"link/"}, Found(folder.path("l*")));
    ASSERT_EQ(0, rmdir(folder.native("target").c_str()));
    EXPECT_EQ(Names{"link"}, Found(folder.path("l*")));
}
