// One request to the receiver. Every failure is an ApiFailure whose `kind` the page has words for.

/** So long without a word, and the receiver does not answer. A long answer over a slow line may take longer altogether. */
export const silenceMillis = 20000;

export class ApiFailure extends Error {
    /** `kind`: "unreachable", "unauthorised", "missing", "tooMany" or "broken"; `detail` is the receiver's own word, if any. */
    constructor(kind, detail = '') {
        super(`${kind} ${detail}`.trim());
        this.kind = kind;
        this.detail = detail;
    }
}

const kindOfStatus = new Map([[401, 'unauthorised'], [404, 'missing'], [429, 'tooMany']]);

/** `{status, headers, text}` of an answer that is no refusal; `options` as for fetch. */
export async function request(path, options = {}) {
    const answer = await read(path, options);
    if ((answer.status >= 200 && answer.status < 300) || answer.status === 304) {
        return answer;
    }
    throw new ApiFailure(kindOfStatus.get(answer.status) ?? 'broken', wordOf(answer));
}

async function read(path, options) {
    const patience = new AbortController();
    let timer;
    const heard = () => {
        clearTimeout(timer);
        timer = setTimeout(() => patience.abort(), silenceMillis);
    };
    heard();
    try {
        const response = await fetch(path, { cache: 'no-store', credentials: 'same-origin', ...options, signal: patience.signal });
        const { status, headers } = response;
        return { status, headers, text: await textOf(response.body, heard) };
    } catch {
        throw new ApiFailure('unreachable');
    } finally {
        clearTimeout(timer);
    }
}

// `heard` is called for every piece that arrives.
async function textOf(body, heard) {
    if (body === null) {
        return '';
    }
    const reader = body.getReader();
    const decoder = new TextDecoder();
    let text = '';
    for (;;) {
        const { done, value } = await reader.read();
        heard();
        if (done) {
            return text + decoder.decode();
        }
        text += decoder.decode(value, { stream: true });
    }
}

function wordOf({ status, text }) {
    try {
        const { error } = JSON.parse(text);
        return typeof error === 'string' ? error : `${status}`;
    } catch {
        return `${status}`;
    }
}
