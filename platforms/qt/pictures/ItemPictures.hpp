// What items draw themselves, as far as it can be told from their properties, for recordings without masking.
#pragma once

#include <QPointer>
#include <QQuickItem>
#include <QRect>
#include <unordered_map>

#include "MirethVex/Platform/Image.hpp"
#include "MirethVex/Platform/View.hpp"
#include "platforms/qt/pictures/ItemDrawing.hpp"
#include "platforms/qt/pictures/PictureValues.hpp"

namespace mireth::qt {

/// Items draw on another thread and into textures, where nothing can be taken from. A picture is kept until
/// the properties that it was drawn from change. Main thread only.
class ItemPictures {
  public:
    /// Puts what the item draws into a new subview of `view`; what cannot be had makes `view` a plain block.
    void add(QQuickItem& item, platform::View& view);

    /// Lets go of the pictures that were not asked for since the last call.
    void endPass();

  private:
    struct Kept {
        /// Null when it is gone; another one may come to lie at its place.
        QPointer<QQuickItem> item;
        PictureValues values;
        QRect part;
        platform::Image image;
        bool isBlock = false;
        bool wasSeen = false;
    };

    const Kept& pictureOf(QQuickItem& item, const ItemDrawing& drawing, const QRect& part);

    std::unordered_map<const QQuickItem*, Kept> kept_;
};

}  // namespace mireth::qt
