#include <gtest/gtest.h>
#include <string>
#include <sys/resource.h>
#include <utility>

#include "PlatformVocabulary.h"

namespace {

class Trees : public testing::Test {
protected:
    bool Copy(std::string const &pattern, std::string const &to, bool wholeTrees = true) const
    {
        return Platform::CopyMatching(folder.path(pattern).c_str(), folder.path(to).c_str(), wholeTrees);
    }
    bool Delete(std::string const &pattern) const { return Platform::DeleteMatching(folder.path(pattern).c_str()); }
    Names In(std::string const &name) const { return Found(folder.path(name.empty() ? "*" : name + "\\*")); }

    TempFolder folder;
};

/// Deletes while the process may open just `n` more descriptors, as on a busy host.
bool deletedwith(int n, std::string const &pattern)
{
    int const next = dup(0);
    close(next);
    rlimit old = {};
    getrlimit(RLIMIT_NOFILE, &old);
    rlimit const few = {static_cast<rlim_t>(next + n), old.rlim_max};
    setrlimit(RLIMIT_NOFILE, &few);
    bool const deleted = Platform::DeleteMatching(pattern.c_str());
    setrlimit(RLIMIT_NOFILE, &old);
    return deleted;
}

using CopyMatching = Trees;
using DeleteMatching = Trees;

} // namespace

TEST_F(CopyMatching, CopiesWholeTrees)
{
    folder.Write("from/a", "1");
    folder.Write("from/sub/b", "2");
    folder.Write("from/sub/deep/.c", "3");
    folder.MakeFolder("from/empty");
    EXPECT_TRUE(Copy("from\\*", "to"));
    EXPECT_EQ((Names{"a", "empty/", "sub/"}), In("to"));
    EXPECT_EQ("2", folder.Read("to/sub/b"));
    EXPECT_EQ("3", folder.Read("to/sub/deep/.c"));
    EXPECT_TRUE(Copy("FROM", "to"));
    EXPECT_EQ("2", folder.Read("to/from/sub/b"));
}

TEST_F(CopyMatching, WithoutWholeTreesTakesFilesOnly)
{
    folder.Write("from/a.dat", "1");
    folder.Write("from/b.txt", "2");
    folder.Write("from/sub.dat/c", "3");
    EXPECT_TRUE(Copy("from\\*.dat", "to", false));
    EXPECT_EQ(Names{"a.dat"}, In("to"));
    EXPECT_FALSE(Copy("from\\sub.dat", "to", false)) << "a folder that is named alone";
    EXPECT_TRUE(Copy("from\\B.TXT", "to", false));
    EXPECT_EQ((Names{"a.dat", "b.txt"}), In("to"));
}

TEST_F(CopyMatching, MergesOverWhatIsThereWhateverItsCase)
{
    folder.Write("from/Sub/File", "new");
    folder.Write("TO/SUB/FILE", "old");
    folder.Write("TO/SUB/other", "kept");
    EXPECT_TRUE(Copy("from\\*", "to"));
    EXPECT_EQ("new", folder.Read("TO/SUB/FILE"));
    EXPECT_EQ("kept", folder.Read("TO/SUB/other"));
    EXPECT_EQ((Names{"FILE", "other"}), In("TO\\SUB"));
}

TEST_F(CopyMatching, MakesTheTargetAndTheFoldersOnTheWay)
{
    folder.Write("from/a", "1");
    folder.MakeFolder("Outer");
    EXPECT_TRUE(Copy("from\\*", "OUTER\\Inner\\Deep"));
    EXPECT_EQ("1", folder.Read("Outer/Inner/Deep/a"));
}

TEST_F(CopyMatching, TellsWhetherThereWasSomethingToLookAt)
{
    folder.Write("from/a", "1");
    EXPECT_TRUE(Copy("from\\*.dat", "to")) << "a wildcard may match nothing";
    EXPECT_FALSE(Copy("from\\missing", "to2"));
    EXPECT_FALSE(Copy("missing\\*", "to2"));
    EXPECT_FALSE(Copy("from\\", "to2"));
    EXPECT_FALSE(Copy("fr?m\\a", "to2"));
    EXPECT_FALSE(Copy("from\\a", "to*"));
    EXPECT_FALSE(folder.Has("to2"));
    EXPECT_FALSE(Copy("from\\a", "from\\a")) << "a file is no folder to copy into";
    EXPECT_FALSE(Copy("from\\a", "from\\A\\x"));
}

TEST_F(CopyMatching, GoesOnAfterAFailureAndTellsOfIt)
{
    folder.Write("from/a", "1");
    folder.Write("from/b", "2");
    folder.Write("from/c/d", "3");
    folder.MakeFolder("to/a");
    folder.Write("to/c", "a file where a folder is to be");
    ASSERT_EQ(0, mkfifo(folder.native("from/a2").c_str(), 0600));
    EXPECT_FALSE(Copy("from\\*", "to"));
    EXPECT_EQ((Names{"a/", "b", "c"}), In("to"));
    EXPECT_EQ("2", folder.Read("to/b"));
}

TEST_F(CopyMatching, IntoItsOwnSubfolderEnds)
{
    folder.Write("from/a", "1");
    folder.Write("from/x/b", "2");
    EXPECT_TRUE(Copy("from\\*", "from\\x\\to"));
    EXPECT_EQ((Names{"a", "x/"}), In("from\\x\\to"));
    EXPECT_EQ(Names{"b"}, In("from\\x\\to\\x")) << "the target isn't copied into itself";
    EXPECT_TRUE(Copy("from", "from\\own"));
    EXPECT_EQ((Names{"a", "x/"}), In("from\\own\\from"));
    EXPECT_FALSE(Copy("from", "from")) << "nothing else to copy";
    EXPECT_FALSE(Copy("from\\a", "from"));
}

