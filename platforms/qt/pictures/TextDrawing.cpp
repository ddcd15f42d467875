#include "platforms/qt/pictures/TextDrawing.hpp"

#include <QAbstractTextDocumentLayout>
#include <QFont>
#include <QFontMetricsF>
#include <QQuickTextDocument>
#include <QTextDocument>
#include <QTextOption>

#include "platforms/qt/objects/QtProperty.hpp"

namespace mireth::qt {

namespace {

constexpr int nativeRendering = 1;

/// The items' numbers for formats are Qt's, and one more.
constexpr int styledText = 4;

/// The one of the three classes of texts that `item` is of; null for other items.
const char* textClassOf(const QQuickItem& item) {
    for (const char* const type : {"QQuickText", "QQuickTextInput", "QQuickTextEdit"}) {
        if (item.inherits(type)) {
            return type;
        }
    }
    return nullptr;
}

QVariant valueOf(const QQuickItem& item, const char* property) {
    const char* const type = textClassOf(item);
    return type != nullptr ? qtProperty(item, type, property) : QVariant();
}

double numberOf(const QQuickItem& item, const char* property) {
    return valueOf(item, property).toDouble();
}

/// Where texts may be, with the paddings taken off.
QRectF roomFor(const QQuickItem& item) {
    return QRectF(0, 0, item.width(), item.height())
        .adjusted(numberOf(item, "leftPadding"), numberOf(item, "topPadding"),
                  -numberOf(item, "rightPadding"), -numberOf(item, "bottomPadding"));
}

/// Texts are not cut off where they end up larger than their item.
QRectF coveredBy(const QQuickItem& item) {
    const QRectF own(0, 0, item.width(), item.height());
    const QSizeF text(numberOf(item, "contentWidth"), numberOf(item, "contentHeight"));
    return own | QRectF(roomFor(item).topLeft(), text);
}

void draw(QPainter& painter, const QTextDocument& document, const QColor& color, QPointF origin) {
    QAbstractTextDocumentLayout::PaintContext context;
    context.palette.setColor(QPalette::Text, color);
    painter.translate(origin);
    document.documentLayout()->draw(&painter, context);
}

QPointF originOf(const QQuickItem& item, double height) {
    const QRectF room = roomFor(item);
    const auto alignment = static_cast<Qt::Alignment>(valueOf(item, "verticalAlignment").toInt());
    const double spare = room.height() - height;
    if (alignment.testFlag(Qt::AlignVCenter)) {
        return room.topLeft() + QPointF(0, spare / 2);
    }
    return room.topLeft() + QPointF(0, alignment.testFlag(Qt::AlignBottom) ? spare : 0);
}

QTextOption optionOf(const QQuickItem& item) {
    QTextOption option(static_cast<Qt::Alignment>(valueOf(item, "effectiveHorizontalAlignment").toInt()));
    const bool isOneLine = valueOf(item, "lineCount").toInt() <= 1;
    option.setWrapMode(isOneLine ? QTextOption::NoWrap
                                 : static_cast<QTextOption::WrapMode>(valueOf(item, "wrapMode").toInt()));
    option.setUseDesignMetrics(valueOf(item, "renderType").toInt() != nativeRendering);
    return option;
}

void setText(QTextDocument& document, const QQuickItem& item) {
    const QString text = valueOf(item, "text").toString();
    const int format = valueOf(item, "textFormat").toInt();
    const bool isRich = format == Qt::RichText || format == styledText ||
                        (format == Qt::AutoText && Qt::mightBeRichText(text));
    if (format == Qt::MarkdownText) {
        document.setMarkdown(text);
    } else if (isRich) {
        document.setHtml(text);
    } else if (valueOf(item, "truncated").toBool() && valueOf(item, "lineCount").toInt() <= 1) {
        const auto elide = static_cast<Qt::TextElideMode>(valueOf(item, "elide").toInt());
        document.setPlainText(
            QFontMetricsF(document.defaultFont()).elidedText(text, elide, roomFor(item).width()));
    } else {
        document.setPlainText(text);
    }
}

void drawText(QPainter& painter, const QQuickItem& item) {
    QTextDocument document;
    document.setDocumentMargin(0);
    document.setDefaultFont(valueOf(item, "font").value<QFont>());
    document.setDefaultTextOption(optionOf(item));
    setText(document, item);
    document.setTextWidth(roomFor(item).width());
    draw(painter, document, valueOf(item, "color").value<QColor>(), originOf(item, document.size().height()));
}

/// One line, scrolled to where the cursor is.
void drawInput(QPainter& painter, QQuickItem& item) {
    QRectF first;
    QMetaObject::invokeMethod(&item, "positionToRectangle", Q_RETURN_ARG(QRectF, first), Q_ARG(int, 0));
    QTextDocument document;
    document.setDocumentMargin(0);
    document.setDefaultFont(valueOf(item, "font").value<QFont>());
    document.setPlainText(valueOf(item, "displayText").toString());
    draw(painter, document, valueOf(item, "color").value<QColor>(),
         roomFor(item).topLeft() + first.topLeft());
}

QTextDocument* documentOf(const QQuickItem& item) {
    const auto* const document = valueOf(item, "textDocument").value<QQuickTextDocument*>();
    return document != nullptr ? document->textDocument() : nullptr;
}

}  // namespace

std::optional<ItemDrawing> textDrawingOf(QQuickItem& item) {
    ItemDrawing drawing;
    drawing.area = coveredBy(item);
    if (item.inherits("QQuickText")) {
        drawing.values = valuesOf(
            item, "QQuickText",
            {"text", "font", "color", "effectiveHorizontalAlignment", "verticalAlignment", "wrapMode",
             "elide", "textFormat", "leftPadding", "topPadding", "contentWidth", "contentHeight"});
        drawing.draw = [&item](QPainter& painter) {
            drawText(painter, item);
            return true;
        };
        return drawing;
    }
    if (item.inherits("QQuickTextInput")) {
        drawing.values = valuesOf(item, "QQuickTextInput",
                                  {"displayText", "font", "color", "effectiveHorizontalAlignment",
                                   "verticalAlignment", "cursorRectangle"});
        drawing.draw = [&item](QPainter& painter) {
            drawInput(painter, item);
            return true;
        };
        return drawing;
    }
    const QTextDocument* const document = item.inherits("QQuickTextEdit") ? documentOf(item) : nullptr;
    if (document == nullptr) {
        return std::nullopt;
    }
    drawing.values =
        valuesOf(item, "QQuickTextEdit",
                 {"font", "color", "effectiveHorizontalAlignment", "verticalAlignment", "contentHeight"});
    drawing.values.append(document->revision());
    drawing.draw = [&item, document](QPainter& painter) {
        draw(painter, *document, valueOf(item, "color").value<QColor>(),
             originOf(item, numberOf(item, "contentHeight")));
        return true;
    };
    return drawing;
}

}  // namespace mireth::qt
