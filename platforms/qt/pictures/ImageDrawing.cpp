#include "platforms/qt/pictures/ImageDrawing.hpp"

#include <qdrawutil.h>

#include <QBrush>
#include <QImageIOHandler>
#include <QImageReader>
#include <QMargins>
#include <QPixmap>
#include <QQmlContext>
#include <QQmlFile>
#include <QUrl>
#include <QtQml>
#include <cstdint>

#include "platforms/qt/objects/QtProperty.hpp"

namespace mireth::qt {

namespace {

/// The numbers of the items' status and fill modes.
constexpr int ready = 1;
constexpr int tile = 3;
constexpr int tileVertically = 4;
constexpr int tileHorizontally = 5;

/// Where the source lies in the file system or among the resources; empty when it does not.
QString localFileOf(const QQuickItem& item) {
    QUrl source = qtProperty(item, "QQuickImageBase", "source").toUrl();
    if (const QQmlContext* const context = qmlContext(&item)) {
        source = context->resolvedUrl(source);
    }
    return QQmlFile::urlToLocalFileOrQrc(source);
}

bool isQuickToRead(const QImageReader& reader) {
    constexpr std::int64_t fewPixels = 4'000'000;
    constexpr std::int64_t manyPixels = 64'000'000;
    const QSize size = reader.size();
    const std::int64_t pixels = static_cast<std::int64_t>(size.width()) * size.height();
    return !size.isEmpty() &&
           pixels <= (reader.supportsOption(QImageIOHandler::ScaledSize) ? manyPixels : fewPixels);
}

/// The part of the item that the picture fills, of which the item shows what lies within itself.
QRectF placeOf(const QQuickItem& item) {
    const QSizeF painted(qtProperty(item, "QQuickImage", "paintedWidth").toDouble(),
                         qtProperty(item, "QQuickImage", "paintedHeight").toDouble());
    const double spareWidth = item.width() - painted.width();
    const double spareHeight = item.height() - painted.height();
    const int across = qtProperty(item, "QQuickImage", "horizontalAlignment").toInt();
    const int down = qtProperty(item, "QQuickImage", "verticalAlignment").toInt();
    const double left = across == Qt::AlignLeft ? 0 : across == Qt::AlignRight ? spareWidth : spareWidth / 2;
    const double top = down == Qt::AlignTop ? 0 : down == Qt::AlignBottom ? spareHeight : spareHeight / 2;
    return {QPointF(left, top), painted};
}

/// The part of the source that is loaded; null for all of it.
QRect sourcePartOf(const QQuickItem& item) {
    return qtProperty(item, "QQuickImage", "sourceClipRect").toRectF().toRect();
}

/// The part then counts in pixels of a picture that was scaled while it was loaded.
bool isPartOfAScaledSource(const QQuickItem& item) {
    const QRect part = sourcePartOf(item);
    return !part.isNull() && qtProperty(item, "QQuickImageBase", "sourceSize").toSize() != part.size();
}

QImage read(const QQuickItem& item, QSizeF size) {
    QImageReader reader(localFileOf(item));
    reader.setAutoTransform(qtProperty(item, "QQuickImage", "autoTransform").toBool());
    const QSize wanted = size.toSize();
    const bool isSmaller = wanted.width() < reader.size().width() && wanted.height() < reader.size().height();
    const QRect part = sourcePartOf(item);
    if (!part.isNull()) {
        reader.setClipRect(part);
    } else if (isSmaller && !wanted.isEmpty() &&
               reader.transformation() == QImageIOHandler::TransformationNone) {
        reader.setScaledSize(wanted);
    }
    QImage picture = reader.read().convertToFormat(QImage::Format_ARGB32_Premultiplied);
    picture.setDevicePixelRatio(1);
    return picture;
}

/// Invalid for pictures that have none.
QColor tintOf(const QQuickItem& item) {
    const char* const type = item.inherits("QQuickIconImage") ? "QQuickIconImage" : "QQuickColorImage";
    return qtProperty(item, type, "color").value<QColor>();
}

/// Icons are drawn in one colour.
void colorize(QImage& picture, const QColor& color) {
    if (picture.isNull() || !color.isValid() || color.alpha() == 0) {
        return;
    }
    QPainter painter(&picture);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(picture.rect(), color);
}

void drawTiles(QPainter& painter, const QQuickItem& item, int fillMode) {
    const QRectF whole(0, 0, item.width(), item.height());
    QSizeF size(item.implicitWidth(), item.implicitHeight());
    if (fillMode == tileVertically) {
        size.setWidth(whole.width());
    } else if (fillMode == tileHorizontally) {
        size.setHeight(whole.height());
    }
    const QImage picture = read(item, size).scaled(size.toSize().expandedTo({1, 1}));
    painter.fillRect(whole, QBrush(picture));
}

void turnOver(QPainter& painter, const QQuickItem& item) {
    const bool isAcross = qtProperty(item, "QQuickImageBase", "mirror").toBool();
    const bool isUpsideDown = qtProperty(item, "QQuickImageBase", "mirrorVertically").toBool();
    painter.translate(isAcross ? item.width() : 0, isUpsideDown ? item.height() : 0);
    painter.scale(isAcross ? -1 : 1, isUpsideDown ? -1 : 1);
}

void drawImage(QPainter& painter, const QQuickItem& item) {
    const int fillMode = qtProperty(item, "QQuickImage", "fillMode").toInt();
    if (fillMode >= tile && fillMode <= tileHorizontally) {
        drawTiles(painter, item, fillMode);
        return;
    }
    const QRectF place = placeOf(item);
    QImage picture = read(item, place.size());
    colorize(picture, tintOf(item));
    painter.setRenderHint(QPainter::SmoothPixmapTransform, qtProperty(item, "QQuickItem", "smooth").toBool());
    painter.drawImage(place, picture);
}

/// How much of each side of a BorderImage is not stretched. Empty for other items.
QVariantList edgesOf(const QQuickItem& item) {
    const auto* const border = qtProperty(item, "QQuickBorderImage", "border").value<QObject*>();
    if (border == nullptr) {
        return {};
    }
    return {border->property("left"), border->property("top"), border->property("right"),
            border->property("bottom")};
}

void drawBorderImage(QPainter& painter, const QQuickItem& item) {
    const QVariantList edges = edgesOf(item);
    if (edges.isEmpty()) {
        return;
    }
    const QMargins margins(edges[0].toInt(), edges[1].toInt(), edges[2].toInt(), edges[3].toInt());
    const QTileRules rules(
        static_cast<Qt::TileRule>(qtProperty(item, "QQuickBorderImage", "horizontalTileMode").toInt()),
        static_cast<Qt::TileRule>(qtProperty(item, "QQuickBorderImage", "verticalTileMode").toInt()));
    const QPixmap picture = QPixmap::fromImage(read(item, {}));
    qDrawBorderPixmap(&painter, QRectF(0, 0, item.width(), item.height()).toRect(), margins, picture,
                      picture.rect(), margins, rules);
}

QVariantList valuesOfImage(const QQuickItem& item) {
    return valuesOf(item, "QQuickItem", {"smooth", "implicitWidth", "implicitHeight"}) +
           valuesOf(item, "QQuickImageBase", {"source", "sourceSize", "mirror", "mirrorVertically"}) +
           valuesOf(item, "QQuickImage",
                    {"fillMode", "horizontalAlignment", "verticalAlignment", "paintedWidth", "paintedHeight",
                     "autoTransform", "sourceClipRect"}) +
           valuesOf(item, "QQuickBorderImage", {"horizontalTileMode", "verticalTileMode"}) + edgesOf(item) +
           QVariantList{tintOf(item)};
}

}  // namespace

std::optional<ItemDrawing> imageDrawingOf(QQuickItem& item) {
    if (!item.inherits("QQuickImageBase")) {
        return std::nullopt;
    }
    ItemDrawing drawing;
    if (qtProperty(item, "QQuickImageBase", "status").toInt() != ready) {
        return drawing;
    }
    drawing.values = valuesOfImage(item);
    drawing.area = {0, 0, item.width(), item.height()};
    drawing.draw = [&item](QPainter& painter) {
        const QString file = localFileOf(item);
        if (file.isEmpty() || !isQuickToRead(QImageReader(file)) || isPartOfAScaledSource(item)) {
            return false;
        }
        turnOver(painter, item);
        if (item.inherits("QQuickBorderImage")) {
            drawBorderImage(painter, item);
        } else {
            drawImage(painter, item);
        }
        return true;
    };
    return drawing;
}

}  // namespace mireth::qt
