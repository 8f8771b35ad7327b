/// The log, byte by byte on a clock set by hand, and the roads of a notification.
#include "core/Log.h"

#include <climits>
#include <cstdio>
#include <cstring>

#if defined __linux__
#include <stdio_ext.h>
#endif

#include "support/Faults.h"
#include "support/FilesFixture.h"

namespace {

using namespace std::string_literals;

// ---- Lines of the log ------------------------------------------------------------------------

class LogLines : public FilesTest {
protected:
    /// The log after one line at this time.
    std::string LineAt(long long microseconds, double start)
    {
        folder.Write("user/Log.txt");
        clock.counts = microseconds;
        StartTime = start;
        Log("m");
        return LogText();
    }
};

TEST_F(LogLines, AreMessageByTime)
{
    Log("Log initialized");
    EXPECT_EQ("Log initialized by 0.00e+00\r\n", LogText());
}

TEST_F(LogLines, TimeIsInSecondsSinceTheStart)
{
    struct Row {
        long long microseconds;
        double start;
        char const *line;
    } const rows[] = {
        {0, 0, "m by 0.00e+00\r\n"},
        {12500, 0, "m by 1.25e-02\r\n"},
        {1000000, 0, "m by 1.00e+00\r\n"},
        {12345678900, 0, "m by 1.23e+04\r\n"},
        {9996000, 0, "m by 1.00e+01\r\n"},
        {1, 0, "m by 1.00e-06\r\n"},
        {5000000, 2.5, "m by 2.50e+00\r\n"},
        {5000000, 5.0, "m by 0.00e+00\r\n"},
        {5000000, 7.5, "m by 0.00e+00\r\n"}, // never below 0
        {-5000000, 0, "m by 0.00e+00\r\n"},
        {123456789000000000, 0, "m by 1.23e+11\r\n"}, // before the start it is the raw counter
    };
    for (Row const &row : rows) EXPECT_EQ(row.line, LineAt(row.microseconds, row.start)) << row.microseconds;
}

TEST_F(LogLines, AreAppended)
{
    folder.Write("user/Log.txt", "old without an end");
    Log("one");
    Log(DString());
    Log(nullString());
    Log(fromBytes("a\0b\n\xC9\xFF%s"s));
    EXPECT_EQ("old without an endone by 0.00e+00\r\n by 0.00e+00\r\n by 0.00e+00\r\na\0b\n\xC9\xFF%s by 0.00e+00\r\n"s,
              LogText());
}

TEST_F(LogLines, LeaveTheMessageAlone)
{
    DString const message("one"), shared(message);
    Log(message);
    EXPECT_EQ("one", bytesOf(message));
    EXPECT_EQ("one", bytesOf(shared));
}

TEST_F(LogLines, AreOnDiskOneByOne)
{
    Log("one");
    std::filesystem::rename(folder.native("user/Log.txt"), folder.native("moved"));
    Log("two");
    EXPECT_EQ("one by 0.00e+00\r\n", folder.Read("moved"));
    EXPECT_EQ("two by 0.00e+00\r\n", LogText());
}

TEST_F(LogLines, DoNotDependOnLogging)
{
    Logging = true;
    Log("one");
    Logging = false;
    Log("two");
    EXPECT_EQ("one by 0.00e+00\r\ntwo by 0.00e+00\r\n", LogText());
}

TEST_F(LogLines, AreInTheCurrentFolderBeforeTheStart)
{
    UserPath = DString();
    GoTo(".");
    Log("one");
    EXPECT_EQ("one by 0.00e+00\r\n", folder.Read("Log.txt"));
    EXPECT_EQ("(missing)", LogText());
}

TEST_F(LogLines, FollowTheUserPath)
{
    folder.MakeFolder("user2");
    UserPath = Path("user2");
    Log("one");
    EXPECT_EQ("one by 0.00e+00\r\n", folder.Read("user2/Log.txt"));
}

TEST_F(LogLines, CostOneOpenEachWhereNothingFails)
{
    Faults const none(INT_MAX, 1, "OpenFile");
    Log("one");
    Log("two");
    EXPECT_EQ(2u, Faults::asked.size());
    EXPECT_TRUE(clock.sleeps.empty());
}

// ---- A log that can't be written -------------------------------------------------------------

class LogAttempts : public FilesTest {
protected:
    LogAttempts() { folder.MakeFolder("user/Log.txt"); }
    /// Takes the folder out of the way of the log.
    void Unlock() { std::filesystem::remove(folder.native("user/Log.txt")); }
};

TEST_F(LogAttempts, AreFiveWithASleepAfterEach)
{
    Log("lost");
    EXPECT_EQ(std::vector<int>(5, 10), clock.sleeps);
    EXPECT_TRUE(std::filesystem::is_empty(folder.native("user/Log.txt")));
}

TEST_F(LogAttempts, OpenTheFileFiveTimes)
{
    Faults const none(INT_MAX, 1, "OpenFile");
    Log("lost");
    EXPECT_EQ(5u, Faults::asked.size());
}

TEST_F(LogAttempts, KeepTheLineIfTheLockGoesWithTheTimeOfTheOneThatWorked)
{
    char const *const times[] = {"1.00e-02", "2.00e-02", "3.00e-02", "4.00e-02"};
    for (std::size_t n = 1; n <= 4; ++n) {
        std::filesystem::remove_all(folder.native("user/Log.txt"));
        folder.MakeFolder("user/Log.txt");
        clock.counts = 0;
        clock.sleeps.clear();
        clock.AtSleep(n, [&] { Unlock(); });
        Log("kept");
        EXPECT_EQ("kept by "s + times[n - 1] + "\r\n", LogText());
        EXPECT_EQ(std::vector<int>(n, 10), clock.sleeps);
    }
}

TEST_F(LogAttempts, LoseTheLineIfTheLockGoesAfterTheFifth)
{
    clock.AtSleep(5, [&] { Unlock(); });
    Log("lost");
    EXPECT_EQ(5u, clock.sleeps.size());
    EXPECT_EQ("(missing)", LogText());
}

TEST_F(LogAttempts, MakeThePathAfresh)
{
    folder.MakeFolder("user2");
    clock.AtSleep(2, [&] { UserPath = Path("user2"); });
    Log("kept");
    EXPECT_EQ("kept by 2.00e-02\r\n", folder.Read("user2/Log.txt"));
}

TEST_F(LogAttempts, AreEnoughForFourFaultsOfTheDisk)
{
    Unlock();
    for (int nFaults = 1; nFaults <= 5; ++nFaults) {
        folder.Write("user/Log.txt");
        Faults const faults(1, nFaults, "OpenFile");
        Log("m");
        EXPECT_EQ(nFaults<5, LogText().size()> 0) << nFaults;
    }
}

TEST_F(LogAttempts, LoseNoLineToAFaultThatPasses)
{
    Unlock();
    ForEveryFault(
        FaultKind::Once, [&] { folder.Write("user/Log.txt", "old\r\n"); },
        [&] {
            clock.counts = 0;
            Log("one");
            Log("two");
        },
        [&] {
            EXPECT_EQ("old\r\none by ", LogText().substr(0, 12));
            EXPECT_NE(std::string::npos, LogText().find("\r\ntwo by "));
        });
}

TEST_F(LogAttempts, GiveUpWhereThereIsNoFolder)
{
    UserPath = Path("missing");
    Log("lost");
    EXPECT_EQ(5u, clock.sleeps.size());
    EXPECT_FALSE(folder.Has("missing"));
}

// ---- A new log -------------------------------------------------------------------------------

class NewLog : public FilesTest {
protected:
    NewLog()
    {
        ComputerName = "MyPC";
        VodrelPath = "C:\\sys";
        clock.counts = 12500;
    }
};

TEST_F(NewLog, BeginsWithTimeMachineAndInstallation)
{
    struct Row {
        long long seconds;
        char const *zone, *date;
    } const rows[] = {
        {1706702400, "UTC0", "01/31/2024 12:00:00"},  {1706702400, "CET-1CEST,M3.5.0,M10.5.0/3", "01/31/2024 13:00:00"},
        {1720000000, "CET-1", "07/03/2024 10:46:40"}, {1706702400, "EST5EDT,M3.2.0,M11.1.0", "01/31/2024 07:00:00"},
        {0, "UTC0", "01/01/1970 00:00:00"},
    };
    for (Row const &row : rows) {
        HostVariable const zone("TZ", row.zone);
        clock.unixSeconds = row.seconds;
        ClearLog();
        EXPECT_EQ("Log initialized at "s + row.date +
                      " by 1.25e-02\r\nVodrel running on MyPC by 1.25e-02\r\nVodrelpath is C:\\sys by 1.25e-02\r\n",
                  LogText());
    }
}

TEST_F(NewLog, ReplacesTheOldOne)
{
    folder.Write("user/LOG.TXT", "old");
    ClearLog();
    EXPECT_FALSE(folder.Has("user/LOG.TXT"));
    EXPECT_EQ("Log initialized at ", LogText().substr(0, 19));
}

TEST_F(NewLog, OfNothingKnownHasEmptyNames)
{
    ComputerName = VodrelPath = DString();
    ClearLog();
    EXPECT_NE(std::string::npos,
              LogText().find("\r\nVodrel running on  by 1.25e-02\r\nVodrelpath is  by 1.25e-02\r\n"));
}

TEST_F(NewLog, GoesOnInTheOldOneThatCannotBeDeleted)
{
    folder.Write("user/Log.txt", "old\r\n");
    Faults const faults(1, INT_MAX, "DeleteMatching");
    ClearLog();
    EXPECT_EQ("old\r\nLog initialized at ", LogText().substr(0, 24));
}

// ---- Notification ----------------------------------------------------------------------------

struct RecordingNotifier : DNotify {
    void Notify(int code, int arg, DString const &text) override
    {
        calls.push_back(std::to_string(code) + " " + std::to_string(arg) + " " + bytesOf(text));
    }
    Strings calls;
};

class Notification : public FilesTest {
protected:
    /// What a call prints on standard output.
    template <typename Call>
    std::string Printed(Call call)
    {
        testing::internal::CaptureStdout();
        call();
        return testing::internal::GetCapturedStdout();
    }
    RecordingNotifier notifier;
};

using Road = void (*)(DString const &);

TEST_F(Notification, GoesToTheNotifierByItsCode)
{
    SetNotify(&notifier);
    std::string const printed = Printed([] {
        Display("d");
        Message("m");
        MsgBox("b");
        MacroCallback("c");
        ::Notify(5, 0, "l");
        ::Notify(-3, INT_MAX, fromBytes("a\0b"s));
        Message(DString());
        Message(nullString());
        MacroCallback(DString());
    });
    EXPECT_EQ((Strings{"1 0 d", "2 0 m", "7 0 b", "10 0 c", "5 0 l", "-3 2147483647 a\0b"s, "2 0 ", "2 0 ", "10 0 "}),
              notifier.calls);
    EXPECT_EQ("", printed);
    EXPECT_EQ("(missing)", LogText());
}

TEST_F(Notification, IsPrintedWhereThereIsNoNotifier)
{
    Road const roads[] = {Display, Message, MsgBox, [](DString const &text) { ::Notify(5, 1, text); },
                          [](DString const &text) { ::Notify(10, 0, text); }};
    for (Road road : roads) {
        EXPECT_EQ("text\n", Printed([&] { road("text"); }));
        EXPECT_EQ("\n", Printed([&] { road(DString()); }));
        EXPECT_EQ("\n", Printed([&] { road(nullString()); }));
        EXPECT_EQ("text\n\n", Printed([&] { road("text\n"); }));
        EXPECT_EQ("100%s%n%d\n", Printed([&] { road("100%s%n%d"); }));
        EXPECT_EQ("a\xC9\xFF\n", Printed([&] { road("a\xC9\xFF"); }));
        EXPECT_EQ("a\n", Printed([&] { road(fromBytes("a\0b"s)); }));
    }
    EXPECT_EQ("(missing)", LogText()); // code 5, too
}

TEST_F(Notification, OfAMacroWithoutANotifierGoesNowhere)
{
    EXPECT_EQ("", Printed([] { MacroCallback("text"); }));
    EXPECT_EQ("(missing)", LogText());
}

TEST_F(Notification, NotifierIsKeptUntilAnotherOrNoneIsSet)
{
    RecordingNotifier another;
    SetNotify(&notifier);
    SetNotify(&another);
    Message("m");
    SetNotify(nullptr);
    EXPECT_EQ("n\n", Printed([] { Message("n"); }));
    EXPECT_TRUE(notifier.calls.empty());
    EXPECT_EQ((Strings{"2 0 m"}), another.calls);
}

TEST_F(Notification, PollIsFalse)
{
    EXPECT_FALSE(notifier.Poll());
}

TEST_F(Notification, QNotifierIsStored)
{
    struct Host : QNotify {
        void ShotChanged(DString name, int gnum, long long word, bool flag) override
        {
            call = bytesOf(name) + std::to_string(gnum) + std::to_string(word) + std::to_string(flag);
        }
        std::string call;
    } host;
    SetQNotify(&host);
    ASSERT_EQ(&host, QNot);
    QNot->Reserved();
    QNot->ShotChanged("s", -1, 0, false);
    EXPECT_EQ("s-100", host.call);
    SetQNotify(nullptr);
    EXPECT_EQ(nullptr, QNot);
}

#if defined __x86_64__ && defined __GNUC__
/// The place of a virtual operation in the table of its class, by the form of a pointer to it.
template <typename Member>
std::size_t PlaceOf(Member member)
{
    std::size_t words[2];
    static_assert(sizeof member == sizeof words, "a place and an offset");
    std::memcpy(words, &member, sizeof words);
    return (words[0] - 1) / sizeof(void *);
}

TEST_F(Notification, TablesKeepTheirOrder)
{
    EXPECT_EQ(0u, PlaceOf(&DNotify::Notify));
    EXPECT_EQ(1u, PlaceOf(&DNotify::Poll));
    EXPECT_EQ(0u, PlaceOf(&QNotify::Reserved));
    EXPECT_EQ(1u, PlaceOf(&QNotify::ShotChanged));
}
#endif

// ---- The console notifier --------------------------------------------------------------------

class ConsoleNotifier : public Notification {
protected:
    ConsoleNotifier() { SetNotify(&CNotifier); }
};

TEST_F(ConsoleNotifier, PrintsMessagesWithOneLineEnd)
{
    for (DNotify *const console : {static_cast<DNotify *>(&CNotifier), static_cast<DNotify *>(&IDLNotifier)}) {
        SetNotify(console);
        EXPECT_EQ("text\n", Printed([] { Message("text"); }));
        EXPECT_EQ("text\n", Printed([] { Message("text\n"); }));
        EXPECT_EQ("text\n\n", Printed([] { Message("text\n\n"); }));
        EXPECT_EQ("\n", Printed([] { Message("\n"); }));
        EXPECT_EQ("", Printed([] { Message(DString()); }));
        EXPECT_EQ("", Printed([] { Message(nullString()); }));
        EXPECT_EQ("100%s%n%d\n", Printed([] { Message("100%s%n%d"); }));
        EXPECT_EQ("100%d\n", Printed([] { Message("100%d\n"); }));
        EXPECT_EQ("text\n", Printed([] { ::Notify(2, 12345, "text"); }));
    }
    EXPECT_EQ("(missing)", LogText());
}

TEST_F(ConsoleNotifier, LogsTextsForTheLog)
{
    EXPECT_EQ("", Printed([] {
                  ::Notify(5, 0, "one");
                  ::Notify(5, 77, "two\n");
                  ::Notify(5, 0, DString());
                  ::Notify(5, 0, nullString());
              }));
    EXPECT_EQ("one by 0.00e+00\r\ntwo\n by 0.00e+00\r\n", LogText());
}

TEST_F(ConsoleNotifier, DropsEverythingElse)
{
    EXPECT_EQ("", Printed([] {
                  Display("text");
                  MsgBox("text");
                  MacroCallback("text");
                  for (int code : {0, 1, 3, 4, 6, 7, 8, 9, 10, 11, -1, -2, -5, INT_MAX, INT_MIN, 258, 261})
                      ::Notify(code, 0, "text");
              }));
    EXPECT_EQ("(missing)", LogText());
}

TEST_F(ConsoleNotifier, MayBeAHostsOwn)
{
    CFNotify own;
    SetNotify(&own);
    EXPECT_EQ("text\n", Printed([] { Message("text"); }));
    EXPECT_FALSE(own.Poll());
    SetNotify(nullptr);
}

#if defined __linux__
TEST_F(ConsoleNotifier, FlushesWhatItPrints)
{
    std::size_t pending = 1;
    Printed([&] {
        std::printf("in the buffer");
        Message("text");
        pending = __fpending(stdout);
    });
    EXPECT_EQ(0u, pending);
}
#endif

} // namespace
