// Which taps in a window of widgets the library takes for dead ones.
#include <gtest/gtest.h>

#include <QApplication>
#include <QCalendarWidget>
#include <QCheckBox>
#include <QComboBox>
#include <QDial>
#include <QGraphicsScene>
#include <QGraphicsTextItem>
#include <QGraphicsView>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMainWindow>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QPainter>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QQmlComponent>
#include <QQuickItem>
#include <QQuickWidget>
#include <QSlider>
#include <QSpinBox>
#include <QStackedWidget>
#include <QStatusBar>
#include <QStringListModel>
#include <QTabBar>
#include <QTableWidget>
#include <QTest>
#include <QTextEdit>
#include <QTimer>
#include <QTreeWidget>
#include <functional>
#include <memory>
#include <utility>

#include "MirethVex/Qt/QtPlatform.hpp"
#include "qt/support/TapReaction.hpp"

namespace mireth::qttest {

namespace {

class QtWidgetTaps : public testing::Test {
  protected:
    QtWidgetTaps() { window_.resize(300, 200); }

    /// Fills the window.
    template <class Widget>
    Widget& shown() {
        auto* const widget = new Widget(&window_);
        widget->setGeometry(0, 0, 300, 200);
        window_.show();
        return *widget;
    }
    template <class Tap>
    bool isDead(const Tap& tap) {
        return qttest::isDead(platform_.windowOf(window_), tap);
    }
    static void click(QWidget& widget, QPoint place) {
        QTest::mouseClick(&widget, Qt::LeftButton, {}, place);
    }

    const qt::QtPlatform platform_;
    QWidget window_;
};

TEST_F(QtWidgetTaps, ASliderThatMovesHasReacted) {
    auto& slider = shown<QSlider>();
    EXPECT_FALSE(isDead([&] { slider.setValue(50); }));
    EXPECT_TRUE(isDead([&] { slider.setValue(50); }));
}

TEST_F(QtWidgetTaps, ADialThatTurnsHasReacted) {
    auto& dial = shown<QDial>();
    EXPECT_FALSE(isDead([&] { dial.setValue(50); }));
    EXPECT_TRUE(isDead([&] { dial.setSliderDown(true); }));
}

TEST_F(QtWidgetTaps, AProgressBarThatGrowsHasReacted) {
    auto& bar = shown<QProgressBar>();
    EXPECT_FALSE(isDead([&] { bar.setValue(50); }));
}

TEST_F(QtWidgetTaps, AListWhoseItemsChangeHasReacted) {
    auto& list = shown<QListWidget>();
    list.addItems({"a", "b"});
    EXPECT_FALSE(isDead([&] { list.addItem("c"); }));
    EXPECT_FALSE(isDead([&] { delete list.takeItem(2); }));
    EXPECT_FALSE(isDead([&] { list.item(0)->setText("d"); }));
}

TEST_F(QtWidgetTaps, AListWhoseItemIsCheckedByAClickOnItsBoxHasReacted) {
    auto& list = shown<QListWidget>();
    list.addItem("a");
    list.item(0)->setCheckState(Qt::Unchecked);
    list.setCurrentRow(0);
    EXPECT_FALSE(isDead([&] { click(*list.viewport(), {8, 8}); }));
    EXPECT_EQ(list.item(0)->checkState(), Qt::Checked);
}

TEST_F(QtWidgetTaps, AListWhoseSelectionChangesHasReacted) {
    auto& list = shown<QListWidget>();
    list.setSelectionMode(QAbstractItemView::MultiSelection);
    list.addItems({"a", "b"});
    list.setCurrentRow(1);
    EXPECT_FALSE(isDead([&] { list.item(0)->setSelected(true); }));
}

TEST_F(QtWidgetTaps, AClickOnARowThatIsChosenAlreadyIsDead) {
    auto& list = shown<QListWidget>();
    list.addItems({"a", "b"});
    list.setCurrentRow(0);
    const QPoint row = list.visualItemRect(list.item(0)).center();
    EXPECT_TRUE(isDead([&] { click(*list.viewport(), row); }));
}

TEST_F(QtWidgetTaps, ATreeWhoseBranchOpensByAClickOnItsArrowHasReacted) {
    auto& tree = shown<QTreeWidget>();
    auto* const branch = new QTreeWidgetItem({"a"});
    branch->addChild(new QTreeWidgetItem({"b"}));
    tree.addTopLevelItem(branch);
    const QPoint arrow(10, tree.visualItemRect(branch).center().y());
    EXPECT_FALSE(isDead([&] { click(*tree.viewport(), arrow); }));
    EXPECT_TRUE(branch->isExpanded());
    EXPECT_FALSE(isDead([&] { branch->setExpanded(false); }));
    EXPECT_TRUE(isDead([&] { branch->setExpanded(false); }));
}

TEST_F(QtWidgetTaps, ATableThatIsSortedHasReacted) {
    auto& table = shown<QTableWidget>();
    table.setRowCount(3);
    table.setColumnCount(1);
    for (int row = 0; row < 3; ++row) {
        table.setItem(row, 0, new QTableWidgetItem(QString::number(row)));
    }
    EXPECT_FALSE(isDead([&] { table.sortItems(0, Qt::DescendingOrder); }));
    EXPECT_TRUE(isDead([] {}));
}

TEST_F(QtWidgetTaps, ATableWhoseColumnIsWidenedHasReacted) {
    auto& table = shown<QTableWidget>();
    table.setColumnCount(2);
    EXPECT_FALSE(isDead([&] { table.horizontalHeader()->resizeSection(0, 20); }));
}

TEST_F(QtWidgetTaps, AViewWithAnotherModelHasReacted) {
    QStringListModel one(QStringList{"a"});
    QStringListModel other(QStringList{"b"});
    auto& list = shown<QListView>();
    list.setModel(&one);
    EXPECT_FALSE(isDead([&] { list.setModel(&other); }));
    EXPECT_FALSE(isDead([&] { other.setStringList({"c"}); }));
    EXPECT_TRUE(isDead([&] { one.setStringList({"c"}); })) << "nobody sees it any longer";
}

/// Hears of those who listen to it.
class Prices : public QStringListModel {
    Q_OBJECT
  public:
    using QStringListModel::QStringListModel;
    int timesTold = 0;

