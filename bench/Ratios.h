#pragma once

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <utility>

/// What every benchmark here does: times two ways of doing the same work in turns and prints their ratio to a limit.
namespace varnet::bench {

/// Whether a row missed its limit: the program's exit status.
inline bool missed = false;

/// Keeps a result from being optimised away.
template <class T>
void keep(const T& value) {
    asm volatile("" : : "g"(&value) : "memory");
}

template <class Work>
double secondsOf(Work& work) {
    const auto begin = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

/// The best times of both over many rounds, taken in turns, so that a busy machine disturbs both alike.
template <class Ours, class Theirs>
std::pair<double, double> compare(Ours ours, Theirs theirs, int rounds) {
    std::pair best{1e9, 1e9};
    for (int round = 0; round < rounds; ++round) {
        best.first = std::min(best.first, secondsOf(ours));
        best.second = std::min(best.second, secondsOf(theirs));
    }
    return best;
}

inline void row(const char* what, const char* against, double value, const char* unit, bool met, const char* limit) {
    std::printf("%-34s %-38s %8.2f %-3s  %-12s %s\n", what, against, value, unit, limit, met ? "" : "MISSED");
    missed |= !met;
}

inline void heading(const char* subject) {
    std::printf("%-34s %-38s %8s      %s\n", subject, "against", "ratio", "limit");
}

} // namespace varnet::bench
