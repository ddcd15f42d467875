// What the receiver can be asked, and where its files are.
import { ApiFailure, request } from './request.js';

/**
 * A document that is asked for again and again: `read` answers its JSON, or null when it has not changed since the last
 * time that it was read whole.
 */
export class Resource {
    #path;
    #tag = null;

    constructor(path) {
        this.#path = path;
    }

    async read() {
        const { status, headers, text } = await request(this.#path, { headers: this.#tag === null ? {} : { 'If-None-Match': this.#tag } });
        if (status === 304) {
            return null;
        }
        const json = parsed(text);
        this.#tag = headers.get('ETag');
        return json;
    }
}

function parsed(text) {
    try {
        return JSON.parse(text);
    } catch {
        throw new ApiFailure('broken', 'its answer is no JSON');
    }
}

export function facetsResource() {
    return new Resource('/api/facets');
}

export function sessionResource(id) {
    return new Resource(`/api/sessions/${encodeURIComponent(id)}`);
}

export function videoAddress(id) {
    return `/api/sessions/${encodeURIComponent(id)}/video.mp4`;
}

export function timelineAddress(id) {
    return `/api/sessions/${encodeURIComponent(id)}/timeline.json`;
}

/** `filters` as in the page's address; `from` and `to` are days of the viewer, both of them included. */
export function listResource(filters, cursor, limit) {
    const query = new URLSearchParams({ limit });
    for (const name of ['text', 'project', 'screen', 'signal']) {
        if (filters[name]) {
            query.set(name, filters[name]);
        }
    }
    const from = startOfDay(filters.from, 0);
    const to = startOfDay(filters.to, 1);
    if (from !== null) {
        query.set('from', from);
    }
    if (to !== null) {
        query.set('to', to);
    }
    if (cursor) {
        query.set('cursor', cursor);
    }
    return new Resource(`/api/sessions?${query}`);
}

/** Midnight of "2025-11-21", `later` days on, in milliseconds; null when it is no day. */
export function startOfDay(day, later) {
    const match = /^(\d{4})-(\d{2})-(\d{2})$/.exec(day ?? '');
    if (!match) {
        return null;
    }
    const midnight = new Date(Number(match[1]), Number(match[2]) - 1, Number(match[3]) + later);
    return midnight.getTime();
}

// What changes something has to say that it comes from this page.
const changing = { 'X-Mireth-Request': '1' };

export async function deleteSession(id) {
    await request(`/api/sessions/${encodeURIComponent(id)}`, { method: 'DELETE', headers: changing });
}

/** Whether this receiver asks who is there: "none" if it does not, "needed", or "done". */
export async function viewer() {
    return (await new Resource('/api/viewer').read()).login;
}

/** The receiver has set its cookie when this returns. Fails as "unauthorised" for a wrong token, as "tooMany" after several. */
export async function logIn(token) {
    const headers = { ...changing, 'Content-Type': 'application/json' };
    await request('/login', { method: 'POST', headers, body: JSON.stringify({ token }) });
}

export async function logOut() {
    await request('/logout', { method: 'POST', headers: changing });
}
