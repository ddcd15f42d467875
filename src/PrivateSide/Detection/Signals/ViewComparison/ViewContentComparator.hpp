// The texts of a view tree, and whether two states of them are the same.
#pragma once

#include <array>
#include <cstddef>
#include <memory>
#include <string>
#include <typeinfo>

#include "MirethVex/Platform/View.hpp"
#include "PrivateSide/Extensions/CALayerExtensions/ViewTreeWalk.hpp"

namespace mireth {

/// Main thread.
class ViewContentComparator {
  public:
    /// `rootView` is not owned.
    explicit ViewContentComparator(const std::shared_ptr<const platform::View>& rootView)
        : rootView_(rootView) {}

    void setRootView(const std::shared_ptr<const platform::View>& rootView) { rootView_ = rootView; }

    /// The text forms of the root view and all views below it, each before its subviews; nothing of views
    /// without text, of trees without end where they are cut off (`ViewTreeWalk`), and of a root view that
    /// is gone. What the views throw reaches the caller.
    std::string serializeContent();

    /// True when the SHA-256 digests of the two texts are equal. Throws std::runtime_error when there is no
    /// digest to be had.
    static bool compareContent(const std::string& before, const std::string& after);

  private:
    void serialize(const platform::View& view, ViewTreeWalk& walk, std::string& text);

    std::weak_ptr<const platform::View> rootView_;
    /// Some types of views seen without text, each in the place that its address gives it: a screen has many
    /// views of few types, and a cast that fails is slow.
    std::array<const std::type_info*, 64> typesWithoutText_{};
    /// The length of the last text; the next one will be about as long.
    std::size_t expectedLength_ = 0;
};

}  // namespace mireth
