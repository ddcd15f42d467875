// What the exhibits of the galleries show: texts and pictures in saturated colours, on grey.
#pragma once

#include <QBuffer>
#include <QColor>
#include <QIcon>
#include <QImage>
#include <QPalette>
#include <QPixmap>
#include <string>

namespace mireth::qttest {

inline const QColor canary(255, 0, 0);

inline QImage canaryImage(int side = 32) {
    QImage picture(side, side, QImage::Format_RGB32);
    picture.fill(QColor(0, 200, 0));
    return picture;
}

inline QPixmap canaryPicture(int side = 32) {
    return QPixmap::fromImage(canaryImage(side));
}

inline QIcon canaryIcon() {
    return QIcon(canaryPicture());
}

/// As a URL, in quotes, for QML.
inline std::string canaryUrl() {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    canaryImage(16).save(&buffer, "PNG");
    return "'data:image/png;base64," + bytes.toBase64().toStdString() + "'";
}

/// Grey, but for everything that text may be drawn in.
inline QPalette canaryPalette() {
    QPalette palette(QColor(200, 200, 200), QColor(240, 240, 240));
    palette.setColor(QPalette::Base, QColor(250, 250, 250));
    palette.setColor(QPalette::Highlight, QColor(120, 120, 120));
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::BrightText,
                            QPalette::HighlightedText, QPalette::PlaceholderText, QPalette::ToolTipText,
                            QPalette::Link, QPalette::LinkVisited}) {
        for (const auto group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled}) {
            palette.setColor(group, role, canary);
        }
    }
    return palette;
}

}  // namespace mireth::qttest
