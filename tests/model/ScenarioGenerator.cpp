#include "model/ScenarioGenerator.hpp"

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "model/Chance.hpp"
#include "model/ScreenGenerator.hpp"
#include "model/ScriptWriter.hpp"
#include "model/TouchGenerator.hpp"

namespace mireth::model {

namespace {

class ScenarioGenerator {
  public:
    explicit ScenarioGenerator(std::uint64_t seed) : seed_(seed), chance_(seed) {}

    Json make() {
        static const std::vector<std::vector<double>> windows{{390, 844, 3},   {320, 568, 2},  {414, 736, 3},
                                                              {250, 500, 1},   {768, 1024, 2}, {844, 390, 3},
                                                              {393, 852, 2.75}};
        static const std::vector<double> uptimes{1000, 0, 0.1, 5.5, 86'400.3, 123'456.789};
        const auto& window = chance_.oneOf(windows);
        screens_.emplace(chance_, Size{window[0], window[1]});
        Json scenario{{"name", "seed " + std::to_string(seed_)}};
        scenario["clock"] = {{"epochMillis", 1'700'000'000'000 + chance_.between(0, 999)},
                             {"uptimeSeconds", chance_.oneOf(uptimes)}};
        static const std::vector<int> memories{1024, 2999, 3000, 4096, 5999, 6000, 8192};
        const int memory = chance_.oneOf(memories);
        scenario["device"] = {{"memoryMiB", memory}};
        scenario["window"] = {{"width", window[0]}, {"height", window[1]}, {"scale", window[2]}};
        scenario["configuration"] = {{"automaticNavigationTracking", chance_.oneIn(2)}};
        scenario["screens"] = screens_->makeScreens();
        const Micros wait = memory < 3000 ? 2000 * milli : memory < 6000 ? 1500 * milli : 1000 * milli;
        touches_.emplace(chance_, *screens_, script_, wait);
        scenario["steps"] = makeSteps();
        return scenario;
    }

  private:
    Json makeSteps() {
        if (chance_.oneIn(8)) {
            act();
        }
        const int sessions = chance_.oneIn(4) ? 2 : 1;
        for (int session = 0; session < sessions; ++session) {
            call("startRecording");
            script_.pass(chance_.oneIn(4) ? 0 : 600 * milli);
            const int acts = chance_.between(1, 8);
            for (int index = 0; index < acts; ++index) {
                act();
                script_.pass(makePause());
            }
            end(session + 1 == sessions);
            script_.pass(makePause());
        }
        return script_.steps();
    }

    /// Stops the session, most often by a call.
    void end(bool isLast) {
        if (chance_.oneIn(6)) {
            script_.stepAlone({{"moveToBackground", true}});
            script_.pass(makePause());
        }
        if (isLast && chance_.oneIn(3)) {
            act();
        }
        call("stopRecording");
    }

    void act() {
        switch (chance_.below(16)) {
            case 0:
                return pauseAndResume();
            case 1:
                return reportScreens();
            case 2:
                return script_.step({{"present", screens_->makeScreenName()}});
            case 3:
                return oddCall();
            default:
                return touches_->act();
        }
    }

    void pauseAndResume() {
        script_.step({{"call", "pauseRecording"}});
        const int acts = chance_.between(0, 2);
        for (int index = 0; index < acts; ++index) {
            script_.pass(makePause());
            act();
        }
        script_.pass(makePause());
        if (!chance_.oneIn(4)) {
            script_.step({{"call", "resumeRecording"}});
        }
    }

    void reportScreens() {
        switch (chance_.below(4)) {
            case 0:
                return script_.step({{"reportScreenAppeared", "Basket"}});
            case 1:
                return script_.step({{"reportScreenDisappeared", "Basket"}});
            default:
                break;
        }
        Json hierarchy = Json::array();
        const int depth = chance_.between(0, 3);
        for (int index = 0; index < depth; ++index) {
            hierarchy.push_back({{"screenName", "Level" + std::to_string(index)}});
            if (chance_.oneIn(2)) {
                hierarchy.back()["screenType"] = "Tab";
            }
        }
        script_.step({{"reportScreenChange",
                       {{"screenHierarchy", std::move(hierarchy)},
                        {"changeType", chance_.oneIn(2) ? "appear" : "disappear"},
                        {"detectionType", chance_.oneIn(2) ? "manual" : "auto"}}}});
    }

    /// One that may well be refused.
    void oddCall() {
        switch (chance_.below(6)) {
            case 0:
                return call("startRecording");
            case 1:
                return call("stopRecording");
            case 2:
                return script_.step({{"call", "pauseRecording"}});
            case 3:
                return script_.step({{"call", "resumeRecording"}});
            default:
                return script_.step(makeError(chance_));
        }
    }

    Micros makePause() {
        static const std::vector<Micros> pauses{0,           10 * milli,  80 * milli,   100 * milli,
                                                420 * milli, 500 * milli, 1080 * milli, 1500 * milli,
                                                2500 * milli};
        return chance_.oneOf(pauses);
    }

    void call(const char* name) { script_.stepAlone({{"call", name}}); }

    const std::uint64_t seed_;
    Chance chance_;
    ScriptWriter script_;
    std::optional<ScreenGenerator> screens_;
    std::optional<TouchGenerator> touches_;
};

}  // namespace

Json generateScenario(std::uint64_t seed) {
    return ScenarioGenerator(seed).make();
}

}  // namespace mireth::model
