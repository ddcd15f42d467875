// Plays touches and writes down what a recogniser of the window sees of them, and what the app does.
#pragma once

#include <cmath>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "ScriptHost.hpp"

namespace mireth::phone {

/// Writes down every touch: when by the uptime clock, which, where, and which tap in a row.
class WatchingRecognizer final : public platform::GestureRecognizer {
  public:
    explicit WatchingRecognizer(Log& log) : log_(log) {}

    void touchesBegan(const std::vector<platform::Touch>& touches, const platform::TouchEvent&) override {
        write("began", touches);
    }
    void touchesMoved(const std::vector<platform::Touch>& touches, const platform::TouchEvent&) override {
        write("moved", touches);
    }
    void touchesEnded(const std::vector<platform::Touch>& touches, const platform::TouchEvent&) override {
        write("ended", touches);
    }
    void touchesCancelled(const std::vector<platform::Touch>& touches, const platform::TouchEvent&) override {
        write("cancelled", touches);
    }

  private:
    void write(const std::string& phase, const std::vector<platform::Touch>& touches) {
        for (const auto& touch : touches) {
            std::ostringstream line;
            line << std::lround((touch.timestamp - 1000) * 1000) << " ms #" << touch.identity << " " << phase
                 << " at " << touch.locationInWindow.x << ", " << touch.locationInWindow.y << ", tap "
                 << touch.tapCount;
            log_.push_back(line.str());
        }
    }
    Log& log_;
};

/// Plays touches on the screen "A" of two.
class TouchHost : public ScriptHost {
  protected:
    void prepare(ScreenSet& screens) override {
        screens.window()->addGestureRecognizer(std::make_shared<WatchingRecognizer>(log));
    }

    /// What happened between the initialisation and the end.
    Log play(const std::string& views, const std::string& steps) {
        runFile(R"({"screens":[{"name":"A","views":[)" + views + R"(]},{"name":"B"}],"steps":[)" + steps +
                "]}");
        return {log.begin() + 2, log.end() - 1};
    }

    /// Only what the app did.
    Log reactions(const std::string& views, const std::string& steps) {
        Log all = play(views, steps);
        std::erase_if(all, [](const std::string& line) { return line.find(" #") != std::string::npos; });
        return all;
    }

    /// The tap count of each touch that ended, in order.
    std::vector<std::string> counts(const std::string& steps) {
        std::vector<std::string> found;
        for (const auto& line : play("", steps)) {
            if (line.find("ended") != std::string::npos) {
                found.push_back(line.substr(line.rfind(' ') + 1));
            }
        }
        return found;
    }
};

}  // namespace mireth::phone
