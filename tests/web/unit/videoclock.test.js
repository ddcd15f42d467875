// From the wall clock to the second of the video, one rule at a time.
import assert from 'node:assert/strict';
import { describe, it } from 'node:test';

import { placeEvents } from '../../../tools/receiver/web/placement.js';
import { videoClock } from '../../../tools/receiver/web/videoclock.js';
import { appears, chunkEnd, chunks, deadTap, firstFrame, start, tap } from './timelines.js';

describe('The video', () => {
    it('begins with the frame that reported the window’s size', () => {
        const clock = videoClock([start(), firstFrame(), appears(3000, 'A'), chunkEnd(10040, 0)], chunks([0]));
        assert.equal(clock.millisOf(0), -500);
        assert.equal(clock.millisOf(2), 2500);
    });

    it('begins half a second after the start when that report is not there', () => {
        const clock = videoClock([start(), appears(3000, 'A'), chunkEnd(10040, 0)], chunks([0]));
        assert.equal(clock.millisOf(1), 2500);
    });

    it('goes on for ten seconds where a chunk is missing', () => {
        const clock = videoClock([start(), firstFrame(), chunkEnd(10040, 0), appears(25500, 'A', 2), chunkEnd(30040, 2)], chunks([0, 2]));
        assert.equal(clock.millisOf(3), 25000);
    });

    it('is found from the chunks’ ends when the first chunk is missing', () => {
        const clock = videoClock([appears(25500, 'A', 2), chunkEnd(30000, 2)], chunks([2]));
        assert.equal(clock.millisOf(0), 25000);
    });

    it('is not taken for late because the encoder takes its time', () => {
        const timeline = [start(), firstFrame(), chunkEnd(10900, 0), appears(15500, 'A', 1), chunkEnd(20700, 1), chunkEnd(30850, 2)];
        assert.equal(videoClock(timeline, chunks([0, 1, 2])).millisOf(3), 15000);
    });

    it('falls behind the wall clock when frames are lost, and stays behind', () => {
        const timeline = [start(), firstFrame(), chunkEnd(10040, 0), chunkEnd(23040, 1), appears(28500, 'A', 2), chunkEnd(33040, 2), chunkEnd(43040, 3)];
        assert.equal(videoClock(timeline, chunks([0, 1, 2, 3])).millisOf(4), 25000);
    });

    it('is not moved by a last chunk that waited for the stop', () => {
        const timeline = [start(), firstFrame(), chunkEnd(10040, 0), appears(12500, 'A', 1), chunkEnd(14450, 1)];
        assert.equal(videoClock(timeline, chunks([0, 1], 7)).millisOf(3), 12000);
    });

    it('goes on when the wall clock is set back', () => {
        const timeline = [start(), firstFrame(), chunkEnd(10040, 0), appears(12500 - 3.6e6, 'A', 1), chunkEnd(20040 - 3.6e6, 1), chunkEnd(30040 - 3.6e6, 2)];
        assert.equal(videoClock(timeline, chunks([0, 1, 2])).millisOf(3), 12000);
    });

    it('goes on when the wall clock is set forward', () => {
        const timeline = [start(), firstFrame(), chunkEnd(10040, 0), appears(12500 + 3.6e6, 'A', 1), chunkEnd(20040 + 3.6e6, 1), chunkEnd(30040 + 3.6e6, 2)];
        assert.equal(videoClock(timeline, chunks([0, 1, 2])).millisOf(3), 12000);
    });

    it('keeps every event within its chunk, whatever its stamp', () => {
        const clock = videoClock([start(), firstFrame(), appears(9e9, 'A'), appears(-9e9, 'B'), chunkEnd(10040, 0)], chunks([0]));
        assert.ok(clock.millisOf(2) <= 10000);
        assert.ok(clock.millisOf(3) >= -500);
    });
});

describe('A touch', () => {
    it('stands where it was made, not where it was appended', () => {
        const timeline = [start(), firstFrame(), appears(1990, 'A'), tap(2000), appears(2010, 'B'), tap(7000), chunkEnd(10040, 0)];
        const place = placeEvents(timeline, chunks([0]))[5];
        assert.ok(place.low <= 6500 && 6500 <= place.high);
        assert.ok(place.high - place.low < 400);
    });

    it('stands where its dead tap stands', () => {
        const timeline = [start(), firstFrame(), tap(5000), appears(6800, 'A'), deadTap(5000), chunkEnd(10040, 0)];
        const places = placeEvents(timeline, chunks([0]));
        assert.deepEqual(places[2], places[4]);
    });

    it('without any wall-clock event stands in its chunk', () => {
        const place = placeEvents([tap(7000, 3)], chunks([3]))[0];
        assert.ok(place.low >= 29000 && place.high <= 42000);
    });
});
