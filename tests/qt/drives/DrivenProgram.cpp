#include "qt/drives/DrivenProgram.hpp"

#include <QDateTime>
#include <chrono>
#include <filesystem>
#include <stdexcept>
#include <thread>
#include <utility>

namespace mireth::qttest {

using endtoend::Json;

namespace {

using Clock = std::chrono::steady_clock;

/// Text is red, and all else that is not a picture is grey: windows darker than any mask, the rest lighter.
constexpr const char* colors = R"([Colors:Window]
BackgroundNormal=130,130,130
ForegroundNormal=255,0,0
[Colors:Button]
BackgroundNormal=215,215,215
ForegroundNormal=255,0,0
[Colors:View]
BackgroundNormal=250,250,250
ForegroundNormal=255,0,0
[Colors:Selection]
BackgroundNormal=80,80,80
ForegroundNormal=255,0,0
[Colors:Tooltip]
BackgroundNormal=220,220,220
ForegroundNormal=255,0,0
[KDE]
widgetStyle=Fusion
)";

}  // namespace

DrivenProgram::DrivenProgram(Drive drive, std::string folder, const endtoend::Receiver& receiver)
    : drive_(std::move(drive)), folder_(std::move(folder)), receiver_(receiver) {
    for (const char* const home : {"attached", "alone"}) {
        std::filesystem::create_directories(folder_ + "/" + home + "/.config");
        // Qt complains about a runtime directory that others could look into.
        std::filesystem::permissions(folder_ + "/" + home, std::filesystem::perms::owner_all);
        test::writeFile(folder_ + "/" + home + "/.config/kdeglobals", colors);
    }
    test::writeFile(folder_ + "/info.json", Json{{"DEVICE_IDIOM", "phone"}, {"VEX_VERSION", "1"}}.dump());
}

void DrivenProgram::run() {
    auto attachedCommand = commandOn(attached_.desk, folder_ + "/attached");
    const auto attaching = attachingCommand();
    attachedCommand.insert(attachedCommand.end() - static_cast<std::ptrdiff_t>(drive_.command.size()),
                           attaching.begin(), attaching.end());
    endtoend::Process attached(std::move(attachedCommand));
    endtoend::Process alone(commandOn(alone_.desk, folder_ + "/alone"));
    attached_.desk.arrange(drive_.title, drive_.size);
    alone_.desk.arrange(drive_.title, drive_.size);
    awaitRecording();
    drive();
    attached_.ended = attached.wait();
    alone_.ended = alone.wait();
}

std::vector<std::string> DrivenProgram::commandOn(const Desk& desk, const std::string& home) const {
    std::vector<std::string> command{
        "env", "DISPLAY=" + desk.display(), "HOME=" + home, "XDG_CONFIG_HOME=" + home + "/.config",
        "XDG_CACHE_HOME=" + home + "/cache", "XDG_RUNTIME_DIR=" + home, "QT_QPA_PLATFORM=xcb",
        // Qt reads a palette from a file only where a desktop has one.
        "XDG_CURRENT_DESKTOP=KDE", "KDE_SESSION_VERSION=5"};
    command.insert(command.end(), drive_.environment.begin(), drive_.environment.end());
    command.insert(command.end(), drive_.command.begin(), drive_.command.end());
    return command;
}

std::vector<std::string> DrivenProgram::attachingCommand() const {
    return {MIRETH_ATTACH_PROGRAM, "--brand",          drive_.name, "--project",           "p1",
            "--sr-endpoint",       receiver_.origin(), "--info",    folder_ + "/info.json"};
}

void DrivenProgram::awaitRecording() const {
    const auto end = Clock::now() + std::chrono::seconds(30);
    while (report().is_null()) {
        if (Clock::now() > end) {
            throw std::runtime_error(drive_.name + " is not recorded");
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
    }
}

void DrivenProgram::drive() {
    constexpr std::chrono::seconds wholeDrive(20);
    const auto pace = Clock::duration(wholeDrive) / static_cast<int>(drive_.steps.size());
    auto next = Clock::now();
    for (const Step& step : drive_.steps) {
        step(attached_.desk);
        step(alone_.desk);
        // Long enough for a frame or two of it, also where the machine has much else to do.
        next = std::max(next + pace, Clock::now() + pace / 2);
        std::this_thread::sleep_until(next);
        const auto time = QDateTime::currentMSecsSinceEpoch();
        sights_.push_back({attached_.desk.picture(), time});
    }
    drive_.leave(attached_.desk);
    drive_.leave(alone_.desk);
}

Json DrivenProgram::report() const {
    for (const Json& session : receiver_.sessions()) {
        if (session.at("brandId") == drive_.name) {
            return receiver_.show(session.at("id"));
        }
    }
    return {};
}

}  // namespace mireth::qttest