  protected:
    void connectNotify(const QMetaMethod& /*signal*/) override { ++timesTold; }
    void disconnectNotify(const QMetaMethod& /*signal*/) override { ++timesTold; }
};

TEST_F(QtWidgetTaps, AModelOfTheAppsIsNotListenedTo) {
    Prices prices({"a"});
    auto& list = shown<QListView>();
    list.setModel(&prices);
    const int toldOfTheList = prices.timesTold;
    EXPECT_FALSE(isDead([&] { prices.setStringList({"b"}); }));
    EXPECT_TRUE(isDead([] {}));
    EXPECT_EQ(prices.timesTold, toldOfTheList);
}

TEST_F(QtWidgetTaps, ACalendarThatTurnsItsPageHasReacted) {
    auto& calendar = shown<QCalendarWidget>();
    EXPECT_FALSE(isDead([&] { calendar.showNextMonth(); }));
    EXPECT_TRUE(isDead([] {}));
}

TEST_F(QtWidgetTaps, ACalendarWhoseDayIsChosenHasReacted) {
    auto& calendar = shown<QCalendarWidget>();
    calendar.setSelectedDate({2020, 2, 4});
    EXPECT_FALSE(isDead([&] { calendar.setSelectedDate({2020, 2, 3}); }));
    EXPECT_TRUE(isDead([&] { calendar.setSelectedDate({2020, 2, 3}); }));
}

TEST_F(QtWidgetTaps, ATabBarWithAnotherTabHasReacted) {
    auto& bar = shown<QTabBar>();
    bar.addTab("one");
    EXPECT_FALSE(isDead([&] { bar.addTab("two"); }));
    EXPECT_FALSE(isDead([&] { bar.setTabText(0, "three"); }));
    EXPECT_TRUE(isDead([&] { bar.setTabText(0, "three"); }));
    EXPECT_FALSE(isDead([&] { bar.setTabIcon(0, QIcon(QPixmap(8, 8))); }));
}

TEST_F(QtWidgetTaps, AGraphicsViewThatIsPaintedAnewHasReacted) {
    QGraphicsScene scene;
    auto* const text = scene.addText("a");
    auto& view = shown<QGraphicsView>();
    view.setScene(&scene);
    EXPECT_FALSE(isDead([&] { text->setPlainText("b"); }));
    EXPECT_FALSE(isDead([&] { text->setPos(30, 30); }));
    EXPECT_TRUE(isDead([&] { click(*view.viewport(), {5, 190}); }));
}

TEST_F(QtWidgetTaps, AnMdiAreaWithAnotherWindowInFrontHasReacted) {
    auto& area = shown<QMdiArea>();
    auto* const one = area.addSubWindow(new QLabel("a"));
    auto* const other = area.addSubWindow(new QLabel("b"));
    one->show();
    other->show();
    area.setActiveSubWindow(other);
    EXPECT_FALSE(isDead([&] { area.setActiveSubWindow(one); }));
    EXPECT_TRUE(isDead([&] { area.setActiveSubWindow(one); }));
    EXPECT_FALSE(isDead([&] { other->close(); }));
}

TEST_F(QtWidgetTaps, WhatAnMdiWindowHoldsMayReact) {
    auto& area = shown<QMdiArea>();
    auto* const label = new QLabel("a");
    area.addSubWindow(label)->show();
    EXPECT_FALSE(isDead([&] { label->setText("b"); }));
}

TEST_F(QtWidgetTaps, AnMdiWindowWithAnotherTitleHasReacted) {
    auto& area = shown<QMdiArea>();
    auto* const window = area.addSubWindow(new QLabel("a"));
    window->show();
    EXPECT_FALSE(isDead([&] { window->setWindowTitle("b"); }));
    EXPECT_TRUE(isDead([&] { window->setWindowTitle("b"); }));
}

TEST_F(QtWidgetTaps, ItemsInAWidgetMayReact) {
    auto& widget = shown<QQuickWidget>();
    QQmlComponent component(widget.engine());
    component.setData(
        "import QtQuick\nItem { width: 300; height: 200; Text { objectName: 'text'; text: 'a' }"
        " Rectangle { objectName: 'area'; width: 10; height: 10; color: 'red' } }",
        {});
    QObject* const root = component.create();
    widget.setContent({}, &component, root);
    EXPECT_FALSE(isDead([&] { root->findChild<QObject*>("text")->setProperty("text", "b"); }));
    auto* const area = root->findChild<QObject*>("area");
    EXPECT_FALSE(isDead([&] { area->setProperty("width", 90); }));
    EXPECT_FALSE(isDead([&] { area->setProperty("color", "blue"); }));
    EXPECT_TRUE(isDead([&] { click(widget, {200, 150}); }));
}

/// A page whose text is `text`.
QQuickWidget* pageOfItems(QWidget* parent, const char* text) {
    auto* const page = new QQuickWidget(parent);
    QQmlComponent component(page->engine());
    component.setData(QByteArray("import QtQuick\nText { width: 300; height: 200; text: '") + text + "' }",
                      {});
    page->setContent({}, &component, component.create());
    return page;
}

TEST_F(QtWidgetTaps, ItemsOnEitherOfTwoPagesMayReact) {
    auto& stack = shown<QStackedWidget>();
    QQuickWidget* const pages[] = {pageOfItems(&stack, "a"), pageOfItems(&stack, "b")};
    for (QQuickWidget* const page : pages) {
        stack.addWidget(page);
    }
    for (QQuickWidget* const page : pages) {
        stack.setCurrentWidget(page);
        EXPECT_FALSE(isDead([&] { page->rootObject()->setProperty("text", "c"); }));
        EXPECT_TRUE(isDead([&] { page->rootObject()->setProperty("text", "c"); }));
    }
}

TEST_F(QtWidgetTaps, AStatusBarWithAnotherMessageHasReacted) {
    auto& main = shown<QMainWindow>();
    main.setWindowFlags(Qt::Widget);
    main.show();
    main.statusBar()->showMessage("a");
    EXPECT_FALSE(isDead([&] { main.statusBar()->showMessage("b"); }));
    EXPECT_TRUE(isDead([&] { main.statusBar()->showMessage("b"); }));
}

TEST_F(QtWidgetTaps, AButtonThatIsDisabledHasReacted) {
    auto& button = shown<QPushButton>();
    EXPECT_FALSE(isDead([&] { button.setEnabled(false); }));
}

TEST_F(QtWidgetTaps, AButtonWithAnotherIconHasReacted) {
    auto& button = shown<QPushButton>();
    QPixmap picture(16, 16);
    picture.fill(Qt::blue);
    EXPECT_FALSE(isDead([&] { button.setIcon(picture); }));
}

TEST_F(QtWidgetTaps, AComboBoxWhoseItemIsRenamedHasReacted) {
    auto& box = shown<QComboBox>();
    box.addItem("one");
    EXPECT_FALSE(isDead([&box] { box.setItemText(0, "two"); }));
}

TEST_F(QtWidgetTaps, AClickOnAButtonThatDoesNothingIsDead) {
    auto& button = shown<QPushButton>();
    EXPECT_TRUE(isDead([&] { click(button, {20, 20}); }));
}

TEST_F(QtWidgetTaps, ALabelWithAnotherPictureFontOrColourHasReacted) {
    auto& label = shown<QLabel>();
    QPixmap picture(16, 16);
    picture.fill(Qt::blue);
    EXPECT_FALSE(isDead([&] { label.setPixmap(picture); }));
    EXPECT_TRUE(isDead([&] { label.setPixmap(picture); }));
    QFont bold = label.font();
    bold.setBold(true);
    EXPECT_FALSE(isDead([&] { label.setFont(bold); }));
    EXPECT_FALSE(isDead([&] { label.setStyleSheet("color: red"); }));
}

TEST_F(QtWidgetTaps, ALabelThatIsStruckOutHasReacted) {
    auto& label = shown<QLabel>();
    QFont struckOut = label.font();
    struckOut.setStrikeOut(true);
    EXPECT_FALSE(isDead([&] { label.setFont(struckOut); }));
    EXPECT_TRUE(isDead([&] { label.setFont(struckOut); }));
}

template <class Entry>
class QtTextEntryTaps : public QtWidgetTaps {};

using TextEntries = testing::Types<QLineEdit, QTextEdit, QPlainTextEdit>;
TYPED_TEST_SUITE(QtTextEntryTaps, TextEntries);

TYPED_TEST(QtTextEntryTaps, AnEntryWithAnotherPlaceholderHasReacted) {
    auto& entry = this->template shown<TypeParam>();
    EXPECT_FALSE(this->isDead([&] { entry.setPlaceholderText("a"); }));
    EXPECT_TRUE(this->isDead([&] { entry.setPlaceholderText("a"); }));
}

TEST_F(QtWidgetTaps, ABlinkingTextCursorIsNoReaction) {
    auto& edit = shown<QLineEdit>();
    edit.setFocus();
    QApplication::setActiveWindow(&window_);
    QApplication::setCursorFlashTime(10);
    EXPECT_TRUE(isDead([] {}));
}

TEST_F(QtWidgetTaps, WhatAMarkedWidgetHoldsMayReact) {
    auto& panel = shown<QWidget>();
    panel.setProperty("mirethMasked", true);
    QLabel label("a", &panel);
    QCheckBox box("b", &panel);
    box.move(0, 40);
    label.show();
    box.show();
    EXPECT_FALSE(isDead([&] { label.setText("b"); }));
    EXPECT_FALSE(isDead([&] { box.setChecked(true); }));
    EXPECT_FALSE(isDead([&] { box.move(0, 80); }));
    EXPECT_FALSE(isDead([&] { box.hide(); }));
    EXPECT_TRUE(isDead([&] { click(panel, {200, 150}); }));
}

TEST_F(QtWidgetTaps, WhatReactsToThePressAlreadyHasReacted) {
    auto& list = shown<QListWidget>();
    list.addItems({"a", "b"});
    list.setCurrentRow(0);
    const QPoint second = list.viewport()->mapTo(&window_, list.visualItemRect(list.item(1)).center());
    const auto recorded = platform_.windowOf(window_);
    EXPECT_FALSE(isDeadClick(recorded, *window_.windowHandle(), second));
    EXPECT_EQ(list.currentRow(), 1);
    EXPECT_TRUE(isDeadClick(recorded, *window_.windowHandle(), second));
}

/// Paints a number that nobody else knows of.
class Gauge : public QWidget {
    Q_OBJECT
  public:
    using QWidget::QWidget;
    void grow() {
        ++number_;
        update();
    }