TEST_F(CopyMatching, LinksArriveAsWhatTheyLeadTo)
{
    folder.Write("outside/b", "2");
    folder.Write("from/a", "1");
    ASSERT_TRUE(Link("a", folder.native("from/link")) && Link("../outside", folder.native("from/folder")));
    EXPECT_TRUE(Copy("from\\*", "to"));
    EXPECT_EQ("1", folder.Read("to/link"));
    EXPECT_EQ("2", folder.Read("to/folder/b"));
    EXPECT_EQ("(no link)", LinkTarget(folder.native("to/link")));
    EXPECT_EQ("(no link)", LinkTarget(folder.native("to/folder")));
}

TEST_F(CopyMatching, LinksBackIntoTheTreeAreLeftOut)
{
    folder.Write("from/sub/a", "1");
    ASSERT_TRUE(Link("..", folder.native("from/sub/up")) && Link("../..", folder.native("from/sub/above")) &&
                Link(".", folder.native("from/sub/self")) && Link("../../to", folder.native("from/sub/target")));
    EXPECT_TRUE(Copy("from", "to"));
    EXPECT_EQ(Names{"a"}, In("to\\from\\sub"));
    ASSERT_TRUE(Link("../../to/from", folder.native("from/sub/copy")));
    EXPECT_TRUE(Copy("from", "to"));
    EXPECT_EQ(Names{"a"}, In("to\\from\\sub")) << "a link into the copy would grow for ever";
}

TEST_F(CopyMatching, ALinkThatLeadsNowhereIsAFailure)
{
    folder.Write("from/a", "1");
    ASSERT_TRUE(Link("nowhere", folder.native("from/link")));
    EXPECT_FALSE(Copy("from\\*", "to"));
    EXPECT_EQ(Names{"a"}, In("to"));
}

TEST_F(CopyMatching, ANameThatNoPathCanSayIsAFailure)
{
    folder.Write("from/a\\b", "1");
    folder.Write("from/c", "2");
    EXPECT_FALSE(Copy("from", "to"));
    EXPECT_EQ(Names{"c"}, In("to\\from"));
}

TEST_F(DeleteMatching, TakesFilesAndWholeTrees)
{
    folder.Write("tree/sub/deep/file");
    folder.Write("tree/a\\b");
    folder.Write("Tree.txt");
    folder.Write("other");
    EXPECT_TRUE(Delete("TREE*"));
    EXPECT_EQ(Names{"other"}, In(""));
    EXPECT_TRUE(Delete("OTHER"));
    EXPECT_EQ(Names{}, In(""));
}

TEST_F(DeleteMatching, TellsOfANameThatIsntThere)
{
    EXPECT_FALSE(Delete("missing"));
    EXPECT_FALSE(Delete("missing\\*"));
    EXPECT_TRUE(Delete("*.missing"));
}

TEST_F(DeleteMatching, RefusesRootsDotsAndTrailingBackslashes)
{
    folder.Write("sub/file");
    ASSERT_EQ(0, chdir(folder.native("sub").c_str()));
    Platform::SetDrive('Q', folder.native());
    for (std::string const &path :
         {folder.path("sub\\"), folder.path("sub\\."), folder.path("sub\\.."), folder.path("*\\file"), std::string(),
          std::string("."), std::string(".."), std::string("Q:"), std::string("Q:\\"), std::string("\\\\server"),
          std::string("\\\\server\\share")})
        EXPECT_FALSE(Platform::DeleteMatching(path.c_str())) << path;
    EXPECT_TRUE(folder.Has("sub/file"));
    Platform::SetDrive('Q', "");
    ASSERT_EQ(0, chdir("/"));
}

TEST_F(DeleteMatching, NeverFollowsLinks)
{
    folder.Write("outside/file", "x");
    folder.Write("tree/a");
    ASSERT_TRUE(Link("../outside", folder.native("tree/link")) && Link("outside", folder.native("link1")) &&
                Link("outside/file", folder.native("link2")) && Link("nowhere", folder.native("link3")));
    EXPECT_TRUE(Delete("tree"));
    EXPECT_TRUE(Delete("LINK1"));
    EXPECT_TRUE(Delete("link*"));
    EXPECT_EQ(Names{"outside/"}, In(""));
    EXPECT_EQ("x", folder.Read("outside/file"));
}

TEST_F(DeleteMatching, MeansTheExactNameIfCasesClash)
{
    folder.Write("Data/x");
    folder.Write("data/y");
    EXPECT_TRUE(Delete("data"));
    EXPECT_EQ(Names{"Data/"}, In(""));
    EXPECT_TRUE(Delete("data"));
    EXPECT_EQ(Names{}, In(""));
}

TEST_F(DeleteMatching, GoesOnAfterAFailureAndTellsOfIt)
{
    folder.Write("a");
    folder.Write("b/inner/file");
    folder.Write("c");
    // Enough to list a folder, too little for a folder within a folder.
    EXPECT_FALSE(deletedwith(1, folder.path("?")));
    EXPECT_EQ(Names{"b/"}, In(""));
    EXPECT_TRUE(Delete("?"));
    EXPECT_EQ(Names{}, In(""));
    EXPECT_FALSE(Platform::DeleteMatching("Z:\\proc\\self\\stat")) << "a file that can't be deleted";
}

TEST_F(DeleteMatching, AFolderThatCantBeReadIsAFailure)
{
    folder.Write("a");
    EXPECT_FALSE(deletedwith(0, folder.path("?")));
    EXPECT_EQ(Names{"a"}, In(""));
}
