#pragma once

#include <cstdio>
#include <cstdlib>

// An invariant of a reader that does not hold: abort, so that libFuzzer keeps the input.
#define FUZZ_CHECK(condition)                                                                      \
    do {                                                                                           \
        if (!(condition)) {                                                                        \
            std::fprintf(stderr, "invariant broken: %s (%s:%d)\n", #condition, __FILE__,           \
                         __LINE__);                                                                \
            std::abort();                                                                          \
        }                                                                                          \
    } while (false)
