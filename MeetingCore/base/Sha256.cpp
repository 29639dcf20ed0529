#include "MeetingCore/base/Sha256.h"

#include "MeetingCore/base/Assert.h"

#include <openssl/evp.h>

#include <array>

namespace varnet {

std::string sha256(std::string_view bytes) {
    std::array<unsigned char, 32> digest{};
    unsigned length = 0;
    const int hashed = EVP_Digest(bytes.data(), bytes.size(), digest.data(), &length, EVP_sha256(), nullptr);
    VARNET_ASSERT(hashed == 1 && length == digest.size());

    constexpr std::string_view digits = "0123456789abcdef";
    std::string text;
    text.reserve(2 * digest.size());
    for (const unsigned char byte : digest) {
        text += digits[byte >> 4];
        text += digits[byte & 0x0F];
    }
    return text;
}

} // namespace varnet
