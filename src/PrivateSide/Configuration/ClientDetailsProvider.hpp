// Who embeds the library: the host itself, or a cross-platform wrapper that left its name and versions in the
// user-defaults store.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "MirethVex/Platform/KeyValueStore.hpp"
#include "PrivateSide/Configuration/ClientType.hpp"

namespace mireth {

/// Reads only. Every question makes the store synchronise first. Any thread.
class ClientDetailsProvider {
  public:
    struct StorageKeys {
        static constexpr std::string_view clientType = "MirethClientType";
        static constexpr std::string_view reactNativeVersion = "MirethClientRNVersion";
        static constexpr std::string_view vexReactNativeVersion = "MirethClientRNSdkVersion";
    };

    explicit ClientDetailsProvider(std::shared_ptr<platform::KeyValueStore> storage);

    /// `VEXMobileIOS` when nothing or an unknown text is stored.
    ClientType getClientType() const;
    std::optional<std::string> getClientReactNativeVersion() const;
    std::optional<std::string> getClientVexReactNativeVersion() const;

  private:
    std::optional<std::string> read(std::string_view key) const;
    const std::shared_ptr<platform::KeyValueStore> storage_;
};

}  // namespace mireth
