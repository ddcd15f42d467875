// A window whose recognisers and views write down what they are told.
#pragma once

#include <gmock/gmock.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "MirethVex/Platform/Window.hpp"

namespace mireth::platform {

/// Lines such as "R began 1 2": who, the phase, the identities of the touches.
using Journal = std::vector<std::string>;

inline std::string journalLine(const std::string& who, const char* phase, const std::vector<Touch>& touches) {
    std::string line = who + " " + phase;
    for (const Touch& touch : touches) {
        line += " " + std::to_string(touch.identity);
    }
    return line;
}

/// `Base` is GestureRecognizer or View.
template <class Base>
class Journaled : public Base {
  public:
    using Reaction = std::function<void(TouchPhase)>;

    Journaled(Journal& journal, std::string name) : journal_(journal), name_(std::move(name)) {}

    /// Runs after the line is written; may throw.
    Reaction reaction;

    void touchesBegan(const std::vector<Touch>& touches, const TouchEvent& event) override {
        Base::touchesBegan(touches, event);
        write("began", TouchPhase::began, touches);
    }
    void touchesMoved(const std::vector<Touch>& touches, const TouchEvent& event) override {
        Base::touchesMoved(touches, event);
        write("moved", TouchPhase::moved, touches);
    }
    void touchesEnded(const std::vector<Touch>& touches, const TouchEvent& event) override {
        Base::touchesEnded(touches, event);
        write("ended", TouchPhase::ended, touches);
    }
    void touchesCancelled(const std::vector<Touch>& touches, const TouchEvent& event) override {
        Base::touchesCancelled(touches, event);
        write("cancelled", TouchPhase::cancelled, touches);
    }

  private:
    void write(const char* phase, TouchPhase touchPhase, const std::vector<Touch>& touches) {
        journal_.push_back(journalLine(name_, phase, touches));
        EXPECT_THAT(touches, testing::Each(testing::Field(&Touch::phase, touchPhase)));
        if (reaction) {
            // A copy: the reaction may replace or drop itself.
            const auto react = reaction;
            react(touchPhase);
        }
    }

    Journal& journal_;
    std::string name_;
};

class TouchedWindow : public testing::Test {
  public:
    using Recognizer = Journaled<GestureRecognizer>;
    using JournaledView = Journaled<View>;

    Journal journal;
    std::shared_ptr<Window> window = std::make_shared<Window>(Size{100, 100});
    std::shared_ptr<JournaledView> view = addView("V");
    double now = 1;

    std::shared_ptr<JournaledView> addView(const std::string& name) {
        auto added = std::make_shared<JournaledView>(journal, name);
        window->addSubview(added);
        return added;
    }

    /// Leaves the touches to the views, unless a test says otherwise.
    std::shared_ptr<Recognizer> addRecognizer(const std::string& name) {
        auto added = std::make_shared<Recognizer>(journal, name);
        added->setCancelsTouchesInView(false);
        window->addGestureRecognizer(added);
        return added;
    }

    /// A reaction that sets the recogniser's state when it is told of `phase`.
    static void setStateOn(TouchPhase phase, GestureRecognizer::State state,
                           const std::shared_ptr<Recognizer>& recognizer) {
        recognizer->reaction = [phase, state, raw = recognizer.get()](TouchPhase told) {
            if (told == phase) {
                raw->setState(state);
            }
        };
    }

    Touch touch(std::uint64_t identity, TouchPhase phase) const { return touch(identity, phase, view); }
    Touch touch(std::uint64_t identity, TouchPhase phase, const std::shared_ptr<View>& touched) const {
        Touch result;
        result.identity = identity;
        result.phase = phase;
        result.timestamp = now;
        result.view = touched;
        result.window = window;
        return result;
    }
    void send(std::vector<Touch> touches) { window->sendEvent({now, std::move(touches)}); }
    void send(std::uint64_t identity, TouchPhase phase) { send({touch(identity, phase)}); }
    void tap(std::uint64_t identity) {
        send(identity, TouchPhase::began);
        send(identity, TouchPhase::ended);
    }
    Journal take() { return std::exchange(journal, {}); }
};

}  // namespace mireth::platform
