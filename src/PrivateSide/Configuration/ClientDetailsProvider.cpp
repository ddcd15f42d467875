#include "PrivateSide/Configuration/ClientDetailsProvider.hpp"

#include <utility>

namespace mireth {

std::string_view rawValue(ClientType type) noexcept {
    return type == ClientType::VEXMobileIOS ? "VEXMobileIOS" : "VEXMobileIOSReactNative";
}

std::optional<ClientType> clientTypeFromRawValue(std::string_view text) noexcept {
    for (const ClientType type : {ClientType::VEXMobileIOS, ClientType::VEXMobileIOSReactNative}) {
        if (text == rawValue(type)) {
            return type;
        }
    }
    return std::nullopt;
}

ClientDetailsProvider::ClientDetailsProvider(std::shared_ptr<platform::KeyValueStore> storage)
    : storage_(std::move(storage)) {}

ClientType ClientDetailsProvider::getClientType() const {
    const auto text = read(StorageKeys::clientType);
    return text ? clientTypeFromRawValue(*text).value_or(ClientType::VEXMobileIOS) : ClientType::VEXMobileIOS;
}

std::optional<std::string> ClientDetailsProvider::getClientReactNativeVersion() const {
    return read(StorageKeys::reactNativeVersion);
}

std::optional<std::string> ClientDetailsProvider::getClientVexReactNativeVersion() const {
    return read(StorageKeys::vexReactNativeVersion);
}

std::optional<std::string> ClientDetailsProvider::read(std::string_view key) const {
    storage_->synchronize();
    return storage_->string(key);
}

}  // namespace mireth
