// Intervals, and many of them.
import assert from 'node:assert/strict';
import { it } from 'node:test';

import { hull } from '../../../tools/receiver/web/intervals.js';

it('The hull holds all intervals, however many there are', () => {
    assert.deepEqual(hull([{ low: 1, high: 2 }]), { low: 1, high: 2 });
    assert.deepEqual(hull([{ low: 1, high: 2 }, { low: -3, high: 1 }, { low: 0, high: 5 }]), { low: -3, high: 5 });
    assert.deepEqual(hull(Array.from({ length: 300000 }, (_, at) => ({ low: at, high: at }))), { low: 0, high: 299999 });
});
