/// A few slices out of a large matrix file: only they are read, and only they take memory.

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "Beside.h"

namespace {

int const edge = 1024;
int const nSlices = 256;
int const firstSlice = 100;
int const wantedSlices = 8;
std::size_t const sliceBytes = std::size_t(edge) * edge * sizeof(float);
std::size_t const wantedBytes = wantedSlices * sliceBytes;
double const fewMegabytes = 4e6;
float const filled = 1.5f;

template <typename Value>
void add(std::string &bytes, Value value)
{
    bytes.append(reinterpret_cast<char const *>(&value), sizeof value);
}

/// Of a file of version 4 with three uniform axes and no texts.
std::string header()
{
    std::string bytes;
    for (std::int32_t value : {4, 0, 3}) add(bytes, value); // version, skip length, rank
    for (std::int32_t size : {edge, edge, nSlices}) {
        add(bytes, size);
        add(bytes, 1.0f); // step
        add(bytes, 0.0f); // first coordinate
    }
    for (float value : {1.0f, 0.0f, 1.0f, 1.0f, 0.0f, 0.0f, 0.0f, 0.0f, 0.0f}) add(bytes, value);
    for (int text = 0; text < 3; ++text) add(bytes, std::int32_t(0));
    return bytes;
}

/// Where the slices begin that are asked for.
std::size_t const wantedOffset = header().size() + firstSlice * sliceBytes;

/// A file of 1 GB, of which only the slices that are asked for stand on the disk.
void prepare()
{
    Beside::MakeFile("Large.dmt", header(), static_cast<long long>(header().size() + nSlices * sliceBytes));
    std::FILE *const file = std::fopen(Beside::Native("Large.dmt").c_str(), "r+b");
    std::fseek(file, static_cast<long>(wantedOffset), SEEK_SET);
    std::vector<float> const values(wantedBytes / sizeof(float), filled);
    Beside::Require(std::fwrite(values.data(), 1, wantedBytes, file) == wantedBytes && std::fclose(file) == 0);
}

void readOurs()
{
    Matrix slices;
    Beside::Require(slices.Read(Beside::Path("Large"), firstSlice + wantedSlices, firstSlice));
    Beside::Require(static_cast<std::size_t>(slices.Count()) * sizeof(float) == wantedBytes && slices[0] == filled);
    benchmark::DoNotOptimize(slices.Data());
}

void readBare()
{
    std::FILE *const file = std::fopen(Beside::Native("Large.dmt").c_str(), "rb");
    std::fseek(file, static_cast<long>(wantedOffset), SEEK_SET);
    void *const block = std::malloc(wantedBytes);
    Beside::Require(std::fread(block, 1, wantedBytes, file) == wantedBytes);
    benchmark::DoNotOptimize(block);
    std::free(block);
    std::fclose(file);
}

void declare()
{
    using namespace Beside;
    Measure("Matrix::Read of 8 slices out of 1 GB, beside fread", "", 1.2, Work(readOurs), Work(readBare));
    MeasureMemory("Matrix::Read of 8 slices out of 1 GB, peak memory", wantedBytes, fewMegabytes, readOurs);
}

} // namespace

int main(int argc, char **argv)
{
    return Beside::Run(argc, argv, "Matrix files", prepare, declare);
}
