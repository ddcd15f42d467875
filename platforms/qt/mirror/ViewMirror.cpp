#include "platforms/qt/mirror/ViewMirror.hpp"

#include "platforms/qt/mirror/ItemMirror.hpp"
#include "platforms/qt/mirror/LayerValues.hpp"
#include "platforms/qt/mirror/WidgetMirror.hpp"

namespace mireth::qt {

using platform::View;

std::vector<std::shared_ptr<View>> ViewMirror::viewsOf(const LiveWindow& live, SeenScreens& screens) {
    std::vector<std::shared_ptr<View>> views;
    if (!live.isVisible()) {
        return views;
    }
    views.push_back(contentOf(live, screens));
    const Point origin = live.origin();
    for (const LiveWindow& above : live.windowsAbove()) {
        auto content = contentOf(above, screens);
        const Point place = above.origin();
        const Size size = above.size();
        content->setFrame({place.x - origin.x, place.y - origin.y, size.width, size.height});
        content->mutableLayer().appearance.backgroundColor = colorOf(above.backgroundColor());
        views.push_back(std::move(content));
    }
    contents_.endPass();
    return views;
}

std::shared_ptr<View> ViewMirror::contentOf(const LiveWindow& live, SeenScreens& screens) {
    if (QWidget* const widget = live.widget()) {
        screens.addWindow(*widget);
        return WidgetMirror(catalog_, views_, contents_, screens).viewOf(*widget);
    }
    if (QQuickWindow* const window = live.quickWindow()) {
        screens.addWindow(*window);
        return ItemMirror(catalog_, views_, screens).viewOf(*window->contentItem());
    }
    // A window that Qt knows nothing of but its place.
    const Size size = live.size();
    auto block = views_.make({&platform::ViewClass::view(), Shown::label});
    block->setFrame({0, 0, size.width, size.height});
    return block;
}

}  // namespace mireth::qt
