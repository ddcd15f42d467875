#include "platforms/qt/mirror/StyledContents.hpp"

#include <QAbstractSlider>
#include <QDial>
#include <QImage>
#include <QPainter>
#include <QScrollBar>
#include <QSlider>
#include <QStyle>
#include <QStyleFactory>
#include <QStyleOptionSlider>
#include <algorithm>
#include <bit>
#include <typeinfo>
#include <utility>

#include "platforms/qt/objects/LayerValues.hpp"
#include "platforms/qt/objects/PassEntries.hpp"

namespace mireth::qt {

namespace {

/// Larger ones are not worth a picture.
constexpr int maximumSide = 8192;

/// The colours of a palette without the pictures and patterns that its brushes may be made of, and without
/// those of texts, in which arrows are drawn.
QPalette plainColorsOf(const QPalette& palette) {
    QPalette plain = palette;
    for (int group = 0; group < QPalette::NColorGroups; ++group) {
        for (int role = 0; role < QPalette::NColorRoles; ++role) {
            const auto ofGroup = static_cast<QPalette::ColorGroup>(group);
            const auto ofRole = static_cast<QPalette::ColorRole>(role);
            if (palette.brush(ofGroup, ofRole).style() != Qt::SolidPattern) {
                plain.setColor(ofGroup, ofRole, palette.color(ofGroup, ofRole));
            }
        }
    }
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
        plain.setColor(role, plain.color(QPalette::Dark));
    }
    return plain;
}

QStyle::ComplexControl controlOf(const QAbstractSlider& slider) {
    if (qobject_cast<const QScrollBar*>(&slider) != nullptr) {
        return QStyle::CC_ScrollBar;
    }
    return qobject_cast<const QDial*>(&slider) != nullptr ? QStyle::CC_Dial : QStyle::CC_Slider;
}

QStyleOptionSlider optionOf(const QAbstractSlider& slider, const QPalette& palette) {
    QStyleOptionSlider option;
    option.initFrom(&slider);
    // Styles keep the state of their animations in the object they are given.
    option.styleObject = nullptr;
    option.palette = palette;
    option.palette.setCurrentColorGroup(slider.palette().currentColorGroup());
    option.rect = QRect(QPoint(0, 0), slider.size());
    option.state.setFlag(QStyle::State_Horizontal, slider.orientation() == Qt::Horizontal);
    option.state.setFlag(QStyle::State_MouseOver, false);
    option.state.setFlag(QStyle::State_HasFocus, false);
    option.orientation = slider.orientation();
    option.minimum = slider.minimum();
    option.maximum = slider.maximum();
    option.sliderPosition = slider.sliderPosition();
    option.sliderValue = slider.value();
    option.singleStep = slider.singleStep();
    option.pageStep = slider.pageStep();
    option.upsideDown = slider.orientation() == Qt::Horizontal
                            ? slider.invertedAppearance() != (option.direction == Qt::RightToLeft)
                            : !slider.invertedAppearance();
    option.subControls = QStyle::SC_All;
    if (qobject_cast<const QSlider*>(&slider) != nullptr) {
        // Its direction is in `upsideDown` already; styles would turn it again.
        option.direction = Qt::LeftToRight;
    }
    if (const auto* const ticked = qobject_cast<const QSlider*>(&slider)) {
        option.tickPosition = ticked->tickPosition();
        option.tickInterval = ticked->tickInterval();
    }
    if (const auto* const dial = qobject_cast<const QDial*>(&slider)) {
        option.dialWrapping = dial->wrapping();
        option.notchTarget = dial->notchTarget();
        option.tickInterval = dial->notchSize();
        option.subControls.setFlag(QStyle::SC_DialTickmarks, dial->notchesVisible());
    }
    if (controlOf(slider) == QStyle::CC_ScrollBar) {
        option.upsideDown = slider.invertedAppearance();
    }
    return option;
}

std::vector<std::int64_t> numbersOf(QStyle::ComplexControl control, const QStyleOptionSlider& option,
                                    const QStyle& style) {
    return {control,
            option.rect.width(),
            option.rect.height(),
            static_cast<std::int64_t>(static_cast<int>(option.state)),
            static_cast<std::int64_t>(option.direction),
            static_cast<std::int64_t>(option.orientation),
            option.minimum,
            option.maximum,
            option.sliderPosition,
            option.singleStep,
            option.pageStep,
            static_cast<std::int64_t>(option.upsideDown),
            static_cast<std::int64_t>(option.tickPosition),
            option.tickInterval,
            static_cast<std::int64_t>(option.dialWrapping),
            std::bit_cast<std::int64_t>(static_cast<double>(option.notchTarget)),
            static_cast<std::int64_t>(static_cast<int>(option.subControls)),
            option.palette.cacheKey(),
            static_cast<std::int64_t>(reinterpret_cast<std::intptr_t>(&style))};
}

}  // namespace

bool StyledContents::drawsNothingElse(const QStyle& style) {
    if (known_.empty()) {
        for (const char* const name : {"Fusion", "Windows"}) {
            known_.emplace_back(QStyleFactory::create(QString::fromLatin1(name)));
        }
    }
    // By the type itself: a style of the app's may well derive from one of these.
    return std::ranges::any_of(
        known_, [&style](const auto& known) { return known != nullptr && typeid(*known) == typeid(style); });
}

const QPalette& StyledContents::plain(const QPalette& palette) {
    const auto known = std::ranges::find(palettes_, palette, &PlainPalette::source);
    if (known != palettes_.end()) {
        return known->plain;
    }
    // One that changes all the time would leave all of its values here.
    constexpr std::size_t many = 16;
    if (palettes_.size() >= many) {
        palettes_.clear();
    }
    return palettes_.emplace_back(palette, plainColorsOf(palette)).plain;
}

platform::Image StyledContents::of(const QWidget& widget) {
    const auto* const slider = qobject_cast<const QAbstractSlider*>(&widget);
    const QStyle& style = *widget.style();
    if (slider == nullptr || !drawsNothingElse(style) || widget.width() > maximumSide ||
        widget.height() > maximumSide) {
        return {};
    }
    const QStyle::ComplexControl control = controlOf(*slider);
    const QStyleOptionSlider option = optionOf(*slider, plain(widget.palette()));
    auto numbers = numbersOf(control, option, style);
    Kept& kept = kept_[&widget];
    kept.wasSeen = true;
    if (kept.numbers != numbers) {
        QImage picture(widget.size(), QImage::Format_ARGB32_Premultiplied);
        picture.fill(Qt::transparent);
        QPainter painter(&picture);
        style.drawComplexControl(control, &option, &painter, nullptr);
        painter.end();
        kept.image = imageOf(picture);
        kept.numbers = std::move(numbers);
    }
    return kept.image;
}

void StyledContents::endPass() {
    eraseUnseen(kept_);
}

}  // namespace mireth::qt
