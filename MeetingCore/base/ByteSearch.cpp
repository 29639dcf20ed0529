#include "MeetingCore/base/ByteSearch.h"

#include <algorithm>
#include <cstring>
#include <utility>

#if defined(__x86_64__)
#include <immintrin.h>
#endif

namespace varnet {

namespace {

std::size_t placeOf(const void* found, std::string_view text) {
    return found ? static_cast<std::size_t>(static_cast<const char*>(found) - text.data()) : std::string_view::npos;
}

#if defined(__x86_64__)

/// How seldom a byte is in text of any language; the exact order matters little.
std::size_t rarity(char byte) {
    constexpr std::string_view commonest = " etaoinsrhldcumfpgwybvk";
    if (static_cast<unsigned char>(byte) >= 0xC0) // the first byte of a character, often the same for a whole script
        return 0;
    return std::min(commonest.find(byte), commonest.size());
}

/// The places in the part of its two rarest bytes.
std::pair<std::size_t, std::size_t> rarestBytes(std::string_view part) {
    std::size_t one = 0, other = 1;
    for (std::size_t i = 1; i < part.size(); ++i) {
        if (rarity(part[i]) > rarity(part[one]))
            other = std::exchange(one, i);
        else if (rarity(part[i]) > rarity(part[other]))
            other = i;
    }
    return {one, other};
}

/// Looks at 32 places at once for two bytes of the part at the right distance, and compares the rest only there. `part`
/// has two bytes or more and is not longer than the text.
__attribute__((target("avx2"))) std::size_t findWide(std::string_view text, std::string_view part) {
    constexpr std::size_t width = 32;
    const auto [one, other] = rarestBytes(part);
    const __m256i firsts = _mm256_set1_epi8(part[one]);
    const __m256i seconds = _mm256_set1_epi8(part[other]);
    const char* const begin = text.data();

    std::size_t at = 0;
    for (; at + part.size() - 1 + width <= text.size(); at += width) {
        const __m256i here = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(begin + at + one));
        const __m256i there = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(begin + at + other));
        const __m256i both = _mm256_and_si256(_mm256_cmpeq_epi8(here, firsts), _mm256_cmpeq_epi8(there, seconds));
        for (auto places = static_cast<unsigned>(_mm256_movemask_epi8(both)); places != 0; places &= places - 1) {
            const std::size_t place = at + static_cast<std::size_t>(__builtin_ctz(places));
            if (std::memcmp(begin + place, part.data(), part.size()) == 0)
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
