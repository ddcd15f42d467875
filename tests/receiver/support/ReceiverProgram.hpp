// mireth-receiver as a program, with a data folder of its own. Used by the tests of its command line and
// signals.
#pragma once

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <string>
#include <utility>
#include <vector>

#include "support/Program.hpp"
#include "support/TemporaryDirectory.hpp"

namespace mireth::receiver::test {

/// The port of a ready line.
inline int portOf(const nlohmann::json& ready) {
    const std::string listen = ready.at("listen");
    return std::stoi(listen.substr(listen.rfind(':') + 1));
}

class ReceiverProgram : public testing::Test {
  protected:
    std::vector<std::string> serving(const std::string& listen = "127.0.0.1:0") const {
        return receiverCommand({"--listen", listen, "--data", data_, "--print-ready"});
    }
    ProgramResult run(std::vector<std::string> arguments) const {
        return runProgram(receiverCommand(std::move(arguments)));
    }

    const TemporaryDirectory directory_;
    const std::string data_ = directory_.file("data");
};

}  // namespace mireth::receiver::test
