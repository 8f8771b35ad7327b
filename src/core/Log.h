/// What the library has to say: to the log, a text file that is opened, appended to and closed for
/// each line, so that it survives any crash and can be shared by processes; or to a notifier that the host installs.
#pragma once

#include "foundation/DString.h"

/// Implemented by hosts; receives all notifications.
class VODREL_API DNotify {
public:
    /// `code`: 1 status text, 2 message for the user, 5 text for the log, 7 message box, 10 macro text.
    /// `arg` is 0 for all of these.
    virtual void Notify(int code, int arg, DString const &text) = 0;
    /// The library never calls it.
    virtual bool Poll();
    virtual ~DNotify();
};

/// The console notifier: prints messages for the user, with a line end unless they have one, logs texts for the log,
/// and drops everything else, empty texts too.
class VODREL_API CFNotify : public DNotify {
public:
    void Notify(int code, int arg, DString const &text) override;
    ~CFNotify() override;
};

/// Implemented by hosts that want to know when the C interface has changed the current shot.
class VODREL_API QNotify {
public:
    /// Keeps `ShotChanged` second in the table; the library never calls it.
    virtual void Reserved();
    /// The current shot was changed or created and is `name`. The library passes -1, 0 and false.
    virtual void ShotChanged(DString name, int gnum, long long word, bool flag) = 0;

protected:
    ~QNotify() = default;
};

/// Switches the library's lines about progress; doesn't gate `Log` itself.
extern VODREL_API bool Logging;
extern VODREL_API QNotify *QNot;

/// Appends a line to "Log.txt" in the per-user folder: the message, " by ", the seconds since start-up. Five
/// attempts, 10 ms apart; then the line is lost without a word. Before start-up the file is in the current folder.
VODREL_API void Log(DString const &message);
/// The same, for lines about progress: only while `Logging` is set.
void LogProgress(DString const &message);
/// Starts a new log with three lines about time, machine and installation.
VODREL_API void ClearLog();

/// Go to the notifier, or to standard output if none is installed (`MacroCallback`: nowhere).
VODREL_API void Display(DString const &text);
VODREL_API void Message(DString const &text);
VODREL_API void MsgBox(DString const &text);
VODREL_API void MacroCallback(DString const &text);
VODREL_API void Notify(int code, int arg, DString const &text);

/// Plain stores: the host keeps what it installs, and null takes it away. `CoreInit` clears both.
VODREL_API void SetNotify(DNotify *notifier);
VODREL_API void SetQNotify(QNotify *notifier);

extern DNotify *InstalledNotifier;
extern double StartTime; ///< of `CoreInit`, by `Timer`
extern CFNotify CNotifier;
extern CFNotify IDLNotifier;
