// Writes the steps of a random scenario, and keeps its time.
#pragma once

#include <algorithm>
#include <cstdint>
#include <utility>
#include <vector>

#include "model/Outcome.hpp"

namespace mireth::model {

/// Times are whole microseconds until they are written.
using Micros = std::int64_t;
inline constexpr Micros milli = 1000;
inline constexpr Micros second = 1000 * milli;

class ScriptWriter {
  public:
    Micros now() const { return now_; }
    void pass(Micros time) { now_ += time; }

    void step(const Json& action) { stepAt(now_, action); }
    void stepAt(Micros at, const Json& action) {
        Json step{{"at", static_cast<double>(at) / second}};
        step.update(action);
        latest_ = std::max(latest_, at);
        steps_.emplace_back(at, std::move(step));
    }
    /// Behind all other steps and in a turn of its own, as starts and stops have to be.
    void stepAlone(const Json& action) {
        now_ = std::max(now_, latest_ + milli);
        step(action);
        pass(milli);
    }

    /// All of them, in the order of their times.
    Json steps() {
        std::ranges::stable_sort(steps_, {}, &std::pair<Micros, Json>::first);
        Json list = Json::array();
        for (const auto& [at, step] : steps_) {
            list.push_back(step);
        }
        return list;
    }

  private:
    Micros now_ = 0;
    Micros latest_ = -milli;
    std::vector<std::pair<Micros, Json>> steps_;
};

}  // namespace mireth::model
