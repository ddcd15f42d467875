// A view as the scenario file describes it. Readers make these, the view tree is built from them.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "phone/Steps.hpp"
#include "phone/ViewSettings.hpp"

namespace mireth::phone {

struct ControllerSpec {
    std::string name;
    bool declarative = false;
};

struct ViewSpec {
    /// Its place in the file.
    std::string path;
    /// Empty when it has none.
    std::string id;
    std::string viewClass = "View";
    ViewSettings settings;
    std::optional<ControllerSpec> controller;
    /// What the app does when the view is tapped. An empty list takes the tap and does nothing.
    std::optional<std::vector<Reaction>> onTap;
    /// Back to front.
    std::vector<ViewSpec> subviews;
};

struct ScreenSpec {
    std::string path;
    std::string name;
    Color background{1, 1, 1, 1};
    std::vector<ViewSpec> views;
};

}  // namespace mireth::phone
