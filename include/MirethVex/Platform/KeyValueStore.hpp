// The user-defaults store, in which a cross-platform bridge leaves its name and versions.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace mireth::platform {

/// Any thread. The library only reads: "MirethClientType" ("VEXMobileIOS", which also stands for an absent or
/// unknown one, or "VEXMobileIOSReactNative"), "MirethClientRNVersion" and "MirethClientRNSdkVersion". It
/// reads when it is first used, in `initializeProject` and in `startRecording`, on those threads.
class KeyValueStore {
  public:
    virtual ~KeyValueStore() = default;
    /// Reads again what other processes may have written. False when that failed; the values read before
    /// then stay.
    virtual bool synchronize() = 0;
    /// The text under `key`; nothing when it is absent or not a text.
    virtual std::optional<std::string> string(std::string_view key) const = 0;
};

}  // namespace mireth::platform
