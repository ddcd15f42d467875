// A screen of its own, with a hand at its mouse and keyboard and an eye on it.
#pragma once

#include <QImage>
#include <QPoint>
#include <QSize>
#include <string>
#include <vector>

#include "endtoend/support/Process.hpp"
#include "qt/support/XServer.hpp"

namespace mireth::qttest {

/// Everything goes through the X server, as from a device. Places are pixels of the screen. Any thread, one
/// at a time.
class Desk {
  public:
    const std::string& display() const { return screen_.display(); }

    /// Waits for the visible window whose title has this in it, puts it into the screen's corner and gives it
    /// this size and the keyboard.
    void arrange(const std::string& title, QSize windowSize);
    /// Gives it the keyboard again.
    void takeUpMainWindow() const;

    void click(QPoint place);
    void drag(QPoint from, QPoint to);
    /// Downwards.
    void wheel(QPoint place, int notches);
    /// Such as "alt+f".
    void press(const std::string& key);
    void type(const std::string& text);

    /// Where it was clicked, in order.
    const std::vector<QPoint>& clicks() const { return clicks_; }

    /// What is on the screen, without the pointer.
    QImage picture() const;

  private:
    std::string hand(std::vector<std::string> arguments) const;
    endtoend::Ended run(std::vector<std::string> command) const;

    const XServer screen_{size.width(), size.height()};
    std::string mainWindow_;
    std::vector<QPoint> clicks_;

    static constexpr QSize size{800, 900};
};

}  // namespace mireth::qttest
