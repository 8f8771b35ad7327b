/// The per-user folder for programs that have the library as its users do, and can't put another folder in its place:
/// one of the test's own where the host lets a variable of the environment say so; on Windows that of the user who runs
/// the test, who under Wine is nobody's but the tests'.
///
///     HostUserFolder const user(folder.native("user"));
///     EXPECT_TRUE(user.Logged("Could not load module: " + path));
#pragma once

#include <cstdlib>
#include <fstream>
#include <ios>
#include <iterator>
#include <string>

#include "support/HostVariable.h"

class HostUserFolder {
public:
#if defined _WIN32
    explicit HostUserFolder(std::string const &) : folder(std::getenv("LOCALAPPDATA")) {}
#else
    explicit HostUserFolder(std::string const &native) : folder(native), variable("XDG_DATA_HOME", native) {}
#endif

    /// Whether a line of the log begins with this text, which no other test has in the log.
    bool Logged(std::string const &text) const
    {
        std::ifstream in(folder + "/Vodrel/Log.txt", std::ios::binary);
        std::string const log =
            "\n" + std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
        return log.find("\n" + text) != std::string::npos;
    }

private:
    std::string const folder;
#if !defined _WIN32
    HostVariable const variable;
#endif
};
