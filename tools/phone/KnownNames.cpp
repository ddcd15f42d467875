// Names looked up.
#include "phone/KnownNames.hpp"

#include <algorithm>
#include <variant>

#include "phone/JsonPath.hpp"
#include "phone/ScenarioError.hpp"

namespace mireth::phone {

void KnownNames::require(const Instruction& instruction) const {
    const auto* present = std::get_if<PresentStep>(&instruction.action);
    if (present != nullptr && !screens.contains(present->screen)) {
        throw ScenarioError(instruction.path + ".present",
                            "names no screen of this scenario: " + quotedText(present->screen));
    }
    const auto* set = std::get_if<SetStep>(&instruction.action);
    if (set != nullptr && !views.contains(set->id)) {
        throw ScenarioError(instruction.path + ".set",
                            "names no view of this scenario: " + quotedText(set->id));
    }
}

void KnownNames::requireInReactions(const std::vector<ViewSpec>& list) const {
    for (const auto& view : list) {
        if (view.onTap) {
            std::ranges::for_each(*view.onTap, [this](const Reaction& reaction) { require(reaction); });
        }
        requireInReactions(view.subviews);
    }
}

}  // namespace mireth::phone
