#include "platforms/qt/system/Installation.hpp"

#include <QGuiApplication>
#include <cstdio>
#include <memory>
#include <utility>

#include "Base/GuardedRun.hpp"

namespace mireth::qt {

Installation& Installation::shared() {
    static auto* const installation = new Installation;
    return *installation;
}

bool Installation::install(platform::LinuxPlatformOptions options) noexcept {
    if (platform_ != nullptr) {
        return false;
    }
    if (qGuiApp == nullptr) {
        std::fputs("M-VEX: there is no QGuiApplication to record\n", stderr);
        return false;
    }
    runGuarded("the making of Qt's services", [&] {
        auto made = std::make_unique<QtPlatform>(std::move(options));
        standsOnOthers_ = !MirethSR::installPlatformServices(made->services());
        if (!standsOnOthers_) {
            application_ = QCoreApplication::instance();
            platform_ = made.release();
        }
    });
    return platform_ != nullptr;
}

MirethSR* Installation::library() noexcept {
    if (platform_ == nullptr && !standsOnOthers_) {
        install({});
    }
    if (platform_ != nullptr && application_ == nullptr) {
        std::fputs("M-VEX: the QGuiApplication that was to be recorded is gone\n", stderr);
        return nullptr;
    }
    return platform_ != nullptr || standsOnOthers_ ? &MirethSR::shared() : nullptr;
}

}  // namespace mireth::qt
