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
        // Held meanwhile: it need not be part of the tree.
        const auto unmasked = withEnabledMasking_ ? nullptr : view.unmasked();
        return copyShown(unmasked ? *unmasked : view, declarative);
    }

  private:
    std::shared_ptr<Layer> copyShown(const View& view, bool declarative) {
        const auto verdict = masking_.verdict(view);
        const bool isBlock = walk_.isEndless(view) || isMasked(view, verdict, declarative);
        auto layer = copyLayer(view, isBlock);
        if (isBlock) {
            return layer;
        }
        if (verdict.isImageView) {
            copyImageViewProperties(view, *layer);
        }
        addSubviews(view, *layer, declarative);
        return layer;
    }

    /// `declarative` is brought up to the view's own controller, if it has one.
    bool isMasked(const View& view, const ViewMasking::Verdict& verdict, bool& declarative) const {
        return withEnabledMasking_ && verdict.masks([&view, &declarative] {
            declarative = showsDeclarativeContent(view).value_or(declarative);
            return declarative;
        });
    }

    std::shared_ptr<Layer> copyLayer(const View& view, bool isBlock) const {
        const auto copy = isBlock ? makeMaskBlock : copyProperties;
        // Read at once, and the pointer held meanwhile: the next call on the view may put another in its
        // place.
        if (const auto presentation = withEnabledAnimations_ ? view.presentationLayer() : nullptr) {
            return copy(*presentation);
        }
        return copy(view.layer());
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
