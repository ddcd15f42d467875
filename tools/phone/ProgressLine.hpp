// A line on the terminal that says how far the script is, while it runs in real time.
#pragma once

#include <memory>
#include <string>

#include "MirethVex/Headless/VirtualMainQueue.hpp"

namespace mireth::phone {

/// Shows nothing in virtual time, or when standard error is no terminal. Cleared when dropped. Main thread.
class ProgressLine {
  public:
    /// `queue` outlives it.
    ProgressLine(headless::VirtualMainQueue& queue, std::string name, double lengthSeconds);
    ProgressLine(const ProgressLine&) = delete;
    ProgressLine& operator=(const ProgressLine&) = delete;
    ~ProgressLine();

  private:
    void show() const;
    headless::VirtualMainQueue& queue_;
    const std::string name_;
    const double length_;
    std::unique_ptr<platform::Timer> timer_;
};

}  // namespace mireth::phone
