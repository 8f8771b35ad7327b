/// Replays files, or all files of folders, through a fuzz target, for builds without a fuzzer.

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const *bytes, std::size_t size);

namespace {

int replayed = 0;

void replayFile(std::filesystem::path const &path)
{
    std::ifstream file(path, std::ios::binary);
    std::vector<char> const bytes((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
    LLVMFuzzerTestOneInput(reinterpret_cast<std::uint8_t const *>(bytes.data()), bytes.size());
    ++replayed;
}

} // namespace

int main(int argc, char **argv)
{
    for (int i = 1; i < argc; ++i) {
        if (!std::filesystem::is_directory(argv[i])) {
            replayFile(argv[i]);
            continue;
        }
        for (auto const &entry : std::filesystem::directory_iterator(argv[i])) replayFile(entry.path());
    }
    std::printf("%d replayed\n", replayed);
    return replayed > 0 ? 0 : 1;
}
