// Copies, deletions and renames, which the shell of Windows does, have the results that the header promises, and ask
// nobody.
#include <gtest/gtest.h>

#include "windows/WindowsVocabulary.h"

using Platform::CopyMatching;
using Platform::CopyOneFile;
using Platform::DeleteMatching;
using Platform::Rename;

namespace {

class WindowsOperations : public testing::Test {
protected:
    WindowsOperations()
    {
        folder.Write("from/a.dat", "a");
        folder.Write("from/b.data", "b");
        folder.Write("from/sub/c.dat", "c");
        folder.Write("from/sub/deep/d", "d");
    }
    bool Copied(char const *pattern, char const *to, bool wholeTrees) const
    {
        return CopyMatching(Path(pattern).c_str(), Path(to).c_str(), wholeTrees);
    }
    bool Deleted(char const *pattern) const { return DeleteMatching(Path(pattern).c_str()); }
    bool Renamed(char const *from, char const *to) const { return Rename(Path(from).c_str(), Path(to).c_str()); }
    std::string Path(std::string const &relative) const { return folder.path(relative); }

    TempFolder const folder;
};

} // namespace

TEST_F(WindowsOperations, APatternCopiesFilesAlone)
{
    EXPECT_TRUE(Copied("from\\*", "new\\to", false));
    EXPECT_EQ((Names{"a.dat", "b.data"}), Found(Path("new\\to\\*")));
    EXPECT_TRUE(Copied("from\\*.dat", "dat", false));
    EXPECT_EQ(Names{"a.dat"}, Found(Path("dat\\*")));
}

TEST_F(WindowsOperations, WithTreesAPatternCopiesFoldersToo)
{
    EXPECT_TRUE(Copied("from\\*", "to", true));
    EXPECT_EQ((Names{"a.dat", "b.data", "sub/"}), Found(Path("to\\*")));
    EXPECT_EQ("c", folder.Read("to/sub/c.dat"));
    EXPECT_EQ("d", folder.Read("to/sub/deep/d"));
}

TEST_F(WindowsOperations, ANamedFolderIsCopiedIntoTheTarget)
{
    EXPECT_TRUE(Copied("from\\sub", "to", true));
    EXPECT_EQ("d", folder.Read("to/sub/deep/d"));
    EXPECT_FALSE(Copied("from\\sub", "other", false));
    EXPECT_FALSE(folder.Has("other"));
}

TEST_F(WindowsOperations, CopiesGoOverWhatIsThereAndMergeFolders)
{
    folder.Write("to/a.dat", "old and longer");
    folder.Write("to/sub/own", "own");
    EXPECT_TRUE(Copied("from\\*", "to", true));
    EXPECT_EQ("a", folder.Read("to/a.dat"));
    EXPECT_EQ("own", folder.Read("to/sub/own"));
    EXPECT_EQ("c", folder.Read("to/sub/c.dat"));
}

TEST_F(WindowsOperations, CopyingAPatternWithoutAMatchIsNoFailure)
{
    EXPECT_TRUE(Copied("from\\*.none", "to", true));
    EXPECT_FALSE(Copied("none\\*", "to", true));
    EXPECT_FALSE(Copied("from\\none", "to", true));
}

TEST_F(WindowsOperations, ATargetInsideStaysOutOfTheCopy)
{
    EXPECT_TRUE(Copied("from\\*", "from\\sub", true));
    EXPECT_EQ("a", folder.Read("from/sub/a.dat"));
    EXPECT_FALSE(folder.Has("from/sub/sub"));
    EXPECT_FALSE(Copied("from", "from\\sub\\deep", true));
}

TEST_F(WindowsOperations, NoFolderOfADriveIsCopiedIntoItself)
{
    DeleteMatching("V:\\vodrel-own");
    // The drive that scripts/wine.sh maps.
    if (!Platform::MakeFolder("V:\\vodrel-own")) GTEST_SKIP() << "there is no drive V:";
    EXPECT_FALSE(CopyMatching("V:\\vodrel-own", "V:\\vodrel-own\\in", true));
    EXPECT_EQ(Names{}, Found("V:\\vodrel-own\\*"));
    EXPECT_TRUE(DeleteMatching("V:\\vodrel-own"));
}

TEST_F(WindowsOperations, ATargetMayEndInABackslash)
{
    EXPECT_TRUE(Copied("from\\*", "new\\to\\", true));
    EXPECT_EQ("d", folder.Read("new/to/sub/deep/d"));
    EXPECT_TRUE(Copied("from\\a.dat", "to//", false));
    EXPECT_EQ("a", folder.Read("to/a.dat"));
}

TEST_F(WindowsOperations, NothingIsCopiedOntoItself)
{
    for (char const *to : {"from", "FROM\\", "from\\sub\\..", "."}) {
        bool const inPlace = *to != '.';
        for (bool const wholeTrees : {false, true})
            EXPECT_FALSE(Copied(inPlace ? "from\\*" : "from", to, wholeTrees)) << to << wholeTrees;
    }
    EXPECT_FALSE(Copied("from\\a.dat", "from", false));
    EXPECT_EQ((Names{"a.dat", "b.data", "sub/"}), Found(Path("from\\*")));
}

