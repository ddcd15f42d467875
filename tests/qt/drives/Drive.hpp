// What is done with a program, and where its replay is looked at meanwhile.
#pragma once

#include <QSize>
#include <functional>
#include <string>
#include <vector>

#include "qt/drives/Desk.hpp"

namespace mireth::qttest {

/// Something that a hand does.
using Step = std::function<void(Desk&)>;

struct Drive {
    std::string name;
    /// The program and its arguments.
    std::vector<std::string> command;
    /// Of the environment, as NAME=VALUE.
    std::vector<std::string> environment;
    /// Of the main window, and the size that it is given.
    std::string title;
    QSize size;
    std::vector<Step> steps;
    /// Makes the program end.
    Step leave;
    /// What it ends with.
    int status = 0;
};

/// The designer, the linguist, the assistant and the QML runtime of Qt.
std::vector<Drive> allDrives();

}  // namespace mireth::qttest
