// The properties by which an app says of one widget or item that it is to be masked, or that it is a screen.
#pragma once

#include <QObject>
#include <QVariant>

namespace mireth::qt {

inline constexpr const char* maskedProperty = "mirethMasked";
inline constexpr const char* screenProperty = "mirethScreen";

inline bool isMarkedAsMasked(const QObject& object) {
    return object.property(maskedProperty).toBool();
}

/// Empty for an object without a name of its own.
inline QString markedScreen(const QObject& object) {
    return object.property(screenProperty).toString();
}

}  // namespace mireth::qt
