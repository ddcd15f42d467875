// Reactions: an action, and how long after the touch it comes.
#include "phone/ReactionReader.hpp"

#include <array>
#include <string_view>
#include <utility>

#include "phone/ActionReader.hpp"

namespace mireth::phone {

namespace {

constexpr std::size_t mostReactions = 1000;

Reaction readReaction(const JsonNode& node, const SettingsReader& settings) {
    static constexpr std::array<std::string_view, 1> keys{"after"};
    Reaction reaction;
    static_cast<Instruction&>(reaction) = readInstruction(node, Actor::app, keys, settings);
    if (const auto after = node.find("after")) {
        reaction.after = readSpan(*after);
    }
    return reaction;
}

}  // namespace

std::vector<Reaction> readReactions(const JsonNode& list, const SettingsReader& settings) {
    std::vector<Reaction> reactions;
    for (const auto& node : list.elements(0, mostReactions)) {
        reactions.push_back(readReaction(node, settings));
    }
    return reactions;
}

}  // namespace mireth::phone
