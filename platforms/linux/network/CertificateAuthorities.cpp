#include "platforms/linux/network/CertificateAuthorities.hpp"

#include <curl/curl.h>
#include <openssl/bio.h>
#include <openssl/err.h>
#include <openssl/pem.h>
#include <openssl/x509.h>

#include <cerrno>
#include <cstdint>
#include <memory>
#include <system_error>

#include "platforms/linux/system/FileIo.hpp"

namespace mireth::platform {

namespace {

constexpr std::uint64_t maxBytes = std::uint64_t{8} * 1024 * 1024;

std::string systemAuthorities() {
    const char* const file = curl_version_info(CURLVERSION_NOW)->cainfo;
    return file == nullptr ? std::string() : readSmallFile(file, maxBytes).value_or("");
}

void freeAll(STACK_OF(X509_INFO) * found) {
    sk_X509_INFO_pop_free(found, X509_INFO_free);
}

/// True when all that stands in PEM form in `text` can be read; with anything else libcurl fails every
/// request.
bool isReadable(const std::string& text) {
    const std::unique_ptr<BIO, decltype(&BIO_free)> bytes(
        BIO_new_mem_buf(text.data(), static_cast<int>(text.size())), &BIO_free);
    // What the host's own work left among the errors stays there.
    ERR_set_mark();
    const std::unique_ptr<STACK_OF(X509_INFO), decltype(&freeAll)> found(
        PEM_X509_INFO_read_bio(bytes.get(), nullptr, nullptr, nullptr), &freeAll);
    ERR_pop_to_mark();
    return found != nullptr;
}

}  // namespace

std::expected<std::string, std::string> readAuthorities(const std::filesystem::path& extraFile) {
    const auto extra = readSmallFile(extraFile.native(), maxBytes);
    const std::string refusal = "cannot read the authorities in '" + extraFile.native() + "': ";
    if (!extra) {
        return std::unexpected(refusal + std::generic_category().message(errno));
    }
    if (extra->find("-----BEGIN CERTIFICATE-----") == std::string::npos) {
        return std::unexpected(refusal + "there is no certificate in it");
    }
    if (!isReadable(*extra)) {
        return std::unexpected(refusal + "a certificate in it is damaged");
    }
    return systemAuthorities() + "\n" + *extra;
}

}  // namespace mireth::platform
