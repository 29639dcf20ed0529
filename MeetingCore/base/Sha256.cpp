#include "MeetingCore/base/Sha256.h"

#include "MeetingCore/base/Assert.h"

#include <openssl/evp.h>

#include <array>

namespace varnet {

std::string sha256(std::string_view bytes) {
    Sha256 hash;
    hash.add(bytes);
    return hash.finish();
}

Sha256::Sha256() : m_context(EVP_MD_CTX_new(), EVP_MD_CTX_free) {
    const int begun = EVP_DigestInit_ex(m_context.get(), EVP_sha256(), nullptr);
    VARNET_ASSERT(begun == 1);
}

void Sha256::add(std::string_view bytes) {
    const int added = EVP_DigestUpdate(m_context.get(), bytes.data(), bytes.size());
    VARNET_ASSERT(added == 1);
}

std::string Sha256::finish() {
    std::array<unsigned char, 32> digest{};
    unsigned length = 0;
    const int hashed = EVP_DigestFinal_ex(m_context.get(), digest.data(), &length);
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
