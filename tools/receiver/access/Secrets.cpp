// Digests first: comparing those tells nothing of the texts, not even their lengths.
#include "access/Secrets.hpp"

#include <openssl/crypto.h>
#include <openssl/evp.h>

#include <algorithm>
#include <stdexcept>

#include "base/SmallFile.hpp"

namespace mireth::receiver {
namespace {

bool isTokenCharacter(char c) {
    return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' || c == '-';
}

}  // namespace

std::string digestOf(std::string_view text) {
    std::string digest(32, '\0');
    unsigned int size = 0;
    auto* const into = reinterpret_cast<unsigned char*>(digest.data());
    if (EVP_Digest(text.data(), text.size(), into, &size, EVP_sha256(), nullptr) != 1 || size != 32) {
        throw std::runtime_error("a digest cannot be computed");
    }
    return digest;
}

bool sameSecret(std::string_view a, std::string_view b) {
    const auto first = digestOf(a);
    const auto second = digestOf(b);
    return CRYPTO_memcmp(first.data(), second.data(), first.size()) == 0;
}

std::expected<std::string, std::string> readToken(const std::string& path) {
    constexpr std::size_t longestFile = 256;
    auto token = readSmallFile(path, longestFile);
    if (!token) {
        return token;
    }
    while (token->ends_with('\n') || token->ends_with('\r')) {
        token->pop_back();
    }
    if (token->size() < 20 || token->size() > 128 || !std::ranges::all_of(*token, isTokenCharacter)) {
        return std::unexpected(path + ": a token is one line of 20 to 128 letters, digits, \"_\" and \"-\"");
    }
    return token;
}

}  // namespace mireth::receiver
