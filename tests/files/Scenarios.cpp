/// Whole scenarios in which the disk fails at each operation in turn, once or for good: no crash, and
/// a file is either as it was or as it was to become.
#include <algorithm>

#include "files/DFile.h"
#include "files/DIni.h"
#include "support/Faults.h"
#include "support/FilesFixture.h"

namespace {

class FailingDisk : public FilesTest {
protected:
    void ExpectOneOf(std::string const &bytes, Strings const &allowed)
    {
        bool const found = std::find(allowed.begin(), allowed.end(), bytes) != allowed.end();
        EXPECT_TRUE(found) << "the file holds: " << bytes;
    }
    /// Runs a scenario for a fault of either kind at every operation; it must have met some.
    void RunAll(std::function<void()> const &prepare, std::function<void()> const &act,
                std::function<void()> const &check)
    {
        EXPECT_LE(2, ForEveryFault(FaultKind::Once, prepare, act, check));
        EXPECT_LE(2, ForEveryFault(FaultKind::ForGood, prepare, act, check));
    }
};

TEST_F(FailingDisk, SettingsAreNeverHalf)
{
    std::string const old = "[A]\r\nx=1\r\n[B]\r\ny=2", x2 = "[A]\r\nx=2\r\n[B]\r\ny=2",
                      x3 = "[A]\r\nx=3\r\n[B]\r\ny=2", last = "[A]\r\nx=3\r\ny=3\r\n[B]\r\ny=2";
    RunAll([&] { folder.Write("s.ini", old); },
           [&] {
               DIni ini(Path("s.ini"));
               ini.SetSection("A");
               ini.SetKeyValue("x", "2");
               ini.RestoreFile();
               ini.SetSection("A");
               ini.HoldWrite(true);
               ini.SetKeyValue("x", "3");
               ini.HoldWrite(false);
               ini.SetKeyValue("y", "3");
               ini.WriteFile(Path("copy.ini"), true);
               ini.Changed();
               ini.CommitFile();
               ini.Refresh();
           },
           [&] {
               ExpectOneOf(folder.Read("s.ini"), {old, x2, x3, last});
               ExpectOneOf(folder.Read("copy.ini"), {"(missing)", last});
           });
}

TEST_F(FailingDisk, SettingsSurviveAFaultThatPasses)
{
    std::string const old = "[A]\r\nx=1", changed = "[A]\r\nx=2";
    ForEveryFault(
        FaultKind::Once, [&] { folder.Write("s.ini", old); },
        [&] {
            DIni ini(Path("s.ini"));
            EXPECT_EQ("1", bytesOf(ini.GetSectionKeyValue("A", "x", "lost")));
            ini.SetKeyValue("x", "2");
            ini.CommitFile();
        },
        [&] { EXPECT_EQ(changed, folder.Read("s.ini")); });
}

TEST_F(FailingDisk, FileCopyIsWholeOrNotThere)
{
    bool copied = false;
    RunAll(
        [&] {
            folder.Write("from/a", "new");
            folder.Write("to/sub/a", "old");
        },
        [&] { copied = CopyFileD(Path("from\\a"), Path("TO\\SUB\\A")); },
        [&] {
            EXPECT_EQ(copied ? "new" : "old", folder.Read("to/sub/a"));
            EXPECT_EQ("new", folder.Read("from/a"));
        });
}

TEST_F(FailingDisk, FolderCopyHasWholeFilesAndTellsIfOneIsMissing)
{
    bool copied = false;
    RunAll(
        [&] {
            std::filesystem::remove_all(folder.native("wild"));
            for (char const *name : {"a", "b", "sub/c"}) {
                folder.Write("from/" + std::string(name), "new");
                folder.Write("to/" + std::string(name), "old");
            }
        },
        [&] {
            copied = CopyFolder(Path("from"), Path("to"));
            CopyFileD(Path("from\\*"), Path("wild"));
        },
        [&] {
            for (char const *name : {"a", "b", "sub/c"}) {
                ExpectOneOf(folder.Read("to/" + std::string(name)), copied ? Strings{"new"} : Strings{"old", "new"});
                EXPECT_EQ("new", folder.Read("from/" + std::string(name)));
            }
            ExpectOneOf(folder.Read("wild/a"), {"(missing)", "new"});
        });
}

TEST_F(FailingDisk, NamesAndDeletionsAreDoneOrNotDone)
{
    bool renamed = false, moved = false, fileStays = false, folderStays = false;
    RunAll(
        [&] {
            std::filesystem::remove_all(folder.native("d"));
            for (char const *name : {"d/old", "d/oldsub/in", "d/file", "d/sub/in"}) folder.Write(name, "abc");
        },
        [&] {
            renamed = RenameFile(Path("d\\OLD"), Path("d\\new"));
            moved = RenameFolder(Path("d\\OLDSUB"), Path("d\\newsub"));
            fileStays = DeleteFileD(Path("d\\FILE"));
            folderStays = DeleteFolder(Path("d\\SUB"));
        },
        [&] {
            EXPECT_EQ("abc", folder.Read(renamed ? "d/new" : "d/old"));
            EXPECT_EQ("abc", folder.Read(moved ? "d/newsub/in" : "d/oldsub/in"));
            EXPECT_NE(folder.Has("d/new"), folder.Has("d/old"));
            EXPECT_NE(folder.Has("d/newsub"), folder.Has("d/oldsub"));
            EXPECT_EQ(fileStays, folder.Has("d/file"));
            EXPECT_EQ(folderStays, folder.Has("d/sub"));
        });
}

TEST_F(FailingDisk, TextsAreWholeAndFailuresTold)
{
    bool text = false, lines = false, line = false, array = false;
    RunAll(
        [&] {
            for (char const *name : {"text", "lines", "line", "array", "to"}) folder.Write(name, "old");
            folder.Write("from", "new");
        },
        [&] {
            text = DFile::WriteText(Path("text"), "new");
            lines = DFile::WriteLines(Path("lines"), List({"new"}));
            line = DFile::WriteLine(Path("line"), "new");
            array = DFile::WriteArray(Path("array"), List({"new"}), ",");
            DFile::CopyLargeFile(Path("from"), Path("to"));
            DStringArray read;
            DArray<DStringArray, 1> table;
            DFile::GetLines(Path("text"), read);
            DFile::GetArray(Path("text"), read, ",");
            DFile::GetStringTable(Path("text"), table, ",");
        },
        [&] {
            EXPECT_EQ(text ? "new" : "old", folder.Read("text"));
            EXPECT_EQ(lines ? "new" : "old", folder.Read("lines"));
            EXPECT_EQ(line ? "oldnew\r\n" : "old", folder.Read("line"));
            EXPECT_EQ(array ? "new" : "old", folder.Read("array"));
            EXPECT_EQ("new", folder.Read("from"));
        });
}

TEST_F(FailingDisk, LargeCopyNeverLosesBoth)
{
    ForEveryFault(
        FaultKind::Once,
        [&] {
            folder.Write("from", "new");
            folder.Write("to", "old");
        },
        [&] {
            EXPECT_TRUE(DFile::CopyLargeFile(Path("from"), Path("to")));
            EXPECT_TRUE(DFile::CopyLargeFile(Path("FROM"), Path("from")));
        },
        [&] { EXPECT_EQ("new", folder.Read("from")); });
}

TEST_F(FailingDisk, FoldersAreMadeAsFarAsTheDiskGoes)
{
    RunAll([&] { std::filesystem::remove_all(folder.native("a")); },
           [&] { EXPECT_TRUE(CreateFolder(Path("a\\b\\c\\d"))); },
           [&] {
               if (!folder.Has("a")) return;
               EXPECT_TRUE(std::filesystem::is_directory(folder.native("a")));
           });
}

} // namespace
