#include "PrivateSide/Extensions/CALayerExtensions/ViewTreeWalk.hpp"

#include <algorithm>

namespace mireth {

using platform::View;

namespace {

/// A list of our own: a subview that is built while it is asked may change its superview's.
std::vector<std::shared_ptr<View>> listSubviews(const View& view) {
    const auto& live = view.subviews();
    std::vector<std::shared_ptr<View>> subviews(live.begin(), live.end());
    std::erase(subviews, nullptr);
    return subviews;
}

}  // namespace

bool ViewTreeWalk::isEndless(const View& view) {
    return ancestors_.size() >= maxDepth || viewsSeen_++ >= maxViews ||
           std::ranges::find(ancestors_, &view) != ancestors_.end();
}

ViewTreeWalk::Level::Level(ViewTreeWalk& walk, const View& view)
    : walk_(walk), subviews_(listSubviews(view)) {
    walk_.ancestors_.push_back(&view);
}

ViewTreeWalk::Level::~Level() {
    walk_.ancestors_.pop_back();
}

}  // namespace mireth
