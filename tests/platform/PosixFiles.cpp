#include <csignal>
#include <cstdio>
#include <dirent.h>
#include <gtest/gtest.h>
#include <string>
#include <sys/resource.h>
#include <sys/stat.h>
#include <vector>

#include "PlatformVocabulary.h"

using Platform::CloseFile;
using Platform::OpenFile;
using Platform::RemainingBytes;
using Platform::SeekFile;
using Platform::TellFile;

namespace {

/// One file that is open, or isn't.
class OpenedFile {
public:
    OpenedFile(std::string const &path, char const *mode) : file(OpenFile(path.c_str(), mode)) {}
    ~OpenedFile() { CloseFile(file); }
    OpenedFile(OpenedFile const &) = delete;
    OpenedFile &operator=(OpenedFile const &) = delete;

    operator std::FILE *() const { return file; }

    std::string Read(std::size_t size) const
    {
        std::string text(size, '\0');
        text.resize(std::fread(text.data(), 1, size, file));
        return text;
    }
    bool Write(std::string const &text) const { return std::fwrite(text.data(), 1, text.size(), file) == text.size(); }

private:
    std::FILE *const file;
};

std::string Counted(std::size_t size)
{
    std::string text(size, '\0');
    for (std::size_t i = 0; i < size; i++) text[i] = static_cast<char>(i * 7 + i / 251);
    return text;
}

int OpenDescriptors()
{
    int n = 0;
    DIR *const folder = opendir("/proc/self/fd");
    while (readdir(folder)) n++;
    closedir(folder);
    return n;
}

} // namespace

TEST(OpenFile, ReadsOnlyWhatIsThere)
{
    TempFolder folder;
    folder.Write("file", "text");
    EXPECT_EQ("text", Opened(folder.path("file"), "r"));
    EXPECT_EQ("text", Opened(folder.path("file"), "rb"));
    EXPECT_EQ("text", Opened(folder.path("file"), "r+b"));
    EXPECT_EQ("text", Opened(folder.path("file"), "rb+"));
    for (char const *mode : {"r", "rb", "r+", "r+b"}) EXPECT_EQ("(closed)", Opened(folder.path("missing"), mode));
    EXPECT_FALSE(folder.Has("missing"));
    EXPECT_EQ("(closed)", Opened(folder.path("missing\\file"), "w"));
}

TEST(OpenFile, RefusesWhatIsNoMode)
{
    TempFolder folder;
    folder.Write("file", "text");
    for (char const *mode : {"", "b", "x", "rw", "+", "r++"})
        EXPECT_EQ("(closed)", Opened(folder.path("file"), mode)) << mode;
    EXPECT_EQ("text", folder.Read("file"));
}

TEST(OpenFile, WritingMakesAndEmpties)
{
    TempFolder folder;
    EXPECT_TRUE(Written(folder.path("file"), "long text", "w"));
    EXPECT_TRUE(Written(folder.path("file"), "new", "wb"));
    EXPECT_EQ("new", folder.Read("file"));
    struct stat info;
    ASSERT_EQ(0, stat(folder.native("file").c_str(), &info));
    mode_t const mask = umask(0);
    umask(mask);
    EXPECT_EQ(0666u & ~mask, info.st_mode & 0777u);
}

TEST(OpenFile, UpdatingKeepsTheRest)
{
    TempFolder folder;
    folder.Write("file", "0123456789");
    {
        OpenedFile const file(folder.path("file"), "r+b");
        EXPECT_EQ("012", file.Read(3));
        EXPECT_TRUE(SeekFile(file, 0, SEEK_CUR));
        EXPECT_TRUE(file.Write("abc"));
        EXPECT_TRUE(SeekFile(file, 0, SEEK_CUR));
        EXPECT_EQ("67", file.Read(2));
        EXPECT_TRUE(SeekFile(file, 1, SEEK_SET));
        EXPECT_TRUE(file.Write("Z"));
        EXPECT_TRUE(SeekFile(file, -1, SEEK_END));
        EXPECT_TRUE(file.Write("!?"));
    }
    EXPECT_EQ("0Z2abc678!?", folder.Read("file"));
}

TEST(OpenFile, AppendingWritesAtTheEndWhereverItStands)
{
    TempFolder folder;
    folder.Write("file", "abc");
    {
        OpenedFile const file(folder.path("file"), "a+b");
        EXPECT_EQ("ab", file.Read(2));
        EXPECT_TRUE(SeekFile(file, 0, SEEK_SET));
        EXPECT_TRUE(file.Write("de"));
        EXPECT_EQ(0, std::fflush(file));
        EXPECT_EQ(5, TellFile(file));
        folder.Write("other");
        std::FILE *const neighbour = std::fopen(folder.native("file").c_str(), "ab");
        std::fputs("XY", neighbour);
        std::fclose(neighbour);
        EXPECT_TRUE(file.Write("fg"));
        EXPECT_TRUE(SeekFile(file, 3, SEEK_SET));
        EXPECT_EQ("deXYfg", file.Read(10));
    }
    EXPECT_EQ("abcdeXYfg", folder.Read("file"));
    EXPECT_TRUE(Written(folder.path("made"), "x", "a+"));
    EXPECT_EQ("x", folder.Read("made"));
}

