/// A host that has set a locale with a decimal comma and Latin-1 letters, for the life of the object.
/// Such a locale is made with `localedef` in a temporary folder; where that can't be had an installed
/// one serves, and where there is none `available()` is false.
#pragma once

#include <clocale>
#include <cstdlib>
#include <string>

#include "support/TempFolder.h"

class CommaLocale {
public:
    CommaLocale() : set(make() || takeInstalled()) {}
    CommaLocale(CommaLocale const &) = delete;
    CommaLocale &operator=(CommaLocale const &) = delete;

    ~CommaLocale()
    {
        std::setlocale(LC_ALL, "C");
#if !defined _WIN32
        unsetenv("LOCPATH");
#endif
    }

    bool available() const
    {
        return set;
    }

private:
    static bool hasComma()
    {
        return std::string(std::localeconv()->decimal_point) == ",";
    }

    bool make() const
    {
#if defined _WIN32
        return false;
#else
        std::string const target = folder.native("de_DE.ISO-8859-1");
        std::string const command = "localedef --no-archive -c -i de_DE -f ISO-8859-1 '" + target + "' >/dev/null 2>&1";
        if (std::system(command.c_str()) != 0) return false;
        setenv("LOCPATH", folder.native().c_str(), 1);
        return std::setlocale(LC_ALL, "de_DE.ISO-8859-1") && hasComma();
#endif
    }

    static bool takeInstalled()
    {
#if !defined _WIN32
        unsetenv("LOCPATH");
#endif
        for (char const *name : {"de_DE.iso88591", "de_DE.UTF-8", "fr_FR.UTF-8", "German_Germany.1252"})
            if (std::setlocale(LC_ALL, name) && hasComma()) return true;
        return false;
    }

    TempFolder const folder;
    bool const set;
};
