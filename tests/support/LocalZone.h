/// The local time zone of the process for the life of the object, in the form of TZ ("UTC0",
/// "CET-1CEST,M3.5.0,M10.5.0/3").
#pragma once

#include <cstdlib>
#include <ctime>
#include <string>

class LocalZone {
public:
    explicit LocalZone(char const *zone)
    {
        if (char const *const current = std::getenv("TZ")) {
            had = true;
            before = current;
        }
        put(zone);
    }
    LocalZone(LocalZone const &) = delete;
    LocalZone &operator=(LocalZone const &) = delete;
    ~LocalZone() { put(had ? before.c_str() : nullptr); }

private:
    static void put(char const *zone)
    {
#if defined _WIN32
        _putenv_s("TZ", zone ? zone : "");
        _tzset();
#else
        if (zone) setenv("TZ", zone, 1);
        else unsetenv("TZ");
        tzset();
#endif
    }

    bool had = false;
    std::string before;
};
