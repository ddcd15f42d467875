// Random changes of a view: some that count as a reaction to a tap, and their nearest misses.
#pragma once

#include <string>
#include <vector>

#include "MirethVex/Base/Geometry.hpp"
#include "model/Chance.hpp"
#include "model/Outcome.hpp"

namespace mireth::model {

/// A view of a random screen.
struct GeneratedView {
    std::string id;
    std::string viewClass;
    Rect frame;
    /// How it looks at first: its keys in the scenario.
    Json look;
};

Json toJson(const Rect& frame);
std::string makeColor(Chance& chance);
std::string makeText(Chance& chance);

/// A change, such as { "set": "v1", "opacity": 0.5 }, and often its return. `after`, in seconds from the same
/// moment, says when; without it at once.
std::vector<Json> makeChanges(Chance& chance, const GeneratedView& view);

/// A delay, in seconds, around the waits of a slow, an average and a fast device and the limit of an error
/// tap; often none.
double makeDelay(Chance& chance);

}  // namespace mireth::model
