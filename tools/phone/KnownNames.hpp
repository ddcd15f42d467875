// The names that instructions may use: known only once the whole file has been read.
#pragma once

#include <set>
#include <string>
#include <vector>

#include "phone/Steps.hpp"
#include "phone/ViewSpec.hpp"

namespace mireth::phone {

struct KnownNames {
    std::set<std::string> screens;
    /// The identifiers of views.
    std::set<std::string> views;

    /// Throws ScenarioError for an instruction that names a screen or a view that is not there.
    void require(const Instruction& instruction) const;
    /// The same for the reactions of `views` and of the views in them.
    void requireInReactions(const std::vector<ViewSpec>& views) const;
};

}  // namespace mireth::phone
