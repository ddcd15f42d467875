#include "platforms/qt/pictures/PictureValues.hpp"

#include <algorithm>

#include "platforms/qt/objects/QtProperty.hpp"

namespace mireth::qt {

void PictureValues::read(const QObject& object, const char* type,
                         std::initializer_list<const char*> properties) {
    for (const char* const property : properties) {
        add(property, qtProperty(object, type, property));
    }
}

void PictureValues::add(std::string_view name, QVariant value) {
    values_.emplace_back(name, std::move(value));
}

QVariant PictureValues::find(std::string_view name) const {
    const auto found = std::ranges::find(values_, name, [](const auto& entry) { return entry.first; });
    return found != values_.end() ? found->second : QVariant();
}

}  // namespace mireth::qt
