/// The local time zone of the process for the life of the object, in the form of TZ ("UTC0",
/// "CET-1CEST,M3.5.0,M10.5.0/3").
#pragma once

#include "support/HostVariable.h"

class LocalZone {
public:
    explicit LocalZone(char const *zone) : variable("TZ", zone) {}

    /// Whether the C runtime goes by the summer time of this zone, in July 2020; some know only the hours from UTC.
    bool KnowsSummerTime() const
    {
        std::time_t const july = 1593604800;
        std::tm const *const local = std::localtime(&july);
        return local && local->tm_isdst > 0;
    }

private:
    HostVariable const variable;
};
