// Every control of Qt Widgets with text and pictures in saturated colours, on grey: not one pixel of them may
// be in the recorded picture, while the widget itself shows them.
#include <gtest/gtest.h>

#include <QApplication>
#include <QCalendarWidget>
#include <QCheckBox>
#include <QColorDialog>
#include <QColumnView>
#include <QComboBox>
#include <QCommandLinkButton>
#include <QDateTimeEdit>
#include <QDialogButtonBox>
#include <QDockWidget>
#include <QErrorMessage>
#include <QEvent>
#include <QFileDialog>
#include <QFontComboBox>
#include <QFontDialog>
#include <QGraphicsOpacityEffect>
#include <QGraphicsScene>
#include <QGraphicsTextItem>
#include <QGraphicsView>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QInputDialog>
#include <QKeySequenceEdit>
#include <QLCDNumber>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMainWindow>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QPainter>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QProgressDialog>
#include <QPushButton>
#include <QQuickWidget>
#include <QRadioButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QSlider>
#include <QSpinBox>
#include <QSplashScreen>
#include <QSplitter>
#include <QStatusBar>
#include <QStringListModel>
#include <QTabWidget>
#include <QTableWidget>
#include <QTemporaryDir>
#include <QTextBrowser>
#include <QToolBar>
#include <QToolBox>
#include <QToolButton>
#include <QTreeWidget>
#include <QUndoStack>
#include <QUndoView>
#include <QWizard>
#include <string>
#include <tuple>

#include "MirethVex/Qt/QtPlatform.hpp"
#include "qt/support/EventLoop.hpp"
#include "qt/support/Pictures.hpp"

namespace mireth::qttest {

namespace {

const QColor canary(255, 0, 0);

QPixmap canaryPicture() {
    QPixmap picture(32, 32);
    picture.fill(QColor(0, 200, 0));
    return picture;
}

QIcon canaryIcon() {
    return QIcon(canaryPicture());
}

/// Grey, but for everything that text may be drawn in.
QPalette canaryPalette() {
    QPalette palette(QColor(200, 200, 200), QColor(240, 240, 240));
    palette.setColor(QPalette::Base, QColor(250, 250, 250));
    palette.setColor(QPalette::Highlight, QColor(120, 120, 120));
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::BrightText,
                            QPalette::HighlightedText, QPalette::PlaceholderText, QPalette::ToolTipText,
                            QPalette::Link, QPalette::LinkVisited}) {
        for (const auto group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled}) {
            palette.setColor(group, role, canary);
        }
    }
    return palette;
}

/// Draws text over all of itself.
class Painted : public QWidget {
  public:
    using QWidget::QWidget;

  protected:
    void paintEvent(QPaintEvent* /*event*/) override {
        QPainter painter(this);
        painter.fillRect(rect(), canary);
    }
};

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

template <class Widget>
Widget* filtered(Widget* widget) {
    widget->installEventFilter(new PaintingFilter(widget));
    return widget;
}

template <class Button>
QWidget* button() {
    auto* const made = new Button;
    made->setText("Secret");
    made->setIcon(canaryIcon());
    return made;
}

template <class Items>
QWidget* table() {
    auto* const items = new Items(3, 2);
    items->setHorizontalHeaderLabels({"Secret", "Secret"});
    items->setItem(0, 0, new QTableWidgetItem(canaryIcon(), "Secret"));
    items->setCurrentCell(0, 0);
    items->editItem(items->item(0, 0));
    return items;
}

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

QWidget* mdi() {
    auto* const area = new QMdiArea;
    area->addSubWindow(new QLabel("Secret"))->setWindowTitle("Secret");
    return area;
}

QWidget* graphics() {
    auto* const scene = new QGraphicsScene;
    scene->addText("Secret")->setDefaultTextColor(canary);
    scene->addPixmap(canaryPicture());
    auto* const view = new QGraphicsView(scene);
    scene->setParent(view);
    return view;
}

QWidget* wizard() {
    auto* const made = new QWizard;
    auto* const page = new QWizardPage;
    page->setTitle("Secret");
    page->setSubTitle("Secret");
    page->setPixmap(QWizard::WatermarkPixmap, canaryPicture());
    made->addPage(page);
    return made;
}

QWidget* messageBox() {
    auto* const box = new QMessageBox(QMessageBox::Critical, "Secret", "Secret", QMessageBox::Ok);
    box->setIconPixmap(canaryPicture());
    box->setInformativeText("Secret");
    box->setDetailedText("Secret");
    return box;
}

