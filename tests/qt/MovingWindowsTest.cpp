// Windows in which everything moves: lists scroll, things turn, and pop-ups come and go while they are
// recorded. Text and pictures have saturated colours, all else is grey; not one pixel of theirs may be in the
// decoded video.
#include <QBuffer>
#include <QCalendarWidget>
#include <QComboBox>
#include <QDialog>
#include <QGraphicsTextItem>
#include <QGraphicsView>
#include <QLabel>
#include <QListWidget>
#include <QMenu>
#include <QQuickItem>
#include <QScrollArea>
#include <QScrollBar>
#include <QTimer>
#include <QToolTip>
#include <QVBoxLayout>

#include "qt/support/Pictures.hpp"
#include "qt/support/QmlScene.hpp"
#include "qt/support/RecordedSession.hpp"

namespace mireth::qttest {

namespace {

using platform::Image;

QImage canaryPicture() {
    QImage picture(32, 32, QImage::Format_RGB32);
    picture.fill(QColor(0, 200, 0));
    return picture;
}

/// With the canary for PICTURE.
std::string withPicture(const char* qml) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    canaryPicture().save(&buffer, "PNG");
    return QByteArray(qml)
        .replace("PICTURE", "'data:image/png;base64," + bytes.toBase64() + "'")
        .toStdString();
}

QPalette canaryPalette() {
    QPalette palette(QColor(200, 200, 200), QColor(240, 240, 240));
    palette.setColor(QPalette::Base, QColor(250, 250, 250));
    palette.setColor(QPalette::Highlight, QColor(120, 120, 120));
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::BrightText,
                            QPalette::HighlightedText, QPalette::PlaceholderText, QPalette::ToolTipText}) {
        palette.setColor(role, Qt::red);
    }
    return palette;
}

QStringList secrets() {
    QStringList texts;
    for (int number = 0; number < 200; ++number) {
        texts.append(QString("Secret %1").arg(number));
    }
    return texts;
}

constexpr const char* movingItems = R"(
    palette {
        windowText: "red"; text: "red"; buttonText: "red"; brightText: "red"; highlightedText: "red"
        placeholderText: "red"; toolTipText: "red"; highlight: "#808080"
    }
    ListView {
        width: 250; height: 200; model: 500; clip: true
        delegate: ItemDelegate { width: 250; text: "Secret " + index; icon.source: PICTURE; icon.color: "transparent" }
        NumberAnimation on contentY { to: 8000; duration: 4000; running: true }
    }
    Text {
        x: 80; y: 240; text: "Secret"; color: "red"; font.pixelSize: 30
        RotationAnimation on rotation { from: 0; to: 360; duration: 900; loops: -1; running: true }
        NumberAnimation on scale { from: 0.3; to: 2; duration: 1300; loops: -1; running: true }
    }
    Image {
        y: 300; width: 40; height: 40; source: PICTURE
        NumberAnimation on x { from: -20; to: 240; duration: 1100; loops: -1; running: true }
    }
    SwipeView {
        objectName: "pages"; y: 350; width: 250; height: 50; clip: true
        Label { text: "Secret" }
        TextField { text: "Secret" }
        Label { text: "Secret secret" }
    }
    Tumbler { y: 400; height: 90; model: ["Secret", "Secret", "Secret"] }
    ComboBox { objectName: "combo"; x: 100; y: 420; model: ["Secret", "Secret"] }
    Menu { objectName: "menu"; x: 20; y: 40; MenuItem { text: "Secret"; icon.source: PICTURE } }
    Dialog {
        objectName: "dialog"; x: 20; y: 150; dim: false; title: "Secret"; standardButtons: Dialog.Ok
        Text { text: "Secret"; color: "red" }
    }
    Drawer {
        objectName: "drawer"; width: 100; height: 500; dim: false
        Text { text: "Secret"; color: "red" }
    }
    ToolTip { objectName: "tip"; x: 100; y: 300; text: "Secret" }
)";

class EndToEndQtMoving : public RecordedSession {
  protected:
    /// Does the steps in turn, many times, for as long as some frames take.
    void record(const std::shared_ptr<platform::Window>& window, std::vector<std::function<void()>> steps) {
        start(window);
        QTimer timer;
        std::size_t step = 0;
        QObject::connect(&timer, &QTimer::timeout, [&] { steps[step++ % steps.size()](); });
        timer.start(90);
        runFor(4.2);
        timer.stop();
        stop();
    }

