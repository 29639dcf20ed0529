#pragma once

#include <memory>
#include <string>
#include <string_view>

struct evp_md_ctx_st; // of the hashing library

namespace varnet {

/// SHA-256 of the bytes (FIPS 180-4) as 64 lower-case hexadecimal digits. Any thread.
std::string sha256(std::string_view bytes);

/// The same of bytes that come in parts. One thread at a time.
class Sha256 {
public:
    Sha256();
    void add(std::string_view bytes);
    /// Once, after all parts.
    std::string finish();

private:
    std::unique_ptr<evp_md_ctx_st, void (*)(evp_md_ctx_st*)> m_context;
};

} // namespace varnet
