// What a recorded window takes from the platform.
#pragma once

#include <memory>

#include "MirethVex/Platform/AppearanceDelivery.hpp"
#include "MirethVex/Platform/Clock.hpp"
#include "MirethVex/Platform/MainQueue.hpp"
#include "platforms/qt/objects/WindowOrder.hpp"

namespace mireth::qt {

/// The same for all windows.
struct WindowEnvironment {
    std::shared_ptr<platform::Clock> clock;
    std::shared_ptr<platform::MainQueue> mainQueue;
    std::shared_ptr<const platform::AppearanceDelivery> appearance;
    std::shared_ptr<const WindowOrder> order;
};

}  // namespace mireth::qt
