#include "Varnet/platform/Machine.h"

namespace varnet {

Machine Machine::current() {
#if defined(__aarch64__)
    return {true, "arm64"};
#else
    return {__builtin_cpu_supports("avx2") != 0, "x86_64"};
#endif
}

} // namespace varnet
