#include "platforms/qt/mirror/RectangleLook.hpp"

#include <QGradient>
#include <QImage>
#include <QJSValue>
#include <QPainter>
#include <QQmlListReference>
#include <QVariant>
#include <algorithm>
#include <optional>

#include "platforms/qt/mirror/LayerValues.hpp"
#include "platforms/qt/mirror/QtProperty.hpp"

namespace mireth::qt {

namespace {

struct Gradient {
    QGradientStops stops;
    bool isHorizontal = false;
};

Gradient gradientOf(QObject& object) {
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

/// The property holds a Gradient or the number of one that Qt has ready.
std::optional<Gradient> gradientOf(const QQuickItem& item) {
    const QVariant value = qtProperty(item, "QQuickRectangle", "gradient");
    const auto script = value.value<QJSValue>();
    if (script.isQObject()) {
        return gradientOf(*script.toQObject());
    }
    const bool isPreset = script.isNumber() || script.isString();
    if (!isPreset) {
        return std::nullopt;
    }
    return Gradient{QGradient(static_cast<QGradient::Preset>(script.toInt())).stops(), false};
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
    if (width > 0) {
        layer.appearance.borderWidth = width;
        layer.appearance.borderColor = colorOf((*border)->property("color").value<QColor>());
    }
}

}  // namespace

void addRectangleLook(const QQuickItem& item, platform::Layer& layer) {
    layer.appearance.cornerRadius = qtProperty(item, "QQuickRectangle", "radius").toDouble();
    const auto color = qtProperty(item, "QQuickRectangle", "color").value<QColor>();
    if (const auto gradient = gradientOf(item)) {
        layer.content.contents = stripOf(*gradient);
    } else if (isBackgroundOfAPushButton(item)) {
        addColorAsContents(color, layer);
    } else {
        layer.appearance.backgroundColor = colorOf(color);
    }
    if (layer.content.contents.hasBitmap()) {
        // Contents are cut to round corners only together with what lies in the layer.
        layer.appearance.masksToBounds |= item.childItems().isEmpty();
    }
    addBorder(item, layer);
}

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

}  // namespace mireth::qt
