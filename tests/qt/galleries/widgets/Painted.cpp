// Widgets that are painted by the app: by classes of its own, by filters, style sheets, effects and brushes.
#include <QAbstractScrollArea>
#include <QDial>
#include <QFocusFrame>
#include <QFrame>
#include <QGraphicsBlurEffect>
#include <QGraphicsColorizeEffect>
#include <QGraphicsDropShadowEffect>
#include <QGraphicsOpacityEffect>
#include <QHBoxLayout>
#include <QLabel>
#include <QQuickWidget>
#include <QQuickWindow>
#include <QRubberBand>
#include <QScrollBar>
#include <QSizeGrip>
#include <QSlider>
#include <QTemporaryDir>

#include "qt/galleries/WidgetExhibit.hpp"

namespace mireth::qttest {

namespace {

/// Paints for a widget that does not paint itself.
class PaintingFilter : public QObject {
  public:
    using QObject::QObject;
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() != QEvent::Paint) {
            return false;
        }
        auto* const widget = static_cast<QWidget*>(watched);
        QPainter(widget).fillRect(widget->rect(), canary);
        return true;
    }
};

class OwnScrollArea : public QAbstractScrollArea {
  protected:
    void paintEvent(QPaintEvent* /*event*/) override {
        QPainter(viewport()).fillRect(viewport()->rect(), canary);
    }
};

QWidget* filtered(QWidget* widget) {
    widget->setMinimumSize(20, 20);
    widget->installEventFilter(new PaintingFilter(widget));
    return widget;
}

QWidget* styled(QWidget* widget, const char* sheet) {
    // Of this process alone: the galleries of all scale factors run at once.
    static const QTemporaryDir folder;
    const QString path = folder.filePath("canary.png");
    canaryPicture().save(path);
    widget->setStyleSheet(QString::fromLatin1(sheet).replace("PICTURE", path));
    return widget;
}

template <class Effect>
QWidget* withEffect() {
    auto* const label = new QLabel("Secret");
    label->setGraphicsEffect(new Effect);
    return label;
}

template <class Effect>
QWidget* containerWithEffect() {
    auto* const widget = new QWidget;
    (new QHBoxLayout(widget))->addWidget(new QLabel("Secret"));
    widget->setGraphicsEffect(new Effect);
    return widget;
}

QWidget* withChild(QWidget* parent) {
    (new QHBoxLayout(parent))->addWidget(new QSlider);
    return parent;
}

QWidget* brushPicture() {
    auto* const widget = new QWidget;
    QPalette palette;
    palette.setBrush(QPalette::Window, QBrush(canaryPicture()));
    widget->setAutoFillBackground(true);
    widget->setPalette(palette);
    return widget;
}

QWidget* quickWidget() {
    auto* const made = new QQuickWidget;
    made->quickWindow()->setColor(canary);
    return made;
}

}  // namespace

std::vector<WidgetExhibit> paintedWidgets() {
    return {
        {"Painted", [] { return new Painted<QWidget>; }, false},
        {"PaintedFrame", [] { return new Painted<QFrame>; }, false},
        {"PaintedContainer", [] { return withChild(new Painted<QWidget>); }, false},
        {"AbstractScrollArea", [] { return new OwnScrollArea; }},
        {"PaintedByAFilter", [] { return filtered(new QWidget); }, false},
        {"FrameByAFilter", [] { return filtered(new QFrame); }, false},
        {"SliderByAFilter", [] { return filtered(new QSlider); }, false},
        {"ScrollBarByAFilter", [] { return filtered(new QScrollBar); }, false},
        {"DialByAFilter", [] { return filtered(new QDial); }, false},
        {"SizeGripByAFilter", [] { return filtered(new QSizeGrip(nullptr)); }, false},
        {"RubberBandByAFilter",
         [] {
             auto* const band = filtered(new QRubberBand(QRubberBand::Rectangle));
             band->setWindowFlags(Qt::Widget);
             return band;
         },
         false},
        {"FocusFrameByAFilter", [] { return filtered(new QFocusFrame); }, false},
        {"SheetBackground", [] { return styled(new QFrame, "QFrame { background-image: url(PICTURE) }"); },
         false},
        {"SheetBorder",
         [] { return styled(new QFrame, "QFrame { border-image: url(PICTURE) 4; border-width: 4px }"); },
         false},
        {"SheetHandle",
         [] {
             return styled(new QSlider, "QSlider::handle { image: url(PICTURE); height: 32px; width: 32px }");
         },
         false},
        {"SheetColor", [] { return styled(new QLabel("Secret"), "color: #ff0000"); }},
        {"OpacityEffect", withEffect<QGraphicsOpacityEffect>},
        {"ShadowEffect", withEffect<QGraphicsDropShadowEffect>},
        {"BlurEffect", containerWithEffect<QGraphicsBlurEffect>},
        {"ColorizeEffect", containerWithEffect<QGraphicsColorizeEffect>},
        {"QuickWidget", quickWidget},
        {"BrushPicture", brushPicture, false},
    };
}

}  // namespace mireth::qttest
