#include <atomic>

#include "HttpClientContract.hpp"

namespace mireth::test {

using platform::UrlResponse;
using Seen = HttpClientHarness::Seen;

GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(HttpClientNetwork);

TEST_P(HttpClientNetwork, FollowsNoRedirect) {
    std::atomic<int> requests = 0;
    harness_->setService([&](const Seen&) {
        ++requests;
        UrlResponse response = answer(302);
        response.headers["Location"] = harness_->origin() + "/elsewhere";
        return response;
    });
    const auto result = sendAndWait(harness_->client(), requestTo(harness_->origin() + "/here"));
    ASSERT_TRUE(result);
    EXPECT_EQ(result->status, 302);
    EXPECT_EQ(requests, 1);
}

TEST_P(HttpClientNetwork, ABodyOfOneMebibyteIsTheLongestTaken) {
    constexpr std::size_t mebibyte = 1024 * 1024;
    harness_->setService([](const Seen& request) {
        return answer(200, std::string(std::stoul(request.path.substr(1)), 'x'));
    });
    const std::string origin = harness_->origin();
    const auto fits = sendAndWait(harness_->client(), requestTo(origin + "/" + std::to_string(mebibyte)));
    ASSERT_TRUE(fits) << fits.error().description;
    EXPECT_EQ(fits->body.size(), mebibyte);
    const auto tooLong =
        sendAndWait(harness_->client(), requestTo(origin + "/" + std::to_string(mebibyte + 1)));
    ASSERT_FALSE(tooLong);
    EXPECT_FALSE(tooLong.error().description.empty());
}

TEST_P(HttpClientNetwork, SpeaksHttpsOnlyWithOtherHosts) {
    for (const char* url : {"http://192.0.2.1/", "http://sr.mirethvex.example/", "ftp://127.0.0.1/",
                            "file:///etc/hostname", "sr.mirethvex.example", ""}) {
        EXPECT_FALSE(sendAndWait(harness_->client(), requestTo(url))) << url;
    }
}

}  // namespace mireth::test
