// The list of sessions of a receiver, as viewers get it. Used by the tests of the list.
#pragma once

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "support/RunningReceiver.hpp"
#include "support/StoredSession.hpp"

namespace mireth::receiver::test {

class SessionList : public testing::Test {
  protected:
    using Ids = std::vector<std::string>;

    nlohmann::json page(const std::string& query = "") const {
        return receiver_.getJson("/api/sessions" + query);
    }
    Ids ids(const std::string& query = "") const {
        Ids all;
        const auto answer = page(query);
        for (const auto& session : answer.at("sessions")) {
            all.push_back(session.at("id"));
        }
        return all;
    }
    void keep(const StoredSession& session) { test::keep(receiver_.store(), session); }

    RunningReceiver receiver_;
};

}  // namespace mireth::receiver::test
