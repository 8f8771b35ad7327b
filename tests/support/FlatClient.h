/// The words in which the tests of the flat functions speak: a stand-alone client in a fresh system, whose installation
/// is the folder "vodrel" there and whose experiment is `X\E` with the shot A1. And arrays of a caller that tell when
/// something beside them was touched.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "experiment/Experiment.h"
#include "interfaces/VodrelC.h"
#include "support/FreshSystem.h"

using Floats = std::vector<float>;

/// Bits compare where values don't: a NaN equals itself, and 0 isn't -0.
inline std::vector<std::uint32_t> BitsOfAll(Floats const &values)
{
    std::vector<std::uint32_t> bits(values.size());
    if (!values.empty()) std::memcpy(bits.data(), values.data(), values.size() * sizeof(float));
    return bits;
}

/// A block of the heap that ends where the array ends, so that a sanitizer sees the first value too many. None is null
/// but the one of a null array.
class ExactArray {
public:
    explicit ExactArray(std::size_t n, float value = 0) : values(new float[n])
    {
        for (std::size_t i = 0; i < n; ++i) values[i] = value;
    }
    explicit ExactArray(Floats const &source) : ExactArray(source.size())
    {
        for (std::size_t i = 0; i < source.size(); ++i) values[i] = source[i];
    }
    float *get() const { return values.get(); }

private:
    std::unique_ptr<float[]> values;
};

/// What a call puts into an array of `n` values, of which those that it leaves alone are `Untouched`. The call is made
/// twice: into a block that ends there, and between guards, for a build without sanitizer.
constexpr float Untouched = -4711.5f;

template <typename Call>
Floats Received(std::size_t n, Call call)
{
    std::size_t const guard = 16;
    ExactArray exact(n, Untouched);
    call(exact.get());
    Floats guarded(n + 2 * guard, Untouched);
    call(guarded.data() + guard);
    for (std::size_t i = 0; i < guard; ++i) {
        EXPECT_EQ(Untouched, guarded[i]) << "before the array, at " << i;
        EXPECT_EQ(Untouched, guarded[guard + n + i]) << "behind the array, at " << i;
    }
    Floats const received(exact.get(), exact.get() + n);
    Floats const again(guarded.data() + guard, guarded.data() + guard + n);
    EXPECT_EQ(BitsOfAll(received), BitsOfAll(again));
    return received;
}

class FlatClient : public testing::Test {
protected:
    FlatClient() : system(false) { Expt = Experiment(); }
    ~FlatClient() override { Expt = Experiment(); }

    std::string path(std::string const &relative) const { return system.path(relative); }

    /// Starts the library; a client can do so again, with another path.
    void Initialize(std::string const &folder = "vodrel") { InitializeVodrelC(path(folder).c_str()); }
    void Open()
    {
        Initialize();
        SetExperimentC(path("X\\E").c_str());
    }
    void OpenWithShot(char const *shot = "A1")
    {
        Open();
        EXPECT_EQ(1, CreateShotC(shot));
    }

    /// A file in the folder of shot A1.
    std::string ShotFile(std::string const &file) const { return system.folder.Read("X/E/Shots/ShotA1/" + file); }
    void PutShotFile(std::string const &file, std::string const &bytes) const
    {
        system.folder.Write("X/E/Shots/ShotA1/" + file, bytes);
    }
    std::string ShotFiles() const { return system.Names("X/E/Shots/ShotA1"); }

    /// What an action prints.
    template <typename Action>
    static std::string Printed(Action action)
    {
        testing::internal::CaptureStdout();
        action();
        return testing::internal::GetCapturedStdout();
    }

    FreshSystem system;
};
