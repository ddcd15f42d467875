// Switches that show and hide entries by kind.
import { el } from './dom.js';

const groups = [
    ['Taps', ['tap']],
    ['Signals', ['rage', 'dead', 'error']],
    ['Screens', ['screen', 'note']],
    ['Log', ['log']],
];

export class KindChips {
    #hidden = new Set();
    #onChange;
    element = el('div', { class: 'chips', role: 'group', 'aria-label': 'Kinds shown' });

    /** `onChange` is called when other kinds are to be seen. */
    constructor(onChange) {
        this.#onChange = onChange;
    }

    /** Offers the kinds that there are among `entries`. */
    show(entries) {
        this.element.replaceChildren(...groups.map(([label, members]) => {
            const count = entries.filter((entry) => members.includes(entry.kind)).length;
            return count > 0 && this.#chip(label, members, count);
        }).filter(Boolean));
    }

    hides(kind) {
        return this.#hidden.has(kind);
    }

    #chip(label, members, count) {
        const chip = el('button', { type: 'button', class: 'chip', 'aria-pressed': String(!this.#hidden.has(members[0])) }, `${label} `, el('span', {}, String(count)));
        chip.addEventListener('click', () => {
            const show = this.#hidden.has(members[0]);
            members.forEach((kind) => (show ? this.#hidden.delete(kind) : this.#hidden.add(kind)));
            chip.setAttribute('aria-pressed', String(show));
            this.#onChange();
        });
        return chip;
    }
}
