#include "platforms/qt/objects/ClassCatalog.hpp"

#include <algorithm>
#include <cctype>
#include <cstring>
#include <functional>
#include <utility>

#include "platforms/qt/objects/ClassRules.hpp"
#include "platforms/qt/objects/ClassState.hpp"
#include "platforms/qt/objects/CppClass.hpp"
#include "platforms/qt/objects/ScreenKeyboard.hpp"

namespace mireth::qt {

using platform::ViewClass;

namespace {

constexpr std::string_view ofFile = "_QMLTYPE_";
constexpr std::string_view ofObject = "_QML_";

/// Where QML's ending begins, a mark and a number; npos for a name without it.
std::size_t endingOf(std::string_view name, std::string_view mark) {
    const std::size_t begin = name.rfind(mark);
    if (begin == std::string_view::npos || begin + mark.size() == name.size()) {
        return std::string_view::npos;
    }
    const auto number = name.substr(begin + mark.size());
    const bool isNumber =
        std::ranges::all_of(number, [](char digit) { return digit >= '0' && digit <= '9'; });
    return isNumber ? begin : std::string_view::npos;
}

/// Without namespaces and the arguments of a template, which have namespaces of their own.
std::string_view withoutScopes(std::string_view name) {
    const std::string_view whole = name.substr(0, name.find('<'));
    const auto lastScope = whole.rfind("::");
    return lastScope == std::string_view::npos ? whole : whole.substr(lastScope + 2);
}

/// Of the library's own classes these two are all that is in a frame: Qt's of the same names have others.
std::string registeredName(std::string_view name) {
    const bool isEverything = name == ViewClass::view().name() || name == ViewClass::window().name();
    return std::string(name) + (isEverything ? " of Qt" : "");
}

/// A subclass of `superclass` that goes by its whole name, and by the one without scopes.
const ViewClass& subclassNamed(std::string_view name, const ViewClass& superclass) {
    const std::string_view shortName = withoutScopes(name);
    const ViewClass& named = ViewClass::registerSubclass(registeredName(shortName), superclass);
    return shortName == name ? named : ViewClass::registerSubclass(name, named);
}

/// What a class of C++ says that it is called in QML; empty when it says nothing else than its name.
std::string_view qmlNameOf(const QMetaObject& type) {
    const int element = type.indexOfClassInfo("QML.Element");
    if (element < type.classInfoOffset()) {
        return {};
    }
    const std::string_view name = type.classInfo(element).value();
    return name == "auto" || name == "anonymous" ? std::string_view() : name;
}

/// Registers the superclasses first.
const ViewClass* registeredBelow(const ViewClass* root, const QMetaObject* type) {
    if (type == nullptr || std::strcmp(type->className(), "QObject") == 0) {
        return root;
    }
    const ViewClass* named = registeredBelow(root, type->superClass());
    if (const auto qmlName = qmlNameOf(*type); !qmlName.empty()) {
        named = &subclassNamed(qmlName, *named);
    }
    const std::string name = className(*type);
    return name.empty() ? named : &subclassNamed(name, *named);
}

/// Not by what the object says it inherits, which it also says of interfaces.
bool isKnownToQt(const QObject& object, const std::string& name) {
    const QMetaObject* type = object.metaObject();
    while (type != nullptr && name != type->className()) {
        type = type->superClass();
    }
    return type != nullptr;
}

/// Under all names of the object's class and of those that it derives from, that of its own last.
const ViewClass& registeredClassOf(const QObject& object, const ViewClass& root) {
    const ViewClass* below = &root;
    if (const std::type_info* const type = cppClassOf(object)) {
        for (const std::string& name : namesOf(*type)) {
            if (!isKnownToQt(object, name)) {
                below = &subclassNamed(name, *below);
            }
        }
    }
    return *registeredBelow(below, object.metaObject());
}

}  // namespace

std::string className(const QMetaObject& type) {
    const std::string_view name = type.className();
    if (endingOf(name, ofObject) != std::string_view::npos) {
        return {};
    }
    return std::string(name.substr(0, endingOf(name, ofFile)));
}

bool isDeclared(const QMetaObject& type) {
    const std::string_view name = type.className();
    return endingOf(name, ofObject) != std::string_view::npos ||
           endingOf(name, ofFile) != std::string_view::npos;
}

const QMetaObject& writtenIn(const QMetaObject& type) {
    const QMetaObject* written = &type;
    while (isDeclared(*written) && written->superClass() != nullptr) {
        written = written->superClass();
    }
    return *written;
}

const ViewClass& registeredViewClass(std::string_view name) {
    return ViewClass::registerClass(registeredName(name), &ViewClass::view());
}

const ViewClass& withNamesOf(const QObject& owner, const ViewClass& viewClass) {
    return registeredClassOf(owner, viewClass);
}

const MirroredClass& ClassCatalog::ofWidget(const QWidget& widget) {
    return find(widget, Family::widget);
}

const MirroredClass& ClassCatalog::ofItem(const QQuickItem& item) {
    return find(item, Family::item);
}

bool ClassCatalog::Entry::isOf(const QMetaObject& type) const {
    return superclass == type.superClass() && name == type.className();
}

void ClassCatalog::startPass() {
    std::erase_if(entries_, [](const auto& entry) { return entry.second.isDeclared; });
}

const MirroredClass& ClassCatalog::find(const QObject& object, Family family) {
    const QMetaObject& type = *object.metaObject();
    Entry& entry = entries_[{&type, cppClassOf(object)}];
    if (!entry.isOf(type)) {
        auto mirrored =
            family == Family::widget ? ruleForWidget(writtenIn(type)) : ruleForItem(writtenIn(type));
        if (family == Family::item && isKeyboard(type)) {
            mirrored.shown = Shown::hosted;
        }
        mirrored.viewClass = &registeredClassOf(object, ViewClass::view());
        mirrored.state = std::make_shared<const ClassState>(classStateOf(type));
        // Last, so that a lack of memory leaves no entry that is known by halves.
        entry = {type.className(), type.superClass(), isDeclared(type), std::move(mirrored)};
    }
    return entry.mirrored;
}

std::size_t ClassCatalog::KeyHash::operator()(const Key& key) const noexcept {
    return std::hash<const void*>()(key.type) * 31 + std::hash<const void*>()(key.cppClass);
}

}  // namespace mireth::qt
