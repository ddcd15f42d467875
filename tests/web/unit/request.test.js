// Asking the receiver: what each failure is called, and how long its silence is borne.
import assert from 'node:assert/strict';
import { afterEach, beforeEach, describe, it, mock } from 'node:test';

import { ApiFailure, request, silenceMillis } from '../../../tools/receiver/web/request.js';

const realFetch = globalThis.fetch;

beforeEach(() => mock.timers.enable({ apis: ['setTimeout'] }));
afterEach(() => {
    mock.timers.reset();
    globalThis.fetch = realFetch;
});

// Lets everything that waits for no timer happen.
const settle = () => new Promise((resolve) => { setImmediate(resolve); });

function answering(body, init) {
    globalThis.fetch = async () => new Response(body, init);
}

// A receiver that sends `pieces`, one whenever `next` is called, and nothing on its own.
function trickling(pieces) {
    const encoder = new TextEncoder();
    const receiver = {};
    globalThis.fetch = async (path, { signal }) => new Response(new ReadableStream({
        start(controller) {
            signal.addEventListener('abort', () => controller.error(signal.reason));
            receiver.next = () => {
                const piece = pieces.shift();
                if (piece === undefined) {
                    controller.close();
                } else {
                    controller.enqueue(encoder.encode(piece));
                }
            };
            receiver.cut = () => controller.error(new TypeError('network error'));
        },
    }));
    return receiver;
}

const isKind = (kind) => (failure) => failure instanceof ApiFailure && failure.kind === kind;

describe('An answer', () => {
    it('is given with its head and its text', async () => {
        answering('{"a":"ü"}', { headers: { ETag: '"7"' } });
        const { status, headers, text } = await request('/x');
        assert.deepEqual([status, headers.get('ETag'), text], [200, '"7"', '{"a":"ü"}']);
    });

    it('that nothing changed is no failure', async () => {
        answering(null, { status: 304 });
        assert.equal((await request('/x')).status, 304);
    });

    it('that refuses is a failure with the receiver’s word for it', async () => {
        for (const [status, kind] of [[401, 'unauthorised'], [404, 'missing'], [429, 'tooMany'], [500, 'broken']]) {
            answering('{"error":"no"}', { status });
            await assert.rejects(request('/x'), (failure) => isKind(kind)(failure) && failure.detail === 'no');
        }
        answering('<html>', { status: 502 });
        await assert.rejects(request('/x'), (failure) => isKind('broken')(failure) && failure.detail === '502');
    });
});

describe('A receiver', () => {
    it('that cannot be reached does not answer', async () => {
        globalThis.fetch = async () => { throw new TypeError('Failed to fetch'); };
        await assert.rejects(request('/x'), isKind('unreachable'));
    });

    it('that says nothing at all is given up', async () => {
        globalThis.fetch = (path, { signal }) => new Promise((resolve, reject) => { signal.addEventListener('abort', () => reject(signal.reason)); });
        const asking = assert.rejects(request('/x'), isKind('unreachable'));
        mock.timers.tick(silenceMillis);
        await asking;
    });

    it('that falls silent in the middle of its answer is given up', async () => {
        const receiver = trickling(['{"a":']);
        const asking = assert.rejects(request('/x'), isKind('unreachable'));
        await settle();
        receiver.next();
        await settle();
        mock.timers.tick(silenceMillis);
        await asking;
    });

    it('that is cut off in the middle of its answer does not answer', async () => {
        const receiver = trickling(['{"a":']);
        const asking = assert.rejects(request('/x'), isKind('unreachable'));
        await settle();
        receiver.cut();
        await asking;
    });

    it('that is slow but goes on is waited for', async () => {
        const receiver = trickling(['[1', ',2', ',3', ']']);
        const asking = request('/x');
        for (let piece = 0; piece < 5; ++piece) {
            await settle();
            mock.timers.tick(silenceMillis - 1);
            receiver.next();
        }
        assert.equal((await asking).text, '[1,2,3]');
    });
});
