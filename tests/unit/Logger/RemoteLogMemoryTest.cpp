// Log lines that cannot be put into words.
#include <gmock/gmock.h>

#include "support/ApiPhone.hpp"
#include "support/PostedLines.hpp"
#include "support/ScarceMemory.hpp"

namespace mireth {
namespace {

using test::ApiPhone;
using test::FakeHttpClient;

TEST(RemoteLogMemory, ALineThatDoesNotFitIsPostedAsOneThatCouldNotBeSerialized) {
    ApiPhone phone;
    const auto remoteLog = phone.makeRemoteLog();
    remoteLog->initialize(phone.makeConfiguredClient(), phone.makeNetworkState(), {"p1", "b1"});
    phone.http->answerAll(FakeHttpClient::response(200, R"({"status":"Success"})"));
    constexpr std::size_t mebibyte = 1 << 20;
    const std::string message(mebibyte, 'x');
    {
        const test::ScarceMemory scarce(mebibyte / 2);
        remoteLog->post(LogLevel::error, LogTag::network, message, {{"reason", "why"}}, true);
    }
    phone.phone.runUntilIdle();
    const auto request = phone.lastRequest();
    EXPECT_EQ(request.method, "POST");
    EXPECT_EQ(test::postedText(request.body.value_or("")), "Failed to serialize log");
    EXPECT_THAT(request.body.value_or(""), testing::EndsWith("&LevelName=error"));
}

}  // namespace
}  // namespace mireth
