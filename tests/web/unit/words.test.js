// How times, sizes and addresses read.
import assert from 'node:assert/strict';
import { describe, it } from 'node:test';

process.env.TZ = 'Europe/Berlin';
const { bytes, clockTime, counted, spokenTime, when } = await import('../../../tools/receiver/web/format.js');
const { entryOf, hashAt, listAddress, readAddress, replayAddress, secondOf } = await import('../../../tools/receiver/web/address.js');
const { startOfDay } = await import('../../../tools/receiver/web/api.js');

describe('Times', () => {
    it('of a replay read as on a player', () => {
        assert.equal(clockTime(0), '0:00');
        assert.equal(clockTime(65.9), '1:05');
        assert.equal(clockTime(3725), '1:02:05');
        assert.equal(clockTime(12.34, true), '0:12.3');
        assert.equal(clockTime(-3), '0:00');
    });

    it('are not a tenth short because a number is not exact', () => {
        assert.equal(clockTime(4.3 - 1e-12, true), '0:04.3');
    });

    it('are spoken in words', () => {
        assert.equal(spokenTime(0), '0 seconds');
        assert.equal(spokenTime(61), '1 minute 1 second');
        assert.equal(spokenTime(7200), '2 hours');
    });

    it('of day are near when they are near', () => {
        const now = new Date(2025, 10, 21, 15, 0).getTime();
        assert.equal(when(new Date(2025, 10, 21, 9, 5).getTime(), now), 'Today 09:05');
        assert.equal(when(new Date(2025, 10, 20, 23, 59).getTime(), now), 'Yesterday 23:59');
        assert.equal(when(new Date(2025, 2, 3, 8, 0).getTime(), now), '3 Mar 08:00');
        assert.equal(when(new Date(2024, 10, 21, 8, 0).getTime(), now), '21 Nov 2024 08:00');
    });

    it('of a day begin at the viewer’s midnight, also where a day has 23 hours', () => {
        assert.equal(startOfDay('2025-03-30', 1) - startOfDay('2025-03-30', 0), 23 * 3600 * 1000);
        assert.equal(startOfDay('', 0), null);
        assert.equal(startOfDay('yesterday', 0), null);
    });
});

it('Sizes have three digits at most', () => {
    assert.deepEqual([0, 999, 1000, 14234, 999499, 2.7e6, 1.5e12].map(bytes), ['0 B', '999 B', '1.0 kB', '14.2 kB', '999 kB', '2.7 MB', '1.5 TB']);
});

it('One thing is one thing', () => {
    assert.deepEqual([0, 1, 1204].map((count) => counted(count, 'session')), ['0 sessions', '1 session', '1,204 sessions']);
});

describe('Addresses', () => {
    it('of a replay carry the session and the second', () => {
        const address = new URL(`http://h${replayAddress('a.b-c_1')}${hashAt(12.3456)}`);
        assert.equal(readAddress(address).session, 'a.b-c_1');
        assert.equal(secondOf(address.hash), 12.346);
        assert.equal(entryOf(address.hash), null);
    });

    it('of a replay bring back every millisecond, and the entry that was chosen there', () => {
        for (const millis of [0, 1, 999, 13230, 1799999]) {
            assert.equal(secondOf(hashAt(millis / 1000)), millis / 1000);
        }
        assert.equal(secondOf(hashAt(5, 'e1.4')), 5);
        assert.equal(entryOf(hashAt(5, 'e1.4')), 'e1.4');
    });

    it('with nonsense for a second open at the beginning', () => {
        for (const hash of ['', '#', '#t=', '#t=abc', '#t=-3', '#t=Infinity', '#other']) {
            assert.equal(secondOf(hash), null, hash);
        }
    });

    it('of the list carry its filters, and only those', () => {
        const filters = { text: 'a&b=c', signal: 'rageTap' };
        assert.deepEqual(readAddress(new URL(`http://h${listAddress(filters)}`)), { session: null, filters });
        assert.deepEqual(readAddress(new URL('http://h/?evil=1')).filters, {});
        assert.equal(listAddress({}), '/');
    });

    it('with a broken escape do not break the page', () => {
        assert.equal(readAddress(new URL('http://h/sessions/%E0%A4%A')).session, '%E0%A4%A');
    });
});
