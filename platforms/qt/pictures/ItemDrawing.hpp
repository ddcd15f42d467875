// How the picture of an item is drawn from the item's properties.
#pragma once

#include <QPainter>
#include <QQuickItem>
#include <QRectF>
#include <QVariantList>
#include <functional>
#include <initializer_list>

#include "platforms/qt/objects/QtProperty.hpp"

namespace mireth::qt {

struct ItemDrawing {
    /// What the picture shows: as long as these stay the same, so does it.
    QVariantList values;
    /// What it covers, in the item's coordinates.
    QRectF area;
    /// Draws in the item's coordinates, while the item is there; false when that cannot be done.
    std::function<bool(QPainter&)> draw;
};

/// `type`: the class of Qt's that the properties are read of.
inline QVariantList valuesOf(const QQuickItem& item, const char* type,
                             std::initializer_list<const char*> properties) {
    QVariantList values{item.size()};
    for (const char* const property : properties) {
        values.append(qtProperty(item, type, property));
    }
    return values;
}

}  // namespace mireth::qt
