#pragma once

#include "MeetingCore/base/Failures.h"

#include <optional>

namespace varnet::test {

/// The failure of that type that a call ends with; absent when it ends well.
template <class F = Failure, class Call>
std::optional<F> thrown(Call call) {
    try {
        call();
    } catch (const F& failure) {
        return failure;
    }
    return std::nullopt;
}

/// Its kind.
template <class F, class Call>
std::optional<typename F::Kind> kindThrown(Call call) {
    const auto failure = thrown<F>(call);
    return failure ? std::optional(failure->kind()) : std::nullopt;
}

/// The sentence of what a call fails with; empty when it succeeds.
template <class Call>
std::string sentenceThrown(Call call) {
    const auto failure = thrown(call);
    return failure ? failure->what() : std::string();
}

} // namespace varnet::test
