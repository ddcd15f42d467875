// Classes to mask are found by whatever name a host may know them by.
#include <gtest/gtest.h>

#include <QQuickItem>
#include <QQuickWindow>
#include <QSlider>
#include <QWidget>
#include <QtQml>
#include <string>
#include <utility>
#include <vector>

#include "MirethVex/Qt/QtPlatform.hpp"
#include "qt/support/EventLoop.hpp"
#include "qt/support/Pictures.hpp"
#include "qt/support/QmlScene.hpp"

class BankSecret {};

class View : public QWidget {
    Q_OBJECT
  public:
    using QWidget::QWidget;
};

namespace bank {

class PlainPanel : public QWidget {
  public:
    using QWidget::QWidget;
};

class KnownPanel : public QWidget {
    Q_OBJECT
  public:
    using QWidget::QWidget;
};

template <class Content>
class PanelOf : public QWidget {
  public:
    using QWidget::QWidget;
};

class DerivedPanel : public PlainPanel, public BankSecret {
    Q_OBJECT
  public:
    using PlainPanel::PlainPanel;
};

class Window : public QWidget {
  public:
    using QWidget::QWidget;
};

class PlainWindow : public QQuickWindow {};

class AnonymousItem : public QQuickItem {
    Q_OBJECT
    QML_ANONYMOUS
};

class ItemOfCpp : public AnonymousItem {
    Q_OBJECT
    QML_NAMED_ELEMENT(CardOfCpp)
};

}  // namespace bank

namespace mireth::qttest {

namespace {

/// Shows what is in it, or is a block when it is masked.
template <class Panel>
struct WindowWith {
    WindowWith() {
        window.resize(200, 100);
        panel.setGeometry(20, 20, 100, 50);
        slider.setGeometry(0, 0, 10, 10);
        window.show();
        runFor(0.01);
    }
    QWidget window;
    Panel panel{&window};
    QSlider slider{&panel};
};

class QtNamedClasses : public testing::Test {
  protected:
    bool isMasked(const platform::Window& window, const std::string& name) {
        return isMaskBlock(recordedPicture(window, {&qt::viewClassNamed(name)}).pixel(60, 40));
    }
    template <class Panel>
    bool isMasked(WindowWith<Panel>& shown, const std::string& name) {
        return isMasked(*platform_.windowOf(shown.window), name);
    }
    bool isMasked(QmlScene& scene, const std::string& name) {
        return isMasked(*platform_.windowOf(scene.window()), name);
    }

