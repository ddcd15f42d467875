#include "platforms/linux/system/LinuxDevice.hpp"

#include <openssl/evp.h>
#include <sys/utsname.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <string_view>

#include "platforms/linux/system/ChassisIdiom.hpp"
#include "platforms/linux/system/FileIo.hpp"
#include "platforms/linux/system/KeyValueFile.hpp"
#include "platforms/linux/system/Utf8.hpp"
#include "platforms/linux/system/Uuid.hpp"

namespace mireth::platform {

namespace {

constexpr std::uint64_t maxFileBytes = std::uint64_t{64} * 1024;

/// The files of one device, below a root.
class DeviceFiles {
  public:
    explicit DeviceFiles(std::filesystem::path root) : root_(std::move(root)) {}

    /// Empty when there is no such file.
    std::string content(const char* path) const {
        return readSmallFile((root_ / path).native(), maxFileBytes).value_or("");
    }

    /// A file that holds one text, without the line break or the zero byte that ends it.
    std::string text(const char* path) const {
        std::string value = content(path);
        while (!value.empty() && (value.back() == '\0' || value.back() == '\n' || value.back() == ' ')) {
            value.pop_back();
        }
        return value;
    }

    /// The value of `key` in a file of assignments; empty when absent.
    std::string value(const char* path, std::string_view key) const {
        const auto values = parseKeyValueFile(content(path));
        const auto found = values.find(key);
        return found == values.end() ? std::string() : found->second;
    }

  private:
    const std::filesystem::path root_;
};

std::string firstUsable(std::initializer_list<std::string> candidates) {
    for (const std::string& candidate : candidates) {
        if (!candidate.empty() && isUtf8(candidate)) {
            return candidate;
        }
    }
    return {};
}

UserInterfaceIdiom findIdiom(const DeviceFiles& files) {
    const std::string chassis = files.value("etc/machine-info", "CHASSIS");
    const std::string tree = files.text("sys/firmware/devicetree/base/chassis-type");
    if (!chassis.empty()) {
        return idiomOfChassisName(chassis);
    }
    if (!tree.empty()) {
        return idiomOfChassisName(tree);
    }
    return idiomOfDmiChassis(files.text("sys/class/dmi/id/chassis_type"));
}

/// A machine-id as machine-id(5) has it; empty for "uninitialized" and anything else.
std::string machineId(const DeviceFiles& files) {
    std::string id = files.text("etc/machine-id");
    const bool isHex = std::ranges::all_of(
        id, [](char digit) { return (digit >= '0' && digit <= '9') || (digit >= 'a' && digit <= 'f'); });
    const bool isZero = std::ranges::all_of(id, [](char digit) { return digit == '0'; });
    return id.size() == 32 && isHex && !isZero ? id : std::string();
}

std::optional<std::string> makeIdentifier(const std::string& machineId, const std::string& vendor) {
    if (machineId.empty()) {
        return std::nullopt;
    }
    const std::string text = "identifierForVendor:" + vendor + ":" + machineId;
    std::array<unsigned char, EVP_MAX_MD_SIZE> digest{};
    if (EVP_Digest(text.data(), text.size(), digest.data(), nullptr, EVP_sha256(), nullptr) != 1) {
        return std::nullopt;
    }
    std::array<std::uint8_t, 16> bytes{};
    std::copy_n(digest.begin(), bytes.size(), bytes.begin());
    return formatUuidV4(bytes);
}

std::uint64_t memoryBytes() {
    const long pages = sysconf(_SC_PHYS_PAGES);
    const long pageBytes = sysconf(_SC_PAGESIZE);
    return pages > 0 && pageBytes > 0
               ? static_cast<std::uint64_t>(pages) * static_cast<std::uint64_t>(pageBytes)
               : 0;
}

}  // namespace

LinuxDevice::LinuxDevice(const LinuxDeviceOptions& options) : physicalMemory_(memoryBytes()) {
    const DeviceFiles files(options.root);
    utsname kernel{};
    uname(&kernel);
    idiom_ = options.idiom ? *options.idiom : findIdiom(files);
    model_ = firstUsable(
        {files.text("sys/firmware/devicetree/base/model"), files.text("sys/class/dmi/id/product_name")});
    name_ = firstUsable({files.value("etc/machine-info", "PRETTY_HOSTNAME"), kernel.nodename});
    systemVersion_ = firstUsable(
        {files.value("etc/os-release", "VERSION_ID"), files.value("usr/lib/os-release", "VERSION_ID")});
    machine_ = firstUsable({kernel.machine});
    identifierForVendor_ = makeIdentifier(machineId(files), options.vendor);
}

}  // namespace mireth::platform
