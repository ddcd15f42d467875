#include "platforms/qt/mirror/RectangleLook.hpp"

#include <QGradient>
#include <QImage>
#include <QJSValue>
#include <QPainter>
#include <QQmlListReference>
#include <QVariant>
#include <algorithm>
#include <cmath>
#include <optional>

#include "platforms/qt/mirror/LookView.hpp"
#include "platforms/qt/objects/LayerValues.hpp"
#include "platforms/qt/objects/QtProperty.hpp"

namespace mireth::qt {

namespace {

struct Gradient {
    QGradientStops stops;
    bool isHorizontal = false;
};

Gradient declaredGradient(const QObject& object) {
    Gradient gradient;
    const QQmlListReference stops(qtProperty(object, "QQuickGradient", "stops"));
    for (qsizetype index = 0; index < stops.count(); ++index) {
        if (const QObject* const stop = stops.at(index)) {
            gradient.stops.append({qtProperty(*stop, "QQuickGradientStop", "position").toReal(),
                                   qtProperty(*stop, "QQuickGradientStop", "color").value<QColor>()});
        }
    }
    gradient.isHorizontal = qtProperty(object, "QQuickGradient", "orientation").toInt() == Qt::Horizontal;
    return gradient;
}

QGradientStops reversed(QGradientStops stops) {
    std::ranges::reverse(stops);
    for (auto& [position, color] : stops) {
        position = 1 - position;
    }
    return stops;
}

/// One that Qt has ready may lie aslant; along the side that it follows most it runs forwards in items.
Gradient presetGradient(QGradient::Preset number) {
    const QGradient preset(number);
    if (preset.type() != QGradient::LinearGradient) {
        return {};
    }
    const auto& linear = static_cast<const QLinearGradient&>(preset);
    const QPointF way = linear.finalStop() - linear.start();
    const bool isHorizontal = std::abs(way.x()) > std::abs(way.y());
    const bool isForwards = (isHorizontal ? way.x() : way.y()) >= 0;
    return {isForwards ? linear.stops() : reversed(linear.stops()), isHorizontal};
}

/// The property holds a Gradient, or the number or name of one that Qt has ready. Without stops there is
/// none.
Gradient gradientOf(const QQuickItem& item) {
    const QVariant value = qtProperty(item, "QQuickRectangle", "gradient");
    const auto script = value.value<QJSValue>();
    if (script.isQObject()) {
        return declaredGradient(*script.toQObject());
    }
    const bool isPreset = script.isNumber() || script.isString();
    return isPreset ? presetGradient(script.toVariant().value<QGradient::Preset>()) : Gradient();
}

/// As a strip of pixels that is drawn out to the whole layer.
platform::Image stripOf(const Gradient& gradient) {
    constexpr int length = 64;
    QImage strip(gradient.isHorizontal ? length : 1, gradient.isHorizontal ? 1 : length,
                 QImage::Format_ARGB32_Premultiplied);
    strip.fill(Qt::transparent);
    QLinearGradient along(QPointF(0, 0),
                          QPointF(strip.width() > 1 ? length : 0, strip.width() > 1 ? 0 : length));
    along.setStops(gradient.stops);
    QPainter painter(&strip);
    painter.fillRect(strip.rect(), along);
    painter.end();
    return imageOf(strip);
}

/// What a button looks like while it is pressed is no change that a tap has made; what stays of it is.
bool isBackgroundOfAPushButton(const QQuickItem& item) {
    const QQuickItem* const parent = item.parentItem();
    return parent != nullptr && item.childItems().isEmpty() && parent->inherits("QQuickAbstractButton") &&
           !qtProperty(*parent, "QQuickAbstractButton", "checkable").toBool() &&
           qtProperty(*parent, "QQuickControl", "background").value<QQuickItem*>() == &item;
}

/// As contents, which are not compared before and after a tap.
void addColorAsContents(const QColor& color, platform::Layer& layer) {
    QImage pixel(1, 1, QImage::Format_ARGB32_Premultiplied);
    pixel.fill(color);
    layer.content.contents = imageOf(pixel);
}

void addBorder(const QQuickItem& item, platform::Layer& layer) {
    // To ask for the property would make the border, and one that was never set tells a width and a colour
    // too.
    const auto& children = item.children();
    const auto border =
        std::ranges::find_if(children, [](const QObject* child) { return child->inherits("QQuickPen"); });
    if (border == children.end()) {
        return;
    }
    const double width = (*border)->property("width").toDouble();
    const auto color = colorOf((*border)->property("color").value<QColor>());
    if (width > 0 && color) {
        layer.appearance.borderWidth = width;
        layer.appearance.borderColor = color;
    }
}

void addFill(const QQuickItem& item, platform::Layer& layer) {
    const auto color = qtProperty(item, "QQuickRectangle", "color").value<QColor>();
    if (const Gradient gradient = gradientOf(item); !gradient.stops.isEmpty()) {
        layer.content.contents = stripOf(gradient);
    } else if (isBackgroundOfAPushButton(item)) {
        addColorAsContents(color, layer);
    } else {
        layer.appearance.backgroundColor = colorOf(color);
    }
}

/// The part of the item that is filled: all of it, but for a rectangle with paddings.
QRectF filledPartOf(const QQuickItem& item) {
    const QRectF whole(0, 0, item.width(), item.height());
    if (!item.inherits("QQuickPaddedRectangle")) {
        return whole;
    }
    const auto padding = [&item](const char* side) {
        return qtProperty(item, "QQuickPaddedRectangle", side).toDouble();
    };
    return whole.adjusted(padding("leftPadding"), padding("topPadding"), -padding("rightPadding"),
                          -padding("bottomPadding"));
}

/// In a layer the border lies above what is in it, and what cuts the contents or the clip to round corners
/// cuts all of that off, too; in an item none of this is so.
bool standsInTheWayOfItsChildren(const platform::Layer& layer, const QQuickItem& item) {
    const auto& appearance = layer.appearance;
    const bool cuts =
        appearance.cornerRadius > 0 && (appearance.masksToBounds || layer.content.contents.hasBitmap());
    return (appearance.borderWidth > 0 || cuts) && !item.childItems().isEmpty();
}

bool isTranslucent(const std::optional<Color>& color) {
    return color && color->alpha < 1;
}

}  // namespace

void addRectangleLook(const QQuickItem& item, platform::View& view) {
    platform::Layer& own = view.mutableLayer();
    own.appearance.cornerRadius = qtProperty(item, "QQuickRectangle", "radius").toDouble();
    addFill(item, own);
    addBorder(item, own);
    platform::View* look = &view;
    const QRectF part = filledPartOf(item);
    if (part.size() != item.size() || standsInTheWayOfItsChildren(own, item)) {
        look = &moveLookIntoSubview(view, {part.x(), part.y(), part.width(), part.height()});
    }
    auto& appearance = look->mutableLayer().appearance;
    if (appearance.cornerRadius > 0 && look->layer().content.contents.hasBitmap()) {
        appearance.masksToBounds = true;
    }
    if (appearance.borderWidth > 0 && (isTranslucent(appearance.borderColor) || own.appearance.opacity < 1)) {
        keepFillWithinBorder(*look);
    }
}

}  // namespace mireth::qt
