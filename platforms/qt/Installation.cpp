#include "platforms/qt/Installation.hpp"

#include <memory>
#include <utility>

#include "Platform/Guarded.hpp"

namespace mireth::qt {

Installation& Installation::shared() {
    static Installation installation;
    return installation;
}

bool Installation::install(platform::LinuxPlatformOptions options) noexcept {
    if (platform_ != nullptr) {
        return false;
    }
    bool isInstalled = false;
    platform::guarded("the making of Qt's services", [&] {
        auto made = std::make_unique<QtPlatform>(std::move(options));
        isInstalled = MirethSR::installPlatformServices(made->services());
        canBeUsed_ = true;
        if (isInstalled) {
            platform_ = made.release();
        }
    });
    return isInstalled;
}

MirethSR* Installation::library() noexcept {
    if (!canBeUsed_) {
        install({});
    }
    return canBeUsed_ ? &MirethSR::shared() : nullptr;
}

}  // namespace mireth::qt
