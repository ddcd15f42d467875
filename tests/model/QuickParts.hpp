// A phone's slow parts without their work: nothing is drawn and nothing is encoded. A session takes as long
// as its events do. No answers to the contracts, on purpose: the rules of the model are not about pictures,
// which would take most of the time of a check.
#pragma once

#include <memory>

#include "MirethVex/Platform/AssetWriter.hpp"
#include "MirethVex/Platform/FileManager.hpp"
#include "MirethVex/Platform/Graphics.hpp"

namespace mireth::model {

/// Graphics whose images have the right size, and nothing on them.
std::shared_ptr<platform::Graphics> makeBlankGraphics();

/// Writers whose files are there in the end, and empty. `files` outlives them.
std::shared_ptr<platform::AssetWriterFactory> makeEmptyVideos(platform::FileManager& files);

}  // namespace mireth::model
