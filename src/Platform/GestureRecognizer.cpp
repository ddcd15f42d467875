// What a recogniser does that recognises nothing.
#include "MirethVex/Platform/GestureRecognizer.hpp"

namespace mireth::platform {

GestureRecognizer::~GestureRecognizer() = default;

void GestureRecognizer::touchesBegan(const std::vector<Touch>& /*touches*/, const TouchEvent& /*event*/) {}
void GestureRecognizer::touchesMoved(const std::vector<Touch>& /*touches*/, const TouchEvent& /*event*/) {}
void GestureRecognizer::touchesEnded(const std::vector<Touch>& /*touches*/, const TouchEvent& /*event*/) {}
void GestureRecognizer::touchesCancelled(const std::vector<Touch>& /*touches*/, const TouchEvent& /*event*/) {
}

}  // namespace mireth::platform
