// What a recorded window takes from the platform.
#pragma once

#include <memory>

#include "MirethVex/Platform/AppearanceDelivery.hpp"
#include "MirethVex/Platform/Clock.hpp"
#include "MirethVex/Platform/MainQueue.hpp"

namespace mireth::qt {

/// The same for all windows.
struct WindowEnvironment {
    std::shared_ptr<platform::Clock> clock;
    std::shared_ptr<platform::MainQueue> mainQueue;
    std::shared_ptr<const platform::AppearanceDelivery> appearance;
};

}  // namespace mireth::qt
