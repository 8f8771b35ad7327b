/// What the sanitizers do in the test programs; without sanitizers nobody asks. Files may announce sizes that no memory
/// holds: the allocation then fails, as it does outside, instead of ending the test.

extern "C" {

// The names are the sanitizers' own.
char const *__asan_default_options();
char const *__ubsan_default_options();

char const *__asan_default_options()
{
    return "allocator_may_return_null=1";
}

char const *__ubsan_default_options()
{
    return "print_stacktrace=1";
}
}