QWidget* styled(QWidget* widget, const char* sheet) {
    // Of this process alone: the galleries of all scale factors run at once.
    static const QTemporaryDir folder;
    const QString path = folder.filePath("canary.png");
    canaryPicture().save(path);
    widget->setStyleSheet(QString::fromLatin1(sheet).replace("PICTURE", path));
    return widget;
}

QWidget* withChild(QWidget* parent) {
    auto* const layout = new QHBoxLayout(parent);
    auto* const slider = new QSlider;
    layout->addWidget(slider);
    return parent;
}

QWidget* tabs() {
    auto* const made = new QTabWidget;
    made->addTab(new QLabel("Secret"), canaryIcon(), "Secret");
    made->addTab(new QWidget, "Secret");
    return made;
}

QWidget* toolBox() {
    auto* const made = new QToolBox;
    made->addItem(new QLabel("Secret"), canaryIcon(), "Secret");
    made->addItem(new QWidget, "Secret");
    return made;
}

QWidget* quickWidget() {
    auto* const made = new QQuickWidget;
    made->quickWindow()->setColor(canary);
    return made;
}

struct Exhibit {
    std::string name;
    std::function<QWidget*()> make;
    /// False for what is no block, as its looks are left out but for a plain colour, or drawn anew.
    bool isBlock = true;
};

std::ostream& operator<<(std::ostream& out, const Exhibit& exhibit) {
    return out << exhibit.name;
}

template <class T, class... Arguments>
std::function<QWidget*()> of(void (*set)(T&), Arguments... arguments) {
    return [=]() -> QWidget* {
        auto* const widget = new T(arguments...);
        set(*widget);
        return widget;
    };
}

