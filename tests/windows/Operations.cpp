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
