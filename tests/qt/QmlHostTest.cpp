// A program in QML that goes through all the calls of the module, in a session that a real receiver gets.
#include <algorithm>

#include "endtoend/support/EndToEnd.hpp"
#include "endtoend/support/Video.hpp"

namespace mireth::qttest {

namespace {

using namespace nlohmann::literals;
using endtoend::Json;
using endtoend::Rgb;

class EndToEndQtQmlHost : public endtoend::EndToEnd {
  protected:
    const std::unique_ptr<endtoend::Receiver> receiver_ = startReceiver();
};

void expectWhatItNamesMaskedAndWhatItPausesBlank(const Json& session) {
    constexpr Rgb maskColor{188, 188, 188};
    constexpr Rgb black{0, 0, 0};
    bool wasShown = false;
    bool wasBlank = false;
    for (const Json& chunk : session.at("chunks")) {
        for (const auto& frame : endtoend::decodeFrames(chunk.at("path"))) {
            const Rgb bar = endtoend::pixelAt(frame, 125, 20);
            const bool isBlank = endtoend::distance(bar, black) <= 8;
            const Rgb card = endtoend::pixelAt(frame, 70, 120);
            EXPECT_LE(endtoend::distance(card, isBlank ? black : maskColor), 8) << card;
            wasShown = wasShown || (bar.blue > 200 && bar.red < 60);
            wasBlank = wasBlank || isBlank;
        }
    }
    EXPECT_TRUE(wasShown);
    EXPECT_TRUE(wasBlank);
}

void expectItsErrorOnTheTap(const Json& timeline) {
    const auto errorTap = std::ranges::find_if(timeline, [](const Json& event) {
        return event.value("/eventDetails/signalId"_json_pointer, "") == "ErrorTap";
    });
    ASSERT_NE(errorTap, timeline.end()) << timeline.dump(1);
    EXPECT_EQ(errorTap->at("eventDetails").at("error").at("message"), "broken");
}

TEST_F(EndToEndQtQmlHost, GetsAnAnswerToEveryCallAndASessionAsItAsksFor) {
    const auto ended = endtoend::runProcess(
        {MIRETH_QML_HOST_PROGRAM, MIRETH_QML_PROGRAMS "/main.qml", receiver_->origin(), caches()});
    EXPECT_EQ(ended.status, 0);
    EXPECT_EQ(ended.errors, "");
    const auto sessions = receiver_->sessions();
    ASSERT_EQ(sessions.size(), 1U) << ended.out;
    const auto id = sessions[0].at("id").get<std::string>();
    EXPECT_EQ(ended.out,
              "before: false, pause notInitialized, resume notInitialized\n"
              "stopped: notInitialized, '', false\n"
              "started: success, '" +
                  id +
                  "', '', true\n"
                  "pause: success, again alreadyPaused\n"
                  "resume: success, again notPaused\n"
                  "stopped: success, '', false\n");
    const Json session = receiver_->show(id);
    expectWhatItNamesMaskedAndWhatItPausesBlank(session);
    expectItsErrorOnTheTap(session.at("timeline"));
}

}  // namespace

}  // namespace mireth::qttest
