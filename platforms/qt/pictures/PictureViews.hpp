// Views that hold the picture of what a widget or an item draws, and blocks for what there is no picture of.
#pragma once

#include <QImage>
#include <QRect>
#include <QSize>
#include <memory>

#include "MirethVex/Platform/Image.hpp"
#include "MirethVex/Platform/View.hpp"

namespace mireth::qt {

/// A new subview of `view`, in front of those that are there, for a picture that fills `part` of it.
std::shared_ptr<platform::View> addPictureView(platform::View& view, const QRect& part);

/// Makes the layer a plain block.
void makePlainBlock(platform::Layer& layer);

inline constexpr QImage::Format pictureFormat = QImage::Format_ARGB32_Premultiplied;

/// Transparent. A frame has one pixel a point before it is scaled down: pictures with more would be thrown
/// away there.
QImage emptyPicture(QSize size);

/// A copy of a picture in that format, of a single pixel where all are the same; without a bitmap where
/// nothing shows.
platform::Image smallestImageOf(const QImage& picture);

}  // namespace mireth::qt
