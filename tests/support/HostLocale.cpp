/// A host with a locale of its own: with VODREL_TEST_LOCALE set, the whole test program runs under the locale of that
/// name. No answer may depend on it. `scripts/test.sh` runs the tests so a second time.

#include <clocale>
#include <cstdio>
#include <cstdlib>

namespace {

/// A run that silently stayed in the usual locale would show nothing.
bool takeHostLocale()
{
    char const *const name = std::getenv("VODREL_TEST_LOCALE");
    if (!name || std::setlocale(LC_ALL, name)) return true;
    std::fprintf(stderr, "There is no locale \"%s\" (VODREL_TEST_LOCALE).\n", name);
    std::exit(1);
}

[[maybe_unused]] bool const isTaken = takeHostLocale();

} // namespace
