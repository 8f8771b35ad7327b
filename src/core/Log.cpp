#include "core/Log.h"

#include <cstdio>

#include "files/DFile.h"
#include "files/PathUtils.h"

namespace {

enum NotifyCode { StatusText = 1, UserMessage = 2, LogText = 5, MessageBox = 7, MacroText = 10 };

int const logAttempts = 5;
int const logPause = 10; // milliseconds

DString logFile()
{
    return AppendPathElts(GetUserPath(), "Log.txt");
}

DString secondsText(double seconds)
{
    char text[16];
    int const limit = sizeof text;
    int const n = PrintBounded(text, limit, "%.2e", seconds);
    return DString(text, n);
}

void print(DString const &text, bool lineEnd)
{
    if (~text) std::fputs(text.c_str(), stdout);
    if (lineEnd) std::fputc('\n', stdout);
}

} // namespace

bool DNotify::Poll()
{
    return false;
}

DNotify::~DNotify() = default;

CFNotify::~CFNotify() = default;

void QNotify::Reserved() {}

void CFNotify::Notify(int code, int, DString const &text)
{
    if (!text) return;
    if (code == UserMessage) {
        print(text, text[text.Len() - 1] != '\n');
        std::fflush(stdout);
    }
    if (code == LogText) Log(text);
}

void Log(DString const &message)
{
    for (int attempt = 0; attempt < logAttempts; ++attempt) {
        double const elapsed = Timer() - StartTime;
        DString const line = message + " by " + secondsText(elapsed < 0 ? 0 : elapsed);
        if (DFile::WriteLine(logFile(), line)) return;
        DSleep(logPause);
    }
}

void LogProgress(DString const &message)
{
    if (Logging) Log(message);
}

void ClearLog()
{
    DeleteFileD(logFile());
    Log("Log initialized at " + Now());
    Log("Vodrel running on " + GetComputerNameD());
    Log("Vodrelpath is " + GetVodrelPath());
}

void Notify(int code, int arg, DString const &text)
{
    if (InstalledNotifier) InstalledNotifier->Notify(code, arg, text);
    else print(text, true);
}

void Display(DString const &text)
{
    Notify(StatusText, 0, text);
}

void Message(DString const &text)
{
    Notify(UserMessage, 0, text);
}

void MsgBox(DString const &text)
{
    Notify(MessageBox, 0, text);
}

void MacroCallback(DString const &text)
{
    if (InstalledNotifier) InstalledNotifier->Notify(MacroText, 0, text); // nobody else could take it
}

void SetNotify(DNotify *notifier)
{
    InstalledNotifier = notifier;
}

void SetQNotify(QNotify *notifier)
{
    QNot = notifier;
}
