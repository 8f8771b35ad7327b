/// The system started afresh for one test: with a per-user folder of its own, a clock that stands still and counts
/// sleeps, a time zone with summer time, and a notifier that remembers what it hears. Everything is put back with the
/// end of the object. Used by the tests of experiments and of the flat functions.
///
///     FreshSystem system;
///     expt.SetExperimentFolder(Dstr(system.path("E")));
///     EXPECT_EQ("", system.Log());
#pragma once

#include <algorithm>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include "core/Log.h"
#include "core/StartUp.h"
#include "platform/Platform.h"
#include "support/LocalZone.h"
#include "support/NoHostNetwork.h"
#include "support/TempFolder.h"

/// All characters of a string, NULs too, in a form that a failing test prints.
inline std::string Plain(DString const &s)
{
    return std::string(s.c_str(), static_cast<std::size_t>(s.Len()));
}

inline DString Dstr(std::string const &s)
{
    DString out;
    if (!s.empty()) s.copy(out.GetBuffer(static_cast<int>(s.size())), s.size());
    return out;
}

/// Remembers what it hears, as "code:text".
class Listener : public DNotify {
public:
    void Notify(int code, int arg, DString const &text) override
    {
        heard.push_back(std::to_string(code) + (arg == 0 ? "" : "," + std::to_string(arg)) + ":" + Plain(text));
    }
    std::vector<std::string> heard;
};

/// A clock that stands still, at 8:13:20 on 10 June 2024 by the zone of `FreshSystem`, and remembers the sleeps that
/// were asked for instead of sleeping.
struct StandingClock {
    static inline long long now = 1718000000;
    static inline long long counts = 5000; // at 1000 a second
    static inline std::vector<int> sleeps;

    static Platform::Clock const *Clock()
    {
        static Platform::Clock const clock = [] {
            Platform::Clock c;
            c.unixTime = [] { return now; };
            c.counter = [] { return counts; };
            c.counterFrequency = [] { return 1000LL; };
            c.sleepFor = [](int milliseconds) { sleeps.push_back(milliseconds); };
            return c;
        }();
        return &clock;
    }
};

class FreshSystem {
public:
    static constexpr char const *Zone = "EET-2";
    static constexpr char const *Date = "06/10/2024 08:13:20";

    /// With `start` false the core isn't started: the test does it, or does without.
    explicit FreshSystem(bool start = true)
        : directory(std::filesystem::current_path()), userFolder(folder.path("user")), zone(Zone)
    {
        Platform::SetUserDataFolder(userFolder.c_str());
        StandingClock::now = 1718000000;
        StandingClock::counts = 5000;
        StandingClock::sleeps.clear();
        Platform::SetClock(StandingClock::Clock());
        if (!start) return;
        CoreInit(Dstr(path("install")));
        SetNotify(&listener);
    }
    FreshSystem(FreshSystem const &) = delete;
    FreshSystem &operator=(FreshSystem const &) = delete;
    ~FreshSystem()
    {
        SetNotify(nullptr);
        SetQNotify(nullptr);
        Logging = false;
        VoIni = DIni();
        Platform::SetClock(nullptr);
        Platform::SetFaultHook(nullptr);
        Platform::SetUserDataFolder(nullptr);
        Platform::ClearShares();
        std::filesystem::current_path(directory);
    }

    std::string path(std::string const &relative) const { return folder.path(relative); }

    /// What was said to the notifier since the last question, one line each.
    std::string Heard()
    {
        std::string all;
        for (std::string const &one : listener.heard) all += one + "\n";
        listener.heard.clear();
        return all;
    }

    /// The log, "(missing)" if there is none.
    std::string Log() const { return folder.Read("user/Vodrel/Log.txt"); }

    /// The sleeps since the last question.
    std::vector<int> Sleeps() const { return std::exchange(StandingClock::sleeps, {}); }

    /// The sorted names of all that a folder holds, with blanks between; `relative` has slashes.
    std::string Names(std::string const &relative) const
    {
        std::vector<std::string> names;
        std::error_code error;
        for (auto const &entry : std::filesystem::directory_iterator(folder.native(relative), error))
            names.push_back(entry.path().filename().string());
        std::sort(names.begin(), names.end());
        std::string all;
        for (std::string const &name : names) all += (all.empty() ? "" : " ") + name;
        return all;
    }

    void GoTo(std::string const &relative) const { std::filesystem::current_path(folder.native(relative)); }

    TempFolder const folder;
    Listener listener;

private:
    NoHostNetwork const noNetwork;
    std::filesystem::path const directory;
    std::string const userFolder;
    LocalZone const zone;
};

/// A line as the log holds it while the clock of `FreshSystem` stands.
inline std::string LogLine(std::string const &message)
{
    return message + " by 0.00e+00\r\n";
}
