/// A clock that stands still until a test moves it. Sleeps take no time: they are counted, and move it.
#pragma once

#include <functional>
#include <vector>

#include "platform/Platform.h"

class HandClock {
public:
    HandClock()
    {
        sleeps.clear();
        counts = unixSeconds = 0;
        countsPerSecond = 1000000;
        Platform::SetClock(&services);
    }
    HandClock(HandClock const &) = delete;
    HandClock &operator=(HandClock const &) = delete;
    ~HandClock()
    {
        Platform::SetClock(nullptr);
        onSleep = nullptr;
    }

    /// Calls `event` once, at the sleep of this number, counted from 1.
    static void AtSleep(std::size_t number, std::function<void()> event)
    {
        onSleep = [number, event] {
            if (sleeps.size() == number) event();
        };
    }

    static inline std::vector<int> sleeps; ///< milliseconds
    static inline long long counts = 0;    ///< of the high-resolution counter
    static inline long long countsPerSecond = 1000000;
    static inline long long unixSeconds = 0;

private:
    static long long unixtime() { return unixSeconds; }
    static long long counter() { return counts; }
    static long long frequency() { return countsPerSecond; }
    static void sleepfor(int milliseconds)
    {
        sleeps.push_back(milliseconds);
        counts += milliseconds * countsPerSecond / 1000;
        if (onSleep) onSleep();
    }

    static inline std::function<void()> onSleep;
    static inline Platform::Clock const services{unixtime, counter, frequency, sleepfor};
};
