// The pictures that a mirror takes while nothing is masked.
#pragma once

#include "platforms/qt/pictures/ItemPictures.hpp"
#include "platforms/qt/pictures/WidgetPictures.hpp"

namespace mireth::qt {

/// There is none as long as frames are masked. Main thread only.
struct UnmaskedPictures {
    WidgetPictures ofWidgets;
    ItemPictures ofItems;

    void endPass() {
        ofItems.endPass();
        ofWidgets.endPass();
    }
};

}  // namespace mireth::qt
