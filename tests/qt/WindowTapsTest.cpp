// Taps that lead to windows which do not belong to the recorded one.
#include <gtest/gtest.h>

#include <QDialog>
#include <QLabel>

#include "MirethVex/Qt/QtPlatform.hpp"
#include "qt/support/TapReaction.hpp"

namespace mireth::qttest {

namespace {

class QtWindowTaps : public testing::Test {
  protected:
    QtWindowTaps() {
        window_.resize(300, 200);
        window_.show();
    }

    template <class Tap>
    bool isDead(const Tap& tap) {
        return qttest::isDead(platform_.windowOf(window_), tap);
    }

  private:
    const qt::QtPlatform platform_;
    QWidget window_;
};

TEST_F(QtWindowTaps, AWindowThatOpensOrClosesIsAReactionWhomeverItBelongsTo) {
    QWidget other;
    EXPECT_FALSE(isDead([&other] { other.show(); }));
    EXPECT_TRUE(isDead([] {}));
    EXPECT_FALSE(isDead([&other] { other.hide(); }));
}

TEST_F(QtWindowTaps, ADialogOfTheDesktopsIsAReaction) {
    // As Qt stands for one itself.
    QDialog dialog;
    dialog.setAttribute(Qt::WA_DontShowOnScreen);
    EXPECT_FALSE(isDead([&dialog] { dialog.open(); }));
}

}  // namespace

}  // namespace mireth::qttest
