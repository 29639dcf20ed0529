#pragma once

#include <cstdio>
#include <cstdlib>

/// Ends the program when an invariant is broken, in every build type. For programmer faults only; bad input is
/// reported with an exception.
#define VARNET_ASSERT(condition)                                                                                       \
    do {                                                                                                               \
        if (!(condition)) [[unlikely]] {                                                                               \
            std::fprintf(stderr, "%s:%d: broken invariant: %s\n", __FILE__, __LINE__, #condition);                     \
            std::abort();                                                                                              \
        }                                                                                                              \
    } while (false)
