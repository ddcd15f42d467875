// How a host describes a screen that appeared or disappeared.
#pragma once

#include <string>

namespace mireth {

/// One level of a screen. A screen hierarchy is an ordered list of elements, outermost first. The texts are
/// UTF-8 of any length and are sent to the service as they are.
struct ScreenHierarchyElement {
    std::string screenName;
    /// What kind of thing it is, in words of the host's.
    std::string screenType = "Screen";
    bool operator==(const ScreenHierarchyElement&) const = default;
};

enum class ScreenChangeType { appear, disappear };

/// Whether the host reported the change itself, or the library noticed it ("auto").
enum class ScreenDetectionType { manual, automatic };

}  // namespace mireth
