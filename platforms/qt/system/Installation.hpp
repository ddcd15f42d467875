// What `MirethSR::shared()` stands on in a Qt application.
#pragma once

#include <QCoreApplication>
#include <QPointer>

#include "MirethVex/Linux/LinuxPlatform.hpp"
#include "MirethVex/PublicSide/MirethSR.hpp"
#include "MirethVex/Qt/QtPlatform.hpp"

namespace mireth::qt {

/// One for the process, since there is one `MirethSR::shared()`; so it serves one QGuiApplication. Main
/// thread only.
class Installation {
  public:
    static Installation& shared();

    /// As `mireth::qt::install`, but for the module of QML.
    bool install(platform::LinuxPlatformOptions options) noexcept;

    /// Installs Qt's answers when nothing was installed yet. Null, with a line on standard error, when there
    /// is nothing that the library could stand on.
    MirethSR* library() noexcept;

    /// Null when the library does not stand on Qt's answers, or their application is gone.
    const QtPlatform* platform() const noexcept { return application_ != nullptr ? platform_ : nullptr; }

  private:
    Installation() = default;

    /// Never destroyed: work may still run on its threads while the process ends.
    QtPlatform* platform_ = nullptr;
    QPointer<QCoreApplication> application_;
    bool standsOnOthers_ = false;
};

}  // namespace mireth::qt
