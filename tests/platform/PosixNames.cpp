#include <gtest/gtest.h>
#include <string>

#include "PlatformVocabulary.h"

namespace {

class Namings : public testing::Test {
protected:
    bool Renamed(std::string const &from, std::string const &to) const
    {
        return Platform::Rename(folder.path(from).c_str(), folder.path(to).c_str());
    }
    bool Make(std::string const &name) const { return Platform::MakeFolder(folder.path(name).c_str()); }
    bool Same(std::string const &a, std::string const &b) const
    {
        return Platform::IsSameFile(folder.path(a).c_str(), folder.path(b).c_str());
    }
    Names All() const { return Found(folder.path("*")); }

    TempFolder folder;
};

using MakeFolder = Namings;
using Rename = Namings;
using IsSameFile = Namings;

} // namespace

TEST_F(MakeFolder, MakesOneFolder)
{
    EXPECT_TRUE(Make("New"));
    EXPECT_TRUE(Make("NEW\\Sub"));
    EXPECT_TRUE(IsFolder(folder.native("New/Sub")));
    EXPECT_FALSE(Make("a\\b")) << "its parent must exist";
    EXPECT_EQ(Names{"New/"}, All());
}

TEST_F(MakeFolder, FailsIfTheNameExistsInAnyCase)
{
    folder.MakeFolder("Folder");
    folder.Write("File");
    ASSERT_TRUE(Link("nowhere", folder.native("Link")));
    for (char const *name :
         {"Folder", "FOLDER", "File", "FILE", "Link", "LINK", "File\\x", "", "a*", "a?b", ".", "..", "Folder\\"})
        EXPECT_FALSE(Make(name)) << name;
    for (char const *path : {"", "Z:", "Z:\\", "\\", "\\\\", "\\\\server", "Q:", "Q:\\x"})
        EXPECT_FALSE(Platform::MakeFolder(path)) << path;
    EXPECT_EQ((Names{"File", "Folder/", "Link"}), All());
}

TEST_F(Rename, MovesFilesAndFolders)
{
    folder.Write("File", "x");
    folder.Write("Folder/inner", "y");
    EXPECT_TRUE(Renamed("FILE", "FOLDER\\Moved"));
    EXPECT_TRUE(Renamed("folder", "Other"));
    EXPECT_EQ("x", folder.Read("Other/Moved"));
    EXPECT_EQ("y", folder.Read("Other/inner"));
    EXPECT_EQ(Names{"Other/"}, All());
}

TEST_F(Rename, OfALinkMovesTheLink)
{
    ASSERT_TRUE(Link("nowhere", folder.native("link")));
    EXPECT_TRUE(Renamed("link", "moved"));
    EXPECT_EQ("nowhere", LinkTarget(folder.native("moved")));
}

TEST_F(Rename, ChangesCaseAlone)
{
    folder.Write("File", "x");
    folder.MakeFolder("Folder");
    EXPECT_TRUE(Renamed("File", "FILE"));
    EXPECT_TRUE(Renamed("file", "fIlE")) << "the old name in another case, too";
    EXPECT_TRUE(Renamed("FOLDER", "folder"));
    EXPECT_EQ((Names{"fIlE", "folder/"}), All());
    EXPECT_TRUE(Renamed("FILE", "fIlE")) << "nothing to change";
    EXPECT_EQ((Names{"fIlE", "folder/"}), All());
}

TEST_F(Rename, RefusesAnExistingTargetOfEitherKind)
{
    folder.Write("a", "1");
    folder.Write("B", "2");
    folder.MakeFolder("C");
    folder.MakeFolder("d");
    ASSERT_TRUE(Link("nowhere", folder.native("Link")));
    std::pair<char const *, char const *> const rows[] = {
        {"a", "B"},   {"a", "b"},   {"a", "C"},    {"a", "c"},       {"d", "a"},     {"d", "C"},    {"a", "link"},
        {"a", "x*"},  {"a", "x?"},  {"?", "x"},    {"missing", "x"}, {"a", "no\\x"}, {"a", "a\\x"}, {"d", "d\\x"},
        {"a\\", "x"}, {"a", "x\\"}, {"d\\.", "x"}, {"a", "."},       {"", "x"},      {"a", ""},
    };
    for (auto const &row : rows) EXPECT_FALSE(Renamed(row.first, row.second)) << row.first << " to " << row.second;
    EXPECT_EQ((Names{"a", "B", "C/", "d/", "Link"}), All());
    EXPECT_EQ("2", folder.Read("B"));
}

TEST_F(Rename, SecondNameOfTheSameFileIsAnotherTarget)
{
    folder.Write("Data", "x");
    ASSERT_EQ(0, link(folder.native("Data").c_str(), folder.native("data").c_str()));
    EXPECT_FALSE(Renamed("Data", "data"));
    EXPECT_FALSE(Renamed("data", "DATA")) << "the first in sorted order stands for the name";
    EXPECT_EQ((Names{"Data", "data"}), All());
}

TEST_F(Rename, MeansTheExactNameIfCasesClash)
{
    folder.Write("Data", "mixed");
    folder.Write("data", "lower");
    EXPECT_TRUE(Renamed("data", "x"));
    EXPECT_EQ("lower", folder.Read("x"));
    EXPECT_EQ("mixed", folder.Read("Data"));
}

TEST_F(IsSameFile, LooksAtTheFileNotTheName)
{
    folder.Write("File");
    folder.Write("other");
    ASSERT_TRUE(Link("File", folder.native("link")) && Link("nowhere", folder.native("dangling")));
    EXPECT_TRUE(Same("File", "FILE"));
    EXPECT_TRUE(Same("file", "link"));
    EXPECT_TRUE(Platform::IsSameFile(folder.path().c_str(), folder.path(".").c_str()));
    EXPECT_FALSE(Same("File", "other"));
    EXPECT_FALSE(Same("File", "missing"));
    EXPECT_FALSE(Same("missing", "missing"));
    EXPECT_FALSE(Same("dangling", "dangling"));
}

TEST(CurrentDirectory, ComesBackFullyQualified)
{
    TempFolder folder;
    folder.MakeFolder("Sub");
    EXPECT_TRUE(Platform::SetCurrentDirectory(folder.path("SUB").c_str()));
    EXPECT_EQ(folder.path("Sub"), Platform::CurrentDirectory());
    EXPECT_FALSE(Platform::SetCurrentDirectory("missing"));
    EXPECT_FALSE(Platform::SetCurrentDirectory(""));
    EXPECT_EQ(folder.path("Sub"), Platform::CurrentDirectory());
    EXPECT_TRUE(Platform::SetCurrentDirectory(".."));
    EXPECT_EQ(folder.path(), Platform::CurrentDirectory());
    EXPECT_TRUE(Platform::SetCurrentDirectory("sub\\"));
    EXPECT_EQ(folder.path("Sub"), Platform::CurrentDirectory());
    EXPECT_TRUE(Platform::SetCurrentDirectory("Z:"));
    EXPECT_EQ("Z:", Platform::CurrentDirectory());
}

TEST(CurrentDirectory, ThatIsGoneIsEmpty)
{
    TempFolder folder;
    folder.MakeFolder("sub");
    ASSERT_EQ(0, chdir(folder.native("sub").c_str()));
    ASSERT_EQ(0, rmdir(folder.native("sub").c_str()));
    EXPECT_EQ("", Platform::CurrentDirectory());
    EXPECT_FALSE(Written("file", "x"));
    EXPECT_EQ(Names{}, Found("*"));
    ASSERT_EQ(0, chdir("/"));
}