    void expectMovingFramesWithoutCanary() const {
        const auto seen = frames();
        ASSERT_GE(seen.size(), 5U);
        for (std::size_t index = 0; index < seen.size(); ++index) {
            EXPECT_EQ(
                endtoend::findPixel(seen[index], [](endtoend::Rgb color) { return saturation(color) > 24; }),
                std::nullopt)
                << "frame " << index;
            EXPECT_TRUE(endtoend::findPixel(seen[index], isMask)) << "frame " << index;
        }
        const auto before = seen.front().pixels();
        const auto isOther = [&before](const Image& frame) {
            return !std::ranges::equal(frame.pixels(), before);
        };
        EXPECT_TRUE(std::ranges::any_of(seen, isOther)) << "nothing moved";
    }

  private:
    static bool isMask(endtoend::Rgb color) { return endtoend::distance(color, {188, 188, 188}) <= 3; }
};

TEST_F(EndToEndQtMoving, ItemsThatScrollTurnAndPopUpShowNoCanary) {
    QmlScene scene(withPicture(movingItems));
    scene.window().resize(250, 500);
    std::vector<std::function<void()>> steps;
    for (const char* const name : {"menu", "dialog", "drawer", "tip"}) {
        QObject* const popup = &scene.object(name);
        steps.emplace_back([popup] { QMetaObject::invokeMethod(popup, "open"); });
        steps.emplace_back([&scene] { EXPECT_TRUE(findCanary(scene.window().grabWindow())); });
        steps.emplace_back([] {});
        steps.emplace_back([popup] { QMetaObject::invokeMethod(popup, "close"); });
    }
    auto* const list = scene.object("combo").property("popup").value<QObject*>();
    steps.emplace_back([list] { QMetaObject::invokeMethod(list, "open"); });
    steps.emplace_back([&scene] {
        QObject& pages = scene.object("pages");
        pages.setProperty("currentIndex", (pages.property("currentIndex").toInt() + 1) % 3);
    });
    steps.emplace_back([list] { QMetaObject::invokeMethod(list, "close"); });
    record(platform_.windowOf(scene.window()), std::move(steps));
    expectMovingFramesWithoutCanary();
}

TEST_F(EndToEndQtMoving, WidgetsThatScrollTurnAndPopUpShowNoCanary) {
    QWidget window;
    window.setPalette(canaryPalette());
    window.resize(250, 500);
    QVBoxLayout layout(&window);
    QListWidget list;
    list.addItems(secrets());
    layout.addWidget(&list);
    QScrollArea area;
    auto* const inside = new QLabel(secrets().join(' '));
    inside->setPixmap(QPixmap::fromImage(canaryPicture().scaled(800, 100)));
    area.setWidget(inside);
    layout.addWidget(&area);
    QGraphicsScene drawing;
    auto* const turning = drawing.addText("Secret");
    turning->setDefaultTextColor(Qt::red);
    QGraphicsView view(&drawing);
    layout.addWidget(&view);
    QComboBox combo;
    combo.addItems({"Secret", "Secret"});
    layout.addWidget(&combo);
    QLabel moving("Secret", &window);
    window.show();
    QMenu menu(&window);
    menu.setPalette(canaryPalette());
    menu.addAction(QPixmap::fromImage(canaryPicture()), "Secret");
    QDialog dialog(&window);
    QVBoxLayout dialogLayout(&dialog);
    QCalendarWidget calendar;
    dialogLayout.addWidget(&calendar);

    int round = 0;
    const auto move = [&] {
        ++round;
        list.verticalScrollBar()->setValue(round * 3);
        area.horizontalScrollBar()->setValue(round * 20);
        turning->setRotation(round * 25);
        moving.move(round * 7 % 200, round * 11 % 400);
    };
    const auto at = [&window](int x, int y) { return window.mapToGlobal(QPoint(x, y)); };
    record(platform_.windowOf(window), {
                                           [&] {
                                               move();
                                               menu.popup(at(30, 60));
                                           },
                                           [&] { EXPECT_TRUE(findCanary(menu.grab().toImage())); },
                                           move,
                                           [&] {
                                               menu.close();
                                               combo.showPopup();
                                           },
                                           move,
                                           [&] { EXPECT_TRUE(findCanary(window.grab().toImage())); },
                                           [&] {
                                               combo.hidePopup();
                                               dialog.move(at(10, 100));
                                               dialog.show();
                                           },
                                           [&] { calendar.showNextMonth(); },
                                           move,
                                           [&] {
                                               dialog.hide();
                                               QToolTip::showText(at(50, 300), "Secret", &window);
                                           },
                                           move,
                                           move,
                                       });
    QToolTip::hideText();
    expectMovingFramesWithoutCanary();
}

}  // namespace

}  // namespace mireth::qttest
