// The receiver's answer as the replay shows it.
import assert from 'node:assert/strict';
import { describe, it } from 'node:test';

import { buildModel } from '../../../tools/receiver/web/model.js';
import { appears, change, chunkEnd, chunks, deadTap, errorTap, firstFrame, start, tap } from './timelines.js';

function modelOf(timeline, there = chunks([0]), logs = []) {
    return buildModel({ session: { startMillis: 5000 }, metadata: [], chunks: there, timeline, logs });
}

const close = [appears(1990, 'A'), tap(2000), appears(2010, 'B')];

describe('Entries', () => {
    it('are in the order of the video, with names for what they are', () => {
        const { entries } = modelOf([start(), firstFrame(), ...close, errorTap(2100, 'No stock'), deadTap(2000), chunkEnd(10040, 0)]);
        assert.deepEqual(entries.map((entry) => entry.kind).sort(), ['dead', 'error', 'note', 'note', 'screen', 'screen', 'tap']);
        assert.equal(entries.find((entry) => entry.kind === 'error').text, 'No stock');
        entries.forEach((entry, index) => assert.ok(index === 0 || entries[index - 1].at <= entry.at));
    });

    it('do not tell of the ends of chunks', () => {
        assert.deepEqual(modelOf([start(), firstFrame(), chunkEnd(10040, 0)]).entries.map((entry) => entry.title), ['Recording started', 'Window 1170 × 2532']);
    });

    it('tell how uncertain a touch is only beyond half a second', () => {
        const vague = modelOf([start(), firstFrame(), tap(5000), chunkEnd(10040, 0)]).entries.find((entry) => entry.kind === 'tap');
        assert.ok(vague.spread.high - vague.spread.low > 5);
        const sharp = modelOf([start(), firstFrame(), ...close, chunkEnd(10040, 0)]).entries.find((entry) => entry.kind === 'tap');
        assert.equal(sharp.spread, null);
    });

    it('stand at whole milliseconds, which an address can carry', () => {
        const { entries } = modelOf([start(), firstFrame(), tap(2000), appears(5001, 'A'), chunkEnd(10040, 0)]);
        entries.forEach(({ at }) => assert.equal(at, Math.round(at * 1000) / 1000));
    });

    it('keep their names when an earlier chunk comes late', () => {
        const [early, late] = [[start(), firstFrame(), appears(2000, 'A', 0)], [appears(22000, 'C', 2), appears(23000, 'D', 2)]];
        const idOf = (model, title) => model.entries.find((entry) => entry.title === title).id;
        const before = modelOf([...early, ...late], chunks([0, 2]));
        const after = modelOf([...early, appears(12000, 'B', 1), ...late], chunks([0, 1, 2]));
        for (const title of ['A', 'C', 'D']) {
            assert.equal(idOf(after, title), idOf(before, title));
        }
        assert.equal(new Set(after.entries.map(({ id }) => id)).size, after.entries.length);
    });

    it('may be as many as a session can hold', () => {
        const taps = Array.from({ length: 150000 }, (_, index) => tap(1000 + index / 20));
        const { entries, widestSpread } = modelOf([start(), firstFrame(), ...taps, chunkEnd(10040, 0)]);
        assert.equal(entries.filter((entry) => entry.kind === 'tap').length, taps.length);
        assert.ok(Math.abs(widestSpread - 2.34) < 0.01);
    });

    it('never leave the video', () => {
        const { entries, length } = modelOf([start(), firstFrame(), appears(9.99e5, 'A'), chunkEnd(10040, 0)]);
        entries.forEach((entry) => assert.ok(entry.at >= 0 && entry.at <= length));
    });

    it('survive details that are not there', () => {
        const bare = { timestamp: 1, type: 'UserInteraction', chunkNumber: 0 };
        const { entries } = modelOf([start(), bare, { ...bare, type: 'SignalCaptured' }, { ...bare, type: 'ScreenChange' }, { ...bare, type: 'Unheard' }]);
        assert.deepEqual(entries.map((entry) => entry.kind).sort(), ['note', 'screen', 'tap']);
        assert.equal(entries.find((entry) => entry.kind === 'tap').point, null);
    });

    it('name a screen by the innermost of its hierarchy', () => {
        const { entries } = modelOf([start(), change(3000, 'appear', ['Tabs', 'List', 'Item'])]);
        assert.equal(entries.find((entry) => entry.kind === 'screen').title, 'Item');
    });

    it('hold the log lines on the same clock', () => {
        const logs = [{ receivedMillis: 5000 + 7000, level: 'error', tag: 'NETWORK', message: 'Lost', fields: { a: 1 } }];
        const there = chunks([0, 1]).map((chunk) => ({ ...chunk, receivedMillis: 5000 + (chunk.number + 1) * 10000 }));
        const { entries } = modelOf([start(), firstFrame(), chunkEnd(10000, 0), chunkEnd(20000, 1)], there, logs);
        const line = entries.find((entry) => entry.kind === 'log');
        assert.ok(Math.abs(line.at - 6.5) < 0.6);
        assert.equal(line.title, 'Lost');
        assert.equal(line.text, 'error · NETWORK');
    });
});

describe('Gaps', () => {
    it('are where numbers are missing', () => {
        const { gaps, length } = modelOf([], chunks([1, 4]));
        assert.deepEqual(gaps, [{ from: 0, to: 10, first: 0, last: 0 }, { from: 20, to: 40, first: 2, last: 3 }]);
        assert.equal(length, 50);
    });

    it('are where a chunk in the middle is short', () => {
        const short = chunks([0, 1]).map((chunk) => (chunk.number === 0 ? { ...chunk, frames: 12, durationMillis: 6000 } : chunk));
        assert.deepEqual(modelOf([], short).gaps, [{ from: 6, to: 10, first: null, last: null }]);
    });

    it('take no longer to find when a number is absurd', () => {
        const { gaps } = modelOf([], chunks([0, 1e12]));
        assert.equal(gaps.length, 1);
    });
});

it('A session without chunks has no length', () => {
    const model = modelOf([], []);
    assert.equal(model.length, 0);
    assert.deepEqual(model.entries, []);
});
