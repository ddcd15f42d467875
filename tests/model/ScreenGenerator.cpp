#include "model/ScreenGenerator.hpp"

#include <utility>

namespace mireth::model {

namespace {

// Views stand in rows below each other, and have room to grow.
constexpr double left = 20;
constexpr double firstRow = 40;
constexpr double rowHeight = 90;
constexpr double viewHeight = 60;
constexpr int mostRows = 4;

}  // namespace

Json ScreenGenerator::makeScreens() {
    Json screens = Json::array();
    const int count = chance_.between(1, 3);
    for (int index = 0; index < count; ++index) {
        Json views = Json::array();
        const int rows = chance_.between(0, mostRows);
        for (int row = 0; row < rows; ++row) {
            views.push_back(
                makeView({left, firstRow + rowHeight * row, window_.width - 3 * left, viewHeight}));
        }
        names_.push_back("Screen" + std::to_string(index));
        screens.push_back({{"name", names_.back()},
                           {"background", chance_.oneIn(3) ? "#fafafa" : "#ffffff"},
                           {"views", std::move(views)}});
    }
    // Only now are all views known that a reaction may be about.
    for (auto& screen : screens) {
        for (auto& view : screen["views"]) {
            if (!chance_.oneIn(3)) {
                view["onTap"] = makeReactions();
            }
        }
    }
    return screens;
}

Json ScreenGenerator::makeView(const Rect& frame) {
    static const std::vector<std::string> classes{"View", "View", "View", "Label", "TextField", "ImageView"};
    GeneratedView made{"v" + std::to_string(views_.size()), chance_.oneOf(classes), frame, {}};
    made.look = {{"frame", toJson(frame)}, {"background", makeColor(chance_)}};
    if (made.viewClass == "Label" || made.viewClass == "TextField") {
        made.look["text"] = makeText(chance_);
    } else if (made.viewClass == "ImageView") {
        made.look["image"] = makeColor(chance_);
    }
    Json view{{"id", made.id}, {"class", made.viewClass}};
    view.update(made.look);
    views_.push_back(made);
    if (made.viewClass == "View" && chance_.oneIn(3)) {
        view["subviews"] = Json::array({makeView({10, 10, 60, 30})});
    }
    return view;
}

Json ScreenGenerator::makeReactions() {
    Json reactions = Json::array();
    const int count = chance_.between(0, 2);
    for (int index = 0; index < count; ++index) {
        if (chance_.oneIn(2)) {
            for (auto& change : makeChangesOfAView()) {
                reactions.push_back(std::move(change));
            }
            continue;
        }
        reactions.push_back(makeReaction());
        if (const double after = makeDelay(chance_); after > 0) {
            reactions.back()["after"] = after;
        }
    }
    if (chance_.oneIn(40)) {
        reactions.push_back({{"call", "stopRecording"}});
    }
    return reactions;
}

Json ScreenGenerator::makeReaction() {
    switch (chance_.below(5)) {
        case 0:
            return {{"present", makeScreenName()}};
        case 1:
            return {{"reportScreenAppeared", "Basket"}};
        case 2:
            return {{"call", chance_.oneIn(2) ? "pauseRecording" : "resumeRecording"}};
        default:
            return {{"logError", chance_.oneIn(4) ? Json(nullptr) : Json("declined")}};
    }
}

std::string ScreenGenerator::makeScreenName() {
    return chance_.oneOf(names_);
}

std::vector<Json> ScreenGenerator::makeChangesOfAView() {
    return views_.empty() ? std::vector<Json>{} : makeChanges(chance_, chance_.oneOf(views_));
}

Point ScreenGenerator::makePoint() {
    if (views_.empty() || chance_.oneIn(4)) {
        constexpr int beyond = 20;
        return {chance_.between(-beyond, static_cast<int>(window_.width) + beyond) + 0.1,
                chance_.between(-beyond, static_cast<int>(window_.height) + beyond) + 0.7};
    }
    const double row = firstRow + rowHeight * chance_.between(0, mostRows - 1);
    return {left + chance_.between(5, 65) + 0.5, row + chance_.between(15, 45)};
}

}  // namespace mireth::model
