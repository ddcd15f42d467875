// Programs that run under mireth-attach, and the receiver that hears of them.
#pragma once

#include <cstdlib>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "endtoend/support/EndToEnd.hpp"

namespace mireth::qttest {

class Attached : public endtoend::EndToEnd {
  protected:
    Attached() {
        setenv("XDG_CACHE_HOME", caches().c_str(), 1);
        test::writeFile(info(), endtoend::Json{{"DEVICE_IDIOM", "phone"}, {"VEX_VERSION", "1"}}.dump());
    }

    std::string info() const { return path("info.json"); }
    endtoend::Ended attach(std::vector<std::string> command) const {
        command.insert(command.begin(), {MIRETH_ATTACH_PROGRAM, "--brand", "b1", "--project", "p1",
                                         "--sr-endpoint", receiver_->origin(), "--info", info()});
        return endtoend::runProcess(std::move(command));
    }

    const std::unique_ptr<endtoend::Receiver> receiver_ = startReceiver();
};

}  // namespace mireth::qttest
