#include "Platform/HitTest.hpp"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <utility>
#include <vector>

#include "Platform/LayerShape.hpp"
#include "Platform/ViewTreeLimits.hpp"

namespace mireth::platform {

namespace {

/// What is fainter cannot be seen, so nobody means to touch it.
constexpr double leastOpacity = 0.01;

struct Candidate {
    std::shared_ptr<View> view;
    /// In the view's coordinates.
    Point point;
    /// True: all below it has been passed over, and it is the view itself that is asked.
    bool isSearched = false;
};

double depthOf(const View& view) {
    const double depth = view.layer().geometry.zPosition;
    return std::isnan(depth) ? 0 : depth;
}

/// As they are drawn, back to front: equal depths stand in list order.
std::vector<std::shared_ptr<View>> drawingOrder(const std::vector<std::shared_ptr<View>>& subviews) {
    std::vector<std::pair<double, std::size_t>> places;
    places.reserve(subviews.size());
    for (std::size_t index = 0; index < subviews.size(); ++index) {
        places.emplace_back(depthOf(*subviews[index]), index);
    }
    std::ranges::sort(places);
    std::vector<std::shared_ptr<View>> ordered;
    ordered.reserve(subviews.size());
    for (const auto& [depth, index] : places) {
        ordered.push_back(subviews[index]);
    }
    return ordered;
}

/// Adds the subviews of `parent` to the end, the front one last.
void pushSubviews(const Candidate& parent, std::vector<Candidate>& candidates) {
    const AffineTransform space = sublayerSpaceOf(parent.view->layer());
    for (const auto& subview : drawingOrder(parent.view->subviews())) {
        if (const auto toSubview = subview->layer().transformToSuperlayer().concatenating(space).inverted()) {
            candidates.push_back({subview, toSubview->apply(parent.point)});
        }
    }
}

}  // namespace

std::shared_ptr<View> deepestViewAt(std::shared_ptr<View> root, Point point) {
    // A list of its own instead of the stack, which a very deep tree would use up.
    std::vector<Candidate> candidates{{std::move(root), point}};
    std::size_t viewsSeen = 0;
    while (!candidates.empty()) {
        const Candidate candidate = std::move(candidates.back());
        candidates.pop_back();
        if (candidate.isSearched) {
            return candidate.view;
        }
        const Layer& layer = candidate.view->layer();
        const LayerAppearance& appearance = layer.appearance;
        const bool holdsPoint = layer.geometry.bounds.contains(candidate.point);
        if (appearance.hidden || !(appearance.opacity >= leastOpacity) ||
            (appearance.masksToBounds && !holdsPoint)) {
            continue;
        }
        if (holdsPoint) {
            candidates.push_back({candidate.view, candidate.point, true});
        }
        if (viewsSeen++ < maxViews) {
            pushSubviews(candidate, candidates);
        }
    }
    return nullptr;
}

}  // namespace mireth::platform
