// Tells the library which screens of a window come and go.
#pragma once

#include <QObject>
#include <QPointer>
#include <QTimer>
#include <functional>
#include <memory>
#include <vector>

#include "MirethVex/Platform/AppearanceDelivery.hpp"
#include "MirethVex/Platform/MainQueue.hpp"
#include "MirethVex/Platform/ViewController.hpp"
#include "platforms/qt/screens/SeenScreens.hpp"

namespace mireth::qt {

/// Compares what one pass over the window has seen with the pass before. Recording makes one for each of its
/// frames, two a second; what holds pages, and the application where the focus is in another window, ask for
/// one in between. Main thread only.
class ScreenWatch {
  public:
    /// `look` makes a pass now, and gives what it saw to `update`.
    ScreenWatch(std::shared_ptr<const platform::AppearanceDelivery> delivery,
                std::shared_ptr<platform::MainQueue> mainQueue, std::function<void()> look);

    /// Delivers what has changed, a turn of the main queue later: first the screens that went, then those
    /// that came.
    void update(const SeenScreens& seen);
    /// Nobody listens any more: whoever does next is told of all the screens that are there.
    void forget() noexcept { shown_.clear(); }

  private:
    void watch(const QObject& holder);

    struct Shown {
        const QObject* object = nullptr;
        std::shared_ptr<platform::ViewController> controller;
    };

    const std::shared_ptr<const platform::AppearanceDelivery> delivery_;
    const std::shared_ptr<platform::MainQueue> mainQueue_;
    std::vector<Shown> shown_;
    /// What holds pages.
    std::vector<QPointer<const QObject>> watched_;
    /// Runs out as soon as the app has done what it is doing.
    QTimer soon_;
};

}  // namespace mireth::qt