TEST(OpenFile, OnlyRegularFilesOpenAndNothingWaits)
{
    TempFolder folder;
    folder.MakeFolder("folder");
    ASSERT_EQ(0, mkfifo(folder.native("pipe").c_str(), 0600));
    ASSERT_TRUE(Link("pipe", folder.native("link")));
    for (char const *mode : {"r", "rb", "r+b", "w", "wb", "a+b"}) {
        for (char const *name : {"folder", "pipe", "PIPE", "link"})
            EXPECT_EQ(nullptr, OpenFile(folder.path(name).c_str(), mode)) << name << mode;
        EXPECT_EQ(nullptr, OpenFile("Z:\\dev\\null", mode)) << mode;
        EXPECT_EQ(nullptr, OpenFile(folder.path("folder\\").c_str(), mode)) << mode;
        EXPECT_EQ(nullptr, OpenFile("Z:", mode)) << mode;
    }
}

TEST(OpenFile, NameWithWildcardsNamesNothing)
{
    TempFolder folder;
    folder.Write("a*", "star");
    folder.Write("d?r/file", "x");
    EXPECT_EQ("(closed)", Opened(folder.path("a*")));
    EXPECT_EQ("(closed)", Opened(folder.path("d?r\\file")));
    EXPECT_FALSE(Written(folder.path("n?w"), "x"));
    EXPECT_FALSE(folder.Has("n?w"));
}

TEST(OpenFile, ALinkLeadsToItsFile)
{
    TempFolder folder;
    folder.Write("file", "old");
    ASSERT_TRUE(Link("file", folder.native("link")) && Link("new", folder.native("nowhere")));
    EXPECT_TRUE(Written(folder.path("LINK"), "text"));
    EXPECT_EQ("text", folder.Read("file"));
    EXPECT_TRUE(Written(folder.path("nowhere"), "made"));
    EXPECT_EQ("made", folder.Read("new"));
    EXPECT_EQ("new", LinkTarget(folder.native("nowhere")));
}

TEST(OpenFile, ProgramsThatAreStartedDontInheritIt)
{
    TempFolder folder;
    int const next = dup(0);
    close(next);
    OpenedFile const file(folder.path("file"), "w");
    ASSERT_NE(nullptr, static_cast<std::FILE *>(file));
    EXPECT_EQ(FD_CLOEXEC, fcntl(next, F_GETFD));
}

TEST(OpenFile, ClosesItsDescriptorOnEveryWay)
{
    TempFolder folder;
    folder.Write("file", "x");
    folder.MakeFolder("folder");
    int const before = OpenDescriptors();
    for (char const *name : {"file", "FILE", "folder", "missing", "f*"}) {
        Opened(folder.path(name));
        Found(folder.path(name), Platform::Detail::Full);
        Platform::CopyOneFile(folder.path(name).c_str(), folder.path("copy").c_str());
        Platform::CopyOneFile(folder.path(name).c_str(), folder.path("folder").c_str());
    }
    EXPECT_EQ(before, OpenDescriptors());
}

TEST(Stream, LinesCharactersAndEndWorkAsInC)
{
    TempFolder folder;
    folder.Write("file", "first line\n12 350\nlast");
    OpenedFile const file(folder.path("file"), "r");
    char line[100];
    ASSERT_NE(nullptr, std::fgets(line, sizeof line, file));
    EXPECT_STREQ("first line\n", line);
    int whole = 0;
    double broken = 0;
    EXPECT_EQ(2, std::fscanf(file, "%d %lf\n", &whole, &broken));
    EXPECT_EQ(12, whole);
    EXPECT_EQ(350, broken);
    EXPECT_EQ('l', std::fgetc(file));
    EXPECT_EQ('L', std::ungetc('L', file));
    EXPECT_EQ(18, TellFile(file));
    EXPECT_EQ("Last", file.Read(4));
    EXPECT_FALSE(std::feof(file));
    EXPECT_EQ(EOF, std::fgetc(file));
    EXPECT_TRUE(std::feof(file));
    EXPECT_TRUE(SeekFile(file, 0, SEEK_SET));
    EXPECT_FALSE(std::feof(file));
    EXPECT_EQ("first", file.Read(5));
}

TEST(Stream, SeeksLeadToTheirPlaceFromEverywhere)
{
    std::string const bytes = Counted(20000);
    TempFolder folder;
    folder.Write("file", bytes);
    for (char const *mode : {"rb", "r+b"}) {
        OpenedFile const file(folder.path("file"), mode);
        long long here = 0;
        for (long long step : {0, 1, 5, 511, 512, 513, -3, 4095, 4096, 4097, -4000, 8192, -8192, 2000, 3000}) {
            ASSERT_TRUE(SeekFile(file, step, SEEK_CUR));
            here += step;
            ASSERT_EQ(here, TellFile(file)) << mode << step;
            ASSERT_EQ(bytes.substr(static_cast<std::size_t>(here), 10), file.Read(10)) << mode << step;
            here += 10;
            ASSERT_TRUE(SeekFile(file, here + 7, SEEK_SET));
            here += 7;
            ASSERT_EQ(here, TellFile(file)) << mode << step;
        }
        ASSERT_TRUE(SeekFile(file, -10, SEEK_END));
        EXPECT_EQ(bytes.substr(19990), file.Read(100));
    }
}