    const qt::QtPlatform platform_;
};

TEST_F(QtNamedClasses, AClassThatQtDoesNotKnowIsMaskedByItsName) {
    WindowWith<bank::PlainPanel> shown;
    EXPECT_FALSE(isMasked(shown, "OtherPanel"));
    EXPECT_TRUE(isMasked(shown, "bank::PlainPanel"));
    EXPECT_TRUE(isMasked(shown, "QWidget"));
}

TEST_F(QtNamedClasses, ANameWithoutNamespacesStandsForAllThatEndSo) {
    WindowWith<bank::PlainPanel> plain;
    EXPECT_TRUE(isMasked(plain, "PlainPanel"));
    EXPECT_FALSE(isMasked(plain, "Panel"));
    WindowWith<bank::KnownPanel> known;
    EXPECT_TRUE(isMasked(known, "KnownPanel"));
    EXPECT_TRUE(isMasked(known, "bank::KnownPanel"));
    EXPECT_FALSE(isMasked(known, "shop::KnownPanel"));
    WindowWith<bank::PanelOf<bank::PlainPanel>> ofTemplate;
    EXPECT_TRUE(isMasked(ofTemplate, "PanelOf"));
    EXPECT_TRUE(isMasked(ofTemplate, "bank::PanelOf<bank::PlainPanel>"));
    EXPECT_FALSE(isMasked(ofTemplate, "PlainPanel"));
}

TEST_F(QtNamedClasses, WhatAClassDerivesFromMasksItThoughQtDoesNotKnowIt) {
    WindowWith<bank::DerivedPanel> shown;
    EXPECT_TRUE(isMasked(shown, "PlainPanel")) << "between two classes that Qt knows";
    EXPECT_TRUE(isMasked(shown, "BankSecret")) << "no QObject";
}

TEST_F(QtNamedClasses, ObjectsOfAClassAndOfAnotherThatQtTakesForTheSameAreToldApart) {
    WindowWith<QWidget> ordinary;
    EXPECT_FALSE(isMasked(ordinary, "PlainPanel"));
    bank::PlainPanel plain(&ordinary.window);
    plain.setGeometry(130, 20, 60, 50);
    QSlider inIt(&plain);
    plain.show();
    const QImage seen =
        recordedPicture(*platform_.windowOf(ordinary.window), {&qt::viewClassNamed("PlainPanel")});
    EXPECT_FALSE(isMaskBlock(seen.pixel(60, 40)));
    EXPECT_TRUE(isMaskBlock(seen.pixel(160, 40)));
}

TEST_F(QtNamedClasses, AWindowOfItemsIsMaskedByTheNameOfItsClass) {
    bank::PlainWindow window;
    window.resize(200, 100);
    window.show();
    runFor(0.01);
    const auto recorded = platform_.windowOf(window);
    EXPECT_FALSE(isMasked(*recorded, "OtherWindow"));
    EXPECT_TRUE(isMasked(*recorded, "PlainWindow"));
}

TEST_F(QtNamedClasses, ANameThatTheLibraryHasToStandsForQtsClassesOnly) {
    WindowWith<QWidget> ordinary;
    for (const char* name :
         {"View", "Window", "Label", "TextField", "TextView", "ImageView", "ViewController"}) {
        EXPECT_FALSE(isMasked(ordinary, name)) << name;
    }
    WindowWith<View> view;
    EXPECT_TRUE(isMasked(view, "View"));
    EXPECT_FALSE(isMasked(view, "Window"));
    WindowWith<bank::Window> window;
    EXPECT_TRUE(isMasked(window, "Window"));
    EXPECT_TRUE(isMasked(window, "bank::Window"));
    EXPECT_FALSE(isMasked(window, "View"));
}

TEST_F(QtNamedClasses, QtsOwnTypesAreMaskedByTheirNamesInQml) {
    const std::vector<std::pair<std::string, std::string>> scenes{
        {"Rectangle", "Rectangle { width: 100; height: 80; color: 'black' }"},
        {"Item", "Item { width: 100; height: 80 }"},
        {"MouseArea", "MouseArea { width: 100; height: 80 }"},
        {"RowLayout", "RowLayout { width: 100; height: 80 }"},
        {"ListView", "ListView { width: 100; height: 80 }"},
        {"Flickable", "ListView { width: 100; height: 80 }"},
        {"Window", "Item { }"},
    };
    for (const auto& [name, body] : scenes) {
        QmlScene scene(body);
        EXPECT_FALSE(isMasked(scene, "Grid")) << name;
        EXPECT_TRUE(isMasked(scene, name)) << name;
    }
}

TEST_F(QtNamedClasses, ATypeOfCppIsMaskedByTheNameThatItsClassSaysForQml) {
    qmlRegisterTypesAndRevisions<bank::ItemOfCpp, bank::AnonymousItem>("Bank", 1);
    QmlScene scene("CardOfCpp { width: 100; height: 80 }", {}, "import Bank");
    for (const char* name : {"CardOfCpp", "ItemOfCpp", "bank::ItemOfCpp", "AnonymousItem"}) {
        EXPECT_TRUE(isMasked(scene, name)) << name;
    }
    for (const char* name : {"anonymous", "auto", "QML.Element"}) {
        EXPECT_FALSE(isMasked(scene, name)) << name;
    }
}

}  // namespace

}  // namespace mireth::qttest

#include "NamedClassesTest.moc"
