#include "Beside.h"

#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <map>
#include <memory>
#include <stdexcept>

#include <sys/stat.h>
#include <unistd.h>

namespace {

#ifdef __clang__
char const *const compiler = __VERSION__;
#else
char const *const compiler = "g++ " __VERSION__;
#endif

std::string const peakOption = "--peak-of";

std::string folder;

/// What `MeasureMemory` does in a process of its own, by what it measures.
std::map<std::string, std::function<void()>> fillings;

[[noreturn]] void fail(std::string const &text)
{
    throw std::runtime_error(text);
}

// ---- Folder ----

class TemporaryFolder {
public:
    TemporaryFolder()
    {
        std::string name = std::filesystem::temp_directory_path() / "vodrel-bench-XXXXXX";
        if (!mkdtemp(name.data())) fail("can't make " + name);
        folder = name;
    }
    ~TemporaryFolder()
    {
        std::error_code error; // what can't be removed stays
        std::filesystem::remove_all(folder, error);
    }
};

// ---- Memory of a process ----

/// A line of the kernel's account of this process, in bytes.
double accountOf(std::string const &line)
{
    std::ifstream account("/proc/self/status");
    for (std::string word; account >> word;) {
        double kilobytes = 0;
        if (word == line && account >> kilobytes) return kilobytes * 1024;
    }
    fail("no " + line + " in /proc/self/status");
}

/// In the process of its own: prints how far the memory rose.
int printPeak(std::string const &what)
{
    double const before = accountOf("VmRSS:");
    fillings.at(what)();
    std::printf("%.0f\n", accountOf("VmHWM:") - before);
    return 0;
}

double peakOf(std::string const &what)
{
    std::string const program = std::filesystem::read_symlink("/proc/self/exe");
    std::string const command = "'" + program + "' " + peakOption + " '" + what + "' '" + folder + "'";
    std::unique_ptr<std::FILE, int (*)(std::FILE *)> const output(popen(command.c_str(), "r"), pclose);
    double bytes = 0;
    if (!output || std::fscanf(output.get(), "%lf", &bytes) != 1) fail("no answer from " + command);
    return bytes;
}

// ---- Turns ----

/// Takes the time while it runs: what the process has had of the processor, and what has passed.
class Stopwatch {
public:
    void Run(std::function<void()> const &what)
    {
        double const processorBegin = secondsOf(CLOCK_PROCESS_CPUTIME_ID);
        double const wallBegin = secondsOf(CLOCK_MONOTONIC);
        what();
        wall += secondsOf(CLOCK_MONOTONIC) - wallBegin;
        processor += secondsOf(CLOCK_PROCESS_CPUTIME_ID) - processorBegin;
    }

    double processor = 0;
    double wall = 0;

private:
    static double secondsOf(clockid_t clock)
    {
        timespec time;
        clock_gettime(clock, &time);
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
    }
};

Stopwatch takeTurns(benchmark::State &state, Beside::Work const &side)
{
    Stopwatch watch;
    if (!side.before) {
        watch.Run([&] {
            for (auto turn : state) side.turn();
        });
        return watch;
    }
    for (auto turn : state) {
        side.before();
        double const before = watch.wall;
        watch.Run(side.turn);
        state.SetIterationTime(watch.wall - before);
    }
    return watch;
}

void declareSide(std::string const &name, std::string const &unit, double atMost, Beside::Work const &side)
{
    auto const run = [side, unit, atMost](benchmark::State &state) {
        Stopwatch const watch = takeTurns(state, side);
        double const units = side.units * static_cast<double>(state.iterations());
        state.counters["processor"] = watch.processor / units;
        state.counters["wall"] = watch.wall / units;
        state.counters["at_most"] = atMost;
        state.SetLabel(unit);
    };
    auto *const declared = benchmark::RegisterBenchmark(name.c_str(), run);
    if (side.before) declared->UseManualTime();
    if (side.nTurns > 0) declared->Iterations(side.nTurns);
}

} // namespace

// ---- Files ----

std::string Beside::Native(std::string const &name)
{
    return folder + '/' + name;
}

DString Beside::Path(std::string const &name)
{
    return TranslateFileName(("Z:" + Native(name)).c_str());
}

void Beside::MakeFile(std::string const &name, std::string const &bytes, long long size)
{
    std::ofstream file(Native(name), std::ios::binary);
    file << bytes;
    file.close();
    if (!file) fail("can't write " + name);
    if (size > static_cast<long long>(bytes.size()) && truncate(Native(name).c_str(), size) != 0)
        fail("can't extend " + name);
}

void Beside::MakeFolder(std::string const &name)
{
    if (mkdir(Native(name).c_str(), 0777) != 0) fail("can't make " + name);
}

void Beside::WriteBare(char const *name, char const *mode, void const *bytes, std::size_t size)
{
    std::FILE *const file = std::fopen(Native(name).c_str(), mode);
    Require(std::fwrite(bytes, 1, size, file) == size);
    std::fclose(file);
}

void Beside::ReadBare(char const *name, std::size_t size)
{
    std::FILE *const file = std::fopen(Native(name).c_str(), "rb");
    void *const block = std::malloc(size);
    Require(std::fread(block, 1, size, file) == size);
    benchmark::DoNotOptimize(block);
    std::free(block);
    std::fclose(file);
}

// ---- Pairs ----

void Beside::Measure(std::string const &what, std::string const &unit, double atMost, Work const &ours,
                     Work const &bare)
{
    declareSide(what + "/ours", unit, atMost, ours);
    declareSide(what + "/bare", unit, atMost, bare);
}

void Beside::MeasureMemory(std::string const &what, double needed, double allowed, std::function<void()> filling)
{
    fillings[what] = std::move(filling);
    auto const run = [what, needed, allowed](benchmark::State &state) {
        double peak = 0;
        for (auto turn : state) peak = peakOf(what);
        state.counters["peak"] = peak;
        state.counters["needed"] = needed;
        state.counters["allowed"] = allowed;
    };
    benchmark::RegisterBenchmark((what + "/memory").c_str(), run)->Iterations(1);
}

// ---- The program ----

namespace {

int runAll(void (*prepare)(), void (*declare)())
{
    TemporaryFolder const temporary;
    Beside::MakeFolder("user");
    setenv("XDG_DATA_HOME", Beside::Native("user").c_str(), 1);
    CoreInit(Beside::Path("user"));
    prepare();
    declare();
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}

} // namespace

int Beside::Run(int argc, char **argv, std::string const &concern, void (*prepare)(), void (*declare)())
try {
    if (argc == 4 && argv[1] == peakOption) {
        folder = argv[3];
        declare();
        return printPeak(argv[2]);
    }
    benchmark::AddCustomContext("concern", concern);
    benchmark::AddCustomContext("compiler", compiler);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
    return runAll(prepare, declare);
} catch (std::exception const &problem) {
    std::fprintf(stderr, "%s\n", problem.what());
    return 1;
}
