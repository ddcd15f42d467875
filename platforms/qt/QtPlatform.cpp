#include "MirethVex/Qt/QtPlatform.hpp"

#include <QWidget>
#include <QWindow>
#include <utility>

#include "Base/GuardedRun.hpp"
#include "MirethVex/PublicSide/MirethSR.hpp"
#include "platforms/qt/objects/ClassCatalog.hpp"
#include "platforms/qt/objects/WindowOrder.hpp"
#include "platforms/qt/qml/QmlModule.hpp"
#include "platforms/qt/system/Installation.hpp"
#include "platforms/qt/system/QtApplication.hpp"
#include "platforms/qt/system/QtInformation.hpp"
#include "platforms/qt/system/QtMainQueue.hpp"
#include "platforms/qt/window/RecordedWindows.hpp"
#include "platforms/qt/window/WindowEnvironment.hpp"

namespace mireth::qt {

using platform::LinuxPlatform;
using platform::LinuxPlatformOptions;
using platform::PlatformServices;

struct QtPlatform::Parts {
    explicit Parts(LinuxPlatformOptions options)
        : linuxAnswers(std::move(options)), windows(makeWindows()), services(makeServices()) {}

    std::shared_ptr<RecordedWindows> makeWindows() const {
        WindowEnvironment environment;
        environment.clock = linuxAnswers.services().clock;
        environment.mainQueue = mainQueue;
        environment.appearance = appearance;
        environment.order = order;
        return std::make_shared<RecordedWindows>(std::move(environment));
    }

    PlatformServices makeServices() const {
        PlatformServices all = linuxAnswers.services();
        all.mainQueue = mainQueue;
        all.application = std::make_shared<QtApplication>(windows, appearance);
        all.information = std::make_shared<QtInformation>(std::move(all.information));
        return all;
    }

    const LinuxPlatform linuxAnswers;
    const std::shared_ptr<QtMainQueue> mainQueue = std::make_shared<QtMainQueue>();
    const std::shared_ptr<platform::AppearanceDelivery> appearance =
        std::make_shared<platform::AppearanceDelivery>();
    const std::shared_ptr<const WindowOrder> order = std::make_shared<WindowOrder>();
    const std::shared_ptr<RecordedWindows> windows;
    const PlatformServices services;
};

QtPlatform::QtPlatform(LinuxPlatformOptions options) : parts_(std::make_unique<Parts>(std::move(options))) {}

QtPlatform::~QtPlatform() = default;

PlatformServices QtPlatform::services() const {
    return parts_->services;
}

std::shared_ptr<platform::Window> QtPlatform::windowOf(QWindow& window) const {
    return parts_->windows->of(window);
}

std::shared_ptr<platform::Window> QtPlatform::windowOf(QWidget& widget) const {
    return parts_->windows->of(widget);
}

std::vector<std::string> QtPlatform::warnings() const {
    return parts_->linuxAnswers.warnings();
}

bool QtPlatform::runMainQueue(const std::function<bool()>& done, platform::Seconds limit) const {
    return parts_->mainQueue->runOwnWork(done, limit);
}

namespace {

template <class LiveWindow>
InitializationResult initialize(const std::string& brandId, const std::string& projectId,
                                LiveWindow* window) noexcept {
    registerQmlModule();
    auto& installation = Installation::shared();
    MirethSR* const library = installation.library();
    if (library == nullptr) {
        return InitializationResult::cannotGetKeyWindow;
    }
    std::shared_ptr<platform::Window> recorded;
    runGuarded("the look for the window to record", [&] {
        if (const QtPlatform* const platform = installation.platform();
            platform != nullptr && window != nullptr) {
            recorded = platform->windowOf(*window);
        }
    });
    return library->initializeProject(brandId, projectId, std::move(recorded));
}

}  // namespace

bool install(LinuxPlatformOptions options) noexcept {
    registerQmlModule();
    return Installation::shared().install(std::move(options));
}

InitializationResult initializeProject(const std::string& brandId, const std::string& projectId) noexcept {
    return initialize<QWindow>(brandId, projectId, nullptr);
}

InitializationResult initializeProject(const std::string& brandId, const std::string& projectId,
                                       std::nullptr_t /*window*/) noexcept {
    return initializeProject(brandId, projectId);
}

InitializationResult initializeProject(const std::string& brandId, const std::string& projectId,
                                       QWindow* window) noexcept {
    return initialize(brandId, projectId, window);
}

InitializationResult initializeProject(const std::string& brandId, const std::string& projectId,
                                       QWidget* window) noexcept {
    return initialize(brandId, projectId, window);
}

bool finishRecording(platform::Seconds patience) {
    const QtPlatform* const platform = Installation::shared().platform();
    if (platform == nullptr || !MirethSR::shared().hasActiveSession()) {
        return false;
    }
    const auto stopped = MirethSR::shared().stopRecording();
    return platform->runMainQueue([&stopped] { return stopped.isReady(); }, patience);
}

const platform::ViewClass& viewClassNamed(const std::string& name) {
    return registeredViewClass(name);
}

}  // namespace mireth::qt
