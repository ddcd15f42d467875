// A host's controller that writes down what it hears.
#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "MirethVex/Platform/ViewController.hpp"

namespace mireth::test {

class RecordingController final : public platform::ViewController {
  public:
    /// Writes "NAME appeared" and "NAME disappeared" into `heard`, then runs `inHandler`.
    RecordingController(std::string className, std::vector<std::string>& heard,
                        std::function<void()> inHandler = {})
        : ViewController(std::move(className)), heard_(heard), inHandler_(std::move(inHandler)) {}

    void viewDidAppear(bool animated) override { hear("appeared", animated); }
    void viewDidDisappear(bool animated) override { hear("disappeared", animated); }

  private:
    void hear(const char* what, bool animated) {
        heard_.push_back(className() + " " + what + (animated ? " animated" : ""));
        if (inHandler_) {
            inHandler_();
        }
    }

    std::vector<std::string>& heard_;
    std::function<void()> inHandler_;
};

}  // namespace mireth::test
