#include "platforms/qt/state/StateDigest.hpp"

#include <QColor>
#include <QFont>
#include <QHashFunctions>
#include <QIcon>
#include <QPixmap>
#include <bit>

namespace mireth::qt {

void StateDigest::add(std::uint64_t part) noexcept {
    // Parts in another order come to another number.
    constexpr std::uint64_t odd = 0x9E3779B97F4A7C15;
    value_ = std::rotl(value_ ^ (part * odd), 29) * odd;
}

void StateDigest::addReal(double number) noexcept {
    add(std::bit_cast<std::uint64_t>(number));
}

void StateDigest::addText(const QString& text) {
    add(qHash(text, QHashSeed::globalSeed()));
}

void StateDigest::addFont(const QFont& font) {
    add(qHash(font));
    // Qt's hash leaves them out.
    for (const bool isSet : {font.underline(), font.overline(), font.strikeOut(), font.kerning()}) {
        addNumber(isSet ? 1 : 0);
    }
    addNumber(font.capitalization());
    for (const double size : {font.pointSizeF(), font.wordSpacing(), font.letterSpacing()}) {
        addReal(size);
    }
}

void StateDigest::addValue(const QVariant& value) {
    switch (value.typeId()) {
        case QMetaType::Bool:
        case QMetaType::Int:
            addNumber(value.toInt());
            break;
        case QMetaType::Double:
            addReal(value.toDouble());
            break;
        case QMetaType::QFont:
            addFont(value.value<QFont>());
            break;
        case QMetaType::QColor:
            addNumber(value.value<QColor>().rgba());
            break;
        case QMetaType::QIcon:
            addNumber(value.value<QIcon>().cacheKey());
            break;
        case QMetaType::QPixmap:
            addNumber(value.value<QPixmap>().cacheKey());
            break;
        default:
            addText(value.toString());
            break;
    }
}

void StateDigest::addProperties(const QObject& object, const std::vector<StateProperty>& properties) {
    for (const StateProperty& property : properties) {
        addValue(object.metaObject()->property(property.index).read(&object));
    }
}

}  // namespace mireth::qt
