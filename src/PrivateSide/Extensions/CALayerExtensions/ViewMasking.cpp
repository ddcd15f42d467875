#include "PrivateSide/Extensions/CALayerExtensions/ViewMasking.hpp"

#include <algorithm>
#include <functional>
#include <utility>

#include "MirethVex/Platform/ImageView.hpp"
#include "MirethVex/Platform/TextViews.hpp"
#include "PrivateSide/Extensions/CALayerExtensions/RegexValue.hpp"

namespace mireth {

using platform::View;
using platform::ViewClass;

namespace {

/// By class, as toolkits register their widgets, and by type: a host may well build a Label under a class
/// that it did not register below the label's, and its text is no less private for that.
bool isTextOrImage(const View& view, const ViewClass& viewClass) {
    return viewClass.isKindOf(ViewClass::label()) || viewClass.conformsToTextInput() ||
           viewClass.isKindOf(ViewClass::imageView()) ||
           dynamic_cast<const platform::Label*>(&view) != nullptr ||
           dynamic_cast<const platform::TextInputView*>(&view) != nullptr ||
           dynamic_cast<const platform::ImageView*>(&view) != nullptr;
}

}  // namespace

bool isRectShadowView(const ViewClass& viewClass) {
    return matches(viewClass.name(), RegexValue::shadowViewRegex);
}

bool isSystemInterfaceView(const ViewClass& viewClass) {
    return matches(viewClass.name(), RegexValue::systemInterfaceRegex);
}

bool isSystemAlertActionView(const ViewClass& viewClass) {
    return matches(viewClass.name(), RegexValue::systemAlertActionRegex);
}

std::optional<bool> showsDeclarativeContent(const View& view) {
    if (const auto controller = view.viewController()) {
        return dynamic_cast<const platform::AnyUIHostingViewController*>(controller.get()) != nullptr;
    }
    return view.wasDeclarative() ? std::optional(true) : std::nullopt;
}

bool isSwiftUIView(const View& view) {
    auto shows = showsDeclarativeContent(view);
    for (auto above = view.superview(); above && !shows; above = above->superview()) {
        shows = showsDeclarativeContent(*above);
    }
    return shows.value_or(false);
}

ViewMasking::ViewMasking(std::vector<const ViewClass*> additionalViewTypesToMask)
    : additionalViewTypesToMask_(std::move(additionalViewTypesToMask)) {}

bool ViewMasking::shouldBeMasked(const View& view) {
    return verdict(view).masks([&view] { return isSwiftUIView(view); });
}

const ViewMasking::Verdict& ViewMasking::verdict(const View& view) {
    const ViewClass& viewClass = view.viewClass();
    const Key key{&viewClass, &typeid(view), viewClass.conformsToTextInput()};
    const auto known = verdicts_.find(key);
    if (known != verdicts_.end()) {
        return known->second;
    }
    return verdicts_.emplace(key, classify(view, viewClass)).first->second;
}

ViewMasking::Verdict ViewMasking::classify(const View& view, const ViewClass& viewClass) const {
    Verdict verdict;
    verdict.maskedAsBuiltIn = (isTextOrImage(view, viewClass) && !isRectShadowView(viewClass)) ||
                              isSystemAlertActionView(viewClass) || isSystemInterfaceView(viewClass);
    verdict.maskedByHost = std::ranges::any_of(
        additionalViewTypesToMask_,
        [&viewClass](const ViewClass* masked) { return masked != nullptr && viewClass.isKindOf(*masked); });
    verdict.isImageView = dynamic_cast<const platform::ImageView*>(&view) != nullptr;
    return verdict;
}

std::size_t ViewMasking::KeyHash::operator()(const Key& key) const noexcept {
    const std::size_t viewClass = std::hash<const void*>()(key.viewClass);
    const std::size_t type = std::hash<const void*>()(key.type);
    return viewClass * 31 + type;
}

}  // namespace mireth
