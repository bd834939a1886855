// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <ModelStore/SHA256.h>
#include <PlatformSupport/Precondition.h>

#include <openssl/evp.h>

namespace ModelStore {

namespace {

// The library fails only when memory is out or the algorithm is configured away.
void require(bool succeeded)
{
    PlatformSupport::precondition(succeeded, "SHA-256 is not available");
}

} // namespace

struct SHA256::Context {
    Context()
        : handle(EVP_MD_CTX_new())
    {
        require(handle != nullptr && EVP_DigestInit_ex(handle, EVP_sha256(), nullptr) == 1);
    }
    ~Context() { EVP_MD_CTX_free(handle); }
    Context(const Context&) = delete;
    Context& operator=(const Context&) = delete;

    EVP_MD_CTX* handle;
};

SHA256::SHA256()
    : context_(std::make_unique<Context>())
{
}

SHA256::~SHA256() = default;
SHA256::SHA256(SHA256&&) noexcept = default;
SHA256& SHA256::operator=(SHA256&&) noexcept = default;

void SHA256::update(std::span<const uint8_t> bytes)
{
    require(EVP_DigestUpdate(context_->handle, bytes.data(), bytes.size()) == 1);
}

SHA256::Digest SHA256::finalize()
{
    Digest digest {};
    require(EVP_DigestFinal_ex(context_->handle, digest.data(), nullptr) == 1);
    return digest;
}

SHA256::Digest SHA256::digest(std::span<const uint8_t> bytes)
{
    SHA256 sha256;
    sha256.update(bytes);
    return sha256.finalize();
}

std::string SHA256::hex(std::span<const uint8_t> bytes)
{
    constexpr const char* alphabet = "0123456789abcdef";
    std::string text;
    for (const uint8_t byte : bytes) {
        text += alphabet[byte >> 4];
        text += alphabet[byte & 15];
    }
    return text;
}

} // namespace ModelStore
