// Which of a program's windows is recorded as its main window, and from when on.
#include <gmock/gmock.h>

#include "qt/support/Attached.hpp"

namespace mireth::qttest {

namespace {

using endtoend::Json;
using testing::ElementsAre;

class QtAttachedWindows : public Attached {
  protected:
    /// The width of each session's window, in the order of the sessions, after a program that took these
    /// steps.
    std::vector<int> widthsAfter(std::vector<std::string> steps) {
        steps.insert(steps.begin(), MIRETH_WINDOWS_PROGRAM);
        EXPECT_EQ(attach(std::move(steps)).status, 7);
        std::vector<int> widths;
        for (const Json& session : receiver_->sessions()) {
            const Json report = receiver_->show(session.at("id"));
            for (const Json& event : report.at("timeline")) {
                if (event.at("type") == "WindowDimensions") {
                    widths.push_back(event.at("eventDetails").at("windowWidthPx").get<int>());
                }
            }
        }
        EXPECT_EQ(widths.size(), receiver_->sessions().size());
        return widths;
    }
};

TEST_F(QtAttachedWindows, AFramelessWindowOfItemsIsOne) {
    EXPECT_THAT(widthsAfter({"frameless-items"}), ElementsAre(250));
}

}  // namespace

}  // namespace mireth::qttest
