// Says of a session whether more of it is coming.
import { el } from './dom.js';

/** A client sends a chunk every ten seconds; one that has been silent for longer than this has most likely gone. */
const silence = 60000;

/** A sign for a session that was not closed, or null. */
export function liveSign(session, now = Date.now()) {
    if (session.state !== 'open') {
        return null;
    }
    return now - session.lastMillis < silence
        ? el('span', { class: 'live' }, 'live')
        : el('span', { class: 'unclosed', title: 'The client never closed this session; it may have ended abruptly.' }, 'not closed');
}