const std::vector<Exhibit>& gallery() {
    static const std::vector<Exhibit> exhibits{
        {"Label", of<QLabel>([](QLabel& it) { it.setText("Secret"); })},
        {"RichLabel", of<QLabel>([](QLabel& it) { it.setText("<b>Secret</b>"); })},
        {"PictureLabel", of<QLabel>([](QLabel& it) { it.setPixmap(canaryPicture()); })},
        {"PushButton", button<QPushButton>},
        {"ToolButton", button<QToolButton>},
        {"CheckBox", button<QCheckBox>},
        {"RadioButton", button<QRadioButton>},
        {"CommandLinkButton", button<QCommandLinkButton>},
        {"DisabledButton",
         [] {
             auto* it = button<QPushButton>();
             it->setEnabled(false);
             return it;
         }},
        {"CheckedButton",
         [] {
             auto* const it = static_cast<QPushButton*>(button<QPushButton>());
             it->setCheckable(true);
             it->setChecked(true);
             return it;
         }},
        {"PressedButton",
         [] {
             auto* const it = static_cast<QPushButton*>(button<QPushButton>());
             it->setDown(true);
             return it;
         }},
        {"FlatDefaultButton",
         [] {
             auto* const it = static_cast<QPushButton*>(button<QPushButton>());
             it->setFlat(true);
             it->setDefault(true);
             return it;
         }},
        {"HoveredToolButton",
         [] {
             auto* const it = static_cast<QToolButton*>(button<QToolButton>());
             it->setAutoRaise(true);
             it->setAttribute(Qt::WA_UnderMouse);
             it->setToolButtonStyle(Qt::ToolButtonTextUnderIcon);
             return it;
         }},
        {"PartlyCheckedBox",
         [] {
             auto* const it = static_cast<QCheckBox*>(button<QCheckBox>());
             it->setCheckState(Qt::PartiallyChecked);
             return it;
         }},
        {"DisabledLineEdit", of<QLineEdit>([](QLineEdit& it) {
             it.setText("Secret");
             it.setEnabled(false);
         })},
        {"Password", of<QLineEdit>([](QLineEdit& it) {
             it.setText("Secret");
             it.setEchoMode(QLineEdit::Password);
         })},
        {"DisabledListWidget", of<QListWidget>([](QListWidget& it) {
             it.addItem("Secret");
             it.setEnabled(false);
         })},
        {"UndoView",
         [] {
             auto* const stack = new QUndoStack;
             stack->push(new QUndoCommand("Secret"));
             auto* const view = new QUndoView(stack);
             stack->setParent(view);
             return view;
         }},
        {"ColumnView",
         [] {
             auto* const items = new QStringListModel({"Secret", "Secret"});
             auto* const view = new QColumnView;
             view->setModel(items);
             items->setParent(view);
             return view;
         }},
        {"LineEdit", of<QLineEdit>([](QLineEdit& it) {
             it.setText("Secret");
             it.selectAll();
         })},
        {"Placeholder", of<QLineEdit>([](QLineEdit& it) { it.setPlaceholderText("Secret"); })},
        {"TextEdit", of<QTextEdit>([](QTextEdit& it) { it.setHtml("<h1>Secret</h1>"); })},
        {"TextBrowser", of<QTextBrowser>([](QTextBrowser& it) { it.setHtml("<a href='x'>Secret</a>"); })},
        {"PlainTextEdit", of<QPlainTextEdit>([](QPlainTextEdit& it) { it.setPlainText("Secret"); })},
        {"SpinBox", of<QSpinBox>([](QSpinBox& it) { it.setPrefix("Secret"); })},
        {"DoubleSpinBox", of<QDoubleSpinBox>([](QDoubleSpinBox& it) { it.setSuffix("Secret"); })},
        {"DateTimeEdit", of<QDateTimeEdit>([](QDateTimeEdit& it) { it.setCalendarPopup(true); })},
        {"ComboBox", of<QComboBox>([](QComboBox& it) { it.addItem(canaryIcon(), "Secret"); })},
        {"EditableComboBox", of<QComboBox>([](QComboBox& it) {
             it.setEditable(true);
             it.setEditText("Secret");
         })},
        {"FontComboBox", [] { return new QFontComboBox; }},
        {"KeySequenceEdit", [] { return new QKeySequenceEdit(QKeySequence("Ctrl+S")); }},
        {"ProgressBar", of<QProgressBar>([](QProgressBar& it) { it.setValue(50); })},
        {"LcdNumber", of<QLCDNumber>([](QLCDNumber& it) {
             it.display(42);
             it.setSegmentStyle(QLCDNumber::Flat);
         })},
        {"GroupBox", [] { return withChild(new QGroupBox("Secret")); }, false},
        {"EmptyGroupBox", [] { return new QGroupBox("Secret"); }},
        {"TabWidget", tabs},
        {"ToolBox", toolBox},
        {"ListWidget", of<QListWidget>([](QListWidget& it) {
             it.addItem("Secret");
             it.setCurrentRow(0);
         })},
        {"IconList", of<QListWidget>([](QListWidget& it) {
             it.setViewMode(QListView::IconMode);
             it.addItem(new QListWidgetItem(canaryIcon(), "Secret"));
         })},
        {"TreeWidget", of<QTreeWidget>([](QTreeWidget& it) {
             it.setHeaderLabel("Secret");
             it.addTopLevelItem(new QTreeWidgetItem({"Secret"}));
         })},
        {"TableWidget", table<QTableWidget>},
        {"Calendar", [] { return new QCalendarWidget; }},
        {"MainWindow", mainWindow},
        {"MdiArea", mdi},
        {"GraphicsView", graphics},
        {"Wizard", wizard},
        {"MessageBox", messageBox},
        {"InputDialog", of<QInputDialog>([](QInputDialog& it) {
             it.setLabelText("Secret");
             it.setTextValue("Secret");
         })},
        {"ProgressDialog", of<QProgressDialog>([](QProgressDialog& it) {
             it.setLabelText("Secret");
             it.setMinimumDuration(0);
         })},
        {"ErrorMessage", of<QErrorMessage>([](QErrorMessage& it) { it.showMessage("Secret"); })},
        {"FileDialog",
         of<QFileDialog>([](QFileDialog& it) { it.setOption(QFileDialog::DontUseNativeDialog); })},
        {"ColorDialog",
         of<QColorDialog>([](QColorDialog& it) { it.setOption(QColorDialog::DontUseNativeDialog); })},
        {"FontDialog",
         of<QFontDialog>([](QFontDialog& it) { it.setOption(QFontDialog::DontUseNativeDialog); })},
        {"ButtonBox", [] { return new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel); }},
        {"Menu", of<QMenu>([](QMenu& it) { it.addAction(canaryIcon(), "Secret"); })},
        {"StatusBar", of<QStatusBar>([](QStatusBar& it) { it.showMessage("Secret"); }), false},
        {"SplashScreen", [] { return new QSplashScreen(canaryPicture().scaled(200, 200)); }},
        {"ScrolledPicture", of<QScrollArea>([](QScrollArea& it) {
             auto* const label = new QLabel;
             label->setPixmap(canaryPicture().scaled(400, 400));
             it.setWidget(label);
         })},
        {"Painted", [] { return new Painted; }, false},
        {"PaintedContainer", [] { return withChild(new Painted); }, false},
        {"PaintedByAFilter", [] { return filtered(new QWidget); }, false},
        {"FrameByAFilter", [] { return filtered(new QFrame); }, false},
        {"SliderByAFilter", [] { return filtered(new QSlider); }, false},
        {"ScrollBarByAFilter", [] { return filtered(new QScrollBar); }, false},
        {"Splitter", of<QSplitter>([](QSplitter& it) {
             it.addWidget(new Painted);
             it.addWidget(new QLabel("Secret"));
         })},
        {"SheetBackground", [] { return styled(new QFrame, "QFrame { background-image: url(PICTURE) }"); },
         false},
        {"SheetHandle",
         [] {
             return styled(new QSlider, "QSlider::handle { image: url(PICTURE); height: 32px; width: 32px }");
         },
         false},
        {"SheetColor", [] { return styled(new QLabel("Secret"), "color: #ff0000"); }},
        {"OpacityEffect", of<QLabel>([](QLabel& it) {
             it.setText("Secret");
             it.setGraphicsEffect(new QGraphicsOpacityEffect);
         })},
        {"QuickWidget", quickWidget},
        {"BrushPicture",
         [] {
             auto* const widget = new QWidget;
             QPalette palette;
             palette.setBrush(QPalette::Window, QBrush(canaryPicture()));
             widget->setAutoFillBackground(true);
             widget->setPalette(palette);
             return widget;
         },
         false},
    };
    return exhibits;
}

