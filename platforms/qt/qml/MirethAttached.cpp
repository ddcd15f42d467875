#include "platforms/qt/qml/MirethAttached.hpp"

#include <QQuickItem>
#include <QQuickWindow>
#include <QVariant>

#include "platforms/qt/objects/MarkingProperties.hpp"
#include "platforms/qt/objects/QtProperty.hpp"

namespace mireth::qt {

namespace {

/// Counts as true, and is told from the true of an app's C++ code, which is not to be taken back.
constexpr int markOfQml = 2;

constexpr const char* repeater = "QQuickRepeater";
constexpr const char* popup = "QQuickPopup";

/// Where the mirror looks whether `attachee` is masked; null while there is nothing yet.
QObject* shownBy(QObject& attachee) {
    if (auto* const window = qobject_cast<QQuickWindow*>(&attachee)) {
        return window->contentItem();
    }
    if (!attachee.inherits(popup)) {
        return &attachee;
    }
    const auto* const content = attachee.property("contentItem").value<QQuickItem*>();
    return content != nullptr ? content->parentItem() : nullptr;
}

}  // namespace

MirethAttached::MirethAttached(QObject* attachee) : QObject(attachee) {
    if (attachee == nullptr) {
        return;
    }
    hear(repeater, "itemAdded(int,QQuickItem*)", "leaveMarkOn(int,QQuickItem*)");
    // A pop-up makes what it shows late, and may change it.
    for (const char* const signal : {"contentItemChanged()", "aboutToShow()", "opened()"}) {
        hear(popup, signal, "leaveMark()");
    }
}

void MirethAttached::hear(const char* type, const char* signal, const char* slot) {
    if (const QMetaMethod told = qtSignal(*parent(), type, signal); told.isValid()) {
        connect(parent(), told, this, staticMetaObject.method(staticMetaObject.indexOfSlot(slot)));
    }
}

void MirethAttached::setMasked(bool masked) {
    if (isMasked_ != masked) {
        isMasked_ = masked;
        leaveMark();
        leaveMarksOnMade();
        Q_EMIT maskedChanged();
    }
}

void MirethAttached::setScreen(const QString& screen) {
    if (screen_ == screen) {
        return;
    }
    screen_ = screen;
    if (parent() != nullptr) {
        parent()->setProperty(screenProperty, screen_);
    }
    Q_EMIT screenChanged();
}

void MirethAttached::leaveMark() {
    QObject* const shown = isMarked() && parent() != nullptr ? shownBy(*parent()) : nullptr;
    if (marked_ != shown) {
        takeMarkBack();
    }
    if (shown != nullptr && !isMarkedAsMasked(*shown)) {
        shown->setProperty(maskedProperty, markOfQml);
        marked_ = shown;
    }
}

void MirethAttached::leaveMarksOnMade() {
    const int count = parent() != nullptr ? qtProperty(*parent(), repeater, "count").toInt() : 0;
    for (int index = 0; index < count; ++index) {
        QQuickItem* made = nullptr;
        QMetaObject::invokeMethod(parent(), "itemAt", Q_RETURN_ARG(QQuickItem*, made), Q_ARG(int, index));
        leaveMarkOn(index, made);
    }
}

void MirethAttached::leaveMarkOn(int /*index*/, QQuickItem* made) {
    if (made == nullptr) {
        return;
    }
    auto* const attached =
        qobject_cast<MirethAttached*>(qmlAttachedPropertiesObject<MirethAttached>(made, isMarked()));
    if (attached != nullptr && attached->isMadeByMasked_ != isMarked()) {
        attached->isMadeByMasked_ = isMarked();
        attached->leaveMark();
        attached->leaveMarksOnMade();
    }
}

void MirethAttached::takeMarkBack() {
    if (marked_ != nullptr && marked_->property(maskedProperty) == QVariant(markOfQml)) {
        marked_->setProperty(maskedProperty, QVariant());
    }
    marked_ = nullptr;
}

}  // namespace mireth::qt
