// The page's own addresses: "/" is the list, its filters are in the query; "/sessions/ID#t=SECONDS" is a replay
// at that second; "&entry=ID" says which of the entries at one instant is meant.

export const filterNames = ['text', 'project', 'screen', 'signal', 'from', 'to'];

/** `{session, filters}`; `session` is null on the list. */
export function readAddress(location) {
    const query = new URLSearchParams(location.search);
    const filters = {};
    for (const name of filterNames) {
        const value = query.get(name);
        if (value) {
            filters[name] = value;
        }
    }
    const match = /^\/sessions\/([^/]+)\/?$/.exec(location.pathname);
    return { session: match ? decoded(match[1]) : null, filters };
}

function decoded(segment) {
    try {
        return decodeURIComponent(segment);
    } catch {
        return segment;
    }
}

/** The seconds of "#t=12.5", or null. */
export function secondOf(hash) {
    const value = itemsOf(hash).get('t');
    const seconds = value === null || value === '' ? NaN : Number(value);
    return Number.isFinite(seconds) && seconds >= 0 ? seconds : null;
}

/** The entry of "#t=12.5&entry=e1.4", or null. */
export function entryOf(hash) {
    return itemsOf(hash).get('entry');
}

function itemsOf(hash) {
    return new URLSearchParams(hash.replace(/^#/, ''));
}

export function hashAt(seconds, entry = null) {
    const second = `#t=${Math.round(seconds * 1000) / 1000}`;
    return entry === null ? second : `${second}&entry=${encodeURIComponent(entry)}`;
}

export function replayAddress(id) {
    return `/sessions/${encodeURIComponent(id)}`;
}

export function listAddress(filters) {
    const query = new URLSearchParams();
    for (const name of filterNames) {
        if (filters[name]) {
            query.set(name, filters[name]);
        }
    }
    const text = query.toString();
    return text === '' ? '/' : `/?${text}`;
}
