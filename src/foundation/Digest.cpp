#include "foundation/Digest.h"

#include <openssl/evp.h>

#include <array>
#include <stdexcept>

struct Sha256::Context
{
    EVP_MD_CTX *handle = EVP_MD_CTX_new();
    ~Context() { EVP_MD_CTX_free(handle); }
};

namespace {

/// Looking the algorithm up costs as much as hashing a short text, so it is done once.
const EVP_MD *sha256Algorithm()
{
    static const EVP_MD *const algorithm = EVP_MD_fetch(nullptr, "SHA256", nullptr);
    return algorithm;
}

void require(int result)
{
    if (result != 1)
        throw std::runtime_error("SHA-256 is not available");
}

} // namespace

Sha256::Sha256() : m_context(std::make_unique<Context>())
{
    require(EVP_DigestInit_ex2(m_context->handle, sha256Algorithm(), nullptr));
}

Sha256::~Sha256() = default;

void Sha256::add(QByteArrayView bytes)
{
    require(EVP_DigestUpdate(m_context->handle, bytes.data(), size_t(bytes.size())));
}

QByteArray Sha256::hexDigest()
{
    std::array<unsigned char, EVP_MAX_MD_SIZE> digest;
    unsigned int length = 0;
    require(EVP_DigestFinal_ex(m_context->handle, digest.data(), &length));
    return QByteArray::fromRawData(reinterpret_cast<const char *>(digest.data()), qsizetype(length))
        .toHex();
}

QByteArray sha256Hex(QByteArrayView bytes)
{
    Sha256 hash;
    hash.add(bytes);
    return hash.hexDigest();
}
