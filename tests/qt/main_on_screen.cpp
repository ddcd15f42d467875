// The same tests in real windows, on the screen of an X server. The environment says what draws the items:
// QT_QUICK_BACKEND=software, or QSG_RHI_BACKEND=opengl.
#include <gtest/gtest.h>

#include <QApplication>
#include <QTemporaryDir>

#include "qt/support/XServer.hpp"

int main(int argc, char** argv) {
    const mireth::qttest::XServer screen(900, 900);
    qputenv("DISPLAY", screen.display().c_str());
    qputenv("QT_QPA_PLATFORM", "xcb");
    qputenv("LIBGL_ALWAYS_SOFTWARE", "1");
    qputenv("QT_QUICK_CONTROLS_STYLE", "Basic");
    const QTemporaryDir runtime;
    qputenv("XDG_RUNTIME_DIR", runtime.path().toLocal8Bit());
    const QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
