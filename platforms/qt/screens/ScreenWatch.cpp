#include "platforms/qt/screens/ScreenWatch.hpp"

#include <QGuiApplication>
#include <QWindow>
#include <algorithm>
#include <array>
#include <utility>

#include "platforms/qt/objects/QtProperty.hpp"

namespace mireth::qt {

using platform::ViewController;

namespace {

/// What tells that another page is shown. By name: the classes of Qt Quick are not public.
struct PageSignal {
    const char* type;
    const char* signature;
};
constexpr std::array pageSignals{PageSignal{"QQuickStackView", "currentItemChanged()"},
                                 PageSignal{"QQuickContainer", "currentItemChanged()"},
                                 PageSignal{"QQuickLoader", "itemChanged()"},
                                 PageSignal{"QStackedWidget", "currentChanged(int)"}};

}  // namespace

ScreenWatch::ScreenWatch(std::shared_ptr<const platform::AppearanceDelivery> delivery,
                         std::shared_ptr<platform::MainQueue> mainQueue, std::function<void()> look)
    : delivery_(std::move(delivery)), mainQueue_(std::move(mainQueue)) {
    soon_.setSingleShot(true);
    QObject::connect(&soon_, &QTimer::timeout, std::move(look));
    QObject::connect(qGuiApp, &QGuiApplication::focusWindowChanged, &soon_,
                     static_cast<void (QTimer::*)()>(&QTimer::start));
}

void ScreenWatch::watch(const QObject& holder) {
    if (std::ranges::any_of(watched_, [&holder](const auto& watched) { return watched == &holder; })) {
        return;
    }
    watched_.emplace_back(&holder);
    const QMetaObject& timer = QTimer::staticMetaObject;
    for (const auto& [type, signature] : pageSignals) {
        if (const QMetaMethod changed = qtSignal(holder, type, signature); changed.isValid()) {
            QObject::connect(&holder, changed, &soon_, timer.method(timer.indexOfSlot("start()")));
        }
    }
}

void ScreenWatch::update(const SeenScreens& seen) {
    std::erase_if(watched_, [](const auto& watched) { return watched.isNull(); });
    for (const QObject* const holder : seen.holders()) {
        watch(*holder);
    }
    const auto isSame = [](const Shown& shown, const SeenScreen& screen) {
        return shown.object == screen.object && shown.controller->className() == screen.name;
    };
    std::vector<std::shared_ptr<ViewController>> went;
    std::erase_if(shown_, [&](const Shown& shown) {
        const bool isGone = std::ranges::none_of(
            seen.list(), [&](const SeenScreen& screen) { return isSame(shown, screen); });
        if (isGone) {
            went.push_back(shown.controller);
        }
        return isGone;
    });
    std::vector<std::shared_ptr<ViewController>> came;
    for (const SeenScreen& screen : seen.list()) {
        if (std::ranges::none_of(shown_, [&](const Shown& shown) { return isSame(shown, screen); })) {
            came.push_back(std::make_shared<ViewController>(screen.name));
            shown_.push_back({screen.object, came.back()});
        }
    }
    if (went.empty() && came.empty()) {
        return;
    }
    mainQueue_->post([delivery = delivery_, went = std::move(went), came = std::move(came)] {
        for (const auto& controller : went) {
            delivery->didDisappear(controller, false);
        }
        for (const auto& controller : came) {
            delivery->didAppear(controller, false);
        }
    });
}

}  // namespace mireth::qt
