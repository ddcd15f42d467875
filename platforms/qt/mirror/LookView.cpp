#include "platforms/qt/mirror/LookView.hpp"

#include <algorithm>
#include <memory>
#include <utility>

namespace mireth::qt {

using platform::Layer;
using platform::View;

bool hasLook(const View& view) {
    const Layer& own = view.layer();
    return own.content.contents.hasBitmap() || own.appearance.backgroundColor ||
           own.appearance.borderWidth > 0;
}

View& moveLookIntoSubview(View& view, const Rect& place) {
    auto look = std::make_shared<View>(view.viewClass());
    Layer& own = view.mutableLayer();
    look->setFrame(place);
    look->mutableLayer().content = std::exchange(own.content, {});
    look->mutableLayer().appearance = own.appearance;
    look->mutableLayer().appearance.opacity = 1;
    own.appearance.backgroundColor.reset();
    own.appearance.borderWidth = 0;
    own.appearance.cornerRadius = 0;
    view.addSubview(look);
    return *look;
}

void keepFillWithinBorder(View& view) {
    Layer& own = view.mutableLayer();
    const double width = own.appearance.borderWidth;
    const Size whole = view.bounds().size();
    const Size inner{whole.width - 2 * width, whole.height - 2 * width};
    auto content = std::exchange(own.content, {});
    const auto color = std::exchange(own.appearance.backgroundColor, std::nullopt);
    if (!(inner.width > 0) || !(inner.height > 0)) {
        return;
    }
    auto fill = std::make_shared<View>(view.viewClass());
    fill->setFrame({width, width, inner.width, inner.height});
    Layer& layer = fill->mutableLayer();
    layer.content = std::move(content);
    layer.appearance.backgroundColor = color;
    layer.appearance.cornerRadius = std::max(0.0, own.appearance.cornerRadius - width);
    layer.appearance.masksToBounds = true;
    view.addSubview(fill);
}

}  // namespace mireth::qt
