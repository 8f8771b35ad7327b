/// Evaluates formulas for compare.py: in the shot of the experiment that its arguments name, one formula a line on
/// standard input, as pairs of hex digits, so that it can hold any byte. Prints a line for each: the bits of its value,
/// and the number of messages that it called for.

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <iostream>
#include <string>

#include "VodrelCore.h"

namespace {

class Counter : public DNotify {
public:
    void Notify(int code, int, DString const &) override
    {
        if (code == 2) ++messages;
    }
    int messages = 0;
};

DString systemPath(std::string path)
{
    if (path[0] == '/') path = "Z:" + path;
    for (char &c : path) {
        if (c == '/') c = '\\';
    }
    return DString(path.c_str());
}

DString fromHex(std::string const &digits)
{
    DString text;
    for (std::size_t i = 0; i + 1 < digits.size(); i += 2)
        text += static_cast<char>(std::stoi(digits.substr(i, 2), nullptr, 16));
    return text;
}

std::uint32_t bitsOf(float value)
{
    std::uint32_t bits;
    std::memcpy(&bits, &value, sizeof bits);
    return bits;
}

} // namespace

int main(int argc, char **argv)
{
    if (argc != 3) return 2;
    Counter counter;
    CoreInit("");
    SetNotify(&counter);
    Expt.SetExperimentFolder(systemPath(argv[1]));
    if (!Expt.SetShot(argv[2], 0)) return 1;
    for (std::string line; std::getline(std::cin, line);) {
        counter.messages = 0;
        float const value = Expt.GetScalarData(fromHex(line), nullptr);
        std::printf("%08X %d\n", static_cast<unsigned int>(bitsOf(value)), counter.messages);
    }
    SetNotify(nullptr);
    return 0;
}
