// An app that was built without run-time type information is recorded like any other.
#include <gtest/gtest.h>

#include <QSlider>
#include <QWidget>

#include "MirethVex/Qt/QtPlatform.hpp"
#include "qt/support/EventLoop.hpp"
#include "qt/support/PanelWithoutTypeInformation.hpp"
#include "qt/support/Pictures.hpp"

namespace mireth::qttest {

namespace {

TEST(QtWithoutTypeInformation, AWidgetGoesByTheNamesThatQtKnows) {
    const qt::QtPlatform platform;
    QWidget window;
    window.resize(200, 100);
    const auto panel = panelWithoutTypeInformation(window);
    panel->setGeometry(20, 20, 100, 50);
    QSlider slider(panel.get());
    window.show();
    runFor(0.01);
    const auto isMasked = [recorded = platform.windowOf(window)](const char* name) {
        return isMaskBlock(recordedPicture(*recorded, {&qt::viewClassNamed(name)}).pixel(60, 40));
    };
    EXPECT_FALSE(isMasked("PanelWithoutTypeInformation"));
    EXPECT_TRUE(isMasked("QFrame"));
}

}  // namespace

}  // namespace mireth::qttest
