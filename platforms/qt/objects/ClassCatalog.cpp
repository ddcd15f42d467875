#include "platforms/qt/objects/ClassCatalog.hpp"

#include <algorithm>
#include <cctype>
#include <cstring>

#include "platforms/qt/objects/ClassRules.hpp"
#include "platforms/qt/objects/ClassState.hpp"
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

/// Registers the superclasses first.
const ViewClass& registeredBelow(const ViewClass& root, const QMetaObject* type) {
    if (type == nullptr || std::strcmp(type->className(), "QObject") == 0) {
        return root;
    }
    const ViewClass& superclass = registeredBelow(root, type->superClass());
    const std::string name = className(*type);
    return name.empty() ? superclass : ViewClass::registerSubclass(name, superclass);
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
    return ViewClass::registerClass(name, &ViewClass::view());
}

const ViewClass& withNamesOf(const QMetaObject& owner, const ViewClass& viewClass) {
    return registeredBelow(viewClass, &owner);
}

const MirroredClass& ClassCatalog::find(const QMetaObject& type, Family family) {
    const auto [entry, isNew] = entries_.try_emplace(&type);
    MirroredClass& mirrored = entry->second;
    if (isNew) {
        mirrored = family == Family::widget ? ruleForWidget(writtenIn(type)) : ruleForItem(writtenIn(type));
        if (family == Family::item && isKeyboard(type)) {
            mirrored.shown = Shown::hosted;
        }
        mirrored.viewClass = &registeredBelow(ViewClass::view(), &type);
        mirrored.state = std::make_shared<const ClassState>(classStateOf(type));
    }
    return mirrored;
}

}  // namespace mireth::qt
