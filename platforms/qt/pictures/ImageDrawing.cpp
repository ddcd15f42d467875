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
QRectF placeOf(const PictureValues& values) {
    const QSizeF painted(values.get<double>("paintedWidth"), values.get<double>("paintedHeight"));
    const QSizeF spare = values.get<QSizeF>("size") - painted;
    const int across = values.get<int>("horizontalAlignment");
    const int down = values.get<int>("verticalAlignment");
    const double left = across == Qt::AlignLeft    ? 0
                        : across == Qt::AlignRight ? spare.width()
                                                   : spare.width() / 2;
    const double top = down == Qt::AlignTop      ? 0
                       : down == Qt::AlignBottom ? spare.height()
                                                 : spare.height() / 2;
    return {QPointF(left, top), painted};
}

/// The part of the source that is loaded; null for all of it.
QRect sourcePartOf(const PictureValues& values) {
    return values.get<QRectF>("sourceClipRect").toRect();
}

/// The part then counts in pixels of a picture that was scaled while it was loaded.
bool isPartOfAScaledSource(const PictureValues& values) {
    const QRect part = sourcePartOf(values);
    return !part.isNull() && values.get<QSize>("sourceSize") != part.size();
}

QImage read(const PictureValues& values, QSizeF size) {
    QImageReader reader(values.get<QString>("file"));
    reader.setAutoTransform(values.get<bool>("autoTransform"));
    const QSize wanted = size.toSize();
    const bool isSmaller = wanted.width() < reader.size().width() && wanted.height() < reader.size().height();
    const QRect part = sourcePartOf(values);
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

/// Icons are drawn in one colour.
void colorize(QImage& picture, const QColor& color) {
    if (picture.isNull() || !color.isValid() || color.alpha() == 0) {
        return;
    }
    QPainter painter(&picture);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(picture.rect(), color);
}

void drawTiles(QPainter& painter, const PictureValues& values, int fillMode) {
    const QSizeF whole = values.get<QSizeF>("size");
    QSizeF size(values.get<double>("implicitWidth"), values.get<double>("implicitHeight"));
    if (fillMode == tileVertically) {
        size.setWidth(whole.width());
    } else if (fillMode == tileHorizontally) {
        size.setHeight(whole.height());
    }
    const QImage picture = read(values, size).scaled(size.toSize().expandedTo({1, 1}));
    painter.fillRect(QRectF(QPointF(0, 0), whole), QBrush(picture));
}

void turnOver(QPainter& painter, const PictureValues& values) {
    const QSizeF size = values.get<QSizeF>("size");
    const bool isAcross = values.get<bool>("mirror");
    const bool isUpsideDown = values.get<bool>("mirrorVertically");
    painter.translate(isAcross ? size.width() : 0, isUpsideDown ? size.height() : 0);
    painter.scale(isAcross ? -1 : 1, isUpsideDown ? -1 : 1);
}

void drawImage(QPainter& painter, const PictureValues& values) {
    const int fillMode = values.get<int>("fillMode");
    if (fillMode >= tile && fillMode <= tileHorizontally) {
        drawTiles(painter, values, fillMode);
        return;
    }
    const QRectF place = placeOf(values);
    QImage picture = read(values, place.size());
    colorize(picture, values.get<QColor>("color"));
    painter.setRenderHint(QPainter::SmoothPixmapTransform, values.get<bool>("smooth"));
    painter.drawImage(place, picture);
}

/// What of a BorderImage is not stretched.
void drawBorderImage(QPainter& painter, const PictureValues& values) {
    const QMargins margins(values.get<int>("left"), values.get<int>("top"), values.get<int>("right"),
                           values.get<int>("bottom"));
    const QTileRules rules(static_cast<Qt::TileRule>(values.get<int>("horizontalTileMode")),
                           static_cast<Qt::TileRule>(values.get<int>("verticalTileMode")));
    const QPixmap picture = QPixmap::fromImage(read(values, {}));
    qDrawBorderPixmap(&painter, QRectF(QPointF(0, 0), values.get<QSizeF>("size")).toRect(), margins, picture,
                      picture.rect(), margins, rules);
}

template <auto drawKind>
bool drawIfItCanBeRead(QPainter& painter, const PictureValues& values) {
    const auto file = values.get<QString>("file");
    if (file.isEmpty() || !isQuickToRead(QImageReader(file)) || isPartOfAScaledSource(values)) {
        return false;
    }
    turnOver(painter, values);
    drawKind(painter, values);
    return true;
}

ItemDrawing drawingOfBorderImage(const QQuickItem& item) {
    ItemDrawing drawing;
    drawing.values.read(item, "QQuickBorderImage", {"horizontalTileMode", "verticalTileMode"});
    if (const auto* const border = qtProperty(item, "QQuickBorderImage", "border").value<QObject*>()) {
        drawing.values.read(*border, "QQuickScaleGrid", {"left", "top", "right", "bottom"});
    }
    drawing.draw = drawIfItCanBeRead<drawBorderImage>;
    return drawing;
}

ItemDrawing drawingOfImage(const QQuickItem& item) {
    ItemDrawing drawing;
    drawing.values.read(item, "QQuickImage",
                        {"fillMode", "horizontalAlignment", "verticalAlignment", "paintedWidth",
                         "paintedHeight", "autoTransform", "sourceClipRect"});
    // Other pictures have none.
    for (const char* const type : {"QQuickIconImage", "QQuickColorImage"}) {
        if (item.inherits(type)) {
            drawing.values.read(item, type, {"color"});
        }
    }
    drawing.draw = drawIfItCanBeRead<drawImage>;
    return drawing;
}

}  // namespace

std::optional<ItemDrawing> imageDrawingOf(QQuickItem& item) {
    if (!item.inherits("QQuickImageBase")) {
        return std::nullopt;
    }
    if (qtProperty(item, "QQuickImageBase", "status").toInt() != ready) {
        return ItemDrawing();
    }
    ItemDrawing drawing =
        item.inherits("QQuickBorderImage") ? drawingOfBorderImage(item) : drawingOfImage(item);
    drawing.values.add("size", item.size());
    drawing.values.add("file", localFileOf(item));
    drawing.values.read(item, "QQuickItem", {"smooth", "implicitWidth", "implicitHeight"});
    drawing.values.read(item, "QQuickImageBase", {"sourceSize", "mirror", "mirrorVertically"});
    drawing.area = {QPointF(0, 0), item.size()};
    return drawing;
}

}  // namespace mireth::qt
