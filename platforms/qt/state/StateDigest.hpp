// One number for the state of many things: texts, values, places.
#pragma once

#include <QFont>
#include <QObject>
#include <QVariant>
#include <cstdint>
#include <string>
#include <vector>

#include "platforms/qt/objects/ClassState.hpp"

namespace mireth::qt {

/// Tells one state from another and nothing more: no text can be read from it, nor looked up, since each
/// process has digests of its own.
class StateDigest {
  public:
    void add(std::uint64_t part) noexcept;
    void addNumber(std::int64_t number) noexcept { add(static_cast<std::uint64_t>(number)); }
    void addReal(double number) noexcept;
    void addText(const QString& text);
    void addFont(const QFont& font);
    /// Of pictures it is whether they are the same object.
    void addValue(const QVariant& value);
    /// Their values, `properties` being those of the object's class.
    void addProperties(const QObject& object, const std::vector<StateProperty>& properties);

    std::string text() const { return std::to_string(value_); }

  private:
    std::uint64_t value_ = 0;
};

}  // namespace mireth::qt
