// The tests of the Qt platform have an application, without a screen that anybody sees and with the software
// scene graph.
#include <gtest/gtest.h>

#include <QApplication>
#include <QFile>
#include <QTemporaryDir>

namespace {

/// Two of them; the variable below makes the second one's scale twice the first one's.
constexpr const char* screens = R"({"screens": [
    {"name": "first", "x": 0, "y": 0, "width": 800, "height": 800, "logicalDpi": 96, "dpr": 1},
    {"name": "second", "x": 4000, "y": 0, "width": 1600, "height": 1600, "logicalDpi": 96, "dpr": 1}]})";

}  // namespace

int main(int argc, char** argv) {
    qputenv("QT_SCREEN_SCALE_FACTORS", "first=1;second=2");
    qputenv("QT_QUICK_BACKEND", "software");
    qputenv("QT_QUICK_CONTROLS_STYLE", "Basic");
    // Else Qt complains, here and in programs that tests start.
    const QTemporaryDir runtime;
    QFile file(runtime.filePath("screens.json"));
    if (!file.open(QIODevice::WriteOnly) || file.write(screens) < 0) {
        return 1;
    }
    file.close();
    qputenv("QT_QPA_PLATFORM", "offscreen:configfile=" + file.fileName().toLocal8Bit());
    qputenv("XDG_RUNTIME_DIR", runtime.path().toLocal8Bit());
    const QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
