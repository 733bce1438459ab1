// What the sanitizers are to do in a fuzzer. They call these functions by their names.

/// Short stacks and few freed blocks are kept: a panel is thousands of allocations. Memory is short
/// for what a decoder takes on the word of a picture that never announced its size.
extern "C" const char *__asan_default_options()
{
    return "malloc_context_size=5:quarantine_size_mb=32:max_allocation_size_mb=128:"
           "allocator_may_return_null=1";
}

extern "C" const char *__lsan_default_options()
{
    return "print_suppressions=0";
}

/// Fontconfig hides its pointers from the leak checker.
extern "C" const char *__lsan_default_suppressions()
{
    return "leak:libfontconfig.so";
}
