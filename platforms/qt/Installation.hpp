// What `MirethSR::shared()` stands on in a Qt application.
#pragma once

#include "MirethVex/Linux/LinuxPlatform.hpp"
#include "MirethVex/PublicSide/MirethSR.hpp"
#include "MirethVex/Qt/QtPlatform.hpp"

namespace mireth::qt {

/// Main thread only.
class Installation {
  public:
    /// Of this process.
    static Installation& shared();

    /// As `mireth::qt::install`, but for the module of QML.
    bool install(platform::LinuxPlatformOptions options) noexcept;

    /// Installs Qt's answers when nothing was installed yet. Null when there is nothing that the library
    /// could stand on.
    MirethSR* library() noexcept;

    /// Null when the library does not stand on Qt's answers.
    const QtPlatform* platform() const noexcept { return platform_; }

  private:
    /// Never destroyed: work may still run on its threads while the process ends.
    QtPlatform* platform_ = nullptr;
    bool canBeUsed_ = false;
};

}  // namespace mireth::qt
