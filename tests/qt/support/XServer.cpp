#include "qt/support/XServer.hpp"

#include <stdexcept>

namespace mireth::qttest {

XServer::XServer(int width, int height)
    : process_({"Xvfb", "-displayfd", "1", "-nolisten", "tcp", "-noreset", "-screen", "0",
                std::to_string(width) + "x" + std::to_string(height) + "x24"}) {
    const auto number = process_.readLine();
    if (!number) {
        throw std::runtime_error("no X server: " + process_.wait().errors);
    }
    display_ = ":" + *number;
}

}  // namespace mireth::qttest
