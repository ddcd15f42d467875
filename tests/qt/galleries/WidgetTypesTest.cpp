// The gallery of widgets is complete: each class of Qt Widgets is in it.
#include <gtest/gtest.h>

#include <QDirIterator>
#include <QFile>
#include <QLibraryInfo>
#include <QRegularExpression>
#include <map>
#include <memory>
#include <set>
#include <string>

#include "qt/galleries/WidgetExhibit.hpp"

namespace mireth::qttest {

namespace {

/// The base of each class that Qt Widgets' headers declare.
std::map<QString, QString> basesOfClasses() {
    static const QRegularExpression declared("class Q_WIDGETS_EXPORT (Q\\w+) : public (Q\\w+)");
    std::map<QString, QString> bases;
    QDirIterator files(QLibraryInfo::path(QLibraryInfo::HeadersPath) + "/QtWidgets", {"*.h"}, QDir::Files);
    while (files.hasNext()) {
        QFile file(files.next());
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        const QString text = QString::fromUtf8(file.readAll());
        for (auto match = declared.globalMatch(text); match.hasNext();) {
            const auto found = match.next();
            bases[found.captured(1)] = found.captured(2);
        }
    }
    return bases;
}

std::set<QString> widgetClasses() {
    const auto bases = basesOfClasses();
    std::set<QString> widgets;
    for (const auto& [name, base] : bases) {
        for (auto at = bases.find(name); at != bases.end(); at = bases.find(at->second)) {
            if (at->first == "QWidget") {
                widgets.insert(name);
            }
        }
    }
    return widgets;
}

/// A class of the app's own without an entry in Qt's catalogue of classes counts as the one it derives from.
std::set<QString> shownClasses() {
    std::set<QString> shown;
    for (const auto& exhibit : widgetExhibits()) {
        const std::unique_ptr<QWidget> widget(exhibit.make());
        shown.insert(widget->metaObject()->className());
        for (const QWidget* const inside : widget->findChildren<QWidget*>()) {
            shown.insert(inside->metaObject()->className());
        }
    }
    return shown;
}

TEST(QtWidgetGalleryTypes, HaveAnExhibitEach) {
    const auto types = widgetClasses();
    EXPECT_GT(types.size(), 60U) << "Qt's headers were not understood";
    const auto shown = shownClasses();
    for (const QString& type : types) {
        EXPECT_TRUE(shown.contains(type)) << type.toStdString();
    }
}

}  // namespace

}  // namespace mireth::qttest
