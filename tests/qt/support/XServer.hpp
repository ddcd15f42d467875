// A real X server with a screen that nobody sees.
#pragma once

#include <string>

#include "endtoend/support/Process.hpp"

namespace mireth::qttest {

/// Runs as long as the object lives, on a display that was free.
class XServer {
  public:
    /// The size of its screen, in pixels.
    XServer(int width, int height);

    /// For DISPLAY, such as ":7".
    const std::string& display() const { return display_; }

  private:
    endtoend::Process process_;
    std::string display_;
};

}  // namespace mireth::qttest
