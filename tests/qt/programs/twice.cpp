// A process in which one Qt application comes after another. It says what the library answers before the
// first, in it, and in the second.
#include <QApplication>
#include <QWidget>
#include <cstdio>
#include <string>

#include "MirethVex/Qt/QtPlatform.hpp"

namespace {

void tryIn(const char* where, QWidget* window) {
    const bool isInstalled = mireth::qt::install();
    const auto result = mireth::qt::initializeProject("b1", "p1", window);
    std::printf("%s: %s %s\n", where, isInstalled ? "true" : "false", std::string(caseName(result)).c_str());
}

}  // namespace

int main(int argc, char** argv) {
    tryIn("before", nullptr);
    for (const char* const which : {"first", "second"}) {
        const QApplication application(argc, argv);
        QWidget window;
        window.show();
        tryIn(which, &window);
    }
    return 0;
}