TEST(Stream, SeekingBehindTheEndWorksAndReadsNothing)
{
    TempFolder folder;
    folder.Write("file", "0123456789");
    OpenedFile const file(folder.path("file"), "rb");
    EXPECT_EQ("01", file.Read(2));
    EXPECT_TRUE(SeekFile(file, 100, SEEK_CUR));
    EXPECT_FALSE(std::feof(file));
    EXPECT_EQ(102, TellFile(file));
    EXPECT_EQ(0, RemainingBytes(file));
    EXPECT_EQ("", file.Read(1));
    EXPECT_TRUE(std::feof(file));
    EXPECT_FALSE(SeekFile(file, -1, SEEK_SET));
    EXPECT_FALSE(SeekFile(file, -200, SEEK_CUR));
    EXPECT_TRUE(SeekFile(file, 8, SEEK_SET));
    EXPECT_EQ("89", file.Read(10));
    EXPECT_FALSE(SeekFile(nullptr, 0, SEEK_SET));
    EXPECT_EQ(-1, TellFile(nullptr));
    EXPECT_EQ(0, RemainingBytes(nullptr));
}

TEST(Stream, RemainingBytesDisturbNothing)
{
    TempFolder folder;
    folder.Write("file", std::string(10000, 'x') + "tail");
    OpenedFile const file(folder.path("file"), "rb");
    EXPECT_EQ(10004, RemainingBytes(file));
    EXPECT_EQ("xxx", file.Read(3));
    EXPECT_EQ('y', std::ungetc('y', file));
    EXPECT_EQ(10002, RemainingBytes(file));
    EXPECT_EQ("yx", file.Read(2));
    EXPECT_EQ(10000, RemainingBytes(file));
    file.Read(20000);
    EXPECT_TRUE(std::feof(file));
    EXPECT_EQ(0, RemainingBytes(file));
    EXPECT_TRUE(std::feof(file));
}

TEST(Stream, LargeBlocksArriveWholeAtAnyPlace)
{
    TempFolder folder;
    std::string const bytes = Counted(3000001);
    {
        OpenedFile const file(folder.path("file"), "wb");
        EXPECT_TRUE(file.Write("head") && file.Write(bytes) && file.Write("tail"));
        EXPECT_EQ(3000009, TellFile(file));
    }
    EXPECT_EQ("head" + bytes + "tail", folder.Read("file"));
    OpenedFile const file(folder.path("file"), "rb");
    EXPECT_EQ("head", file.Read(4));
    EXPECT_EQ(bytes, file.Read(bytes.size()));
    EXPECT_EQ("tail", file.Read(100));
    EXPECT_TRUE(std::feof(file));
}

TEST(Stream, FilesOfMoreThanTwoGibibytesWork)
{
    TempFolder folder;
    long long const far = 5000000000;
    {
        OpenedFile const file(folder.path("file"), "wb");
        EXPECT_TRUE(SeekFile(file, far, SEEK_SET));
        EXPECT_TRUE(file.Write("end"));
        EXPECT_EQ(far + 3, TellFile(file));
    }
    OpenedFile const file(folder.path("file"), "rb");
    EXPECT_EQ(far + 3, RemainingBytes(file));
    EXPECT_TRUE(SeekFile(file, -3, SEEK_END));
    EXPECT_EQ(far, TellFile(file));
    EXPECT_EQ("end", file.Read(10));
    Platform::Entry entry;
    ASSERT_TRUE(Platform::Search(folder.path("file").c_str(), Platform::Detail::Full).Next(entry));
    EXPECT_EQ(far + 3, entry.size);
}

TEST(Stream, AFullDiskIsAShortWrite)
{
    TempFolder folder;
    rlimit old;
    ASSERT_EQ(0, getrlimit(RLIMIT_FSIZE, &old));
    auto const handler = std::signal(SIGXFSZ, SIG_IGN);
    rlimit const small = {10000, old.rlim_max};
    ASSERT_EQ(0, setrlimit(RLIMIT_FSIZE, &small));
    std::FILE *const file = OpenFile(folder.path("file").c_str(), "wb");
    std::string const bytes(60000, 'x');
    EXPECT_LT(std::fwrite(bytes.data(), 1, bytes.size(), file), bytes.size());
    EXPECT_TRUE(std::ferror(file));
    CloseFile(file);
    EXPECT_FALSE(Platform::CopyOneFile("Z:\\proc\\self\\exe", folder.path("copy").c_str()));
    ASSERT_EQ(0, setrlimit(RLIMIT_FSIZE, &old));
    std::signal(SIGXFSZ, handler);
    EXPECT_EQ(Names{"file"}, Found(folder.path("*"))) << "nothing stays of the copy that failed";
}
