// Views, one inside the other.
#include "phone/ViewReader.hpp"

#include <array>
#include <utility>

#include "phone/ReactionReader.hpp"

namespace mireth::phone {

namespace {

constexpr std::size_t mostViews = 20'000;

constexpr std::array<std::string_view, 5> viewOnlyKeys{"id", "class", "controller", "subviews", "onTap"};

ControllerSpec readController(const JsonNode& node) {
    static constexpr std::array<std::string_view, 2> keys{"name", "declarative"};
    node.requireKeys(keys);
    ControllerSpec controller{node.at("name").name(), false};
    if (const auto declarative = node.find("declarative")) {
        controller.declarative = declarative->boolean();
    }
    return controller;
}

}  // namespace

std::vector<ViewSpec> ViewReader::readViews(const JsonNode& list) {
    std::vector<ViewSpec> views;
    for (const auto& node : list.elements(0, mostViews)) {
        views.push_back(readView(node));
    }
    return views;
}

ViewSpec ViewReader::readView(const JsonNode& node) {
    node.requireKeys(settingKeys, viewOnlyKeys);
    if (++viewCount_ > mostViews) {
        node.fail("is one view too many; a scenario has at most " + std::to_string(mostViews));
    }
    ViewSpec view;
    view.path = node.path();
    if (const auto id = node.find("id")) {
        view.id = id->name();
        if (!ids_.insert(view.id).second) {
            id->fail("is used by another view, too: " + id->shown());
        }
    }
    if (const auto viewClass = node.find("class")) {
        view.viewClass = viewClass->name();
    }
    view.settings = settings_.read(node);
    if (!view.settings.frame) {
        node.fail("lacks the key \"frame\"");
    }
    if (const auto controller = node.find("controller")) {
        view.controller = readController(*controller);
    }
    if (const auto reactions = node.find("onTap")) {
        view.onTap = readReactions(*reactions, settings_);
    }
    if (const auto subviews = node.find("subviews")) {
        view.subviews = readViews(*subviews);
    }
    return view;
}

}  // namespace mireth::phone
