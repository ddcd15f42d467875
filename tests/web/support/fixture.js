// What most of the browser's tests stand on: a receiver with one recorded session, and a browser.
import { after, afterEach, before } from 'node:test';
import { launch, openPage } from './browser.js';
import { closeSession, createSession, uploadChunk, videoOf } from './client.js';
import { record, startReceiver } from './programs.js';

/**
 * Begins before the file's tests and ends after them. `open` is openPage on its receiver. Without `recorded` it is empty;
 * for `strangers` it asks for tokens.
 */
export function useReceiver({ recorded = true, strangers = false } = {}) {
    const fixture = {};
    before(async () => {
        [fixture.receiver, fixture.browser] = await Promise.all([startReceiver({ strangers }), launch()]);
        if (recorded) {
            fixture.session = await record(fixture.receiver, 'colours');
        }
    });
    after(async () => {
        await fixture.browser?.close();
        await fixture.receiver?.stop();
    });
    // Pages go on asking the receiver for as long as they are open.
    afterEach(() => Promise.all((fixture.browser?.contexts() ?? []).map((context) => context.close())));
    fixture.open = (path, options) => openPage(fixture.browser, fixture.receiver.origin, path, options);
    fixture.openReplay = (hash = '', options = {}) => fixture.open(`/sessions/${fixture.session}${hash}`, options);
    /** A session of its own from `chunks`: [{number, events}]; its pictures are the recorded session's. */
    fixture.seed = async (chunks, { close = true } = {}) => {
        const { origin } = fixture.receiver;
        const id = await createSession(origin);
        for (const { number, events } of chunks) {
            await uploadChunk(origin, id, number, events, await videoOf(origin, fixture.session, number % 2));
        }
        if (close) {
            await closeSession(origin, id);
        }
        return id;
    };
    fixture.end = (session) => closeSession(fixture.receiver.origin, session);
    return fixture;
}
