// What a window of widgets looks like in the mirror: where things are, and what of them is seen.
#include <gtest/gtest.h>

#include <QCheckBox>
#include <QFrame>
#include <QGraphicsOpacityEffect>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QPixmap>
#include <QProgressBar>
#include <QProxyStyle>
#include <QPushButton>
#include <QQuickWidget>
#include <QQuickWindow>
#include <QScrollArea>
#include <QScrollBar>
#include <QSlider>
#include <QStyleFactory>
#include <QStyleOption>
#include <QVBoxLayout>
#include <memory>

#include "MirethVex/Platform/TextViews.hpp"
#include "MirethVex/Qt/QtPlatform.hpp"
#include "qt/support/Colors.hpp"
#include "qt/support/EventLoop.hpp"
#include "qt/support/Pictures.hpp"

namespace mireth::qttest {

namespace {

class CardNumber : public QWidget {
    Q_OBJECT
  public:
    using QWidget::QWidget;
};

class GoldCardNumber : public CardNumber {
    Q_OBJECT
  public:
    using CardNumber::CardNumber;
};

class QtWidgetMirror : public testing::Test {
  protected:
    QtWidgetMirror() {
        window_.setPalette(greyPalette());
        window_.resize(200, 100);
    }
    QImage picture(std::vector<const platform::ViewClass*> masked = {}) {
        window_.show();
        runFor(0.01);
        return recordedPicture(*platform_.windowOf(window_), std::move(masked));
    }

