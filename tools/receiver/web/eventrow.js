// One line of the list of what happened.
import { el, foreign, setText } from './dom.js';
import { clockTime } from './format.js';
import { kinds, sign } from './kinds.js';

export class EventRow {
    #at = el('span', { class: 'at' });
    #spread = el('span', { class: 'spread' });
    #entry;
    button;
    element;

    /** `choose` gets the entry when its button is pressed. */
    constructor(entry, choose) {
        this.button = el('button', { type: 'button', tabindex: -1, on: { click: () => choose(this.#entry) } },
            this.#at, sign(entry.kind), el('span', { class: 'what' }, ...wordsOf(entry), ' ', this.#spread));
        this.element = row(entry, this.button);
        this.entry = entry;
    }

    get entry() {
        return this.#entry;
    }

    /** The same entry: what is recorded later may tell more of when it was, and of nothing else. */
    set entry(entry) {
        this.#entry = entry;
        setText(this.#at, clockTime(entry.at, true));
        this.#spread.hidden = entry.spread === null;
        if (entry.spread !== null) {
            const { low, high } = entry.spread;
            setText(this.#spread, `± ${((high - low) / 2).toFixed(1)} s`);
            this.#spread.title = `Between ${clockTime(low, true)} and ${clockTime(high, true)}: a touch is timed by another clock than the video`;
        }
    }
}

/** A list item for an entry that has no place in any video. */
export function placelessRow(entry) {
    return row(entry, el('div', { class: 'placeless' }, sign(entry.kind), el('span', { class: 'what' }, ...wordsOf(entry))));
}

function row(entry, content) {
    const classes = ['entry', entry.kind, entry.level === 'error' && 'failed'].filter(Boolean).join(' ');
    const item = el('li', { class: classes, 'data-entry': entry.id }, content);
    const fields = Object.entries(entry.fields ?? {});
    if (fields.length > 0) {
        item.append(el('details', {}, el('summary', {}, 'Fields'), el('dl', {}, fields.flatMap(([name, value]) => [
            el('dt', {}, foreign(name)), el('dd', {}, foreign(typeof value === 'string' ? value : JSON.stringify(value)))]))));
    }
    return item;
}

function wordsOf(entry) {
    const words = [el('span', { class: 'title' }, foreign(entry.title))];
    if (entry.kind === 'screen' || entry.kind === 'log') {
        words.unshift(el('span', { class: 'unseen' }, `${kinds[entry.kind].name}: `));
    }
    if (entry.text) {
        words.push(' ', foreign(entry.text, { class: 'text' }));
    }
    return words;
}
