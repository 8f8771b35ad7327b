// Names on a disk that itself ignores case come back as it has them, at no further cost on one that doesn't.

#include "platform/posix/PosixSpelling.h"

#include <gtest/gtest.h>
#include <string>

#include "CaseIgnoringDisk.h"
#include "PlatformVocabulary.h"
#include "files/PathUtils.h"

namespace {

/// Each test on a disk that ignores case in all folders, and on one that does in some.
class PosixSpelling : public testing::TestWithParam<CaseIgnoringDisk::Kind> {
protected:
    PosixSpelling() : folder(makefolder()), disk(folder.native("Disk"), GetParam()) {}

    std::string Path(std::string const &relative) const { return folder.path("Disk\\" + relative); }

    /// What the search finds for a name of the disk, with blanks between.
    std::string Spelled(std::string const &relative) const
    {
        std::string all;
        for (std::string const &name : Found(Path(relative))) all += (all.empty() ? "" : " ") + name;
        return all;
    }
    std::string Disk(std::string const &relative = "") const { return Spelled(relative + "*"); }

    /// As seen past the replaced services.
    bool Has(std::string const &relative) const { return folder.Has("Disk/" + relative); }

private:
    struct WithDisk : TempFolder {
        WithDisk() { MakeFolder("Disk"); }
    };
    static WithDisk makefolder() { return WithDisk(); }

protected:
    WithDisk const folder;

private:
    CaseIgnoringDisk const disk;
};

INSTANTIATE_TEST_SUITE_P(Disks, PosixSpelling,
                         testing::Values(CaseIgnoringDisk::Kind::All, CaseIgnoringDisk::Kind::SomeFolders));

TEST_P(PosixSpelling, TheReplacedServicesIgnoreCase)
{
    folder.Write("Disk/Data/File.txt", "x");
    struct stat info;
    EXPECT_EQ(0, lstat(folder.native("Disk/DATA/file.TXT").c_str(), &info));
    EXPECT_EQ(-1, lstat(folder.native("disk").c_str(), &info));
    EXPECT_EQ("x", Opened(Path("data\\FILE.txt")));
}

TEST_P(PosixSpelling, NamesComeBackAsTheDiskHasThem)
{
    folder.Write("Disk/Data/File.txt", "x");
    for (int round = 0; round < 2; round++) { // the second knows the disk
        EXPECT_EQ("File.txt", Spelled("Data\\FILE.TXT"));
        EXPECT_EQ("File.txt", Spelled("Data\\File.txt"));
        EXPECT_EQ("File.txt", Spelled("DATA\\file.txt"));
        EXPECT_EQ("Data/", Spelled("dATA"));
        EXPECT_EQ("", Spelled("Data\\File"));
        EXPECT_EQ("", Spelled("Other\\File.txt"));
    }
    DString file(Path("Data\\FILE.TXT").c_str()), other(Path("DATA").c_str());
    EXPECT_TRUE(FileExists(file));
    EXPECT_TRUE(FolderExists(other));
    EXPECT_EQ(Path("Data\\File.txt"), file.c_str());
    EXPECT_EQ(Path("Data"), other.c_str());
}

TEST_P(PosixSpelling, NamesWithoutLettersAreAsTheyAre)
{
    folder.Write("Disk/1.2");
    EXPECT_EQ("1.2", Spelled("1.2"));
}

TEST_P(PosixSpelling, LinksKeepTheirOwnName)
{
    folder.Write("Disk/Data");
    ASSERT_TRUE(Link("Data", folder.native("Disk/Other")));
    EXPECT_EQ("Other", Spelled("OTHER"));
}

TEST_P(PosixSpelling, ARenameOfCaseAloneChangesTheDisk)
{
    folder.Write("Disk/File.txt", "x");
    folder.Write("Disk/Data/Inner", "y");
    EXPECT_EQ("File.txt", Spelled("FILE.TXT"));
    EXPECT_TRUE(Platform::Rename(Path("File.txt").c_str(), Path("FILE.txt").c_str()));
    EXPECT_TRUE(Platform::Rename(Path("DATA").c_str(), Path("data").c_str()));
    EXPECT_TRUE(Has("FILE.txt"));
    EXPECT_TRUE(Has("data"));
    EXPECT_EQ("FILE.txt", Spelled("file.txt"));
    EXPECT_EQ("data/ FILE.txt", Disk());
    EXPECT_EQ("y", folder.Read("Disk/data/Inner"));
}

TEST_P(PosixSpelling, ARenameToTheSpellingOfTheDiskIsDone)
{
    folder.Write("Disk/File.txt", "x");
    EXPECT_TRUE(Platform::Rename(Path("FILE.TXT").c_str(), Path("File.txt").c_str()));
    EXPECT_EQ("File.txt", Disk());
}

TEST_P(PosixSpelling, ARenameOntoAnotherFileFails)
{
    folder.Write("Disk/A", "a");
    folder.Write("Disk/B", "b");
    EXPECT_FALSE(Platform::Rename(Path("a").c_str(), Path("b").c_str()));
    EXPECT_EQ("a", folder.Read("Disk/A"));
    EXPECT_EQ("b", folder.Read("Disk/B"));
}

TEST_P(PosixSpelling, TwoNamesOfOneFileAreNotOne)
{
    folder.Write("Disk/A", "a");
    ASSERT_EQ(0, link(folder.native("Disk/A").c_str(), folder.native("Disk/B").c_str()));
    EXPECT_EQ("A", Spelled("a"));
    EXPECT_FALSE(Platform::Rename(Path("A").c_str(), Path("b").c_str()));
    EXPECT_TRUE(Platform::Rename(Path("A").c_str(), Path("a").c_str()));
    EXPECT_EQ("a B", Disk());
}

TEST_P(PosixSpelling, ANameThatCameBackInAnotherSpellingHasThatOne)
{
    folder.Write("Disk/File", "x");
    EXPECT_EQ("File", Spelled("File"));
    EXPECT_TRUE(Platform::DeleteMatching(Path("FILE").c_str()));
    EXPECT_EQ("", Spelled("File"));
    EXPECT_TRUE(Written(Path("FILE"), "y"));
    EXPECT_EQ("FILE", Spelled("File"));
}

TEST_P(PosixSpelling, CopiesHaveTheNameOfTheSource)
{
    folder.Write("Disk/File", "x");
    folder.MakeFolder("Disk/To");
    EXPECT_TRUE(Platform::CopyMatching(Path("FILE").c_str(), Path("TO").c_str(), false));
    EXPECT_TRUE(Has("To/File"));
    EXPECT_TRUE(Platform::CopyMatching(Path("FILE").c_str(), folder.path("Out").c_str(), false));
    EXPECT_TRUE(folder.Has("Out/File"));
}

TEST_P(PosixSpelling, CopiesOntoANameInAnotherSpellingKeepIt)
{
    folder.Write("Disk/To/FILE", "old");
    folder.Write("Disk/To/Sub/INNER", "old");
    folder.Write("From/File", "new");
    folder.Write("From/sub/Inner", "new");
    EXPECT_TRUE(Platform::CopyMatching(folder.path("From\\*").c_str(), Path("TO").c_str(), true));
    EXPECT_EQ("new", folder.Read("Disk/To/FILE"));
    EXPECT_EQ("new", folder.Read("Disk/To/Sub/INNER"));
    EXPECT_EQ("FILE Sub/", Disk("To\\"));
    folder.Write("From/File", "newer");
    EXPECT_TRUE(Platform::CopyOneFile(folder.path("From\\File").c_str(), Path("to\\file").c_str()));
    EXPECT_EQ("newer", folder.Read("Disk/To/FILE"));
    EXPECT_EQ("FILE Sub/", Disk("To\\"));
}

TEST_P(PosixSpelling, AFileIsNotCopiedOntoItself)
{
    folder.Write("Disk/File", "x");
    EXPECT_FALSE(Platform::CopyOneFile(Path("File").c_str(), Path("FILE").c_str()));
    EXPECT_TRUE(Platform::IsSameFile(Path("File").c_str(), Path("FILE").c_str()));
    EXPECT_EQ("x", folder.Read("Disk/File"));
}

TEST_P(PosixSpelling, OfTwoNamesThatTheDiskTakesForOneTheFirstIsCopiedAndTheCopyFails)
{
    folder.Write("From/FILE", "upper");
    folder.Write("From/file", "lower");
    folder.Write("From/other", "x");
    EXPECT_FALSE(Platform::CopyMatching(folder.path("From\\*").c_str(), Path("To").c_str(), true));
    EXPECT_EQ("upper", folder.Read("Disk/To/FILE"));
    EXPECT_EQ("FILE other", Disk("To\\"));
}

TEST_P(PosixSpelling, RelativeNamesToo)
{
    folder.Write("Disk/File", "x");
    ASSERT_EQ(0, chdir(folder.native("Disk").c_str()));
    EXPECT_EQ((Names{"File"}), Found("FILE")) << "the services don't fold these, the listing does";
    ASSERT_EQ(0, chdir("/"));
}

// ---- What it costs ----

TEST(PosixSpellingCost, OfADiskThatIgnoresCaseIsAListingOnceForNamesThatAreRight)
{
    TempFolder const folder;
    for (int i = 0; i < 50; i++) folder.Write("Disk/Shots/ShotA" + std::to_string(i) + "/x");
    CaseIgnoringDisk const disk(folder.native("Disk"), CaseIgnoringDisk::Kind::All);
    Found(folder.path("Disk\\Shots\\ShotA0"));
    TakeLooks();
    for (int i = 1; i < 50; i++) EXPECT_EQ(1u, Found(folder.path("Disk\\Shots\\ShotA" + std::to_string(i))).size());
    EXPECT_GE(1, TakeLooks().listings) << "what is known may have come of age just now";
    for (int i = 50; i < 60; i++) {
        EXPECT_TRUE(Found(folder.path("Disk\\Shots\\ShotA" + std::to_string(i))).empty());
        EXPECT_EQ(1u, Found(folder.path("Disk\\Shots\\ShotA0")).size());
    }
    EXPECT_GE(2, TakeLooks().listings) << "what isn't there is there in no spelling";
}

TEST(PosixSpellingCost, OfAnOrdinaryDiskIsNothingOnceItsFolderIsKnown)
{
    TempFolder const folder;
    for (int i = 0; i < 50; i++) folder.Write("Shots/ShotA" + std::to_string(i) + "/x");
    EXPECT_EQ((Names{"ShotA0/"}), Found(folder.path("Shots\\ShotA0")));
    TakeLooks();
    for (int i = 1; i < 50; i++) EXPECT_EQ(1u, Found(folder.path("Shots\\ShotA" + std::to_string(i))).size());
    Looks const looks = TakeLooks();
    EXPECT_LE(49, looks.names);
    EXPECT_GE(49 + 4, looks.names) << "what is known may have come of age just now";
    EXPECT_EQ(0, looks.listings);
}

TEST(PosixSpellingCost, OfOpeningAFileIsNothing)
{
    TempFolder const folder;
    folder.Write("Data/x", "x");
    TakeLooks();
    EXPECT_EQ("x", Opened(folder.path("Data\\x")));
    Looks const looks = TakeLooks();
    EXPECT_EQ(0, looks.names + looks.listings);
}

} // namespace
