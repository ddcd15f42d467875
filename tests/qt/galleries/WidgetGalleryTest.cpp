// Every control of Qt Widgets, in Qt's styles and in its states, with text and pictures in saturated colours,
// on grey: not one pixel of them may be in what is recorded, while the widget itself shows them.
#include <gtest/gtest.h>

#include <QApplication>
#include <QDialog>
#include <QHBoxLayout>
#include <QPointer>
#include <QScrollArea>
#include <QScrollBar>
#include <QTest>
#include <QToolTip>
#include <QWhatsThis>
#include <QWindow>
#include <string_view>
#include <tuple>

#include "MirethVex/Qt/QtPlatform.hpp"
#include "qt/galleries/WatchedExhibit.hpp"
#include "qt/galleries/WidgetExhibit.hpp"
#include "qt/support/EventLoop.hpp"

namespace mireth::qttest {

std::vector<WidgetExhibit> widgetExhibits() {
    std::vector<WidgetExhibit> all;
    for (const auto& family : {buttonWidgets(), inputWidgets(), textWidgets(), viewWidgets(),
                               containerWidgets(), dialogWidgets(), popUpWidgets(), paintedWidgets()}) {
        all.insert(all.end(), family.begin(), family.end());
    }
    return all;
}

namespace {

/// Counts the paintings of all widgets.
class PaintCounter : public QObject {
  public:
    PaintCounter() { QApplication::instance()->installEventFilter(this); }
    bool eventFilter(QObject* /*watched*/, QEvent* event) override {
        paintings += event->type() == QEvent::Paint ? 1 : 0;
        return false;
    }
    int paintings = 0;
};

/// What a user does with a widget, one thing after the other.
void use(QWidget& widget, WatchedExhibit& watched) {
    const QPointer<QWindow> window = widget.window()->windowHandle();
    const QPointer<QWidget> alive = &widget;
    const QPoint middle = widget.mapTo(widget.window(), widget.rect().center());
    watched.look("as it is");
    QTest::mouseMove(window, middle);
    watched.look("hovered");
    QTest::mousePress(window, Qt::LeftButton, {}, middle);
    watched.look("pressed");
    QTest::mouseRelease(window, Qt::LeftButton, {}, middle);
    watched.look("clicked");
    widget.setFocus(Qt::TabFocusReason);
    watched.look("focused");
    if (QWidget* const focused = QApplication::focusWidget()) {
        QTest::keyClick(focused, Qt::Key_X);
    }
    watched.look("written into");
    widget.setEnabled(false);
    watched.look("disabled");
    widget.setLayoutDirection(Qt::RightToLeft);
    watched.look("from right to left");
}

/// The widget, and the pop-ups that it has opened.
std::vector<QWidget*> shownBy(QWidget& widget, const QWidget& recorded) {
    std::vector<QWidget*> shown{&widget};
    for (QWidget* const window : QApplication::topLevelWidgets()) {
        if (window->isVisible() && window != &recorded && window != &widget) {
            shown.push_back(window);
        }
    }
    return shown;
}

}  // namespace

class QtWidgetGallery : public testing::TestWithParam<std::tuple<const char*, WidgetExhibit>> {
  protected:
    void SetUp() override {
        QApplication::setStyle(std::get<0>(GetParam()));
        QApplication::setPalette(canaryPalette());
    }
    void TearDown() override {
        QToolTip::hideText();
        QWhatsThis::hideText();
        QApplication::setPalette(QPalette());
        QApplication::setStyle("Fusion");
    }
    const WidgetExhibit& exhibit() const { return std::get<1>(GetParam()); }
    /// One style is enough to see that the video holds what the frames hold.
    static bool isInTheVideo() { return std::get<0>(GetParam()) == std::string_view("Fusion"); }

