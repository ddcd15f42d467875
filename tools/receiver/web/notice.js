// What the page says when there is nothing to show, or when something is broken.
import { el } from './dom.js';
import { sign } from './kinds.js';
import { ApiFailure } from './request.js';

/**
 * A heading under the sign of a kind, a few sentences (texts or elements), and what can be done: links as `{text, href}`,
 * buttons as `{text, act}`.
 */
export function notice(kind, title, sentences, actions = []) {
    return el('section', { class: 'notice' },
        sign(kind),
        el('h1', {}, title),
        ...sentences.map((sentence) => (typeof sentence === 'string' ? el('p', {}, sentence) : sentence)),
        actions.length > 0 && el('p', { class: 'actions' }, ...actions.map(({ text, href, act }) => href
            ? el('a', { href }, text)
            : el('button', { type: 'button', on: { click: act } }, text))));
}

/** Whether it was the page itself that failed, which asking once more does not mend. */
export function isOurs(failure) {
    return !(failure instanceof ApiFailure);
}

/** In words what a failure means for somebody who wanted to see `what`. */
export function failureNotice(failure, what, again) {
    const retry = { text: 'Try again', act: again };
    if (isOurs(failure)) {
        return notice('error', 'This page has failed',
            [`${what} cannot be shown: the page’s own program ran into “${failure.message}”. The receiver has answered; what it keeps is safe.`], [retry]);
    }
    if (failure.kind === 'unreachable') {
        return notice('error', 'The receiver does not answer',
            [`${what} cannot be loaded: the receiver is not running, or the network to it is down. This page keeps trying.`], [retry]);
    }
    if (failure.kind === 'missing') {
        return notice('dead', 'This session is not here',
            ['It may have been deleted, or removed because it was older than sessions are kept. Sessions that were never received have no address either.'],
            [{ text: 'All sessions', href: '/' }]);
    }
    return notice('error', 'Something is broken on the receiver',
        [`${what} cannot be loaded. The receiver’s own output says more; it called this “${failure.detail || 'an error'}”.`], [retry]);
}

/** The same in one sentence, for somebody who sees something already. */
export function troubleOf(failure) {
    if (isOurs(failure)) {
        return 'This page has failed.';
    }
    return failure.kind === 'unreachable' ? 'The receiver does not answer.' : 'The receiver has trouble.';
}

/** Between header and content: what went wrong while older data is still shown. */
export function strip() {
    const text = el('p', { class: 'strip', role: 'status', hidden: true });
    return {
        element: text,
        say(message) {
            text.hidden = message === '';
            text.textContent = message;
        },
    };
}
