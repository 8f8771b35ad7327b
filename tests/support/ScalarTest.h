/// The vocabulary of the tests of formulas and labels: the shot S1 with values that a test lists, formulas with the
/// value that each must have to the bit, and a host that knows names of its own.
#pragma once

#include <cstdio>
#include <map>
#include <string>
#include <vector>

#include "support/ExperimentTest.h"
#include "support/WaveformBytes.h"

/// What a formula without a value gives.
inline float const none = BitsFloat(0xFF7843B0);

/// A float as a failing test prints it, with its bits.
inline std::string Shown(float value)
{
    if (FloatBits(value) == FloatBits(none)) return "none";
    char text[40];
    std::snprintf(text, sizeof text, "%.9g", static_cast<double>(value));
    return text + (" (" + HexOf(value) + ")");
}

/// A formula and its value.
struct Formula {
    std::string text;
    float value;
};

/// A host that knows names of its own, and remembers for which it was asked.
struct Host {
    static inline std::map<std::string, float> values;
    static inline std::vector<std::string> asked;

    static bool Lookup(DString const &name, float &value)
    {
        asked.push_back(Plain(name));
        auto const known = values.find(Plain(name));
        if (known == values.end()) return false;
        value = known->second;
        return true;
    }
};

/// Values of many kinds and spellings, for tests of what a formula makes of a name.
inline char const *const ManyValues =
    "a=10\r\nb=5\r\nx=-2\r\ne=8\r\nAe=100\r\nk=1000.00006\r\nHi=high\r\nYes=True\r\nLoud=TRUE\r\nSoft=true\r\nNo="
    "False\r\n"
    "Nearly=Truer\r\na+b=21\r\na-b=31\r\na - b=32\r\na -b=33\r\nmy key=41\r\na1e-5=51\r\n.e-5=61\r\n1ee=9\r\n-b=71\r\n"
    "a5=11\r\nabc2=81\r\na1.5574077=91\r\na0=92\r\nsqrt4=93\r\nln2=95\r\n(1)=96\r\n2=99\r\nsum=1+2\r\nref=[b]\r\n"
    "mark=![b]\r\nneg=-3";

class ScalarTest : public ExperimentTest {
protected:
    ScalarTest()
    {
        Host::values.clear();
        Host::asked.clear();
    }

    /// Makes S1 of group 0 current, with these lines as its values.
    void Shot(std::string const &lines)
    {
        Open();
        Fields("S1", lines);
        Set("S1", 0);
    }
    /// Puts the values of a shot of group 0 in its file.
    void Fields(std::string const &shot, std::string const &lines)
    {
        Write(ShotIn(0, shot) + "/Scalars.ini", "[Fields]\r\n" + lines);
    }

    float Of(std::string const &text, ScalarLookup lookup = nullptr) { return expt.GetScalarData(Dstr(text), lookup); }

    void Check(std::vector<Formula> const &rows, ScalarLookup lookup = nullptr)
    {
        for (Formula const &row : rows) EXPECT_EQ(Shown(row.value), Shown(Of(row.text, lookup))) << row.text;
    }

    /// The value of a formula, and then the names for which the host was asked, in their order.
    std::string Asked(std::string const &text)
    {
        Host::asked.clear();
        std::string all = Shown(Of(text, Host::Lookup)) + ":";
        for (std::string const &one : Host::asked) all += " <" + one + ">";
        return all;
    }
};

// How long a long text is. The sanitizer's own search for a text reads to the end at each call.
#if defined __SANITIZE_ADDRESS__
int const many = 10000;
int const megabyte = 1 << 16;
#else
int const many = 100000;
int const megabyte = 1 << 20;
#endif

/// The same text many times.
inline std::string Times(int n, std::string const &text)
{
    std::string all;
    all.reserve(static_cast<std::size_t>(n) * text.size());
    for (int i = 0; i < n; i++) all += text;
    return all;
}
