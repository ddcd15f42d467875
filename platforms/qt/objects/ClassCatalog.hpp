// What is known of the classes of widgets and items: their names for the library, and how they are shown.
#pragma once

#include <QMetaObject>
#include <QQuickItem>
#include <QWidget>
#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <typeinfo>
#include <unordered_map>

#include "MirethVex/Platform/ViewClass.hpp"

namespace mireth::qt {

/// What a widget or an item becomes in the mirror. The library masks labels, text fields, text views, images
/// and hosted content; the rest is seen.
enum class Shown {
    /// Its place, its colours, and what lies in it. Nothing that it paints itself.
    container,
    /// Text, or anything whose looks are not known to be harmless.
    label,
    textField,
    textView,
    image,
    /// Content of another kind that cannot be looked into.
    hosted,
    /// A rectangle of one colour or gradient.
    rectangle,
    /// Drawn by the style from a few numbers: a scroll bar, a slider, a dial.
    styled,
};

struct ClassState;

struct MirroredClass {
    const platform::ViewClass* viewClass = nullptr;
    Shown shown = Shown::label;
    /// True when an object without others in it shows nothing of its own either.
    bool emptyIsHarmless = false;
    /// Never null in what a catalogue gives out.
    std::shared_ptr<const ClassState> state = nullptr;
};

/// The name by which Qt knows a class: the C++ name, or `CardNumber` for the type of CardNumber.qml.
/// Empty for a class that Qt made up for a single object.
std::string className(const QMetaObject& type);

/// True for a class that QML made: of a .qml file or of a single object.
bool isDeclared(const QMetaObject& type);

/// The class that the object was written in: the first one up that is of C++.
const QMetaObject& writtenIn(const QMetaObject& type);

/// Stands for all of Qt's and the app's classes called `name`, those too that are met later.
const platform::ViewClass& registeredViewClass(std::string_view name);

/// The class of a view that shows two objects in one: an item of `viewClass`, and the window or pop-up
/// `owner` that the item is all of. It goes by the names of both.
const platform::ViewClass& withNamesOf(const QObject& owner, const platform::ViewClass& viewClass);

/// Remembers what it has found out. Main thread only.
class ClassCatalog {
  public:
    /// Forgets the classes that QML made: after the last of their objects they may go, too.
    void startPass();

    /// Both for the object's own class and through all superclasses. What they give out lasts for the pass.
    const MirroredClass& ofWidget(const QWidget& widget);
    const MirroredClass& ofItem(const QQuickItem& item);

  private:
    enum class Family { widget, item };

    /// Classes of C++ that Qt does not know share the meta-object of the nearest one that it does.
    struct Key {
        const QMetaObject* type;
        const std::type_info* cppClass;
        bool operator==(const Key&) const = default;
    };
    struct KeyHash {
        std::size_t operator()(const Key& key) const noexcept;
    };

    struct Entry {
        bool isOf(const QMetaObject& type) const;

        std::string name;
        const QMetaObject* superclass = nullptr;
        bool isDeclared = false;
        MirroredClass mirrored;
    };

    const MirroredClass& find(const QObject& object, Family family);

    /// A class of C++ goes with the plugin that it came in, and another one may come to lie at its place.
    std::unordered_map<Key, Entry, KeyHash> entries_;
};

}  // namespace mireth::qt
