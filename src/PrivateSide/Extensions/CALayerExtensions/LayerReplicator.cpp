#include "PrivateSide/Extensions/CALayerExtensions/LayerReplicator.hpp"

#include <utility>

#include "MirethVex/Platform/ImageView.hpp"
#include "PrivateSide/Extensions/CALayerExtensions/LayerOperations.hpp"

namespace mireth {

using platform::ImageView;
using platform::Layer;
using platform::View;

namespace {

std::shared_ptr<Layer> copyProperties(const Layer& source) {
    auto copy = std::make_shared<Layer>();
    copy->content = source.content;
    copy->appearance = source.appearance;
    copy->filters = source.filters;
    copy->rendering = source.rendering;
    copy->geometry = source.geometry;
    copy->transform = source.transform;
    return copy;
}

void copyImageViewProperties(const View& view, Layer& copy) {
    const auto* imageView = dynamic_cast<const ImageView*>(&view);
    if (imageView != nullptr && imageView->usesTintForImage()) {
        copy.content.contents = imageView->tintedImage();
    }
}

}  // namespace

/// One pass over one tree.
class LayerReplicator::Walk {
  public:
    Walk(ViewMasking& masking, bool withEnabledMasking, bool withEnabledAnimations)
        : masking_(masking),
          withEnabledMasking_(withEnabledMasking),
          withEnabledAnimations_(withEnabledAnimations) {}

    /// `declarative`: whether the nearest controller above the view hosts declarative content. It is carried
    /// down, since looking for it from every view would climb the whole tree each time.
    std::shared_ptr<Layer> copy(const View& view, bool declarative) {
        // Held while it is read: the next call on the view may put another in its place.
        const auto presentation = withEnabledAnimations_ ? view.presentationLayer() : nullptr;
        const Layer& source = presentation != nullptr ? *presentation : view.layer();
        if (walk_.isEndless(view) || isMasked(view, declarative)) {
            return makeMaskBlock(source);
        }
        auto layer = copyProperties(source);
        if (masking_.verdict(view).isImageView) {
            copyImageViewProperties(view, *layer);
        }
        addSubviews(view, *layer, declarative);
        return layer;
    }

  private:
    /// `declarative` is brought up to the view's own controller, if it has one.
    bool isMasked(const View& view, bool& declarative) {
        if (!withEnabledMasking_) {
            return false;
        }
        const auto verdict = masking_.verdict(view);
        if (verdict.maskedAsBuiltIn) {
            return true;
        }
        if (const auto controller = view.viewController()) {
            declarative = hostsDeclarativeContent(controller.get());
        }
        return declarative || verdict.maskedByHost;
    }

    void addSubviews(const View& view, Layer& layer, bool declarative) {
        const ViewTreeWalk::Level level(walk_, view);
        layer.reserveSublayers(level.subviews().size());
        for (const auto& subview : level.subviews()) {
            layer.addSublayer(copy(*subview, declarative));
        }
    }

    ViewMasking& masking_;
    const bool withEnabledMasking_;
    const bool withEnabledAnimations_;
    ViewTreeWalk walk_;
};

LayerReplicator::LayerReplicator(std::vector<const platform::ViewClass*> additionalViewTypesToMask)
    : masking_(std::move(additionalViewTypesToMask)) {}

std::shared_ptr<Layer> LayerReplicator::replicateLayerTree(const View& root, bool withEnabledMasking,
                                                           bool withEnabledAnimations) {
    Walk walk(masking_, withEnabledMasking, withEnabledAnimations);
    return walk.copy(root, withEnabledMasking && isSwiftUIView(root));
}

}  // namespace mireth