    const qt::QtPlatform platform_;
    QWidget window_;
};

TEST_F(QtWidgetMirror, IsTheWindowsSizeAndColour) {
    const QImage seen = picture();
    EXPECT_EQ(seen.size(), QSize(200, 100));
    EXPECT_EQ(seen.pixel(100, 50), qRgb(240, 240, 240));
}

TEST_F(QtWidgetMirror, FollowsTheWindowWhenItIsResizedOrTurned) {
    (void)picture();
    window_.resize(100, 200);
    EXPECT_EQ(picture().size(), QSize(100, 200));
}

TEST_F(QtWidgetMirror, TheSameWindowIsMirroredByOneObject) {
    window_.show();
    const auto recorded = platform_.windowOf(window_);
    EXPECT_EQ(platform_.windowOf(window_), recorded);
    EXPECT_EQ(platform_.windowOf(*window_.windowHandle()), recorded);
    QLabel inside(&window_);
    EXPECT_EQ(platform_.windowOf(inside), recorded);
}

TEST_F(QtWidgetMirror, TheUnseenWindowOfItemsInAWidgetStandsForTheWidgetsOwn) {
    QQuickWidget items(&window_);
    window_.show();
    EXPECT_EQ(platform_.windowOf(*items.quickWindow()), platform_.windowOf(window_));
}

TEST_F(QtWidgetMirror, ABlockStandsWhereTheTextIs) {
    QLabel label("secret", &window_);
    label.setGeometry(20, 30, 60, 20);
    const QImage seen = picture();
    EXPECT_TRUE(isMaskBlock(seen.pixel(50, 40)));
    EXPECT_TRUE(isMaskBlock(seen.pixel(21, 40)));
    EXPECT_TRUE(isMaskBlock(seen.pixel(78, 40)));
    EXPECT_FALSE(isMaskBlock(seen.pixel(18, 40)));
    EXPECT_FALSE(isMaskBlock(seen.pixel(81, 40)));
    EXPECT_FALSE(isMaskBlock(seen.pixel(50, 28)));
}

TEST_F(QtWidgetMirror, HiddenWidgetsAreNotThere) {
    QLabel label("secret", &window_);
    label.setGeometry(20, 30, 60, 20);
    label.hide();
    EXPECT_FALSE(isMaskBlock(picture().pixel(50, 40)));
}

TEST_F(QtWidgetMirror, TheLastRaisedWidgetIsInFront) {
    QWidget panel(&window_);
    panel.setGeometry(0, 0, 200, 100);
    panel.setAutoFillBackground(true);
    panel.setPalette(QPalette(QColor(10, 10, 10)));
    QLabel label("secret", &window_);
    label.setGeometry(20, 30, 60, 20);
    EXPECT_TRUE(isMaskBlock(picture().pixel(50, 40)));
    panel.raise();
    EXPECT_LT(qRed(picture().pixel(50, 40)), 30);
}

TEST_F(QtWidgetMirror, ChildrenAreCutOffAtTheirParentsEdge) {
    QWidget panel(&window_);
    panel.setGeometry(0, 0, 50, 50);
    QLabel label("secret", &panel);
    label.setGeometry(40, 0, 100, 100);
    const QImage seen = picture();
    EXPECT_TRUE(isMaskBlock(seen.pixel(46, 30)));
    EXPECT_FALSE(isMaskBlock(seen.pixel(60, 30)));
}

TEST_F(QtWidgetMirror, ScrolledContentStandsWhereItHasBeenScrolledTo) {
    QScrollArea area(&window_);
    area.setGeometry(0, 0, 200, 100);
    auto* const content = new QWidget;
    content->resize(180, 1000);
    auto* const label = new QLabel("secret", content);
    label->setGeometry(0, 500, 100, 40);
    area.setWidget(content);
    EXPECT_FALSE(isMaskBlock(picture().pixel(50, 30)));
    area.verticalScrollBar()->setValue(490);
    EXPECT_TRUE(isMaskBlock(picture().pixel(50, 30)));
}

TEST_F(QtWidgetMirror, ASliderShowsItsValueAndIsDrawnAnewWhenThatChanges) {
    QSlider slider(Qt::Horizontal, &window_);
    slider.setGeometry(0, 30, 200, 30);
    const QImage low = picture();
    EXPECT_FALSE(isMaskBlock(low.pixel(100, 45)));
    EXPECT_EQ(picture(), low);
    slider.setValue(99);
    EXPECT_NE(picture(), low);
}

QPixmap canary() {
    QPixmap picture(32, 32);
    picture.fill(QColor(0, 200, 0));
    return picture;
}

TEST_F(QtWidgetMirror, PicturesInThePaletteOfASliderAreNotThere) {
    QSlider slider(Qt::Horizontal, &window_);
    slider.setGeometry(0, 0, 200, 30);
    QScrollBar bar(Qt::Horizontal, &window_);
    bar.setGeometry(0, 40, 200, 30);
    bool isEverShown = false;
    for (const char* const name : {"Windows", "Fusion"}) {
        const std::unique_ptr<QStyle> style(QStyleFactory::create(name));
        for (int role = 0; role < QPalette::NColorRoles; ++role) {
            QPalette palette(QColor(200, 200, 200));
            palette.setBrush(static_cast<QPalette::ColorRole>(role), QBrush(canary()));
            for (QWidget* const widget : {static_cast<QWidget*>(&slider), static_cast<QWidget*>(&bar)}) {
                widget->setStyle(style.get());
                widget->setPalette(palette);
            }
            EXPECT_EQ(findCanary(picture()), std::nullopt) << name << ", role " << role;
            isEverShown = isEverShown || findCanary(window_.grab().toImage()).has_value();
        }
        slider.setStyle(nullptr);
        bar.setStyle(nullptr);
    }
    EXPECT_TRUE(isEverShown) << "the widgets themselves are to show them";
}

/// Without the macro its class is called as the one it derives from.
class PaintingStyle : public QProxyStyle {
  public:
    PaintingStyle() : QProxyStyle("Fusion") {}
    const QMetaObject* metaObject() const override { return baseStyle()->metaObject(); }
    void drawComplexControl(ComplexControl /*control*/, const QStyleOptionComplex* option, QPainter* painter,
                            const QWidget* /*widget*/) const override {
        painter->fillRect(option->rect, Qt::red);
    }
};

TEST_F(QtWidgetMirror, AStyleThatIsNotQtsDrawsNothing) {
    PaintingStyle style;
    QSlider slider(Qt::Horizontal, &window_);
    slider.setGeometry(0, 0, 200, 30);
    slider.setStyle(&style);
    EXPECT_EQ(findCanary(picture()), std::nullopt);
    slider.setStyle(nullptr);
}

/// Where the brightness changes most from one column to the next.
int knobOf(const QImage& slider) {
    int most = -1;
    int place = -1;
    for (int x = 1; x < slider.width(); ++x) {
        int change = 0;
        for (int y = 2; y < slider.height() - 2; ++y) {
            change += std::abs(qGray(slider.pixel(x, y)) - qGray(slider.pixel(x - 1, y)));
        }
        if (change > most) {
            most = change;
            place = x;
        }
    }
    return place;
}

TEST_F(QtWidgetMirror, ASliderStandsAsOnTheScreenInEitherDirection) {
    constexpr int widthOfAKnob = 14;
    QSlider slider(Qt::Horizontal, &window_);
    slider.setGeometry(0, 0, 200, 30);
    slider.setValue(10);
    for (const auto direction : {Qt::LeftToRight, Qt::RightToLeft}) {
        for (const bool isInverted : {false, true}) {
            slider.setLayoutDirection(direction);
            slider.setInvertedAppearance(isInverted);
            const int seen = knobOf(picture().copy(slider.geometry()));
            EXPECT_NEAR(seen, knobOf(slider.grab().toImage()), widthOfAKnob)
                << direction << ' ' << isInverted;
        }
    }
}

TEST_F(QtWidgetMirror, AnOpacityEffectCountsWhileItIsEnabled) {
    QWidget panel(&window_);
    panel.setGeometry(0, 0, 100, 100);
    panel.setAutoFillBackground(true);
    panel.setPalette(QPalette(Qt::black));
    auto* const effect = new QGraphicsOpacityEffect;
    effect->setOpacity(0.5);
    panel.setGraphicsEffect(effect);
    EXPECT_NEAR(qRed(picture().pixel(50, 50)), 120, 5);
    effect->setOpacity(0);
    EXPECT_EQ(qRed(picture().pixel(50, 50)), 240);
    effect->setEnabled(false);
    EXPECT_EQ(qRed(picture().pixel(50, 50)), 0);
}

TEST_F(QtWidgetMirror, AMaskedWidgetIsAsFaintAsItsEffectMakesIt) {
    QLabel label("secret", &window_);
    label.setGeometry(0, 0, 100, 100);
    auto* const effect = new QGraphicsOpacityEffect;
    effect->setOpacity(0);
    label.setGraphicsEffect(effect);
    EXPECT_EQ(qRed(picture().pixel(50, 50)), 240);
}

TEST_F(QtWidgetMirror, AContainerHasTheColourOfItsStyleSheet) {
    QFrame panel(&window_);
    panel.setGeometry(0, 0, 90, 40);
    panel.setStyleSheet("background: #102030");
    QWidget plain(&window_);
    plain.setGeometry(100, 0, 90, 40);
    plain.setStyleSheet("color: #102030");
    QGroupBox box("secret", &window_);
    box.setGeometry(0, 50, 90, 40);
    QWidget inside(&box);
    inside.setGeometry(10, 30, 5, 5);
    box.setStyleSheet("QGroupBox { background-color: #302010 }");
    const QImage seen = picture();
    EXPECT_EQ(seen.pixel(45, 20), qRgb(0x10, 0x20, 0x30));
    EXPECT_EQ(seen.pixel(145, 20), qRgb(240, 240, 240));
    EXPECT_EQ(seen.pixel(45, 70), qRgb(0x30, 0x20, 0x10));
}

TEST_F(QtWidgetMirror, AGradientOfAStyleSheetIsNotThere) {
    QFrame panel(&window_);
    panel.setGeometry(0, 0, 90, 40);
    panel.setStyleSheet("background: qlineargradient(x1:0, y1:0, x2:1, y2:0, stop:0 red, stop:1 lime)");
    EXPECT_EQ(findCanary(picture()), std::nullopt);
}

TEST_F(QtWidgetMirror, APropertyMasksAWidgetWithAllThatIsInIt) {
    QWidget panel(&window_);
    panel.setGeometry(20, 20, 100, 50);
    QSlider slider(&panel);
    EXPECT_FALSE(isMaskBlock(picture().pixel(60, 40)));
    panel.setProperty("mirethMasked", true);
    EXPECT_TRUE(isMaskBlock(picture().pixel(60, 40)));
    panel.setProperty("mirethMasked", false);
    EXPECT_FALSE(isMaskBlock(picture().pixel(60, 40)));
}

TEST_F(QtWidgetMirror, AClassThatIsNamedMasksItsSubclassesToo) {
    const std::string name = GoldCardNumber::staticMetaObject.superClass()->className();
    const std::vector<const platform::ViewClass*> masked{&qt::viewClassNamed(name)};
    GoldCardNumber card(&window_);
    card.setGeometry(20, 20, 100, 50);
    QSlider slider(&card);
    EXPECT_FALSE(isMaskBlock(picture().pixel(60, 40)));
    EXPECT_TRUE(isMaskBlock(picture(masked).pixel(60, 40)));
}

TEST_F(QtWidgetMirror, AWidgetThatPaintsItselfIsABlock) {
    CardNumber card(&window_);
    card.setGeometry(20, 20, 100, 50);
    EXPECT_TRUE(isMaskBlock(picture().pixel(60, 40)));
}

TEST_F(QtWidgetMirror, AfterTheAppsWindowIsGoneItIsEmptyAndKeepsItsSize) {
    auto gone = std::make_unique<QWidget>();
    QLabel label("secret", gone.get());
    gone->resize(120, 80);
    gone->show();
    const auto recorded = platform_.windowOf(*gone);
    EXPECT_EQ(recordedPicture(*recorded).size(), QSize(120, 80));
    label.setParent(nullptr);
    gone.reset();
    EXPECT_EQ(recordedPicture(*recorded).size(), QSize(120, 80));
    EXPECT_TRUE(recorded->subviews().empty());
}

/// The texts that the library compares before and after a tap.
std::string textsOf(const platform::View& view) {
    std::string texts;
    if (const auto* const label = dynamic_cast<const platform::Label*>(&view)) {
        texts += label->content.text.value_or("");
    } else if (const auto* const input = dynamic_cast<const platform::TextInputView*>(&view)) {
        texts += input->content.text.value_or("");
    }
    for (const auto& subview : view.subviews()) {
        texts += textsOf(*subview);
    }
    return texts;
}

TEST_F(QtWidgetMirror, AMaskedControlTellsItsStatesApart) {
    QCheckBox box("Agree", &window_);
    QLabel label("one", &window_);
    window_.show();
    const auto recorded = platform_.windowOf(window_);
    const std::string before = textsOf(*recorded);
    EXPECT_EQ(textsOf(*recorded), before);
    box.setChecked(true);
    const std::string checked = textsOf(*recorded);
    EXPECT_NE(checked, before);
    label.setText("two");
    EXPECT_NE(textsOf(*recorded), checked);
}

/// Named as one of Qt's might be.
class QuantityField : public QLineEdit {
    Q_OBJECT
    Q_PROPERTY(QString text READ quantity)
  public:
    using QLineEdit::QLineEdit;
    QString quantity() const { return ++timesAsked, QString(); }
    mutable int timesAsked = 0;
};

TEST_F(QtWidgetMirror, AsksNoClassOfTheAppsForItsState) {
    QuantityField field("one", &window_);
    window_.show();
    const auto recorded = platform_.windowOf(window_);
    const std::string before = textsOf(*recorded);
    EXPECT_EQ(field.timesAsked, 0);
    field.setText("two");
    EXPECT_NE(textsOf(*recorded), before) << "what it derives from is asked";
}

/// Its text is not only a property, but what Qt asks any class for.
class Loading : public QProgressBar {
  public:
    using QProgressBar::QProgressBar;
    QString text() const override { return ++timesAsked, QString(); }
    mutable int timesAsked = 0;
};

TEST_F(QtWidgetMirror, AsksNoProgressBarForItsText) {
    Loading bar(&window_);
    bar.setTextVisible(false);
    window_.show();
    const auto recorded = platform_.windowOf(window_);
    bar.timesAsked = 0;
    const std::string before = textsOf(*recorded);
    EXPECT_EQ(bar.timesAsked, 0);
    bar.setValue(50);
    EXPECT_NE(textsOf(*recorded), before);
}

TEST_F(QtWidgetMirror, KeepsNoCopyOfATypedText) {
    QLineEdit password("hunter2", &window_);
    password.setEchoMode(QLineEdit::Password);
    window_.show();
    EXPECT_EQ(textsOf(*platform_.windowOf(window_)).find("hunter2"), std::string::npos);
}

TEST_F(QtWidgetMirror, BeingPressedIsNoStateOfItsOwn) {
    QPushButton button("Buy", &window_);
    window_.show();
    const auto recorded = platform_.windowOf(window_);
    const std::string before = textsOf(*recorded);
    button.setDown(true);
    EXPECT_EQ(textsOf(*recorded), before);
}

}  // namespace

}  // namespace mireth::qttest

#include "WidgetMirrorTest.moc"
