#pragma once

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <type_traits>
#include <utility>
#include <vector>

/// What every benchmark here does: times two ways of doing the same work in turns and prints their ratio to a limit.
namespace varnet::bench {

/// Whether a row missed its limit: the program's exit status.
inline bool missed = false;

/// Keeps a result from being optimised away.
template <class T>
void keep(const T& value) {
    asm volatile("" : : "g"(&value) : "memory");
}

using Clock = double (*)();

inline double wallSeconds() {
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

/// Of all threads of this process, in the program and in the kernel.
inline double cpuSeconds() {
    timespec time{};
    ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + 1e-9 * static_cast<double>(time.tv_nsec);
}

/// What the work gives back is freed outside of the time.
template <class Work>
double secondsOf(Work& work, Clock now = wallSeconds) {
    const double begin = now();
    if constexpr (std::is_void_v<decltype(work())>) {
        work();
        return now() - begin;
    } else {
        const auto result = work();
        const double seconds = now() - begin;
        keep(result);
        return seconds;
    }
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

/// The median times of both: for jobs so long that hardly a round is left in peace.
template <class Ours, class Theirs>
std::pair<double, double> compareMedians(Ours ours, Theirs theirs, int rounds, Clock now = wallSeconds) {
    std::vector<double> own, other;
    for (int round = 0; round < rounds; ++round) {
        own.push_back(secondsOf(ours, now));
        other.push_back(secondsOf(theirs, now));
    }
    const auto median = [](std::vector<double>& values) {
        const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
        std::ranges::nth_element(values, middle);
        return *middle;
    };
    return {median(own), median(other)};
}

inline void row(const char* what, const char* against, double value, const char* unit, bool met, const char* limit) {
    std::printf("%-34s %-38s %8.2f %-3s  %-12s %s\n", what, against, value, unit, limit, met ? "" : "MISSED");
    missed |= !met;
}

/// A limit that must be kept and, where there is more to win, what is aimed at.
struct Limit {
    bool most; ///< else least
    double must, aim;

    bool holds(double value, double limit) const { return most ? value <= limit : value >= limit; }
};

inline Limit atMost(double must, double aim) {
    return {true, must, aim};
}

inline Limit atLeast(double must, double aim) {
    return {false, must, aim};
}

inline void row(const char* what, const char* against, double ratio, const Limit& limit) {
    char text[64];
    std::snprintf(text, sizeof text, "%s %g x, aim %g x%s", limit.most ? "<=" : ">=", limit.must, limit.aim,
                  limit.holds(ratio, limit.aim) ? "" : " (short)");
    row(what, against, ratio, "x", limit.holds(ratio, limit.must), text);
}

/// A figure to read beside the row above it.
inline void note(const char* what, double value, const char* unit) {
    std::printf("%-34s %-38s %8.3f %s\n", "", what, value, unit);
}

inline void heading(const char* subject) {
    std::printf("%-34s %-38s %8s      %s\n", subject, "against", "ratio", "limit");
}

} // namespace varnet::bench
