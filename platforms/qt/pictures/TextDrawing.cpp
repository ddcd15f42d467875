#include "platforms/qt/pictures/TextDrawing.hpp"

#include <QAbstractTextDocumentLayout>
#include <QFont>
#include <QFontMetricsF>
#include <QMetaMethod>
#include <QQuickTextDocument>
#include <QTextDocument>
#include <QTextOption>
#include <cstring>

#include "platforms/qt/objects/QtProperty.hpp"

namespace mireth::qt {

namespace {

constexpr int nativeRendering = 1;

/// The items' numbers for formats are Qt's, and one more.
constexpr int styledText = 4;

/// What texts of all three classes have.
PictureValues valuesOfText(const QQuickItem& item, const char* type) {
    PictureValues values;
    values.add("size", item.size());
    values.read(
        item, type,
        {"font", "color", "effectiveHorizontalAlignment", "verticalAlignment", "wrapMode", "renderType",
         "leftPadding", "topPadding", "rightPadding", "bottomPadding", "contentWidth", "contentHeight"});
    return values;
}

QRectF wholeOf(const PictureValues& values) {
    return {QPointF(0, 0), values.get<QSizeF>("size")};
}

/// Where texts may be, with the paddings taken off.
QRectF roomIn(const PictureValues& values) {
    return wholeOf(values).adjusted(values.get<double>("leftPadding"), values.get<double>("topPadding"),
                                    -values.get<double>("rightPadding"),
                                    -values.get<double>("bottomPadding"));
}

/// Texts are not cut off where they end up larger than their item.
QRectF coveredBy(const PictureValues& values) {
    const QSizeF text(values.get<double>("contentWidth"), values.get<double>("contentHeight"));
    return wholeOf(values) | QRectF(roomIn(values).topLeft(), text);
}

void draw(QPainter& painter, const QTextDocument& document, const PictureValues& values, QPointF origin) {
    QAbstractTextDocumentLayout::PaintContext context;
    context.palette.setColor(QPalette::Text, values.get<QColor>("color"));
    painter.translate(origin);
    document.documentLayout()->draw(&painter, context);
}

QPointF originOf(const PictureValues& values, double height) {
    const QRectF room = roomIn(values);
    const auto alignment = static_cast<Qt::Alignment>(values.get<int>("verticalAlignment"));
    const double spare = room.height() - height;
    if (alignment.testFlag(Qt::AlignVCenter)) {
        return room.topLeft() + QPointF(0, spare / 2);
    }
    return room.topLeft() + QPointF(0, alignment.testFlag(Qt::AlignBottom) ? spare : 0);
}

bool isOneLine(const PictureValues& values) {
    return values.get<int>("lineCount") <= 1;
}

QTextOption optionOf(const PictureValues& values) {
    QTextOption option(static_cast<Qt::Alignment>(values.get<int>("effectiveHorizontalAlignment")));
    option.setWrapMode(isOneLine(values) ? QTextOption::NoWrap
                                         : static_cast<QTextOption::WrapMode>(values.get<int>("wrapMode")));
    option.setUseDesignMetrics(values.get<int>("renderType") != nativeRendering);
    return option;
}

void setText(QTextDocument& document, const PictureValues& values) {
    const auto text = values.get<QString>("text");
    const int format = values.get<int>("textFormat");
    const bool isRich = format == Qt::RichText || format == styledText ||
                        (format == Qt::AutoText && Qt::mightBeRichText(text));
    if (format == Qt::MarkdownText) {
        document.setMarkdown(text);
    } else if (isRich) {
        document.setHtml(text);
    } else if (values.get<bool>("truncated") && isOneLine(values)) {
        const auto elide = static_cast<Qt::TextElideMode>(values.get<int>("elide"));
        document.setPlainText(
            QFontMetricsF(document.defaultFont()).elidedText(text, elide, roomIn(values).width()));
    } else {
        document.setPlainText(text);
    }
}

bool drawText(QPainter& painter, const PictureValues& values) {
    QTextDocument document;
    document.setDocumentMargin(0);
    document.setDefaultFont(values.get<QFont>("font"));
    document.setDefaultTextOption(optionOf(values));
    setText(document, values);
    document.setTextWidth(roomIn(values).width());
    draw(painter, document, values, originOf(values, document.size().height()));
    return true;
}

ItemDrawing drawingOfText(const QQuickItem& text) {
    constexpr const char* type = "QQuickText";
    ItemDrawing drawing{valuesOfText(text, type), {}, drawText};
    drawing.values.read(text, type, {"text", "textFormat", "elide", "truncated", "lineCount"});
    return drawing;
}

/// Where the first character is, in the room for the text: with one that is scrolled, outside of it. Asks
/// Qt's own class: a type of the app's may have a function of that name.
QPointF firstPlaceIn(QQuickItem& input, const char* type) {
    const QMetaObject* declaring = input.metaObject();
    while (std::strcmp(declaring->className(), type) != 0) {
        declaring = declaring->superClass();
    }
    const QMetaMethod method = declaring->method(declaring->indexOfMethod("positionToRectangle(int)"));
    QRectF first;
    method.invoke(&input, Qt::DirectConnection, Q_RETURN_ARG(QRectF, first), Q_ARG(int, 0));
    return first.topLeft();
}

/// One line, scrolled to where the cursor is.
bool drawInput(QPainter& painter, const PictureValues& values) {
    QTextDocument document;
    document.setDocumentMargin(0);
    document.setDefaultFont(values.get<QFont>("font"));
    document.setPlainText(values.get<QString>("displayText"));
    draw(painter, document, values, roomIn(values).topLeft() + values.get<QPointF>("firstPlace"));
    return true;
}

ItemDrawing drawingOfInput(QQuickItem& input) {
    constexpr const char* type = "QQuickTextInput";
    ItemDrawing drawing{valuesOfText(input, type), {}, drawInput};
    drawing.values.read(input, type, {"displayText"});
    drawing.values.add("firstPlace", firstPlaceIn(input, type));
    return drawing;
}

/// The item lays its document out, by its own properties.
std::optional<ItemDrawing> drawingOfEdit(const QQuickItem& edit) {
    constexpr const char* type = "QQuickTextEdit";
    const auto* const holder = qtProperty(edit, type, "textDocument").value<QQuickTextDocument*>();
    const QTextDocument* const document = holder != nullptr ? holder->textDocument() : nullptr;
    if (document == nullptr) {
        return std::nullopt;
    }
    ItemDrawing drawing{valuesOfText(edit, type), {}, {}};
    drawing.values.read(edit, type, {"textMargin", "tabStopDistance"});
    drawing.values.add("revision", document->revision());
    drawing.draw = [document](QPainter& painter, const PictureValues& values) {
        draw(painter, *document, values, originOf(values, values.get<double>("contentHeight")));
        return true;
    };
    return drawing;
}

std::optional<ItemDrawing> drawingOf(QQuickItem& item) {
    if (item.inherits("QQuickText")) {
        return drawingOfText(item);
    }
    if (item.inherits("QQuickTextInput")) {
        return drawingOfInput(item);
    }
    return item.inherits("QQuickTextEdit") ? drawingOfEdit(item) : std::nullopt;
}

}  // namespace

std::optional<ItemDrawing> textDrawingOf(QQuickItem& item) {
    auto drawing = drawingOf(item);
    if (drawing) {
        drawing->area = coveredBy(drawing->values);
    }
    return drawing;
}

}  // namespace mireth::qt
