#pragma once

#include <cerrno>

namespace varnet {

/// Makes a system call again as long as a signal interrupts it, and gives its result; negative with errno set when it
/// failed for another reason. Any thread.
template <class Call>
auto uninterrupted(Call call) {
    auto result = call();
    while (result < 0 && errno == EINTR)
        result = call();
    return result;
}

} // namespace varnet
