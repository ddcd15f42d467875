// The information dictionary of a Qt application, which may tell its version to Qt alone.
#pragma once

#include <memory>
#include <mutex>
#include <string>

#include "MirethVex/Platform/InformationDictionary.hpp"

namespace mireth::qt {

class QtInformation final : public platform::InformationDictionary {
  public:
    /// What `stated` does not have is taken from Qt.
    explicit QtInformation(std::shared_ptr<const platform::InformationDictionary> stated)
        : stated_(std::move(stated)) {}

    /// The app may set its version after this was made, and Qt tells of it on the main thread only: so it is
    /// that of the first time it was asked for there.
    std::optional<std::string> string(std::string_view key) const override;

  private:
    std::string applicationVersion() const;

    const std::shared_ptr<const platform::InformationDictionary> stated_;
    mutable std::mutex mutex_;
    mutable std::string version_;  // guarded by mutex_
};

}  // namespace mireth::qt
