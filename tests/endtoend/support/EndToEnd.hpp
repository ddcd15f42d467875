// What every end-to-end test stands on: a directory of its own, receivers and phones in it.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "contract/services/TestSupport.hpp"
#include "endtoend/support/PhoneRun.hpp"
#include "endtoend/support/Receiver.hpp"

namespace mireth::endtoend {

struct PhoneSettings {
    std::string speed = "max";
    std::string seed = "0";
    std::vector<std::string> more = {};
};

class EndToEnd : public testing::Test {
  protected:
    EndToEnd();

    /// A receiver with this configuration file; without one every project is recorded whole.
    std::unique_ptr<Receiver> startReceiver(const Json& configuration = {},
                                            std::vector<std::string> more = {});

    /// Plays a scenario file against both services at `origin`.
    PhoneRun playFile(const std::string& scenario, const std::string& origin,
                      PhoneSettings settings = {}) const;
    /// Writes a scenario and plays it.
    PhoneRun play(const Json& scenario, const std::string& origin, PhoneSettings settings = {});

    /// Below the test's own directory.
    std::string path(const std::string& name) const { return (directory_ / name).native(); }
    /// The user caches directory of the phones.
    std::string caches() const { return path("caches"); }
    /// Where the library keeps its chunks.
    std::string playback() const { return caches() + "/mireth/playback"; }

  private:
    const test::TemporaryDirectory directory_;
    int receivers_ = 0;
    int scenarios_ = 0;
};

/// The names of all example scenarios, such as "signals/dead-tap".
std::vector<std::string> exampleNames();
/// Of those that have their expected timeline beside them.
std::vector<std::string> exampleTimelineNames();
/// For a test that has such a name as its parameter.
std::string asTestName(const testing::TestParamInfo<std::string>& info);
/// examples/scenarios/NAME.json.
std::string exampleScenario(const std::string& name);
/// examples/scenarios/NAME.timeline.json, read.
Json exampleTimeline(const std::string& name);
/// tests/endtoend/scenarios/NAME.json, read.
Json testScenario(const std::string& name);
/// One grey screen and these steps.
Json scenarioOf(Json steps);
/// Starts at the beginning, waits, stops.
Json recordingFor(double seconds);

Json readJson(const std::string& file);
std::string readFile(const std::string& file);

/// The names of a timeline's events, in order.
std::vector<std::string> typesOf(const Json& timeline);

}  // namespace mireth::endtoend
