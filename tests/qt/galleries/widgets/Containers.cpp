// What holds other widgets.
#include <QDialogButtonBox>
#include <QDockWidget>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QMainWindow>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenuBar>
#include <QScrollArea>
#include <QSlider>
#include <QSplitter>
#include <QStackedWidget>
#include <QStatusBar>
#include <QTabBar>
#include <QTabWidget>
#include <QToolBar>
#include <QToolBox>

#include "qt/galleries/WidgetExhibit.hpp"

namespace mireth::qttest {

namespace {

QWidget* mainWindow() {
    auto* const window = new QMainWindow;
    window->setWindowFlags(Qt::Widget);
    window->menuBar()->setNativeMenuBar(false);
    window->menuBar()->addMenu("Secret");
    window->addToolBar("Secret")->addAction(canaryIcon(), "Secret");
    window->statusBar()->showMessage("Secret");
    auto* const dock = new QDockWidget("Secret");
    dock->setWidget(new QLabel("Secret"));
    window->addDockWidget(Qt::LeftDockWidgetArea, dock);
    window->setCentralWidget(new QLabel("Secret"));
    return window;
}

void addTabs(QTabWidget& it) {
    it.addTab(new QLabel("Secret"), canaryIcon(), "Secret");
    it.addTab(new QWidget, "Secret");
    it.setTabsClosable(true);
    it.setMovable(true);
}

}  // namespace

std::vector<WidgetExhibit> containerWidgets() {
    return {
        {"GroupBox", of<QGroupBox>([](QGroupBox& it) {
             it.setTitle("Secret");
             (new QHBoxLayout(&it))->addWidget(new QSlider);
         }),
         false},
        {"CheckableGroupBox", of<QGroupBox>([](QGroupBox& it) {
             it.setTitle("Secret");
             it.setCheckable(true);
             (new QHBoxLayout(&it))->addWidget(new QLabel("Secret"));
         })},
        {"EmptyGroupBox", [] { return new QGroupBox("Secret"); }},
        {"TabBar", of<QTabBar>([](QTabBar& it) {
             it.addTab(canaryIcon(), "Secret");
             it.addTab("Secret");
         })},
        {"TabWidget", of<QTabWidget>(addTabs)},
        {"TabWidgetBelow", of<QTabWidget>([](QTabWidget& it) {
             addTabs(it);
             it.setTabPosition(QTabWidget::South);
             it.setCornerWidget(new QLabel("Secret"));
         })},
        {"ToolBox", of<QToolBox>([](QToolBox& it) {
             it.addItem(new QLabel("Secret"), canaryIcon(), "Secret");
             it.addItem(new QWidget, "Secret");
         })},
        {"ToolBar", of<QToolBar>([](QToolBar& it) {
             it.addAction(canaryIcon(), "Secret");
             it.addSeparator();
             it.addWidget(new QLabel("Secret"));
         })},
        {"MenuBar", of<QMenuBar>([](QMenuBar& it) {
             it.setNativeMenuBar(false);
             it.addMenu("Secret")->addAction("Secret");
         })},
        {"StatusBar", of<QStatusBar>([](QStatusBar& it) { it.showMessage("Secret"); }), false},
        {"StatusBarOfLabels",
         of<QStatusBar>([](QStatusBar& it) { it.addPermanentWidget(new QLabel("Secret")); })},
        {"DockWidget", of<QDockWidget>([](QDockWidget& it) {
             it.setWindowTitle("Secret");
             it.setWidget(new QLabel("Secret"));
         })},
        {"MainWindow", mainWindow},
        {"MdiArea",
         of<QMdiArea>([](QMdiArea& it) { it.addSubWindow(new QLabel("Secret"))->setWindowTitle("Secret"); })},
        {"MdiSubWindow", of<QMdiSubWindow>([](QMdiSubWindow& it) {
             it.setWindowTitle("Secret");
             it.setWidget(new QLabel("Secret"));
         })},
        {"StackedWidget", of<QStackedWidget>([](QStackedWidget& it) { it.addWidget(new QLabel("Secret")); })},
        {"ButtonBox", [] { return new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel); }},
        {"Splitter", of<QSplitter>([](QSplitter& it) {
             it.addWidget(new Painted<QWidget>);
             it.addWidget(new QLabel("Secret"));
         })},
        {"ScrolledPicture", of<QScrollArea>([](QScrollArea& it) {
             auto* const label = new QLabel;
             label->setPixmap(canaryPicture(400));
             it.setWidget(label);
         })},
    };
}

}  // namespace mireth::qttest
