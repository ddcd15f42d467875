// The bounds that the order of a timeline puts on a touch, one rule at a time.
import assert from 'node:assert/strict';
import { describe, it } from 'node:test';

import { touchOffsets } from '../../../tools/receiver/web/offsets.js';
import { boundTouches, carriesUptime } from '../../../tools/receiver/web/touchbounds.js';
import { appears, chunkEnd, deadTap, elsewhere, errorTap, rageTap, start, tap, uptimeZero, wallZero } from './timelines.js';

const offset = wallZero - uptimeZero;

function only(bounds) {
    assert.equal(bounds.length, 1);
    return { low: bounds[0].low - offset, high: bounds[0].high - offset };
}

describe('A touch', () => {
    it('was made before the next wall-clock event, and at most its delay before the one before it', () => {
        assert.deepEqual(only(boundTouches([start(), tap(400), appears(1000, 'Cart')], 0)), { low: 0 - 251 - 400, high: 1000 + 50 - 400 });
    });

    it('has no lower bound when nothing stands before it', () => {
        assert.equal(only(boundTouches([tap(400), appears(1000, 'Cart')], 0)).low, -Infinity);
    });

    it('has no upper bound when nothing stands after it', () => {
        assert.equal(only(boundTouches([start(), tap(400)], 0)).high, Infinity);
    });

    it('that was dead was made the wait before it was appended', () => {
        assert.deepEqual(only(boundTouches([start(), deadTap(400), appears(2000, 'Cart')], 1500)), { low: 0 - 1751 - 400, high: 2000 + 50 - 1500 - 400 });
    });

    it('is not the neighbour of another: only wall-clock events bound it', () => {
        const [first, second] = boundTouches([start(), tap(400), rageTap(700), appears(1000, 'Cart')], 0);
        assert.equal(first.gap, 0);
        assert.equal(second.gap, 0);
        assert.equal(first.high - offset, 650);
    });
});

describe('An error tap', () => {
    it('came less than half a second after its tap', () => {
        const [bound] = boundTouches([start(), tap(8000), errorTap(8100), chunkEnd(10000, 0)], 0);
        assert.equal(bound.low - offset, 8100 - 500 - 251 - 8000);
    });

    it('at another place says nothing about the last tap', () => {
        const [bound] = boundTouches([start(), tap(8000), errorTap(8100, '', 0, elsewhere)], 0);
        assert.equal(bound.low - offset, -251 - 8000);
    });

    it('says nothing about a tap from which a missing chunk parts it', () => {
        const [bound] = boundTouches([start(), tap(8000), chunkEnd(10000, 0), errorTap(28100, '', 2)], 0);
        assert.equal(bound.low - offset, -251 - 8000);
    });

    it('carries the wall clock', () => {
        assert.equal(carriesUptime(errorTap(100)), false);
    });
});

describe('A signal that a host injects', () => {
    it('carries the wall clock although taps of its kind do not', () => {
        assert.equal(carriesUptime({ ...rageTap(0), timestamp: wallZero + 100 }), false);
        assert.equal(carriesUptime(rageTap(100)), true);
    });
});

describe('The waits of dead taps', () => {
    it('that contradict the rest of the session are ruled out', () => {
        // Tap and dead tap are of one touch; the screen change between them came 1.2 s after the tap.
        const timeline = [start(), appears(3000, 'A'), tap(3000), appears(3010, 'B'), appears(4200, 'C'), deadTap(3000), appears(4480, 'D')];
        assert.deepEqual(touchOffsets(timeline).waits, [1000, 1500]);
    });

    it('do not matter in a session without any', () => {
        assert.deepEqual(touchOffsets([start(), tap(100), appears(200, 'A')]).waits, [0]);
    });
});

describe('A wall clock that was set', () => {
    const before = [start(), appears(1990, 'A'), tap(2000), appears(2010, 'B')];
    const setTo = (millis) => [appears(12000 + millis, 'C'), tap(12005), appears(12010 + millis, 'D')];

    it('forward makes two stretches of it, each with its own offset', () => {
        const { offsets, clocks, cuts } = touchOffsets([...before, ...setTo(60000)]);
        assert.equal(clocks, 2);
        assert.ok(offsets.get(2).high - offset < 100);
        assert.ok(offsets.get(5).low - offset > 59000);
        assert.ok(Math.abs(cuts[0].millis - 60000) < 300);
    });

    it('back does too, and is seen even without a touch', () => {
        const { offsets, clocks } = touchOffsets([...before, ...setTo(-60000)]);
        assert.equal(clocks, 2);
        assert.ok(offsets.get(5).high - offset < -59000);
    });

    it('back between the neighbours of a touch leaves that touch to either side', () => {
        const { offsets } = touchOffsets([...before, appears(9000, 'C'), tap(9500), appears(-50000, 'D'), tap(10505), appears(-49480, 'E')]);
        const { low, high } = offsets.get(5);
        assert.ok(low <= offset - 60000 && offset <= high);
    });
});

describe('A main thread that stalled', () => {
    it('made a touch wait, and does not look like a clock that was set', () => {
        const timeline = [
            start(), appears(1990, 'A'), tap(2000), appears(2010, 'B'),
            appears(7000, 'Busy'), tap(4000), appears(7300, 'C'),
            appears(8990, 'D'), tap(9000), appears(9010, 'E'),
        ];
        const { offsets, clocks } = touchOffsets(timeline);
        assert.equal(clocks, 1);
        assert.ok(Math.abs(offsets.get(5).high - offset) < 300);
    });
});
