// Switches that show and hide entries by kind.
import { el, setText } from './dom.js';

const groups = [
    ['Taps', ['tap']],
    ['Signals', ['rage', 'dead', 'error']],
    ['Screens', ['screen']],
    ['Notes', ['note']],
    ['Log', ['log']],
];

export class KindChips {
    #hidden = new Set();
    #onChange;
    #chips = groups.map(([label, members]) => this.#chip(label, members));
    element = el('div', { class: 'chips', role: 'group', 'aria-label': 'Kinds shown' }, this.#chips.map(({ chip }) => chip));

    /** `onChange` is called when other kinds are to be seen. */
    constructor(onChange) {
        this.#onChange = onChange;
    }

    /** Offers the kinds that there are among `entries`. */
    show(entries) {
        for (const { chip, count, members } of this.#chips) {
            const found = entries.filter((entry) => members.includes(entry.kind)).length;
            setText(count, String(found));
            chip.hidden = found === 0;
        }
    }

    hides(kind) {
        return this.#hidden.has(kind);
    }

    #chip(label, members) {
        const count = el('span');
        const chip = el('button', { type: 'button', class: 'chip', 'aria-pressed': 'true', hidden: true }, `${label} `, count);
        chip.addEventListener('click', () => {
            const show = this.#hidden.has(members[0]);
            members.forEach((kind) => (show ? this.#hidden.delete(kind) : this.#hidden.add(kind)));
            chip.setAttribute('aria-pressed', String(show));
            this.#onChange();
        });
        return { chip, count, members };
    }
}
