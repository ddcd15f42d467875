// One line of the list of what happened.
import { el, foreign } from './dom.js';
import { clockTime } from './format.js';
import { kinds, sign } from './kinds.js';

/** A list item for `entry`; its button calls `choose`. */
export function eventRow(entry, choose) {
    return row(entry, el('button', { type: 'button', tabindex: -1, on: { click: choose } },
        el('span', { class: 'at' }, clockTime(entry.at, true)), ...wordsWithSign(entry)));
}

/** One for an entry that has no place in any video. */
export function placelessRow(entry) {
    return row(entry, el('div', { class: 'placeless' }, ...wordsWithSign(entry)));
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

function wordsWithSign(entry) {
    return [sign(entry.kind), el('span', { class: 'what' }, ...wordsOf(entry))];
}

function wordsOf(entry) {
    const words = [el('span', { class: 'title' }, foreign(entry.title))];
    if (entry.kind === 'screen' || entry.kind === 'log') {
        words.unshift(el('span', { class: 'unseen' }, `${kinds[entry.kind].name}: `));
    }
    if (entry.text) {
        words.push(' ', foreign(entry.text, { class: 'text' }));
    }
    if (entry.spread) {
        words.push(' ', spread(entry.spread));
    }
    return words;
}

function spread({ low, high }) {
    const range = `Between ${clockTime(low, true)} and ${clockTime(high, true)}: a touch is timed by another clock than the video`;
    return el('span', { class: 'spread', title: range }, `± ${((high - low) / 2).toFixed(1)} s`);
}
