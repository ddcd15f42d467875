#include "PrivateSide/Detection/Signals/SignalPublishers/ErrorSignalPublisher.hpp"

#include <gmock/gmock.h>

#include <vector>

namespace mireth {
namespace {

using testing::ElementsAre;
using Errors = std::vector<std::optional<LogErrorData>>;

TEST(ErrorSignalPublisher, HasNothingToTellBeforeTheFirstError) {
    const ErrorSignalPublisher publisher;
    Errors heard;
    const auto subscription = publisher.logErrorData().sink(
        [&](const std::optional<LogErrorData>& error) { heard.push_back(error); });
    EXPECT_THAT(heard, ElementsAre(std::nullopt));
}

TEST(ErrorSignalPublisher, TellsEachErrorWithTheTimeAtWhichItWasLogged) {
    ErrorSignalPublisher publisher;
    Errors heard;
    const auto subscription = publisher.logErrorData().dropFirst().sink(
        [&](const std::optional<LogErrorData>& error) { heard.push_back(error); });
    publisher.notifyLogError({1000, "first"});
    publisher.notifyLogError({900, std::nullopt});
    publisher.notifyLogError({900, std::nullopt});
    EXPECT_THAT(heard, ElementsAre(LogErrorData{1000, "first"}, LogErrorData{900, std::nullopt},
                                   LogErrorData{900, std::nullopt}));
}

}  // namespace
}  // namespace mireth
