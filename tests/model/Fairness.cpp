// Which scenarios the model can speak about.
#include <algorithm>
#include <string>

#include "model/Model.hpp"

namespace mireth::model {

namespace {

using phone::LibraryCall;

bool isStartOrStop(const phone::Action& action) {
    const auto* call = std::get_if<phone::CallStep>(&action);
    return std::holds_alternative<phone::MoveToBackgroundStep>(action) ||
           (call != nullptr &&
            (call->call == LibraryCall::startRecording || call->call == LibraryCall::stopRecording));
}

bool starts(const phone::Reaction& reaction) {
    const auto* call = std::get_if<phone::CallStep>(&reaction.action);
    return call != nullptr && call->call == LibraryCall::startRecording;
}

bool isKnown(const phone::Action& action) {
    const auto* call = std::get_if<phone::CallStep>(&action);
    return !std::holds_alternative<phone::InitializeStep>(action) &&
           !std::holds_alternative<phone::SignalStep>(action) &&
           !std::holds_alternative<phone::ResizeStep>(action) &&
           !std::holds_alternative<phone::NetworkStep>(action) &&
           !(call != nullptr && call->call == LibraryCall::reset);
}

/// A view that takes part in what the model knows nothing of.
bool isForeign(const phone::ViewSpec& view) {
    return view.controller.has_value() || std::ranges::any_of(view.subviews, isForeign);
}

const phone::ViewSpec* findView(const std::vector<phone::ViewSpec>& views, const std::string& id) {
    for (const auto& view : views) {
        if (view.id == id) {
            return &view;
        }
        if (const auto* found = findView(view.subviews, id)) {
            return found;
        }
    }
    return nullptr;
}

/// What a button's label does when the button changes its size is the phone's secret.
bool resizesAButton(const phone::Scenario& scenario, const phone::Action& action) {
    const auto* set = std::get_if<phone::SetStep>(&action);
    if (set == nullptr || !set->settings.frame) {
        return false;
    }
    return std::ranges::any_of(scenario.screens, [set](const phone::ScreenSpec& screen) {
        const auto* view = findView(screen.views, set->id);
        return view != nullptr && view->viewClass == "Button";
    });
}

/// Those that run in one turn one after the other must not end it halfway.
template <class Instructions, class InOneTurn>
std::optional<std::string> judge(const phone::Scenario& scenario, const Instructions& instructions,
                                 InOneTurn inOneTurn) {
    for (auto at = instructions.begin(); at != instructions.end(); ++at) {
        if (!isKnown(at->action)) {
            return at->path + ": the model does not know this action";
        }
        if (resizesAButton(scenario, at->action)) {
            return at->path + ": resizes a button";
        }
        const auto next = std::next(at);
        if (isStartOrStop(at->action) && next != instructions.end() && inOneTurn(*at, *next)) {
            return at->path + ": is not the last of its turn";
        }
    }
    return std::nullopt;
}

std::optional<std::string> judgeReactions(const phone::Scenario& scenario,
                                          const std::vector<phone::ViewSpec>& views) {
    for (const auto& view : views) {
        if (view.onTap) {
            // Each delayed one has a turn of its own.
            auto reactions = *view.onTap;
            std::ranges::stable_partition(
                reactions, [](const phone::Reaction& reaction) { return reaction.after.count() == 0; });
            const auto inOneTurn = [](const auto&, const auto& next) { return next.after.count() == 0; };
            if (auto reason = judge(scenario, reactions, inOneTurn)) {
                return reason;
            }
            if (std::ranges::any_of(reactions, starts)) {
                return view.path + ": a tap starts a session that nothing may stop";
            }
        }
        if (auto reason = judgeReactions(scenario, view.subviews)) {
            return reason;
        }
    }
    return std::nullopt;
}

bool endsStopped(const std::vector<phone::Step>& steps) {
    if (steps.empty()) {
        return true;
    }
    const auto* call = std::get_if<phone::CallStep>(&steps.back().action);
    return call != nullptr && call->call == LibraryCall::stopRecording;
}

}  // namespace

std::optional<std::string> reasonToPass(const phone::Scenario& scenario) {
    if (scenario.device.idiom != platform::UserInterfaceIdiom::phone || !scenario.network.satisfied) {
        return "the phone records nothing";
    }
    if (!scenario.userDefaults.empty()) {
        return "another client than the library itself";
    }
    for (const auto& screen : scenario.screens) {
        if (std::ranges::any_of(screen.views, isForeign)) {
            return "a view has a controller of its own";
        }
        if (auto reason = judgeReactions(scenario, screen.views)) {
            return reason;
        }
    }
    auto steps = scenario.steps;
    std::ranges::stable_sort(steps, {}, &phone::Step::at);
    if (!endsStopped(steps)) {
        return "the last step does not stop the recording";
    }
    return judge(scenario, steps, [](const auto& one, const auto& next) { return one.at == next.at; });
}

}  // namespace mireth::model
