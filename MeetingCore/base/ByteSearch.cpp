#include "MeetingCore/base/ByteSearch.h"

#include <cstring>

#if defined(__x86_64__)
#include <immintrin.h>
#endif

namespace varnet {

namespace {

std::size_t placeOf(const void* found, std::string_view text) {
    return found ? static_cast<std::size_t>(static_cast<const char*>(found) - text.data()) : std::string_view::npos;
}

#if defined(__x86_64__)

/// Looks at 32 places at once for the part's first byte with its last byte at the right distance, and compares the rest
/// only there. `part` has two bytes or more and is not longer than the text.
__attribute__((target("avx2"))) std::size_t findWide(std::string_view text, std::string_view part) {
    constexpr std::size_t width = 32;
    const std::size_t distance = part.size() - 1;
    const __m256i first = _mm256_set1_epi8(part.front());
    const __m256i last = _mm256_set1_epi8(part.back());
    const char* const begin = text.data();

    std::size_t at = 0;
    for (; at + distance + width <= text.size(); at += width) {
        const __m256i heads = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(begin + at));
        const __m256i tails = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(begin + at + distance));
        const __m256i both = _mm256_and_si256(_mm256_cmpeq_epi8(heads, first), _mm256_cmpeq_epi8(tails, last));
        for (auto places = static_cast<unsigned>(_mm256_movemask_epi8(both)); places != 0; places &= places - 1) {
            const std::size_t place = at + static_cast<std::size_t>(__builtin_ctz(places));
            if (std::memcmp(begin + place + 1, part.data() + 1, distance) == 0)
                return place;
        }
    }
    const std::string_view rest = text.substr(at);
    const std::size_t place = placeOf(memmem(rest.data(), rest.size(), part.data(), part.size()), rest);
    return place == std::string_view::npos ? place : at + place;
}

#endif

} // namespace

std::size_t findBytes(std::string_view text, std::string_view part) {
    if (part.size() < 2)
        return part.empty() ? 0 : placeOf(std::memchr(text.data(), part.front(), text.size()), text);
    if (part.size() > text.size())
        return std::string_view::npos;
#if defined(__x86_64__)
    if (__builtin_cpu_supports("avx2"))
        return findWide(text, part);
#endif
    return placeOf(memmem(text.data(), text.size(), part.data(), part.size()), text);
}

} // namespace varnet
