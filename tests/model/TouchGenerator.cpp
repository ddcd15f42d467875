#include "model/TouchGenerator.hpp"

#include <utility>
#include <vector>

namespace mireth::model {

namespace {

constexpr Micros touchLasts = 80 * milli;

Json tapAt(Point point) {
    return {{"tap", {point.x, point.y}}};
}

}  // namespace

Json makeError(Chance& chance) {
    static const std::vector<Json> messages{"declined", "no network", "", nullptr};
    return {{"logError", chance.oneOf(messages)}};
}

void TouchGenerator::act() {
    switch (chance_.below(12)) {
        case 0:
        case 1:
        case 2:
            return tapRun();
        case 3:
        case 4:
            return tapsBesideEachOther();
        case 5:
            return tapsAtOnce();
        case 6:
            return otherTouch();
        case 7:
        case 8:
        case 9:
            return tapAndErrors();
        default:
            return tapAndChange();
    }
}

void TouchGenerator::tapRun() {
    static const std::vector<double> intervals{0.05, 0.08,  0.1,  0.15,  0.15,   0.3,
                                               0.4,  0.429, 0.43, 0.431, 0.4295, 0.5};
    Json taps = makeTap();
    const int times = chance_.between(1, 6);
    const double interval = chance_.oneOf(intervals);
    if (times > 1) {
        taps["times"] = times;
        taps["interval"] = interval;
    }
    script_.step(taps);
    if (chance_.oneIn(2)) {
        script_.pass(static_cast<Micros>(interval * (times - 1) * second) + touchLasts);
    }
}

/// Each a little away from the last one, and a little later.
void TouchGenerator::tapsBesideEachOther() {
    static const std::vector<std::pair<double, double>> ways{{0, 0},  {0, 0},  {40, 0},    {0, -40}, {24, 32},
                                                             {39, 0}, {41, 0}, {24, 32.5}, {-20, 0}};
    static const std::vector<Micros> gaps{100 * milli, 200 * milli, 349 * milli,      350 * milli,
                                          351 * milli, 0,           349 * milli + 500};
    Point point = screens_.makePoint();
    const int count = chance_.between(2, 6);
    for (int index = 0; index < count; ++index) {
        script_.step(tapAt(point));
        script_.pass(touchLasts + chance_.oneOf(gaps));
        const auto& [x, y] = chance_.oneOf(ways);
        point = {point.x + x, point.y + y};
    }
}

void TouchGenerator::tapsAtOnce() {
    const int count = chance_.between(2, 4);
    for (int index = 0; index < count; ++index) {
        script_.step(chance_.oneIn(4) ? makeSwipe() : makeTap());
        script_.pass(chance_.between(0, 79) * milli);
    }
}

void TouchGenerator::otherTouch() {
    const Point point = screens_.makePoint();
    script_.step(chance_.oneIn(2) ? makeSwipe() : Json{{"cancelledTouch", {point.x, point.y}}});
    if (chance_.oneIn(2)) {
        script_.pass(chance_.between(0, 400) * milli);
        script_.step(tapAt(point));
    }
}

Json TouchGenerator::makeSwipe() {
    const Point from = screens_.makePoint();
    const Point to = chance_.oneIn(4) ? from : screens_.makePoint();
    return {{"swipe",
             {{"from", {from.x, from.y}}, {"to", {to.x, to.y}}, {"seconds", chance_.oneIn(2) ? 0.1 : 0.3}}}};
}

void TouchGenerator::tapAndErrors() {
    static const std::vector<Micros> delays{0,           100 * milli, 300 * milli,       498 * milli,
                                            499 * milli, 500 * milli, 499 * milli + 500, 501 * milli};
    static const std::vector<double> jumps{0.1, -0.1, 0.5, -0.5, 1, -1, 0.0004, 3600, -3600, -0.001};
    Json tap = makeTap();
    if (chance_.oneIn(4)) {
        tap["times"] = chance_.between(2, 4);
        tap["interval"] = 0.1;
    }
    script_.step(tap);
    const Micros ended = script_.now() + touchLasts;
    const int errors = chance_.between(1, 3);
    for (int index = 0; index < errors; ++index) {
        const Micros at = ended + chance_.oneOf(delays);
        if (chance_.oneIn(3)) {
            script_.stepAt(at, {{"systemClock", chance_.oneOf(jumps)}});
        }
        script_.stepAt(at, makeError(chance_));
    }
}

/// What the app does by itself around the end of the wait.
void TouchGenerator::tapAndChange() {
    static const std::vector<Micros> offsets{-1000 * milli, -milli, 0, milli, -500, 500};
    script_.step(makeTap());
    const Micros at = script_.now() + touchLasts + wait_ + chance_.oneOf(offsets);
    for (auto change : screens_.makeChangesOfAView()) {
        const double after = change.value("after", 0.0);
        change.erase("after");
        script_.stepAt(at + static_cast<Micros>(after * second), change);
    }
}

Json TouchGenerator::makeTap() {
    return tapAt(screens_.makePoint());
}

}  // namespace mireth::model
