#include "platforms/qt/objects/WindowsBelow.hpp"

#include <algorithm>

namespace mireth::qt {

std::vector<QWindow*> windowsBelow(const QWindow& window) {
    std::vector<QWindow*> below;
    QWindow* next = window.parent(QWindow::IncludeTransients);
    while (next != nullptr && next != &window && std::ranges::find(below, next) == below.end()) {
        below.push_back(next);
        next = next->parent(QWindow::IncludeTransients);
    }
    return below;
}

}  // namespace mireth::qt
