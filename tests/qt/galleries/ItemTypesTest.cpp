// The gallery of items is complete: each type of Qt Quick's that can be seen is in it.
#include <gtest/gtest.h>

#include <QDirIterator>
#include <QFile>
#include <QLibraryInfo>
#include <QRegularExpression>
#include <map>
#include <set>
#include <string>

#include "qt/galleries/ItemExhibit.hpp"

namespace mireth::qttest {

namespace {

/// What a module says of one of its classes.
struct QmlClass {
    QString base;
    std::set<QString> names;  ///< as types of QML that can be made
};

QString textOf(const QString& path) {
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
    return QString::fromUtf8(file.readAll());
}

QString modules() {
    return QLibraryInfo::path(QLibraryInfo::QmlImportsPath) + "/QtQuick";
}

/// Adds what a module's .qmltypes file says. Another module's file may tell of the same class again.
void addClasses(const QString& path, std::map<QString, QmlClass>& classes) {
    static const QRegularExpression name("\\n        name: \"(\\w+)\"");
    static const QRegularExpression base("\\n        prototype: \"(\\w+)\"");
    static const QRegularExpression exported("\"[\\w.]+/(\\w+) [0-9.]+\"");
    for (const QString& component : textOf(path).split("\n    Component {").mid(1)) {
        QmlClass& added = classes[name.match(component).captured(1)];
        if (const auto match = base.match(component); match.hasMatch()) {
            added.base = match.captured(1);
        }
        if (component.contains("isCreatable: false")) {
            continue;
        }
        for (auto match = exported.globalMatch(component); match.hasNext();) {
            added.names.insert(match.next().captured(1));
        }
    }
}

bool canBeSeen(const QString& name, const std::map<QString, QmlClass>& classes) {
    static const std::set<QString> seen{"QQuickItem", "QQuickPopup", "QQuickWindow"};
    for (auto at = classes.find(name); at != classes.end(); at = classes.find(at->second.base)) {
        if (seen.contains(at->first) || seen.contains(at->second.base)) {
            return true;
        }
    }
    return false;
}

/// The types of Qt Quick, its controls' templates, layouts and shapes that can be seen.
std::set<QString> seenTypes() {
    std::map<QString, QmlClass> classes;
    addClasses(modules() + "/plugins.qmltypes", classes);
    for (const char* const module : {"Templates", "Layouts", "Shapes"}) {
        addClasses(modules() + '/' + module + "/plugins.qmltypes", classes);
    }
    std::set<QString> types;
    for (const auto& [name, of] : classes) {
        if (canBeSeen(name, classes)) {
            types.insert(of.names.begin(), of.names.end());
        }
    }
    return types;
}

/// What the styles of Qt Quick Controls bring as files of QML.
std::set<QString> controls() {
    static const QRegularExpression entry("^(\\w+) [0-9.]+ \\w+\\.qml$", QRegularExpression::MultilineOption);
    std::set<QString> types;
    QDirIterator files(modules() + "/Controls", {"qmldir"}, QDir::Files, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        const QString path = files.next();
        if (path.contains("/impl/")) {
            continue;
        }
        for (auto match = entry.globalMatch(textOf(path)); match.hasNext();) {
            types.insert(match.next().captured(1));
        }
    }
    return types;
}

/// What shows nothing, or cannot stand in an exhibit under this name, and why.
const std::map<QString, const char*> exceptions{
    {"AbstractDayOfWeekRow", "DayOfWeekRow in the styles"},
    {"AbstractMonthGrid", "MonthGrid in the styles"},
    {"AbstractWeekNumberColumn", "WeekNumberColumn in the styles"},
    {"ActionGroup", "is no item"},
    {"CalendarModel", "is no item"},
};

void expectInTheGallery(const std::set<QString>& types) {
    QString gallery;
    for (const auto& exhibit : itemExhibits()) {
        gallery += QString::fromStdString(exhibit.body) + '\n';
    }
    EXPECT_GT(types.size(), 40U) << "the files of Qt's modules were not understood";
    for (const QString& type : types) {
        const bool isShown = gallery.contains(QRegularExpression("\\b" + type + " \\{"));
        EXPECT_NE(isShown, exceptions.contains(type)) << type.toStdString();
    }
}

TEST(QtItemGalleryTypes, HaveAnExhibitEach) {
    expectInTheGallery(seenTypes());
}

TEST(QtItemGalleryTypes, OfTheStylesHaveAnExhibitEach) {
    expectInTheGallery(controls());
}

}  // namespace

}  // namespace mireth::qttest
