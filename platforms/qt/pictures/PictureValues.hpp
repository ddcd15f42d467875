// What the picture of an item is drawn from.
#pragma once

#include <QObject>
#include <QVariant>
#include <initializer_list>
#include <string_view>
#include <utility>
#include <vector>

namespace mireth::qt {

/// Values by their names, which are literals. A drawing is given these and not the item: what it read there
/// besides, nobody would compare, and a picture would stay that the item no longer shows.
class PictureValues {
  public:
    /// Of Qt's class that is called `type`, whatever has been put over it.
    void read(const QObject& object, const char* type, std::initializer_list<const char*> properties);
    void add(std::string_view name, QVariant value);

    /// A value made by default for what is not there.
    template <class Value>
    Value get(std::string_view name) const {
        return find(name).value<Value>();
    }

    bool operator==(const PictureValues& other) const = default;

  private:
    QVariant find(std::string_view name) const;

    std::vector<std::pair<std::string_view, QVariant>> values_;
};

}  // namespace mireth::qt
