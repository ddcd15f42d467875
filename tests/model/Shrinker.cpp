#include "model/Shrinker.hpp"

#include <algorithm>
#include <cmath>
#include <string>
#include <utility>
#include <vector>

namespace mireth::model {

namespace {

using Interesting = std::function<bool(const Json&)>;

class Shrinker {
  public:
    Shrinker(Json scenario, const Interesting& isInteresting)
        : best_(std::move(scenario)), isInteresting_(isInteresting) {}

    Json run() {
        bool hasChanged = true;
        while (hasChanged) {
            hasChanged = false;
            for (const auto& list : lists(best_, "")) {
                hasChanged |= thinOut(list);
            }
            hasChanged |= dropPairsOfSteps();
            hasChanged |= dropKeys();
            hasChanged |= reduceTimes();
            hasChanged |= closeGaps();
        }
        return std::move(best_);
    }

  private:
    using Path = Json::json_pointer;

    bool tryOut(const Json& candidate) {
        if (candidate == best_ || !isInteresting_(candidate)) {
            return false;
        }
        best_ = candidate;
        return true;
    }

    /// The lists whose elements may go: steps, screens, views, reactions.
    static std::vector<Path> lists(const Json& value, const std::string& at) {
        static const std::vector<std::string> names{"steps",    "screens", "views",
                                                    "subviews", "onTap",   "screenHierarchy"};
        std::vector<Path> found;
        if (!value.is_structured()) {
            return found;
        }
        for (const auto& [key, part] : value.items()) {
            const std::string path = at + "/" + key;
            if (part.is_array() && std::ranges::find(names, key) != names.end()) {
                found.emplace_back(path);
            }
            const auto inner = lists(part, path);
            found.insert(found.end(), inner.begin(), inner.end());
        }
        return found;
    }

    /// Takes elements out of a list, many at a time at first.
    bool thinOut(const Path& list) {
        bool hasChanged = false;
        if (!best_.contains(list)) {
            return false;
        }
        for (std::size_t count = best_.at(list).size(); count > 0; count /= 2) {
            std::size_t first = 0;
            while (best_.contains(list) && first < best_.at(list).size()) {
                Json candidate = best_;
                auto& elements = candidate.at(list);
                const auto begin = elements.begin() + static_cast<std::ptrdiff_t>(first);
                const auto end =
                    elements.begin() + static_cast<std::ptrdiff_t>(std::min(first + count, elements.size()));
                elements.erase(begin, end);
                if (tryOut(candidate)) {
                    hasChanged = true;
                } else {
                    first += count;
                }
            }
        }
        return hasChanged;
    }

    /// Steps that make up for each other, such as a clock set back and forward again, go together only.
    bool dropPairsOfSteps() {
        bool hasChanged = false;
        for (std::size_t first = 0; first < best_.at("steps").size(); ++first) {
            for (std::size_t second = first + 1; second < best_.at("steps").size(); ++second) {
                Json candidate = best_;
                candidate["steps"].erase(second);
                candidate["steps"].erase(first);
                hasChanged |= tryOut(candidate);
            }
        }
        return hasChanged;
    }

    /// Takes out keys that have defaults.
    bool dropKeys() {
        bool hasChanged = false;
        for (const auto& path : optionalKeys(best_, "")) {
            Json candidate = best_;
            if (candidate.contains(path)) {
                candidate.at(path.parent_pointer()).erase(path.back());
                hasChanged |= tryOut(candidate);
            }
        }
        return hasChanged;
    }

    static std::vector<Path> optionalKeys(const Json& value, const std::string& at) {
        static const std::vector<std::string> needed{"name", "screens", "steps", "at", "frame", "id"};
        std::vector<Path> found;
        if (!value.is_structured()) {
            return found;
        }
        for (const auto& [key, part] : value.items()) {
            const std::string path = at + "/" + key;
            if (value.is_object() && std::ranges::find(needed, key) == needed.end()) {
                found.emplace_back(path);
            }
            const auto inner = optionalKeys(part, path);
            found.insert(found.end(), inner.begin(), inner.end());
        }
        return found;
    }

    /// Fewer taps in a run.
    bool reduceTimes() {
        bool hasChanged = false;
        for (std::size_t index = 0; index < best_.at("steps").size(); ++index) {
            while (best_["steps"][index].value("times", 1) > 1) {
                Json candidate = best_;
                candidate["steps"][index]["times"] = best_["steps"][index]["times"].get<int>() - 1;
                if (!tryOut(candidate)) {
                    break;
                }
                hasChanged = true;
            }
        }
        return hasChanged;
    }

    /// Less time before each step; those after it come earlier, too.
    bool closeGaps() {
        static const std::vector<double> steps{10, 1, 0.1, 0.01, 0.001};
        bool hasChanged = false;
        for (std::size_t index = 0; index < best_.at("steps").size(); ++index) {
            for (const double time : steps) {
                while (tryOut(withoutTime(index, time))) {
                    hasChanged = true;
                }
            }
        }
        return hasChanged;
    }

    Json withoutTime(std::size_t from, double time) const {
        Json candidate = best_;
        auto& steps = candidate["steps"];
        const double earliest = from == 0 ? 0 : steps[from - 1]["at"].get<double>();
        if (steps[from]["at"].get<double>() - time < earliest) {
            return candidate;
        }
        for (std::size_t index = from; index < steps.size(); ++index) {
            constexpr double micros = 1e6;
            const double at = steps[index]["at"].get<double>() - time;
            steps[index]["at"] = std::round(at * micros) / micros;
        }
        return candidate;
    }

    Json best_;
    const Interesting& isInteresting_;
};

}  // namespace

Json shrink(Json scenario, const std::function<bool(const Json&)>& isInteresting) {
    return Shrinker(std::move(scenario), isInteresting).run();
}

}  // namespace mireth::model
