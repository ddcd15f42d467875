#include "Platform/ViewTouches.hpp"

#include <algorithm>
#include <iterator>

#include "Base/GuardedRun.hpp"
#include "Platform/TouchCalls.hpp"

namespace mireth::platform {

void ViewTouches::tell(const TouchEvent& event) {
    TouchEvent told{event.timestamp, takeTakenTouches()};
    std::ranges::move(takeOwnTouches(event), std::back_inserter(told.touches));
    for (const TouchPhase phase : toldPhases) {
        for (const auto& group : byView(phase, told)) {
            runGuarded("a view", [&] { call(*group.first, phase, group.second, told); });
        }
    }
}

std::vector<Touch> ViewTouches::takeTakenTouches() {
    std::vector<Touch> taken;
    for (auto& [identity, active] : touches_.all()) {
        if (active.isTakenFromView && std::exchange(active.isKnownToView, false)) {
            taken.push_back(cancelled(active.last));
        }
    }
    return taken;
}

std::vector<Touch> ViewTouches::takeOwnTouches(const TouchEvent& event) {
    std::vector<Touch> own;
    for (const TouchPhase phase : toldPhases) {
        for (const Touch& touch : event.touches) {
            auto* active = touches_.find(touch);
            if (touch.phase != phase || active == nullptr || active->isTakenFromView) {
                continue;
            }
            if (phase == TouchPhase::began) {
                active->isKnownToView = true;
            }
            own.push_back(touch);
        }
    }
    return own;
}

ViewTouches::TouchesByView ViewTouches::byView(TouchPhase phase, const TouchEvent& event) const {
    TouchesByView result;
    for (const Touch& touch : event.touches) {
        const auto* active = touches_.find(touch);
        const auto view = active == nullptr ? nullptr : active->view.lock();
        if (touch.phase != phase || view == nullptr) {
            continue;
        }
        auto group = std::ranges::find(result, view, &TouchesByView::value_type::first);
        if (group == result.end()) {
            group = result.insert(group, {view, {}});
        }
        group->second.push_back(touch);
    }
    return result;
}

}  // namespace mireth::platform
