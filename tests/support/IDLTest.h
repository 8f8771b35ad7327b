/// The vocabulary of the tests of the functions for IDL: each is called as CALL_EXTERNAL does, with the number of
/// arguments and a vector of pointers, in a process that isn't one of a C client. The installation is the folder
/// "vodrel" of a fresh system, the experiment `X\E`.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <ostream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "core/StartUp.h"
#include "experiment/Experiment.h"
#include "interfaces/VodrelIDL.h"
#include "support/FreshSystem.h"
#include "support/WaveformBytes.h"

using Bits = std::vector<std::uint32_t>;

/// The floats that a call gets and gives, with a canary behind them.
struct Floats {
    explicit Floats(std::vector<float> const &given) : values(given) { values.push_back(-77.0f); }

    /// As bit patterns, so that no two different values count as equal.
    Bits Get() const
    {
        EXPECT_EQ(-77.0f, values.back());
        Bits bits;
        for (std::size_t i = 0; i + 1 < values.size(); i++) bits.push_back(FloatBits(values[i]));
        return bits;
    }
    std::vector<float> values;
};

inline Bits BitsOfAll(std::vector<float> const &values)
{
    return Floats(values).Get();
}

/// What `GetWaveformInfoIDL` answers.
struct Info {
    int status;
    float start;
    float step;
    int n;
};

inline bool operator==(Info const &a, Info const &b)
{
    return a.status == b.status && a.n == b.n && FloatBits(a.start) == FloatBits(b.start) &&
           FloatBits(a.step) == FloatBits(b.step);
}

inline std::ostream &operator<<(std::ostream &out, Info const &info)
{
    return out << info.status << ": " << info.n << " from " << info.start << " in steps of " << info.step;
}

class IDLTest : public testing::Test {
protected:
    using Function = int(int argc, void *argv[]);

    IDLTest() : system(false), wasExternal(ExternalInit)
    {
        Expt = Experiment();
        ExternalInit = false;
    }
    ~IDLTest() override
    {
        Expt = Experiment();
        ExternalInit = wasExternal;
    }

    static int Call(Function *function, std::initializer_list<void const *> arguments)
    {
        std::vector<void *> vector;
        for (void const *argument : arguments) vector.push_back(const_cast<void *>(argument));
        return function(static_cast<int>(vector.size()), vector.data());
    }

    std::string path(std::string const &relative) const { return system.path(relative); }

    int Initialize(std::string const &installation, std::string const &folder) const
    {
        return Call(InitializeVodrelIDL, {installation.c_str(), folder.c_str()});
    }
    void Open() { EXPECT_EQ(0, Initialize(path("vodrel"), path("X\\E"))); }
    static int Create(char const *shot) { return Call(CreateShotIDL, {shot}); }
    static int Set(char const *shot) { return Call(SetShotIDL, {shot}); }
    void OpenWithShot(char const *shot = "A1")
    {
        Open();
        EXPECT_EQ(0, Create(shot));
    }
    static float Scalar(char const *formula)
    {
        float result = -77.0f;
        EXPECT_EQ(0, Call(GetScalarIDL, {formula, &result}));
        return result;
    }
    static int SetScalar(char const *name, float value) { return Call(SetScalarIDL, {name, &value}); }
    static int Wave(char const *name, float start, float step, int n, float *out)
    {
        return Call(GetWaveformIDL, {name, &start, &step, &n, out});
    }
    static Bits Wave(char const *name, float start, float step, int n)
    {
        Floats out(std::vector<float>(n > 0 ? static_cast<std::size_t>(n) : 0, -77.0f));
        EXPECT_EQ(0, Wave(name, start, step, n, out.values.data())) << name;
        return out.Get();
    }
    static Info WaveInfo(char const *name)
    {
        Info info = {0, -77.0f, -77.0f, -77};
        info.status = Call(GetWaveformInfoIDL, {name, &info.start, &info.step, &info.n});
        return info;
    }
    static int SetWave(char const *name, float start, float step, int n, float const *data)
    {
        return Call(SetWaveformIDL, {name, &start, &step, &n, data});
    }

    template <typename Action>
    static std::string Printed(Action action)
    {
        testing::internal::CaptureStdout();
        action();
        return testing::internal::GetCapturedStdout();
    }

    static std::string ShotName() { return Plain(Expt.GetShotName()); }
    std::string ShotFile(std::string const &file) const { return system.folder.Read("X/E/Shots/ShotA1/" + file); }
    void WriteShotFile(std::string const &file, std::string const &bytes) const
    {
        system.folder.Write("X/E/Shots/ShotA1/" + file, bytes);
    }

    /// The whole of a new log.
    std::string LogStart(std::string const &installation = "vodrel") const
    {
        std::string const date = FreshSystem::Date;
        return LogLine("Log initialized at " + date) + LogLine("Vodrel running on " + Platform::ComputerName()) +
               LogLine("Vodrelpath is " + path(installation)) + LogLine("Initialized by IDL at " + date);
    }

    FreshSystem system;

private:
    bool const wasExternal;
};

inline std::vector<float> const Samples = {1.0f, 2.0f, -0.5f};

/// The file of the samples 1, 2, -0.5 from 1.5 s in steps of 0.5 s.
inline WvfRows StoredRows()
{
    WvfRows rows = SampleRows();
    for (char const *zero : {"t4", "t5", "timeShift", "scopeValue", "t1", "t2", "t3", "offset", "scopeDelay",
                             "scopeDelay2", "scopeValue2", "scopeValue3"})
        rows.Set(zero, "00 00 00 00");
    rows.Set("calibration", "00 00 80 3F").Set("attenuation", "00 00 80 3F"); // 1
    rows.Set("timeStep", "00 00 00 3F").Set("start", "00 00 C0 3F");          // 0.5, 1.5
    rows.Set("maxValue", "00 00 00 40").Set("minValue", "00 00 00 BF");       // 2, -0.5
    rows.Set("pointOfMax", "02 00 00 00").Set("pointOfMin", "03 00 00 00");
    rows.Set("scaleUnit", "00 00 00 3F"); // 0.5
    rows.Set("units length", "00 00").Set("units", "").Set("note length", "00 00").Set("note", "");
    return rows.Set("samples", "00 00 80 3F 00 00 00 40 00 00 00 BF");
}
