#include "qt/drives/Desk.hpp"

#include <stdexcept>
#include <utility>

namespace mireth::qttest {

namespace {

std::string text(int number) {
    return std::to_string(number);
}

}  // namespace

void Desk::arrange(const std::string& title, QSize windowSize) {
    const std::string found = hand({"search", "--sync", "--onlyvisible", "--name", title});
    mainWindow_ = found.substr(0, found.find('\n'));
    hand({"windowmove", mainWindow_, "0", "0", "windowsize", mainWindow_, text(windowSize.width()),
          text(windowSize.height())});
    takeUpMainWindow();
}

void Desk::takeUpMainWindow() const {
    hand({"windowfocus", mainWindow_});
}

void Desk::click(QPoint place) {
    clicks_.push_back(place);
    hand({"mousemove", text(place.x()), text(place.y()), "click", "1"});
}

void Desk::drag(QPoint from, QPoint to) {
    constexpr int moves = 8;
    std::vector<std::string> arguments{"mousemove", text(from.x()), text(from.y()), "mousedown", "1"};
    for (int move = 1; move <= moves; ++move) {
        const QPoint place = from + (to - from) * move / moves;
        arguments.insert(arguments.end(), {"sleep", "0.04", "mousemove", text(place.x()), text(place.y())});
    }
    arguments.insert(arguments.end(), {"sleep", "0.1", "mouseup", "1"});
    hand(std::move(arguments));
}

void Desk::wheel(QPoint place, int notches) {
    hand({"mousemove", text(place.x()), text(place.y()), "click", "--repeat", text(notches), "--delay", "60",
          "5"});
}

void Desk::press(const std::string& key) {
    hand({"key", key});
}

void Desk::type(const std::string& text) {
    hand({"type", "--delay", "40", text});
}

std::string Desk::hand(std::vector<std::string> arguments) const {
    arguments.insert(arguments.begin(), "xdotool");
    const auto ended = run(std::move(arguments));
    if (ended.status != 0) {
        throw std::runtime_error("xdotool: " + ended.errors);
    }
    return ended.out;
}

QImage Desk::picture() const {
    const auto ended = run({"ffmpeg", "-v", "error", "-f", "x11grab", "-draw_mouse", "0", "-video_size",
                            text(size.width()) + "x" + text(size.height()), "-i", display(), "-frames:v", "1",
                            "-f", "image2pipe", "-c:v", "bmp", "-"});
    const auto picture = QImage::fromData(QByteArray::fromStdString(ended.out), "BMP");
    if (picture.isNull()) {
        throw std::runtime_error("ffmpeg: " + ended.errors);
    }
    return picture.convertToFormat(QImage::Format_RGB32);
}

endtoend::Ended Desk::run(std::vector<std::string> command) const {
    command.insert(command.begin(), {"env", "DISPLAY=" + display()});
    return endtoend::runProcess(std::move(command));
}

}  // namespace mireth::qttest
