#include "model/ChangeGenerator.hpp"

namespace mireth::model {

namespace {

/// `frame` with `more` points in its width, half on each side: its middle stays where it is.
Rect grown(const Rect& frame, double more) {
    return {frame.x - more / 2, frame.y, frame.width + more, frame.height};
}

Rect moved(const Rect& frame, double distance) {
    return {frame.x, frame.y + distance, frame.width, frame.height};
}

/// With another distance around the tolerance of frames each time.
Json makeFrame(Chance& chance, const Rect& frame) {
    static const std::vector<double> distances{0.5, 4.9, 5.0, 5.1, 40};
    const double distance = chance.oneOf(distances);
    return toJson(chance.oneIn(3) ? moved(frame, distance) : grown(frame, distance));
}

Json makeBackground(Chance& chance, const GeneratedView& view) {
    const std::string color = view.look.at("background");
    switch (chance.below(3)) {
        case 0:
            return color + "80";
        case 1:
            return "#ff" + color.substr(3);
        default:
            return nullptr;
    }
}

/// One that only text views know.
Json makeTextChange(Chance& chance, const GeneratedView& view) {
    switch (chance.below(6)) {
        case 0:
            return {{"color", makeColor(chance)}};
        case 1:
            return {{"alignment", chance.oneIn(2) ? "center" : "right"}};
        case 2:
            return {{"text", nullptr}};
        case 3:
            return view.viewClass == "TextField" ? Json{{"firstResponder", true}}
                                                 : Json{{"font", {"Inter", 12}}};
        default:
            return {{"text", makeText(chance)}};
    }
}

Json makeChange(Chance& chance, const GeneratedView& view) {
    switch (chance.below(10)) {
        case 0:
        case 1:
            return {{"frame", makeFrame(chance, view.frame)}};
        case 2:
            return {{"background", makeBackground(chance, view)}};
        case 3:
            return {{"opacity", chance.oneIn(2) ? 0.5 : 0.0}};
        case 4:
            return {{"hidden", true}};
        case 5:
            return {{"border", {{"width", chance.oneIn(2) ? 0 : 2}, {"color", makeColor(chance)}}}};
        case 6:
            return chance.oneIn(2) ? Json{{"cornerRadius", 8}} : Json{{"clips", true}};
        case 7:
            return {{"animated", {{"frame", makeFrame(chance, view.frame)}}}};
        default:
            break;
    }
    if (view.look.contains("text")) {
        return makeTextChange(chance, view);
    }
    if (view.look.contains("image")) {
        return {{"image", makeColor(chance)}};
    }
    return {{"background", makeBackground(chance, view)}};
}

/// What each key was before.
Json makeReturn(const GeneratedView& view, const Json& change) {
    static const Json defaults{{"opacity", 1},           {"hidden", false}, {"border", nullptr},
                               {"cornerRadius", 0},      {"clips", false},  {"animated", nullptr},
                               {"color", nullptr},       {"font", nullptr}, {"alignment", "natural"},
                               {"firstResponder", false}};
    Json result;
    for (const auto& [key, value] : change.items()) {
        result[key] = view.look.contains(key) ? view.look.at(key) : defaults.at(key);
    }
    return result;
}

Json setting(const GeneratedView& view, const Json& values, double after) {
    Json action{{"set", view.id}};
    action.update(values);
    if (after > 0) {
        action["after"] = after;
    }
    return action;
}

}  // namespace

Json toJson(const Rect& frame) {
    return Json::array({frame.x, frame.y, frame.width, frame.height});
}

std::string makeColor(Chance& chance) {
    static const std::vector<std::string> colors{"#336699", "#996633", "#ffffff", "#000000"};
    return chance.oneOf(colors);
}

std::string makeText(Chance& chance) {
    static const std::vector<std::string> texts{"a", "a", "b", "nil", ""};
    return chance.oneOf(texts);
}

std::vector<Json> makeChanges(Chance& chance, const GeneratedView& view) {
    const Json values = makeChange(chance, view);
    const double begin = makeDelay(chance);
    std::vector<Json> changes{setting(view, values, begin)};
    if (chance.oneIn(2)) {
        changes.push_back(setting(view, makeReturn(view, values), begin + makeDelay(chance)));
    }
    return changes;
}

double makeDelay(Chance& chance) {
    static const std::vector<double> delays{0.1,   0.3, 0.499, 0.5, 0.501, 0.9,   0.999, 1.0,
                                            1.001, 1.4, 1.499, 1.5, 1.501, 1.999, 2.0,   2.1};
    return chance.oneIn(5) ? 0 : chance.oneOf(delays);
}

}  // namespace mireth::model