TEST_F(WindowsOperations, WhereTheOtherKindStandsTheRestIsCopied)
{
    folder.MakeFolder("to/a.dat");
    folder.Write("to/sub/deep", "a file");
    EXPECT_FALSE(Copied("from\\*", "to", true));
    EXPECT_EQ((Names{"a.dat/", "b.data", "sub/"}), Found(Path("to\\*")));
    EXPECT_EQ("a file", folder.Read("to/sub/deep"));
    EXPECT_FALSE(Copied("from\\a.dat", "to", false));
}

TEST_F(WindowsOperations, LongNamesAreCopiedWhole)
{
    std::string const to = LongFolder(folder);
    if (to.empty()) GTEST_SKIP() << "this system makes no such folder";
    EXPECT_TRUE(Copied("from\\*", to.c_str(), true));
    EXPECT_EQ((Names{"a.dat", "b.data", "sub/"}), Found(Path(to + "\\*")));
    EXPECT_TRUE(Copied((to + "\\*").c_str(), "back", true));
    EXPECT_EQ("d", folder.Read("back/sub/deep/d"));
}

TEST_F(WindowsOperations, NothingIsCopiedToWhatIsNoName)
{
    std::string deep = "aa";
    for (int i = 0; i < 100000; ++i) deep += "\\a";
    EXPECT_FALSE(Copied("from\\*", deep.c_str(), true));
    EXPECT_FALSE(folder.Has("aa"));
}

TEST_F(WindowsOperations, OneFileIsCopiedOverAnother)
{
    EXPECT_TRUE(CopyOneFile(Path("from\\a.dat").c_str(), Path("from\\b.data").c_str()));
    EXPECT_EQ("a", folder.Read("from/b.data"));
    EXPECT_FALSE(CopyOneFile(Path("from\\a.dat").c_str(), Path("FROM\\A.DAT").c_str()));
    EXPECT_FALSE(CopyOneFile(Path("from\\a.dat").c_str(), Path("from\\sub").c_str()));
    EXPECT_FALSE(CopyOneFile(Path("from\\none").c_str(), Path("from\\new").c_str()));
    EXPECT_EQ((Names{"a.dat", "b.data", "sub/"}), Found(Path("from\\*")));
}

TEST_F(WindowsOperations, APatternDeletesFilesAndFoldersButNoShortNames)
{
    EXPECT_TRUE(Deleted("from\\*.dat"));
    EXPECT_EQ((Names{"b.data", "sub/"}), Found(Path("from\\*")));
    EXPECT_TRUE(Deleted("from\\*"));
    EXPECT_EQ(Names{}, Found(Path("from\\*")));
    EXPECT_TRUE(Deleted("from\\*"));
    EXPECT_TRUE(folder.Has("from"));
}

TEST_F(WindowsOperations, DeletingWhatIsNotThereFails)
{
    for (char const *name : {"none", "none\\*", "from\\", "from\\.", "from\\..", "fro?\\a.dat"})
        EXPECT_FALSE(Deleted(name)) << name;
    EXPECT_TRUE(Deleted("from"));
    EXPECT_FALSE(folder.Has("from"));
}

TEST_F(WindowsOperations, ARenameNeverGoesOntoAnother)
{
    EXPECT_FALSE(Renamed("from\\a.dat", "from\\b.data"));
    EXPECT_FALSE(Renamed("from\\a.dat", "from\\sub"));
    EXPECT_FALSE(Renamed("from\\sub", "from\\a.dat"));
    EXPECT_FALSE(Renamed("from\\none", "from\\new"));
    EXPECT_FALSE(Renamed("from\\*.dat", "from\\new"));
    EXPECT_EQ((Names{"a.dat", "b.data", "sub/"}), Found(Path("from\\*")));
}

TEST_F(WindowsOperations, FilesAndFoldersAreRenamedAndMoved)
{
    EXPECT_TRUE(Renamed("from\\a.dat", "from\\sub\\moved"));
    EXPECT_TRUE(Renamed("from\\sub", "away"));
    EXPECT_EQ("a", folder.Read("away/moved"));
    EXPECT_EQ("d", folder.Read("away/deep/d"));
    EXPECT_EQ(Names{"b.data"}, Found(Path("from\\*")));
}

TEST_F(WindowsOperations, ARenameMayChangeTheCaseAlone)
{
    EXPECT_TRUE(Renamed("from\\a.dat", "from\\A.DAT"));
    EXPECT_TRUE(Renamed("from\\sub", "from\\SUB"));
    EXPECT_EQ((Names{"A.DAT", "b.data", "SUB/"}), Found(Path("from\\*")));
}
