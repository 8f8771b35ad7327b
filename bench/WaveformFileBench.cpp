/// Waveforms to and from the disk, whole and by their headers alone.

#include <cstdio>
#include <cstdlib>

#include <fcntl.h>
#include <unistd.h>

#include "Beside.h"

namespace {

int const nSamples = 50000000;
std::size_t const nBytes = std::size_t(nSamples) * sizeof(float);
double const fewMegabytes = 4e6;

Waveform stored;

void prepare()
{
    stored.Size(nSamples);
    for (int i = 0; i < nSamples; ++i) stored[i] = static_cast<float>(i % 1000);
    stored.Scale();
    stored.Write(Beside::Path("Stored"));
}

// ---- All samples ----

void writeOurs()
{
    Beside::Require(stored.Write(Beside::Path("Written")));
}

void writeBare()
{
    Beside::WriteBare("Written.bare", "wb", stored.Data(), nBytes);
}

void readOurs()
{
    Waveform trace;
    Beside::Require(trace.Read(Beside::Path("Stored"), -1) && trace.npnts() == nSamples);
    benchmark::DoNotOptimize(trace.Data());
}

void readBare()
{
    Beside::ReadBare("Stored.wvf", nBytes);
}

// ---- The header ----

void readHeaderOurs()
{
    static DString const name = Beside::Path("Stored");
    static Waveform trace;
    Beside::Require(trace.Read(name, 0) && trace.fileCount == nSamples);
}

void readHeaderBare()
{
    static std::string const name = Beside::Native("Stored.wvf");
    char bytes[128];
    int const file = open(name.c_str(), O_RDONLY | O_CLOEXEC);
    Beside::Require(read(file, bytes, sizeof bytes) == sizeof bytes);
    close(file);
    benchmark::DoNotOptimize(bytes);
}

void declare()
{
    using namespace Beside;
    Measure("Waveform::Write of 50 million samples, beside fwrite", "", Speed(0.9), Work(writeOurs), Work(writeBare));
    Measure("Waveform::Read of 50 million samples, beside fread", "", Speed(0.9), Work(readOurs), Work(readBare));
    MeasureMemory("Waveform::Read of 50 million samples, peak memory", nBytes, fewMegabytes, readOurs);
    Measure("Waveform::Read of the header, beside open, read and close", "", 2.5, Work(readHeaderOurs),
            Work(readHeaderBare));
}

} // namespace

int main(int argc, char **argv)
{
    return Beside::Run(argc, argv, "Waveform files", prepare, declare);
}