    /// Each of the widgets shows a canary, and the recorded window a block at its place.
    void expectMasked(const platform::Window& recorded, const QWidget& window, QWidget& exhibited) const {
        const auto shown = shownBy(exhibited, window);
        std::vector<QImage> looks;
        for (QWidget* const widget : shown) {
            looks.push_back(widget->grab().toImage());
            EXPECT_TRUE(findCanary(looks.back())) << "the exhibit itself is to show it";
        }
        const PaintCounter counter;
        const QImage picture = recordedPicture(recorded);
        EXPECT_EQ(counter.paintings, 0) << "nothing is painted for it";
        EXPECT_EQ(findCanary(picture), std::nullopt);
        for (std::size_t index = 0; index < shown.size() && exhibit().isBlock; ++index) {
            const QPoint place = shown[index]->mapToGlobal(QPoint(0, 0)) - window.mapToGlobal(QPoint(0, 0));
            // A pop-up may stand outside of the window, or its text.
            if (index == 0 || picture.rect().contains(QRect(place, shown[index]->size()))) {
                EXPECT_TRUE(isMaskedAt(picture, looks[index], place));
            }
        }
    }

    const qt::QtPlatform platform_;
};

TEST_P(QtWidgetGallery, ShowsNoCanaryInAWindow) {
    QWidget window;
    QHBoxLayout layout(&window);
    const std::unique_ptr<QWidget> widget(exhibit().make());
    const bool isWindow = widget->isWindow() && widget->windowType() != Qt::Window;
    if (!isWindow) {
        layout.addWidget(widget.get());
    }
    window.setGeometry(0, 0, isWindow ? 700 : 300, isWindow ? 600 : 300);
    window.show();
    if (isWindow) {
        widget->move(window.mapToGlobal(QPoint(10, 10)));
    }
    widget->show();
    runFor(0.01);
    if (isWindow) {
        widget->raise();  // some have shown themselves before the window
    }
    const auto recorded = platform_.windowOf(window);
    expectMasked(*recorded, window, *widget);
    WatchedExhibit watched(recorded, isInTheVideo());
    use(*widget, watched);
    watched.expectNoCanaryInTheVideo();
}

TEST_P(QtWidgetGallery, ShowsNoCanaryAsTheWindowItself) {
    const std::unique_ptr<QWidget> widget(exhibit().make());
    widget->resize(400, 300);
    widget->show();
    runFor(0.01);
    expectMasked(*platform_.windowOf(*widget), *widget, *widget);
}

TEST_P(QtWidgetGallery, ShowsNoCanaryInADialogThatScrolls) {
    QWidget window;
    window.setGeometry(0, 0, 400, 400);
    QDialog dialog(&window);
    QHBoxLayout layout(&dialog);
    QScrollArea area;
    layout.addWidget(&area);
    auto* const inside = new QWidget;
    QHBoxLayout insideLayout(inside);
    QWidget* const widget = exhibit().make();
    widget->setWindowFlags(Qt::Widget);
    insideLayout.addWidget(widget);
    inside->resize(inside->sizeHint().expandedTo({600, 500}));
    area.setWidget(inside);
    window.show();
    dialog.setGeometry(20, 20, 350, 300);
    dialog.show();
    runFor(0.01);
    const QImage shown = widget->grab().toImage();
    EXPECT_TRUE(findCanary(shown)) << "the exhibit itself is to show it";
    WatchedExhibit watched(platform_.windowOf(window), isInTheVideo());
    for (const int place : {0, 40, 90}) {
        area.horizontalScrollBar()->setValue(place);
        area.verticalScrollBar()->setValue(place);
        watched.look("scrolled by " + std::to_string(place));
    }
    watched.expectNoCanaryInTheVideo();
}

INSTANTIATE_TEST_SUITE_P(Widgets, QtWidgetGallery,
                         testing::Combine(testing::Values("Fusion", "Windows"),
                                          testing::ValuesIn(widgetExhibits())),
                         [](const auto& shown) {
                             return std::get<0>(shown.param) + std::get<1>(shown.param).name;
                         });

}  // namespace mireth::qttest
