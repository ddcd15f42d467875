#include "platforms/linux/network/CertificateAuthorities.hpp"

#include <curl/curl.h>

#include <cerrno>
#include <cstdint>
#include <system_error>

#include "platforms/linux/system/FileIo.hpp"

namespace mireth::platform {

namespace {

constexpr std::uint64_t maxBytes = std::uint64_t{8} * 1024 * 1024;

std::string systemAuthorities() {
    const char* const file = curl_version_info(CURLVERSION_NOW)->cainfo;
    return file == nullptr ? std::string() : readSmallFile(file, maxBytes).value_or("");
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
    return systemAuthorities() + "\n" + *extra;
}

}  // namespace mireth::platform
