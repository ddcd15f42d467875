// Screens with one private view, which glows in the canary colour: every way of being private, and every way
// of coming onto the screen.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "MirethVex/Platform/View.hpp"

namespace mireth::test {

/// One way in which a view is private.
struct PrivateKind {
    std::string name;
    std::function<std::shared_ptr<platform::View>()> make;
    /// Classes that the host has to name.
    std::vector<const platform::ViewClass*> additional;
};

/// One way in which a view comes onto the screen.
struct Situation {
    std::string name;
    std::function<void(platform::View& view, platform::View& container)> arrange;
};

std::vector<PrivateKind> privateKinds();
std::vector<Situation> situations();

/// A view without a picture or a text of its own, of a class that is registered by this.
std::shared_ptr<platform::View> ofClass(const char* name, const platform::ViewClass& superclass);

/// Puts a private view into `root`, `depth` containers deep. `root` is 200 points or more a side.
void addPrivateView(const std::shared_ptr<platform::View>& root, const PrivateKind& kind,
                    const Situation& situation, int depth);

}  // namespace mireth::test
