// What is remembered of the classes of widgets and items, and for how long.
#include "platforms/qt/objects/ClassCatalog.hpp"

#include <gtest/gtest.h>

#include <QFrame>
#include <QLabel>
#include <QMetaProperty>
#include <QProgressBar>
#include <QSlider>
#include <algorithm>
#include <string>
#include <string_view>

#include "platforms/qt/objects/ClassState.hpp"
#include "qt/support/QmlScene.hpp"

namespace mireth::qttest {

namespace {

using qt::Shown;

/// The class that declares the property which counts as the state `name`.
std::string declaring(const QObject& object, const qt::MirroredClass& mirrored, std::string_view name) {
    const auto& properties = mirrored.state->properties;
    const auto found = std::ranges::find(properties, name, &qt::StateProperty::name);
    return found != properties.end()
               ? object.metaObject()->property(found->index).enclosingMetaObject()->className()
               : "none";
}

/// Of a class that is another one later.
class Turncoat : public QWidget {
  public:
    const QMetaObject* metaObject() const override { return &type; }
    QMetaObject type = QLabel::staticMetaObject;
};

TEST(QtClassCatalog, AnotherClassAtTheSamePlaceIsLookedAtAnew) {
    qt::ClassCatalog catalog;
    Turncoat widget;
    EXPECT_EQ(catalog.ofWidget(widget).shown, Shown::label);
    // As when a plugin goes and another one comes.
    widget.type = QFrame::staticMetaObject;
    EXPECT_EQ(catalog.ofWidget(widget).shown, Shown::container);
    EXPECT_EQ(catalog.ofWidget(widget).viewClass->name(), "QFrame");
    EXPECT_EQ(declaring(widget, catalog.ofWidget(widget), "text"), "none");
}

TEST(QtClassCatalog, WhatIsKnownOfAClassOfCppOutlivesThePass) {
    qt::ClassCatalog catalog;
    const QSlider slider;
    const auto known = catalog.ofWidget(slider).state;
    catalog.startPass();
    EXPECT_EQ(catalog.ofWidget(slider).state, known);
}

TEST(QtClassCatalog, AVirtualGetterIsNotAsked) {
    qt::ClassCatalog catalog;
    const QProgressBar bar;
    EXPECT_EQ(declaring(bar, catalog.ofWidget(bar), "value"), "QProgressBar");
    EXPECT_EQ(declaring(bar, catalog.ofWidget(bar), "text"), "none");
}

TEST(QtClassCatalog, OfAPropertyThatQmlDeclaresOverQtsThatOfQmlCountsUnlessItIsAnAlias) {
    QmlScene scene(
        "Label { objectName: 'plain'; property string text: 'a' }\n"
        "Label { objectName: 'alias'; property alias text: inner.color; Rectangle { id: inner } }");
    qt::ClassCatalog catalog;
    for (int pass = 0; pass < 2; ++pass) {
        catalog.startPass();
        const auto& plain = static_cast<const QQuickItem&>(scene.object("plain"));
        EXPECT_EQ(declaring(plain, catalog.ofItem(plain), "text"), plain.metaObject()->className());
        const auto& alias = static_cast<const QQuickItem&>(scene.object("alias"));
        EXPECT_EQ(declaring(alias, catalog.ofItem(alias), "text"), "QQuickText");
    }
}

}  // namespace

}  // namespace mireth::qttest
