// Log lines have only the receiver's time; the chunks are on both clocks.
import assert from 'node:assert/strict';
import { it } from 'node:test';

import { logClock } from '../../../tools/receiver/web/logclock.js';

it('A log line is as late as the soonest chunk was', () => {
    const at = logClock([{ received: 1000, at: -500 }, { received: 11600, at: 10000 }, { received: 25000, at: 20000 }]);
    assert.equal(at(6500), 5000);
    assert.equal(at(26500), 25000);
});

it('A session that a script played in no time puts its lines between the chunks that they came between', () => {
    const at = logClock([{ received: 1000, at: -500 }, { received: 1100, at: 10000 }, { received: 1200, at: 20000 }]);
    assert.equal(at(1050), 4750);
    assert.equal(at(1150), 15000);
    assert.equal(at(990), -500);
    assert.equal(at(5000), 20000);
});

it('Without anything on both clocks a line stands at the beginning', () => {
    assert.equal(logClock([])(12345), 0);
});

it('A session may have any number of chunks', () => {
    const anchors = Array.from({ length: 300000 }, (_, at) => ({ received: at * 10000, at: at * 10000 - 500 }));
    assert.equal(logClock(anchors)(20000), 19500);
});
