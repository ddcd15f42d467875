// The screens that one pass over a window has come by.
#pragma once

#include <QObject>
#include <QPointer>
#include <QQuickItem>
#include <QWidget>
#include <string>
#include <vector>

namespace mireth::qt {

/// A page, a dialog or a window, with the name it goes by.
struct SeenScreen {
    QPointer<QObject> object;
    std::string name;
};

/// Filled by the mirrors as they walk. Main thread only.
class SeenScreens {
  public:
    /// A top-level window or a dialog; menus, tool tips and the like are none.
    void addWindow(QWidget& window);
    void addWindow(QWindow& window);
    /// Looks for pages: the current one of a stack of pages, a dialog of items, and whatever has a name of
    /// its own.
    void look(QWidget& widget);
    void look(QQuickItem& item);

    const std::vector<SeenScreen>& list() const noexcept { return screens_; }
    /// What holds pages, to be watched for a change of page.
    const std::vector<QObject*>& holders() const noexcept { return holders_; }

  private:
    void add(QObject* object);

    std::vector<SeenScreen> screens_;
    std::vector<QObject*> holders_;
};

}  // namespace mireth::qt
