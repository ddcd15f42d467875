#include "platforms/qt/screens/ScreenWatch.hpp"

#include <QGuiApplication>
#include <QWindow>
#include <algorithm>
#include <array>
#include <utility>

namespace mireth::qt {

using platform::ViewController;

ScreenWatch::ScreenWatch(std::shared_ptr<const platform::AppearanceDelivery> delivery,
                         std::shared_ptr<platform::MainQueue> mainQueue, std::function<void()> look)
    : delivery_(std::move(delivery)), mainQueue_(std::move(mainQueue)) {
    soon_.setSingleShot(true);
    QObject::connect(&soon_, &QTimer::timeout, std::move(look));
    QObject::connect(qGuiApp, &QGuiApplication::focusWindowChanged, &soon_,
                     static_cast<void (QTimer::*)()>(&QTimer::start));
}

void ScreenWatch::watch(const QObject& holder) {
    // By name: the classes of Qt Quick that have these signals are not public.
    struct Signal {
        const char* signature;
        const char* code;
    };
    constexpr std::array signals{Signal{"currentItemChanged()", "2currentItemChanged()"},
                                 Signal{"itemChanged()", "2itemChanged()"},
                                 Signal{"currentChanged(int)", "2currentChanged(int)"}};
    for (const auto& signal : signals) {
        if (holder.metaObject()->indexOfSignal(signal.signature) >= 0) {
            QObject::connect(&holder, signal.code, &soon_, SLOT(start()), Qt::UniqueConnection);
        }
    }
}

void ScreenWatch::update(const SeenScreens& seen) {
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