  protected:
    void paintEvent(QPaintEvent* /*event*/) override {
        QPainter(this).drawText(10, 10, QString::number(number_));
    }

  private:
    int number_ = 0;
};

TEST_F(QtWidgetTaps, AWidgetThatPaintsItselfAnewHasReacted) {
    auto& gauge = shown<Gauge>();
    EXPECT_FALSE(isDead([&] { gauge.grow(); }));
    EXPECT_TRUE(isDead([&] { click(gauge, {20, 20}); }));
}

/// The app's own; it opens a dialog for a key before the key goes on.
class KeyFilter final : public QObject {
  public:
    explicit KeyFilter(std::function<void()> openDialog) : openDialog_(std::move(openDialog)) {}
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::KeyPress && watched->isWindowType() && ++keys == 1) {
            openDialog_();
        }
        return false;
    }
    int keys = 0;

  private:
    std::function<void()> openDialog_;
};

TEST_F(QtWidgetTaps, AFilterOfTheAppsIsAskedOnceAlthoughMeanwhileAWidgetThatPaintsItselfIsSeenFirst) {
    Gauge gauge(&window_);
    gauge.hide();
    window_.show();
    const auto recorded = platform_.windowOf(window_);
    KeyFilter filter([&] {
        gauge.show();
        QTimer::singleShot(0, &window_, [&] { (void)Seen(recorded); });
        runFor(0.02);
    });
    QCoreApplication::instance()->installEventFilter(&filter);
    (void)Seen(recorded);
    QTest::keyClick(window_.windowHandle(), Qt::Key_F1);
    EXPECT_EQ(filter.keys, 1);
}

/// As terminals and drawing areas are made.
class Sheet : public QAbstractScrollArea {
    Q_OBJECT
  public:
    using QAbstractScrollArea::QAbstractScrollArea;
};

TEST_F(QtWidgetTaps, AnAreaThatPaintsItselfAnewHasReacted) {
    auto& sheet = shown<Sheet>();
    EXPECT_FALSE(isDead([&] { sheet.viewport()->update(); }));
    EXPECT_TRUE(isDead([&] { click(*sheet.viewport(), {20, 20}); }));
}

}  // namespace

}  // namespace mireth::qttest

#include "WidgetTapsTest.moc"
