#include "qt/drives/Drive.hpp"

namespace mireth::qttest {

namespace {

constexpr const char* programs = "/usr/lib/qt6/bin/";

std::string file(const char* name) {
    return std::string(MIRETH_DRIVES) + "/" + name;
}

/// As it begins.
void look(Desk& /*desk*/) {}

Step clickAt(int x, int y) {
    return [place = QPoint(x, y)](Desk& desk) { desk.click(place); };
}

Step press(const char* key) {
    return [key](Desk& desk) { desk.press(key); };
}

/// Without a window manager nobody gives the keyboard back when a dialog is gone.
Step pressInMainWindow(const char* key) {
    return [key](Desk& desk) {
        desk.takeUpMainWindow();
        desk.press(key);
    };
}

Step drag(QPoint from, QPoint to) {
    return [from, to](Desk& desk) { desk.drag(from, to); };
}

Step wheelAt(int x, int y) {
    return [place = QPoint(x, y)](Desk& desk) { desk.wheel(place, 5); };
}

Step type(const char* text) {
    return [text](Desk& desk) { desk.type(text); };
}

Drive designer() {
    Drive drive;
    drive.name = "designer";
    drive.command = {std::string(programs) + "designer"};
    drive.title = "^Qt Designer";
    drive.size = {540, 720};
    drive.steps = {
        look,
        clickAt(90, 240),             // a template, in the dialog that it begins with
        clickAt(416, 532),            // the dialog's Create
        drag({16, 311}, {176, 231}),  // a button onto the form
        clickAt(390, 155),            // another object
        wheelAt(40, 400),             // in the widget box
        pressInMainWindow("alt+f"),   // a menu
        press("Escape"),
        clickAt(312, 9),  // another one
        press("Up"),
        press("Return"),  // a dialog about Qt
        press("Escape"),
        pressInMainWindow("ctrl+z"),  // takes the button away again
    };
    drive.leave = pressInMainWindow("ctrl+q");
    return drive;
}

Drive linguist() {
    Drive drive;
    drive.name = "linguist";
    drive.command = {std::string(programs) + "linguist", file("shop.ts")};
    drive.title = "Qt Linguist";
    drive.size = {600, 800};
    drive.steps = {
        look,
        clickAt(300, 125),             // a string
        clickAt(60, 122),              // a context
        wheelAt(420, 630),             // in the page of texts
        drag({259, 420}, {199, 420}),  // of a splitter
        clickAt(354, 9),               // a menu
        clickAt(420, 52),              // its entry about the program: a dialog
        press("Escape"),
        pressInMainWindow("ctrl+f"),  // a dialog
        type("bowl"),
        press("Escape"),
    };
    drive.leave = pressInMainWindow("ctrl+q");
    return drive;
}

Drive assistant() {
    Drive drive;
    drive.name = "assistant";
    drive.command = {std::string(programs) + "assistant"};
    drive.title = "Qt Assistant";
    drive.size = {540, 720};
    drive.steps = {
        look,
        clickAt(100, 72),  // a tab
        clickAt(180, 72),  // the next one
        clickAt(60, 112),
        pressInMainWindow("alt+e"),  // a menu
        press("Up"),
        press("Return"),  // a dialog, of preferences
        press("Escape"),
        wheelAt(420, 300),             // in the page
        drag({295, 380}, {235, 380}),  // of a splitter
        clickAt(283, 9),               // a menu
        press("Escape"),
    };
    drive.leave = pressInMainWindow("ctrl+q");
    return drive;
}

Drive qml() {
    Drive drive;
    drive.name = "qml";
    drive.command = {std::string(programs) + "qml", file("shop.qml")};
    drive.environment = {"QSG_RHI_BACKEND=opengl", "LIBGL_ALWAYS_SOFTWARE=1"};
    drive.title = "Shop";
    drive.size = {400, 800};
    drive.steps = {
        look,
        clickAt(200, 110),  // the field
        type("Jane"),
        drag({35, 180}, {300, 180}),   // the slider
        clickAt(60, 250),              // Menu
        clickAt(200, 380),             // its first entry
        wheelAt(200, 600),             // in the list
        drag({200, 700}, {200, 500}),  // of the list
        clickAt(60, 320),              // Buy
        press("Escape"),
    };
    drive.leave = press("ctrl+q");
    drive.status = 3;
    return drive;
}

}  // namespace

std::vector<Drive> allDrives() {
    return {designer(), linguist(), assistant(), qml()};
}

}  // namespace mireth::qttest
