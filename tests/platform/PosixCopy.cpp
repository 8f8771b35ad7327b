#include <gtest/gtest.h>
#include <string>

#include "PlatformVocabulary.h"

namespace {

class CopyOneFile : public testing::Test {
protected:
    bool Copy(std::string const &from, std::string const &to) const
    {
        return Platform::CopyOneFile(folder.path(from).c_str(), folder.path(to).c_str());
    }

    TempFolder folder;
};

} // namespace

TEST_F(CopyOneFile, KeepsBytesTimeAndPermissions)
{
    std::string bytes(3000000, '\0');
    for (std::size_t i = 0; i < bytes.size(); i++) bytes[i] = static_cast<char>(i * 3 + i / 1000);
    folder.Write("from", bytes);
    timespec const times[] = {{5, 6}, {1234567890, 123456789}};
    ASSERT_EQ(0, utimensat(AT_FDCWD, folder.native("from").c_str(), times, 0));
    ASSERT_EQ(0, chmod(folder.native("from").c_str(), 0640));
    EXPECT_TRUE(Copy("from", "to"));
    EXPECT_EQ(bytes, folder.Read("to"));
    struct stat info;
    ASSERT_EQ(0, stat(folder.native("to").c_str(), &info));
    EXPECT_EQ(1234567890, info.st_mtim.tv_sec);
    EXPECT_EQ(123456789, info.st_mtim.tv_nsec);
    EXPECT_EQ(0640u, info.st_mode & 07777u);
    EXPECT_EQ((Names{"from", "to"}), Found(folder.path("*")));
}

TEST_F(CopyOneFile, EmptyFileIsCopied)
{
    folder.Write("from");
    EXPECT_TRUE(Copy("from", "to"));
    EXPECT_EQ("", folder.Read("to"));
}

TEST_F(CopyOneFile, FileWhoseSizeTheSystemDoesntKnowIsCopied)
{
    EXPECT_TRUE(Platform::CopyOneFile("Z:\\proc\\self\\status", folder.path("to").c_str()));
    EXPECT_EQ("Name:", folder.Read("to").substr(0, 5));
}

TEST_F(CopyOneFile, ReplacesTheTargetWhateverItsCase)
{
    folder.Write("From", "new");
    folder.Write("To", "old and longer");
    EXPECT_TRUE(Copy("FROM", "TO"));
    EXPECT_EQ("new", folder.Read("To"));
    EXPECT_EQ((Names{"From", "To"}), Found(folder.path("*")));
}

TEST_F(CopyOneFile, TheOldFileStaysWholeForWhoeverHasItOpen)
{
    folder.Write("from", "new");
    folder.Write("to", "old");
    std::FILE *const reader = Platform::OpenFile(folder.path("to").c_str(), "r");
    EXPECT_TRUE(Copy("from", "to"));
    char text[4] = "";
    EXPECT_EQ(3u, std::fread(text, 1, 3, reader));
    EXPECT_STREQ("old", text);
    Platform::CloseFile(reader);
}

TEST_F(CopyOneFile, ThroughALinkItsFileIsReplaced)
{
    folder.Write("from", "new");
    folder.Write("sub/file", "old");
    ASSERT_TRUE(Link("sub/file", folder.native("link")) && Link("link", folder.native("chain")) &&
                Link("sub/made", folder.native("nowhere")));
    EXPECT_TRUE(Copy("from", "chain"));
    EXPECT_EQ("new", folder.Read("sub/file"));
    EXPECT_EQ("sub/file", LinkTarget(folder.native("link")));
    EXPECT_TRUE(Copy("from", "nowhere"));
    EXPECT_EQ("new", folder.Read("sub/made"));
}

TEST_F(CopyOneFile, OfALinkCopiesItsFile)
{
    folder.Write("file", "text");
    ASSERT_TRUE(Link("file", folder.native("link")));
    EXPECT_TRUE(Copy("link", "to"));
    EXPECT_EQ("(no link)", LinkTarget(folder.native("to")));
    EXPECT_EQ("text", folder.Read("to"));
}

TEST_F(CopyOneFile, RefusesFoldersPipesAndTheSameFile)
{
    folder.Write("file", "text");
    folder.MakeFolder("folder");
    ASSERT_EQ(0, mkfifo(folder.native("pipe").c_str(), 0600));
    ASSERT_EQ(0, link(folder.native("file").c_str(), folder.native("twin").c_str()));
    ASSERT_TRUE(Link("file", folder.native("link")) && Link("loop", folder.native("loop")));
    std::pair<char const *, char const *> const rows[] = {
        {"folder", "x"},      {"pipe", "x"},    {"missing", "x"},  {"file", "folder"},  {"file", "pipe"},
        {"file", "file"},     {"file", "FILE"}, {"file", "twin"},  {"file", "link"},    {"link", "file"},
        {"file", "folder\\"}, {"file", "x\\"},  {"file", "no\\x"}, {"file", "file\\x"}, {"f*", "x"},
        {"file", "x*"},       {"loop", "x"},    {"file", "loop"},
    };
    for (auto const &row : rows) EXPECT_FALSE(Copy(row.first, row.second)) << row.first << " to " << row.second;
    EXPECT_EQ("text", folder.Read("file"));
    EXPECT_EQ((Names{"file", "folder/", "link", "loop", "pipe", "twin"}), Found(folder.path("*")));
}
