// Settings carried over into views and layers.
#include "phone/ViewHandle.hpp"

#include <algorithm>
#include <cmath>
#include <utility>

#include "MirethVex/Platform/ImageView.hpp"
#include "phone/ScenarioError.hpp"

namespace mireth::phone {

using platform::ViewClass;

namespace {

std::shared_ptr<platform::View> makeView(ViewKind kind, const ViewClass& viewClass) {
    switch (kind) {
        case ViewKind::label:
            return std::make_shared<platform::Label>(viewClass);
        case ViewKind::textField:
            return std::make_shared<platform::TextField>(viewClass);
        case ViewKind::textView:
            return std::make_shared<platform::TextView>(viewClass);
        case ViewKind::image:
            return std::make_shared<platform::ImageView>(viewClass);
        case ViewKind::plain:
        case ViewKind::button:
            break;
    }
    return std::make_shared<platform::View>(viewClass);
}

std::shared_ptr<platform::Label> makeButtonLabel(ViewKind kind, platform::View& view) {
    if (kind != ViewKind::button) {
        return nullptr;
    }
    auto label = std::make_shared<platform::Label>();
    label->content.alignment = platform::TextAlignment::center;
    view.addSubview(label);
    return label;
}

[[noreturn]] void refuse(std::string_view key, std::string_view why) {
    throw ScenarioError("", "the key \"" + std::string(key) + "\" " + std::string(why));
}

}  // namespace

const ViewClass& buttonClass() {
    return ViewClass::registerClass("Button", &ViewClass::view());
}

ViewKind kindOf(const ViewClass& viewClass) {
    if (viewClass.isKindOf(ViewClass::label())) {
        return ViewKind::label;
    }
    if (viewClass.isKindOf(ViewClass::textField())) {
        return ViewKind::textField;
    }
    if (viewClass.isKindOf(ViewClass::textView())) {
        return ViewKind::textView;
    }
    if (viewClass.isKindOf(ViewClass::imageView())) {
        return ViewKind::image;
    }
    return viewClass.isKindOf(buttonClass()) ? ViewKind::button : ViewKind::plain;
}

ViewHandle::ViewHandle(const ViewClass& viewClass, ImageStore& images)
    : images_(images),
      kind_(kindOf(viewClass)),
      view_(makeView(kind_, viewClass)),
      buttonLabel_(makeButtonLabel(kind_, *view_)) {}

void ViewHandle::apply(const ViewSettings& settings) {
    requireSuitable(settings);
    applyAppearance(settings);
    applyText(settings);
    applyImage(settings);
    applyAnimation(settings);
}

void ViewHandle::check(const ViewSettings& settings) const {
    requireSuitable(settings);
    if (settings.image && *settings.image) {
        (void)images_.load(**settings.image);
    }
}

void ViewHandle::requireSuitable(const ViewSettings& settings) const {
    const bool hasText = textContent() != nullptr;
    const bool isInput = kind_ == ViewKind::textField || kind_ == ViewKind::textView;
    if (settings.text && !hasText) {
        refuse("text", "belongs to a view that shows text");
    }
    if (settings.font && !hasText) {
        refuse("font", "belongs to a view that shows text");
    }
    if (settings.alignment && !hasText) {
        refuse("alignment", "belongs to a view that shows text");
    }
    if (settings.color && !hasText && kind_ != ViewKind::image) {
        refuse("color", "belongs to a view that shows text or an image");
    }
    if (settings.firstResponder && !isInput) {
        refuse("firstResponder", "belongs to a text field or a text view");
    }
    if (settings.image && kind_ != ViewKind::image) {
        refuse("image", "belongs to an image view");
    }
}

void ViewHandle::applyAppearance(const ViewSettings& settings) {
    auto& appearance = view_->mutableLayer().appearance;
    if (settings.frame) {
        view_->setFrame(*settings.frame);
    }
    if (settings.background) {
        appearance.backgroundColor = *settings.background;
    }
    if (settings.border) {
        appearance.borderWidth = *settings.border ? (*settings.border)->width : 0;
        appearance.borderColor = *settings.border ? std::optional((*settings.border)->color) : std::nullopt;
    }
    appearance.cornerRadius = settings.cornerRadius.value_or(appearance.cornerRadius);
    appearance.opacity = settings.opacity.value_or(appearance.opacity);
    appearance.hidden = settings.hidden.value_or(appearance.hidden);
    appearance.masksToBounds = settings.clips.value_or(appearance.masksToBounds);
}

void ViewHandle::applyText(const ViewSettings& settings) {
    if (settings.color) {
        color_ = *settings.color;
    }
    auto* content = textContent();
    if (content == nullptr) {
        return;
    }
    if (settings.text) {
        content->text = *settings.text;
    }
    if (settings.font) {
        content->font = *settings.font;
    }
    content->alignment = settings.alignment.value_or(content->alignment);
    if (auto* input = dynamic_cast<platform::TextInputView*>(view_.get())) {
        input->isFirstResponder = settings.firstResponder.value_or(input->isFirstResponder);
    }
    if (settings.text || settings.font || settings.alignment || settings.color || settings.frame) {
        redrawText();
    }
}

void ViewHandle::applyImage(const ViewSettings& settings) {
    auto* imageView = dynamic_cast<platform::ImageView*>(view_.get());
    if (imageView == nullptr) {
        return;
    }
    if (settings.image) {
        imageView->setImage(*settings.image ? images_.load(**settings.image) : platform::Image());
    }
    if (settings.color) {
        imageView->setTint(color_);
    }
}

void ViewHandle::applyAnimation(const ViewSettings& settings) {
    if (settings.animated) {
        animation_ = *settings.animated;
    }
    if (!animation_) {
        view_->setPresentationLayer(nullptr);
        return;
    }
    auto layer = std::make_shared<platform::Layer>(view_->layer());
    if (animation_->frame) {
        layer->setFrame(*animation_->frame);
    }
    layer->appearance.opacity = animation_->opacity.value_or(layer->appearance.opacity);
    view_->setPresentationLayer(std::move(layer));
}

void ViewHandle::redrawText() {
    const auto& text = textContent()->text;
    if (buttonLabel_) {
        buttonLabel_->setFrame(buttonLabelFrame(text.value_or("")));
    }
    const Size size = textBearer().bounds().size();
    images_.account(drawnSize_, false);
    drawnSize_ = text && !text->empty() ? size : Size{};
    images_.account(drawnSize_, true);
    auto& layer = textBearer().mutableLayer();
    layer.content.contents = text ? drawText(*text, textStyle(), size, images_.scale()) : platform::Image();
    layer.geometry.contentsScale = images_.scale();
    // One pixel of the text on one of the screen, also where the frame ends within a pixel.
    layer.appearance.contentsGravity = platform::ContentsGravity::topLeft;
}

Rect ViewHandle::buttonLabelFrame(const std::string& text) const {
    const Size outer = view_->bounds().size();
    const Size line = measureLine(text, textStyle(), images_.scale());
    const Size size{std::min(line.width, outer.width), std::min(line.height, outer.height)};
    // Whole points: text that starts within one is drawn soft.
    const double middle = std::floor((outer.width - size.width) / 2);
    const double top = std::floor((outer.height - size.height) / 2);
    const double margin = std::min(16.0, middle);
    switch (textContent()->alignment) {
        case platform::TextAlignment::left:
            return {margin, top, size.width, size.height};
        case platform::TextAlignment::right:
            return {outer.width - size.width - margin, top, size.width, size.height};
        case platform::TextAlignment::center:
        case platform::TextAlignment::justified:
        case platform::TextAlignment::natural:
            break;
    }
    return {middle, top, size.width, size.height};
}

TextStyle ViewHandle::textStyle() const {
    TextStyle style;
    const auto* content = textContent();
    style.font = content->font.value_or(style.font);
    style.color = color_.value_or(style.color);
    style.alignment = content->alignment;
    if (kind_ == ViewKind::textField) {
        style.inset = 12;
        style.wraps = false;
    } else if (kind_ == ViewKind::textView) {
        style.inset = 12;
        style.fromTop = true;
    }
    return style;
}

platform::TextContent* ViewHandle::textContent() const {
    auto& bearer = textBearer();
    if (auto* label = dynamic_cast<platform::Label*>(&bearer)) {
        return &label->content;
    }
    auto* input = dynamic_cast<platform::TextInputView*>(&bearer);
    return input != nullptr ? &input->content : nullptr;
}

platform::View& ViewHandle::textBearer() const {
    return buttonLabel_ ? *buttonLabel_ : *view_;
}

}  // namespace mireth::phone
