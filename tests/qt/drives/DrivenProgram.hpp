// A program that somebody uses for 20 seconds while it is recorded, and the same without recording.
#pragma once

#include <QImage>
#include <cstdint>
#include <string>
#include <vector>

#include "endtoend/support/EndToEnd.hpp"
#include "qt/drives/Drive.hpp"

namespace mireth::qttest {

/// What was to be seen after a step, and when, in milliseconds since the epoch.
struct Sight {
    QImage picture;
    std::int64_t time = 0;
};

class DrivenProgram {
  public:
    /// Both keep their files below `folder`.
    DrivenProgram(Drive drive, std::string folder, const endtoend::Receiver& receiver);

    /// Does it all at the same time with both programs. Throws when the hand does not find them.
    void run();

    const Drive& drive() const { return drive_; }
    /// One for each step.
    const std::vector<Sight>& sights() const { return sights_; }
    const std::vector<QPoint>& clicks() const { return attached_.desk.clicks(); }
    const endtoend::Ended& attached() const { return attached_.ended; }
    const endtoend::Ended& alone() const { return alone_.ended; }
    /// What the receiver has of it.
    endtoend::Json report() const;

  private:
    struct Run {
        Desk desk;
        endtoend::Ended ended;
    };

    std::vector<std::string> commandOn(const Desk& desk, const std::string& home) const;
    std::vector<std::string> attachingCommand() const;
    void awaitRecording() const;
    void drive();

    const Drive drive_;
    const std::string folder_;
    const endtoend::Receiver& receiver_;
    Run attached_;
    Run alone_;
    std::vector<Sight> sights_;
};

}  // namespace mireth::qttest
