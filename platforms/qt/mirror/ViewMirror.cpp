#include "platforms/qt/mirror/ViewMirror.hpp"

#include "platforms/qt/mirror/ItemMirror.hpp"
#include "platforms/qt/mirror/WidgetMirror.hpp"
#include "platforms/qt/objects/LayerValues.hpp"
#include "platforms/qt/pictures/PictureViews.hpp"

namespace mireth::qt {

using platform::View;

namespace {

/// Fills a window of this size with what the window holds, which may be moved or turned in it as a whole.
std::shared_ptr<View> filledBy(std::shared_ptr<View> content, Size size) {
    const bool isPlain = content->layer().transform.transform.isIdentity() &&
                         content->frame() == Rect{0, 0, size.width, size.height};
    if (isPlain) {
        return content;
    }
    // Of its class, to be masked whenever it is.
    auto window = std::make_shared<View>(content->viewClass());
    window->addSubview(content);
    return window;
}

}  // namespace

std::vector<std::shared_ptr<View>> ViewMirror::viewsOf(const LiveWindow& live, SeenScreens& screens) {
    auto views = allOf(live, screens, nullptr);
    contents_.endPass();
    return views;
}

std::vector<std::shared_ptr<View>> ViewMirror::unmaskedViewsOf(const LiveWindow& live, SeenScreens& screens) {
    if (pictures_ == nullptr) {
        pictures_ = std::make_shared<UnmaskedPictures>();
    }
    return allOf(live, screens, pictures_.get());
}

void ViewMirror::paintPictures() {
    // What the app does meanwhile may last, and see them let go.
    if (const auto pictures = pictures_) {
        pictures->endPass();
    }
}

std::vector<std::shared_ptr<View>> ViewMirror::allOf(const LiveWindow& live, SeenScreens& screens,
                                                     UnmaskedPictures* pictures) {
    std::vector<std::shared_ptr<View>> views;
    if (!live.isVisible()) {
        return views;
    }
    catalog_.startPass();
    state_.startPass();
    size_.startPass();
    views.push_back(contentOf(live, screens, pictures));
    const Point origin = live.origin();
    auto windowsAbove = live.windowsAbove();
    order_->sort(windowsAbove, live.window());
    for (const LiveWindow& above : windowsAbove) {
        const Point place = above.origin();
        const Size size = above.size();
        auto window = filledBy(contentOf(above, screens, pictures), size);
        window->setFrame({place.x - origin.x, place.y - origin.y, size.width, size.height});
        auto& appearance = window->mutableLayer().appearance;
        // What is a block stays one.
        if (!appearance.backgroundColor && !above.isTranslucent()) {
            appearance.backgroundColor = colorOf(above.backgroundColor());
        }
        appearance.opacity *= above.opacity();
        appearance.masksToBounds = true;
        views.push_back(std::move(window));
    }
    // At the back: the library looks at no more than so many views of a window.
    views.insert(views.begin(), state_.view());
    return views;
}

std::shared_ptr<View> ViewMirror::contentOf(const LiveWindow& live, SeenScreens& screens,
                                            UnmaskedPictures* pictures) {
    if (QWidget* const widget = live.widget()) {
        screens.addWindow(*widget);
        return WidgetMirror(catalog_, views_, contents_, state_, screens, size_,
                            pictures != nullptr ? &pictures->ofWidgets : nullptr)
            .viewOf(*widget);
    }
    if (QQuickWindow* const window = live.quickWindow()) {
        screens.addWindow(*window);
        return ItemMirror(catalog_, views_, state_, screens, size_,
                          pictures != nullptr ? &pictures->ofItems : nullptr)
            .viewOf(*window->contentItem());
    }
    // A window that Qt knows nothing of but its place.
    const Size size = live.size();
    auto block = views_.make({&platform::ViewClass::view(), Shown::label});
    block->setFrame({0, 0, size.width, size.height});
    makePlainBlock(block->mutableLayer());
    return block;
}

}  // namespace mireth::qt
