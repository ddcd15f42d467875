#include "platforms/qt/state/SignalCounter.hpp"

namespace mireth::qt {

SignalCounter::SignalCounter(const QObject& sender, std::span<const int> indexes) : sender_(&sender) {
    for (const int index : indexes) {
        QMetaObject::connect(&sender, index, this, indexOfAdd(), Qt::DirectConnection);
    }
}

int SignalCounter::indexOfAdd() {
    return staticMetaObject.indexOfSlot("add()");
}

}  // namespace mireth::qt
