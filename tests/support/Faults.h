/// Makes the disk fail at chosen operations, and keeps a record of those that were asked for.
#pragma once

#include <climits>
#include <functional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "platform/Platform.h"

class Faults {
public:
    /// Fails the operations from the `first` on (counted from 1), `count` of them; with a `service`, only
    /// operations of that name are counted and fail.
    explicit Faults(int first = INT_MAX, int count = 1, std::string const &service = std::string())
    {
        asked.clear();
        firstFault = first;
        nFaults = count;
        only = service;
        Platform::SetFaultHook(allow);
    }
    Faults(Faults const &) = delete;
    Faults &operator=(Faults const &) = delete;
    ~Faults() { Platform::SetFaultHook(nullptr); }

    /// The operations so far, by the name of their service.
    static inline std::vector<std::string> asked;

private:
    static bool allow(char const *operation)
    {
        if (!only.empty() && only != operation) return true;
        asked.push_back(operation);
        int const number = static_cast<int>(asked.size());
        return number < firstFault || number - firstFault >= nFaults;
    }

    static inline int firstFault = INT_MAX;
    static inline int nFaults = 0;
    static inline std::string only;
};

/// Whether the disk fails once, or fails and stays dead.
enum class FaultKind { Once, ForGood };

/// Runs `act` with the first disk operation failing, then with the second, and so on until no failure
/// is reached; each run is between a `prepare` and a `check` on a sound disk. Gives the number of failures tried.
inline int ForEveryFault(FaultKind kind, std::function<void()> const &prepare, std::function<void()> const &act,
                         std::function<void()> const &check)
{
    for (int n = 1; n < 2000; ++n) {
        SCOPED_TRACE("disk operation " + std::to_string(n) + " fails");
        prepare();
        {
            Faults const faults(n, kind == FaultKind::Once ? 1 : INT_MAX);
            act();
        }
        check();
        if (static_cast<int>(Faults::asked.size()) < n) return n - 1;
        if (testing::Test::HasFatalFailure()) break;
    }
    ADD_FAILURE() << "there was no end to the operations";
    return 0;
}
