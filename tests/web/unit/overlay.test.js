// Which marks are to be seen on the video at a second.
import assert from 'node:assert/strict';
import { it } from 'node:test';

import { marksAt, marksFor } from '../../../tools/receiver/web/overlay.js';

const tap = (at, spread = null) => ({ id: 't', at, spread, point: { x: 0.5, y: 0.5 } });

it('A mark stays for a moment and ages meanwhile', () => {
    assert.deepEqual(marksAt([tap(5)], 4.99), []);
    assert.equal(marksAt([tap(5)], 5)[0].age, 0);
    assert.ok(marksAt([tap(5)], 5 + marksFor - 0.01)[0].age > 0.98);
    assert.deepEqual(marksAt([tap(5)], 5 + marksFor), []);
});

it('A mark that is uncertain stays for as long as it may have been', () => {
    const vague = tap(5, { low: 3, high: 7 });
    assert.equal(marksAt([vague], 3)[0].age, 0);
    assert.equal(marksAt([vague], 6.9)[0].age, 0);
    assert.deepEqual(marksAt([vague], 7 + marksFor), []);
});

it('What happened nowhere has no mark', () => {
    assert.deepEqual(marksAt([{ id: 's', at: 5, spread: null, point: null }], 5), []);
});
