#include "platforms/qt/system/QtInformation.hpp"

#include <QCoreApplication>
#include <QThread>

namespace mireth::qt {

std::optional<std::string> QtInformation::string(std::string_view key) const {
    auto stated = stated_->string(key);
    if (stated || key != platform::information_keys::appVersion) {
        return stated;
    }
    std::string version = applicationVersion();
    return version.empty() ? std::nullopt : std::optional(std::move(version));
}

std::string QtInformation::applicationVersion() const {
    const std::lock_guard lock(mutex_);
    const QCoreApplication* const application = QCoreApplication::instance();
    if (version_.empty() && application != nullptr && application->thread() == QThread::currentThread()) {
        version_ = QCoreApplication::applicationVersion().toStdString();
    }
    return version_;
}

}  // namespace mireth::qt
