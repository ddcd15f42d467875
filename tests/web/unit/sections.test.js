// Screens as sections, and the stretches in which nothing happened.
import assert from 'node:assert/strict';
import { describe, it } from 'node:test';

import { quietStretches, sectionAt, sectionsOf } from '../../../tools/receiver/web/sections.js';

const appeared = (at, ...path) => ({ kind: 'screen', at, title: path.at(-1), path, appeared: true });
const disappeared = (at, ...path) => ({ kind: 'screen', at, title: path.at(-1), path, appeared: false });
const shape = (sections) => sections.map(({ from, to, name }) => [from, to, name]);

describe('A section', () => {
    it('lasts until the next screen appears, or to the end', () => {
        assert.deepEqual(shape(sectionsOf([appeared(1, 'A'), appeared(4, 'B')], [], 10)), [[1, 4, 'A'], [4, 10, 'B']]);
    });

    it('ends when its screen disappears', () => {
        assert.deepEqual(shape(sectionsOf([appeared(1, 'A'), disappeared(3, 'A'), appeared(5, 'B')], [], 10)), [[1, 3, 'A'], [5, 10, 'B']]);
    });

    it('does not end when the screen under it disappears late', () => {
        assert.deepEqual(shape(sectionsOf([appeared(1, 'A'), appeared(4, 'B'), disappeared(4, 'A')], [], 10)), [[1, 4, 'A'], [4, 10, 'B']]);
    });

    it('is named by the innermost screen of its hierarchy, but ended by the whole', () => {
        const entries = [appeared(1, 'Tabs', 'List'), disappeared(3, 'List'), disappeared(4, 'Tabs', 'List'), disappeared(5, 'Tabs')];
        assert.deepEqual(shape(sectionsOf(entries, [], 10)), [[1, 4, 'List']]);
    });

    it('begins with the video for the screen that was there before', () => {
        assert.deepEqual(shape(sectionsOf([disappeared(2, 'A'), appeared(2, 'B')], [], 10)), [[0, 2, 'A'], [2, 10, 'B']]);
    });

    it('goes on when its screen is reported again', () => {
        assert.deepEqual(shape(sectionsOf([appeared(1, 'A'), appeared(4, 'A')], [], 10)), [[1, 10, 'A']]);
    });

    it('does not reach into a gap, and comes after one only as far as it is known', () => {
        const gaps = [{ from: 5, to: 8 }];
        assert.deepEqual(shape(sectionsOf([appeared(1, 'A'), disappeared(9, 'C'), appeared(9, 'B')], gaps, 12)), [[1, 5, 'A'], [8, 9, 'C'], [9, 12, 'B']]);
    });

    it('is found by its second, its end excluded', () => {
        const sections = sectionsOf([appeared(1, 'A'), appeared(4, 'B')], [], 10);
        assert.equal(sectionAt(sections, 4).name, 'B');
        assert.equal(sectionAt(sections, 0.5), null);
    });
});

describe('A quiet stretch', () => {
    const tap = (at) => ({ kind: 'tap', at });

    it('begins two seconds after one event and ends a second before the next', () => {
        assert.deepEqual(quietStretches([tap(1), tap(20)], 20), [{ from: 3, to: 19 }]);
    });

    it('is worth skipping only when it takes three seconds', () => {
        assert.deepEqual(quietStretches([tap(0), tap(5.9)], 6), []);
        assert.deepEqual(quietStretches([tap(0), tap(6)], 6), [{ from: 2, to: 5 }]);
    });

    it('may be at the beginning and at the end', () => {
        assert.deepEqual(quietStretches([tap(10)], 30), [{ from: 0, to: 9 }, { from: 12, to: 30 }]);
    });

    it('is not interrupted by what only the library said', () => {
        assert.deepEqual(quietStretches([tap(0), { kind: 'log', at: 8 }, tap(20)], 20), [{ from: 2, to: 19 }]);
    });
});
