// Makes the views of a mirror.
#pragma once

#include <memory>

#include "MirethVex/Platform/View.hpp"
#include "MirethVex/Platform/ViewController.hpp"
#include "platforms/qt/objects/ClassCatalog.hpp"

namespace mireth::qt {

/// Main thread only.
class MirroredViews {
  public:
    /// A view of the kind that the library masks or shows as `mirrored` asks for, without size and place.
    std::shared_ptr<platform::View> make(const MirroredClass& mirrored) const;

  private:
    /// Marks what cannot be looked into. Of all such views; it holds none of them.
    const std::shared_ptr<platform::ViewController> hosting_ = makeHosting();

    static std::shared_ptr<platform::ViewController> makeHosting();
};

}  // namespace mireth::qt