/// In each of Qt's styles.
class QtWidgetGallery : public testing::TestWithParam<std::tuple<const char*, Exhibit>> {
  protected:
    void SetUp() override {
        QApplication::setStyle(std::get<0>(GetParam()));
        QApplication::setPalette(canaryPalette());
    }
    void TearDown() override {
        QApplication::setPalette(QPalette());
        QApplication::setStyle("Fusion");
    }
    const Exhibit& exhibit() const { return std::get<1>(GetParam()); }

    const qt::QtPlatform platform_;
};

TEST_P(QtWidgetGallery, ShowsNoCanaryInAWindow) {
    QWidget window;
    window.setGeometry(0, 0, 780, 700);
    QHBoxLayout layout(&window);
    const std::unique_ptr<QWidget> widget(exhibit().make());
    const bool isWindow = widget->isWindow() && widget->windowType() != Qt::Window;
    if (!isWindow) {
        layout.addWidget(widget.get());
    }
    window.show();
    if (isWindow) {
        widget->move(window.mapToGlobal(QPoint(10, 10)));
    }
    widget->show();
    runFor(0.02);
    const QImage shown = widget->grab().toImage();
    EXPECT_TRUE(findCanary(shown)) << "the exhibit itself is to show it";
    const PaintCounter counter;
    const auto picture = recordedPicture(*platform_.windowOf(window));
    EXPECT_EQ(findCanary(picture), std::nullopt);
    const QPoint place = widget->mapToGlobal(QPoint(0, 0)) - window.mapToGlobal(QPoint(0, 0));
    EXPECT_TRUE(isMaskedAt(picture, shown, place) || !exhibit().isBlock);
    EXPECT_EQ(counter.paintings, 0) << "nothing is painted for it";
}

TEST_P(QtWidgetGallery, ShowsNoCanaryAsTheWindowItself) {
    const std::unique_ptr<QWidget> widget(exhibit().make());
    widget->resize(400, 300);
    widget->show();
    runFor(0.01);
    const QImage shown = widget->grab().toImage();
    EXPECT_TRUE(findCanary(shown)) << "the exhibit itself is to show it";
    const auto picture = recordedPicture(*platform_.windowOf(*widget));
    EXPECT_EQ(findCanary(picture), std::nullopt);
    EXPECT_TRUE(isMaskedAt(picture, shown) || !exhibit().isBlock);
}

INSTANTIATE_TEST_SUITE_P(Widgets, QtWidgetGallery,
                         testing::Combine(testing::Values("Fusion", "Windows"), testing::ValuesIn(gallery())),
                         [](const auto& shown) {
                             return std::get<0>(shown.param) + std::get<1>(shown.param).name;
                         });

}  // namespace

}  // namespace mireth::qttest
