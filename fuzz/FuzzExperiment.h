/// An experiment in a folder of its own below that for temporary files, on which a target asks its questions. It is
/// made for the first of them and goes when the program ends. The host's settings aren't touched: the core isn't
/// started.
///
///     E\Shots\ShotA1      the current shot: values, the trace W, the matrix M, the particles P
///     E\Shots\ShotA2      a value, the trace W
///     E\Shots\ShotA9      nothing
///     Run1\ShotA3, A4     in group 1; A3 has a trace
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <random>
#include <string>

#include "VodrelCore.h"

/// Ends the program, which is a finding, if something doesn't hold that holds for any input.
inline void Require(bool holds)
{
    if (!holds) std::abort();
}

/// All bytes as a text, NULs too.
inline DString TextOf(std::uint8_t const *bytes, std::size_t size)
{
    DString text;
    if (size > 0) std::memcpy(text.GetBuffer(static_cast<int>(size)), bytes, size);
    return text;
}

class FuzzExperiment {
public:
    /// Made at the first call.
    static FuzzExperiment &The()
    {
        static FuzzExperiment made;
        return made;
    }
    FuzzExperiment(FuzzExperiment const &) = delete;
    FuzzExperiment &operator=(FuzzExperiment const &) = delete;
    ~FuzzExperiment()
    {
        SetNotify(nullptr);
        std::error_code ignored;
        std::filesystem::remove_all(folder, ignored);
    }

    /// A file below `E`, with slashes, of these bytes.
    void Write(std::string const &name, std::uint8_t const *bytes, std::size_t size) const
    {
        std::FILE *const file = std::fopen((folder / "E" / name).string().c_str(), "wb");
        Require(file != nullptr);
        if (size > 0) std::fwrite(bytes, 1, size, file);
        std::fclose(file);
    }

    /// The same file as the library names it.
    DString Path(std::string const &name) const { return systemName(folder / "E" / name); }

    Experiment experiment;

private:
    /// Nothing is said: a formula with a bracket missing would be told on standard output.
    struct Silence : DNotify {
        void Notify(int, int, DString const &) override {}
    };

    FuzzExperiment() : folder(std::filesystem::temp_directory_path() / ("vodrel-fuzz-" + ownName()))
    {
        SetNotify(&silence);
        for (char const *shot :
             {"E/Shots/ShotA1", "E/Shots/ShotA2", "E/Shots/ShotA9", "Run1/ShotA3", "Run1/ShotA4", "E/ShotLists"})
            std::filesystem::create_directories(folder / shot);
        writeText("E.ini", "[Groups]\r\n..\\Run*;;Runs=1\r\n");
        writeText("Shots/ShotA1/Scalars.ini", "[Fields]\r\nx=-2\r\na=1.5\r\nb=5\r\na5=3\r\nRun=7\r\nMode=high\r\n"
                                              "flag=True\r\na b-c=4\r\na[b]c=6\r\ntext=![x]\r\n");
        writeText("Shots/ShotA2/Scalars.ini", "[Fields]\r\nx=2\r\n");
        makeTrace("Shots/ShotA1/W");
        makeTrace("Shots/ShotA2/W");
        makeTrace("../Run1/ShotA3/W");
        makeMatrix("Shots/ShotA1/M");
        makeParticles("Shots/ShotA1/P");
        experiment.SetExperimentFolder(systemName(folder / "E"));
        Require(experiment.SetShot("A1", 0));
    }

    static std::string ownName() { return std::to_string(std::random_device()()); }

    static DString systemName(std::filesystem::path const &path)
    {
        std::string name = path.lexically_normal().generic_string();
        if (name[0] == '/') name.insert(0, "Z:");
        return TranslateFileName(name.c_str());
    }

    void writeText(std::string const &name, std::string const &text) const
    {
        Write(name, reinterpret_cast<std::uint8_t const *>(text.data()), text.size());
    }

    /// A triangle from 0 to 4 and back.
    void makeTrace(std::string const &name) const
    {
        Waveform trace(9);
        for (int i = 0; i < 9; ++i) trace[i] = static_cast<float>(i < 5 ? i : 8 - i);
        trace.Scale();
        Require(trace.Write(Path(name)));
    }

    void makeMatrix(std::string const &name) const
    {
        Matrix matrix(3, 2, 1);
        for (int i = 0; i < 6; ++i) matrix[i] = static_cast<float>(i);
        matrix.SetStep(1, 1, 0);
        matrix.SetStep(2, 1, 0);
        Require(matrix.Write(Path(name)));
    }

    void makeParticles(std::string const &name) const
    {
        ParticleGroup group(1);
        for (int i = 0; i < group.Count(); ++i) group[i] = static_cast<float>(i);
        Require(group.Write(Path(name)));
    }

    std::filesystem::path const folder;
    Silence silence;
};
