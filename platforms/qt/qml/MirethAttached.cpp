#include "platforms/qt/qml/MirethAttached.hpp"

#include <QQuickItem>
#include <QQuickWindow>
#include <QVariant>
#include <array>

#include "platforms/qt/mirror/MarkingProperties.hpp"

namespace mireth::qt {

namespace {

/// Where the mirror looks whether `attachee` is masked; null while there is nothing yet.
QObject* shownBy(QObject& attachee) {
    if (auto* const window = qobject_cast<QQuickWindow*>(&attachee)) {
        return window->contentItem();
    }
    if (!attachee.inherits("QQuickPopup")) {
        return &attachee;
    }
    const auto* const content = attachee.property("contentItem").value<QQuickItem*>();
    return content != nullptr ? content->parentItem() : nullptr;
}

}  // namespace

MirethAttached::MirethAttached(QObject* attachee) : QObject(attachee) {
    if (attachee == nullptr || !attachee->inherits("QQuickPopup")) {
        return;
    }
    // A pop-up makes what it shows late, and may change it.
    constexpr std::array later{"2contentItemChanged()", "2aboutToShow()", "2opened()"};
    for (const char* const signal : later) {
        connect(attachee, signal, this, SLOT(leaveValues()));
    }
}

void MirethAttached::setMasked(bool masked) {
    if (isMasked_ != masked) {
        isMasked_ = masked;
        leaveValues();
        Q_EMIT maskedChanged();
    }
}

void MirethAttached::setScreen(const QString& screen) {
    if (screen_ != screen) {
        screen_ = screen;
        leaveValues();
        Q_EMIT screenChanged();
    }
}

void MirethAttached::leaveValues() {
    if (parent() == nullptr) {
        return;
    }
    parent()->setProperty(screenProperty, screen_);
    if (QObject* const shown = shownBy(*parent())) {
        shown->setProperty(maskedProperty, isMasked_);
    }
}

}  // namespace mireth::qt
