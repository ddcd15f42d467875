// Programs that nobody here wrote, recorded while somebody uses them on a real screen for 20 seconds, all at
// the same time; and the same without recording. What is to be seen is left in the build directory.
#include <gtest/gtest.h>

#include <QDir>
#include <memory>
#include <thread>

#include "endtoend/support/Video.hpp"
#include "qt/drives/DrivenProgram.hpp"
#include "qt/drives/Replay.hpp"
#include "qt/drives/Resemblance.hpp"
#include "qt/support/Pictures.hpp"

namespace mireth::qttest {

namespace {

class EndToEndQtDrives : public endtoend::EndToEnd {
  protected:
    void SetUp() override {
        std::vector<std::jthread> hands;
        for (Drive& drive : allDrives()) {
            const std::string folder = path(drive.name);
            auto& program = *programs_.emplace_back(
                std::make_unique<DrivenProgram>(std::move(drive), folder, *receiver_));
            hands.emplace_back([&program] { EXPECT_NO_THROW(program.run()); });
        }
    }

    static void keep(const std::string& name, const Replay& replay, const DrivenProgram& program) {
        const QString folder = QString::fromStdString(MIRETH_DRIVES_OUTPUT "/" + name);
        QDir(folder).removeRecursively();
        QDir().mkpath(folder);
        int number = 0;
        for (const QImage& frame : replay.frames()) {
            frame.save(folder + QString("/frame-%1.png").arg(number++, 2, 10, QChar('0')));
        }
        number = 0;
        for (const Sight& sight : program.sights()) {
            sight.picture.save(folder + QString("/live-%1.png").arg(number++, 2, 10, QChar('0')));
        }
    }

    void look(const DrivenProgram& program);
    static void expectLikeness(const Replay& replay, const Sight& sight);

    const std::unique_ptr<endtoend::Receiver> receiver_ = startReceiver();
    std::vector<std::unique_ptr<DrivenProgram>> programs_;
};

/// One of the frames of that time shows the window as it was, and would not if it were turned.
void EndToEndQtDrives::expectLikeness(const Replay& replay, const Sight& sight) {
    const Sketch screen(sight.picture.copy(QRect({0, 0}, replay.windowSize())), replay.area());
    QImage best;
    Resemblance found;
    for (const QImage& frame : replay.framesAbout(sight.time)) {
        const auto resemblance = compare(Sketch(frame), screen);
        if (best.isNull() || resemblance.likeness() > found.likeness()) {
            best = frame;
            found = resemblance;
        }
    }
    ASSERT_FALSE(best.isNull());
    constexpr double enough = 0.55;
    constexpr double difference = 0.02;
    const double upsideDown = compare(Sketch(best.mirrored()), screen).likeness();
    const double leftToRight = compare(Sketch(best.mirrored(true, false)), screen).likeness();
    EXPECT_GT(found.likeness(), std::max(upsideDown, leftToRight) + difference);
    EXPECT_GT(found.likeness(), enough);
    // The arrows of scroll bars have the colour of text.
    EXPECT_LE(found.bareText, found.text / 20);
}

void EndToEndQtDrives::look(const DrivenProgram& program) {
    const Drive& drive = program.drive();
    SCOPED_TRACE(drive.name);
    EXPECT_EQ(program.alone().status, drive.status);
    EXPECT_EQ(program.attached().status, drive.status);
    EXPECT_EQ(program.attached().errors, program.alone().errors);
    EXPECT_EQ(program.attached().out, program.alone().out);

    const endtoend::Json report = program.report();
    EXPECT_EQ(report.at("session").at("state"), "closed");
    const Replay replay(report, drive.size);
    keep(drive.name, replay, program);
    EXPECT_GE(replay.frames().size(), 36U);
    EXPECT_EQ(replay.windowSize(), drive.size);
    for (std::size_t index = 0; index < replay.frames().size(); ++index) {
        const QImage& frame = replay.frames()[index];
        EXPECT_EQ(frame.size(), QSize(250, 500));
        EXPECT_EQ(findCanary(frame), std::nullopt) << "frame " << index;
    }
    for (std::size_t index = 0; index < program.sights().size(); ++index) {
        SCOPED_TRACE("after step " + std::to_string(index));
        expectLikeness(replay, program.sights()[index]);
    }
    ASSERT_EQ(replay.taps().size(), program.clicks().size());
    for (std::size_t tap = 0; tap < replay.taps().size(); ++tap) {
        EXPECT_NEAR(replay.taps()[tap].x(), program.clicks()[tap].x(), 2);
        EXPECT_NEAR(replay.taps()[tap].y(), program.clicks()[tap].y(), 2);
    }
}

TEST_F(EndToEndQtDrives, ShowWhereThingsWereAndNothingThatWasThere) {
    for (const auto& program : programs_) {
        look(*program);
    }
}

}  // namespace

}  // namespace mireth::qttest
