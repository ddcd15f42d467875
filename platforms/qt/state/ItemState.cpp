#include "platforms/qt/state/ItemState.hpp"

#include <QColor>

#include "platforms/qt/objects/ClassState.hpp"
#include "platforms/qt/objects/QtProperty.hpp"

namespace mireth::qt {

void ItemState::addTo(StateDigest& digest, const QQuickItem& item, const MirroredClass& rule) {
    const ClassState& state = *rule.state;
    digest.addNumber(item.isEnabled() ? 1 : 0);
    digest.addProperties(item, state.properties);
    if (!state.changeSignals.empty()) {
        digest.add(signals_.of(item, state.changeSignals));
    }
}

void ItemState::addLook(StateDigest& digest, const QQuickItem& item) {
    for (const double part : {item.x(), item.y(), item.width(), item.height(), item.z(), item.rotation(),
                              item.scale(), item.opacity()}) {
        digest.addReal(part);
    }
    digest.add(qtProperty(item, "QQuickRectangle", "color").value<QColor>().rgba());
}

}  // namespace mireth::qt
