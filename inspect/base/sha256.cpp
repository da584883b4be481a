// SHA-256 of bytes that come in blocks, by libcrypto.
#include "inspect/base/sha256.h"

// The functions that keep their state in a structure of the caller. The general ones of the same library allocate
// memory, read a configuration file and stay unusable in a process that once had no memory for them.
#define OPENSSL_SUPPRESS_DEPRECATED
#include <openssl/sha.h>

#include <array>

namespace KxInspect::detail {

struct Sha256::State {
    SHA256_CTX context;
};

Sha256::Sha256() : state_(std::make_unique<State>()) {
    SHA256_Init(&state_->context);
}

Sha256::Sha256(Sha256&&) noexcept = default;
Sha256& Sha256::operator=(Sha256&&) noexcept = default;
Sha256::~Sha256() = default;

void Sha256::add(const char* data, std::size_t size) {
    SHA256_Update(&state_->context, data, size);
}

std::string Sha256::text() const {
    SHA256_CTX context = state_->context;
    std::array<unsigned char, SHA256_DIGEST_LENGTH> digest;
    SHA256_Final(digest.data(), &context);
    constexpr const char* kDigits = "0123456789abcdef";
    std::string text;
    for (const unsigned char byte : digest) {
        text += {kDigits[byte >> 4], kDigits[byte & 15]};
    }
    return text;
}

std::string sha256Of(std::string_view bytes) {
    Sha256 hash;
    hash.add(bytes.data(), bytes.size());
    return hash.text();
}

} // namespace KxInspect::detail
