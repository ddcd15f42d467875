#include "Platform/HitTest.hpp"

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

#include "Platform/LayerShape.hpp"

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

double depthOf(const std::shared_ptr<View>& view) {
    const double depth = view->layer().geometry.zPosition;
    return std::isnan(depth) ? 0 : depth;
}

/// Adds the subviews of `parent` to the end, the front one last.
void pushSubviews(const Candidate& parent, std::vector<Candidate>& candidates) {
    auto subviews = parent.view->subviews();
    std::ranges::stable_sort(subviews, {}, depthOf);
    const AffineTransform space = sublayerSpaceOf(parent.view->layer());
    for (auto& subview : subviews) {
        if (const auto toSubview = subview->layer().transformToSuperlayer().concatenating(space).inverted()) {
            candidates.push_back({std::move(subview), toSubview->apply(parent.point)});
        }
    }
}

}  // namespace

std::shared_ptr<View> deepestViewAt(std::shared_ptr<View> root, Point point) {
    // A list of its own instead of the stack, which a very deep tree would use up.
    std::vector<Candidate> candidates{{std::move(root), point}};
    while (!candidates.empty()) {
        Candidate candidate = std::move(candidates.back());
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
        pushSubviews(candidate, candidates);
    }
    return nullptr;
}

}  // namespace mireth::platform
