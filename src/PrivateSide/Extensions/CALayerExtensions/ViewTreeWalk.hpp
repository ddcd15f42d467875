// What every walk over a live view tree keeps to: it ends, and the tree may change under it.
#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include "MirethVex/Platform/View.hpp"
#include "Platform/ViewTreeLimits.hpp"

namespace mireth {

/// One pass over one tree, depth first. Main thread only. The tree is the host's: a view may build its
/// subviews when it is asked for them, change the tree around it, or throw.
class ViewTreeWalk {
  public:
    static constexpr std::size_t maxDepth = platform::maxViewDepth;
    static constexpr std::size_t maxViews = platform::maxViews;

    /// Asked once for every view, on arrival. True for a view that is its own ancestor, lies deeper than
    /// `maxDepth`, or comes after `maxViews` others: it must not be entered.
    bool isEndless(const platform::View& view);

    /// The subviews of a view that is being visited; while it lives the walk is below that view.
    class Level {
      public:
        /// Asks `view` for its subviews; what that throws reaches the caller.
        Level(ViewTreeWalk& walk, const platform::View& view);
        ~Level();
        Level(const Level&) = delete;
        Level& operator=(const Level&) = delete;

        /// Back to front, none of them null. They stay alive and in this order whatever becomes of the tree.
        const std::vector<std::shared_ptr<platform::View>>& subviews() const noexcept { return subviews_; }

      private:
        ViewTreeWalk& walk_;
        const std::vector<std::shared_ptr<platform::View>> subviews_;
    };

  private:
    std::vector<const platform::View*> ancestors_;
    std::size_t viewsSeen_ = 0;
};

}  // namespace mireth
