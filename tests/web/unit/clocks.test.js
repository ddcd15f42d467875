// Sessions drawn at random, of which the truth is known: whatever the two clocks were, it lies within the bounds.
import assert from 'node:assert/strict';
import { describe, it } from 'node:test';

import { touchOffsets } from '../../../tools/receiver/web/offsets.js';
import { placeEvents } from '../../../tools/receiver/web/placement.js';
import { appendDelayMillis, carriesUptime } from '../../../tools/receiver/web/touchbounds.js';
import { randomFrom, simulateSession } from './simulatedphone.js';

const rounds = 800;

function forEachTouch(session, check) {
    session.timeline.forEach((event, index) => {
        if (carriesUptime(event)) {
            check(index, session.truths[index]);
        }
    });
}

function assertHolds({ low, high }, truth, tolerance, what) {
    assert.ok(low - tolerance <= truth && truth <= high + tolerance, `${what}: ${truth} is not in ${low} to ${high}`);
}

function assertOffsetsHold(session, offsets, what) {
    forEachTouch(session, (index, truth) => assertHolds(offsets.get(index), truth.offset, 0, `${what}, event ${index}`));
}

function withJump(seed) {
    const random = randomFrom(seed + 1e6);
    const size = 10 ** (2.5 + random() * 4.5);
    const jump = { at: random() * 60000, millis: Math.round(random() < 0.5 ? size : -size) };
    return { jump, session: simulateSession(seed, { seconds: 60, taps: 20, jumps: [jump] }) };
}

function quantile(values, part) {
    return [...values].sort((a, b) => a - b)[Math.floor(part * (values.length - 1))];
}

describe('The offset of the clocks', () => {
    it('lies within its bounds in every session with steady clocks', () => {
        for (let seed = 0; seed < rounds; ++seed) {
            const session = simulateSession(seed);
            const { offsets, clocks } = touchOffsets(session.timeline);
            assert.equal(clocks, 1, `seed ${seed}`);
            assertOffsetsHold(session, offsets, `seed ${seed}`);
        }
    });

    it('lies within its bounds where chunks are missing', () => {
        for (let seed = 0; seed < rounds; ++seed) {
            const session = simulateSession(seed, { seconds: 75, missing: [1 + (seed % 3), 5] });
            assertOffsetsHold(session, touchOffsets(session.timeline).offsets, `seed ${seed}`);
        }
    });

    it('is known to well under a second in most sessions', () => {
        const widths = [];
        for (let seed = 0; seed < 300; ++seed) {
            const { offsets } = touchOffsets(simulateSession(seed, { seconds: 60, taps: 20, screens: 6 }).timeline);
            widths.push(...[...offsets.values()].map(({ low, high }) => high - low));
        }
        assert.ok(quantile(widths, 0.5) < 400, `half: ${quantile(widths, 0.5)}`);
        assert.ok(quantile(widths, 0.95) < 600, `nearly all: ${quantile(widths, 0.95)}`);
    });

    it('lies within its bounds on both sides of a wall clock that was seen to be set', () => {
        let seen = 0;
        for (let seed = 0; seed < rounds; ++seed) {
            const { jump, session } = withJump(seed);
            const { offsets, clocks } = touchOffsets(session.timeline);
            if (clocks === 2) {
                ++seen;
                assertOffsetsHold(session, offsets, `seed ${seed}, set by ${jump.millis}`);
            }
        }
        assert.ok(seen > rounds / 2, `only ${seen} were seen`);
    });

    it('is told for every touch, and for nothing else', () => {
        const session = simulateSession(7, { taps: 10 });
        const { offsets } = touchOffsets(session.timeline);
        assert.deepEqual([...offsets.keys()].sort((a, b) => a - b), session.timeline.flatMap((event, index) => (carriesUptime(event) ? [index] : [])));
    });
});

describe('The place of an event in the video', () => {
    it('is within its bounds in every session with steady clocks', () => {
        // A wall-clock event may have been held up between its frame and its stamp.
        const tolerance = appendDelayMillis;
        for (let seed = 0; seed < rounds; ++seed) {
            const session = simulateSession(seed);
            placeEvents(session.timeline, session.chunks).forEach((place, index) => {
                assertHolds(place, session.truths[index].video, tolerance, `seed ${seed}, event ${index}`);
            });
        }
    });

    it('is mostly right to a frame even when the wall clock was set', () => {
        const errors = [];
        for (let seed = 0; seed < 400; ++seed) {
            const { session } = withJump(seed);
            placeEvents(session.timeline, session.chunks).forEach((place, index) => errors.push(Math.abs(place.at - session.truths[index].video)));
        }
        assert.ok(quantile(errors, 0.5) < 100, `half: ${quantile(errors, 0.5)}`);
        assert.ok(quantile(errors, 0.9) < 500, `nearly all: ${quantile(errors, 0.9)}`);
    });

    it('never contradicts the order of the touches and the wall-clock events around them by more than a touch may wait', () => {
        for (let seed = 0; seed < 400; ++seed) {
            const { session } = withJump(seed);
            const places = placeEvents(session.timeline, session.chunks);
            let latestWall = -Infinity;
            session.timeline.forEach((event, index) => {
                if (!carriesUptime(event)) {
                    latestWall = places[index].at;
                } else {
                    assert.ok(places[index].low <= places[index].at && places[index].at <= places[index].high);
                    assert.ok(places[index].at > latestWall - 12250, `seed ${seed}, event ${index}`);
                }
            });
        }
    });

    it('is found in a thousand touches that contradict each other without going on for ever', () => {
        const timeline = Array.from({ length: 4000 }, (_, index) => (index % 2 === 0
            ? { type: 'ScreenChange', timestamp: 1.7e12 + ((index * 7919) % 5000) * 1000, chunkNumber: 0 }
            : { type: 'UserInteraction', timestamp: ((index * 104729) % 5000) * 1000, chunkNumber: 0, eventDetails: {} }));
        const places = placeEvents(timeline, [{ number: 0, frames: 20 }]);
        assert.ok(places.every((place) => Number.isFinite(place.at)));
    });
});
