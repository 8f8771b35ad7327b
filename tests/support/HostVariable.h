/// An environment variable of the host for the life of the object, put back at the end; and what the time zone is,
/// which hangs on one.
#pragma once

#include <cstdlib>
#include <ctime>
#include <string>

class HostVariable {
public:
    HostVariable(char const *name, std::string const &value) : HostVariable(name, value.c_str()) {}
    /// Null takes the variable away.
    HostVariable(char const *name, char const *value) : variable(name)
    {
        if (char const *const old = std::getenv(name)) {
            before = old;
            wasSet = true;
        }
        set(value);
    }
    HostVariable(HostVariable const &) = delete;
    HostVariable &operator=(HostVariable const &) = delete;
    ~HostVariable() { set(wasSet ? before.c_str() : nullptr); }

private:
    void set(char const *value) const
    {
#if defined _WIN32
        _putenv_s(variable.c_str(), value ? value : "");
        _tzset();
#else
        if (value) setenv(variable.c_str(), value, 1);
        else unsetenv(variable.c_str());
        tzset();
#endif
    }

    std::string const variable;
    std::string before;
    bool wasSet = false;
};
