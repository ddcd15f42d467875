// How a host describes a screen that appeared or disappeared.
#pragma once

#include <string>

namespace mireth {

/// One level of a screen. A screen hierarchy is an ordered list of elements, outermost first.
struct ScreenHierarchyElement {
    std::string screenName;
    std::string screenType = "Screen";
    bool operator==(const ScreenHierarchyElement&) const = default;
};

enum class ScreenChangeType { appear, disappear };

/// Whether the host reported the change itself, or the library noticed it ("auto").
enum class ScreenDetectionType { manual, automatic };

}  // namespace mireth
