/// Copies of texts, and a large text taken apart into lines.

#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "Beside.h"

namespace {

int const nCopies = 100;

std::vector<DString> strings;
DString megabytes10, megabytes100;

/// Lines of 20 to 79 characters, ended by CR LF, of so many bytes in all.
DString linesOf(std::size_t nBytes)
{
    std::string text;
    text.reserve(nBytes + 100);
    for (unsigned int i = 0; text.size() < nBytes; ++i) text.append(20 + i * 2654435761u % 60, 'x').append("\r\n");
    text.resize(nBytes - 2);
    text += "\r\n";
    return DString(text.c_str());
}

void prepare()
{
    for (int i = 0; i < nCopies; ++i) strings.push_back(DString("A text of no special length, number ") + DString(i));
    megabytes10 = linesOf(10000000);
    megabytes100 = linesOf(100000000);
}

// ---- Copies ----

struct CountedText {
    int count;
    char characters[60];
};

std::vector<std::unique_ptr<CountedText>> makeCounted()
{
    std::vector<std::unique_ptr<CountedText>> texts;
    for (int i = 0; i < nCopies; ++i) texts.emplace_back(new CountedText{1, {}});
    return texts;
}

void copyOurs()
{
    for (DString const &text : strings) {
        DString const copy(text);
        benchmark::DoNotOptimize(copy.c_str());
    }
}

/// What a copy comes down to: a pointer to a block of its own, whose count goes up, and down again when the copy ends.
void copyBare()
{
    static std::vector<std::unique_ptr<CountedText>> const texts = makeCounted();
    for (auto const &text : texts) {
        CountedText *const copy = text.get();
        ++copy->count;
        benchmark::DoNotOptimize(copy->characters);
        --copy->count;
    }
}

// ---- Lines ----

void splitOurs(DString const &text)
{
    DStringArray const lines(text, LDelim, -1);
    Beside::Require(lines.Count() > 1);
    benchmark::DoNotOptimize(lines.Data());
}

void splitBare(DString const &text)
{
    std::vector<char *> lines;
    char const *const end = text.c_str() + text.Len();
    for (char const *at = text.c_str(); at < end;) {
        auto const *const feed = static_cast<char const *>(std::memchr(at, '\n', static_cast<std::size_t>(end - at)));
        std::size_t const length = static_cast<std::size_t>(feed - at) - 1;
        lines.push_back(static_cast<char *>(std::malloc(length + 1)));
        std::memcpy(lines.back(), at, length);
        lines.back()[length] = '\0';
        at = feed + 1;
    }
    benchmark::DoNotOptimize(lines.data());
    for (char *line : lines) std::free(line);
}

Beside::Work splitting(DString const &text, void (*split)(DString const &))
{
    return Beside::Work([&text, split] { split(text); }).Per(text.Len());
}

void declare()
{
    using namespace Beside;
    double const linear = 2; // the larger text leaves the caches; what isn't linear would come out as 10
    Measure("Copy of a DString, beside a pointer and a count", "copy", Unbounded, Work(copyOurs).Per(nCopies),
            Work(copyBare).Per(nCopies));
    Measure("Split of 10 MB into lines, beside memchr, malloc and memcpy", "byte", Unbounded,
            splitting(megabytes10, splitOurs), splitting(megabytes10, splitBare));
    Measure("Split of 100 MB into lines, beside memchr, malloc and memcpy", "byte", Unbounded,
            splitting(megabytes100, splitOurs), splitting(megabytes100, splitBare));
    Measure("Split of 100 MB into lines, beside 10 MB", "byte", linear, splitting(megabytes100, splitOurs),
            splitting(megabytes10, splitOurs));
}

} // namespace

int main(int argc, char **argv)
{
    return Beside::Run(argc, argv, "Texts", prepare, declare);
}
