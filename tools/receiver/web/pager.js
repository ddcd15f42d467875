// Which part of the list is shown, and the way to its neighbours.
import { el, setText } from './dom.js';

export class Pager {
    #newer = this.#button('Newer');
    #older = this.#button('Older');
    #range = el('span');
    #acts = new Map();
    element = el('nav', { class: 'pager', 'aria-label': 'Pages' }, this.#newer, this.#range, this.#older);

    /** `newer` and `older` are called to turn the page; null where there is none. One page alone needs no pager. */
    show(range, newer, older) {
        setText(this.#range, range);
        this.element.hidden = newer === null && older === null;
        for (const [button, act] of [[this.#newer, newer], [this.#older, older]]) {
            this.#acts.set(button, act);
            button.disabled = act === null;
        }
    }

    #button(text) {
        const button = el('button', { type: 'button' }, text);
        button.addEventListener('click', () => this.#acts.get(button)());
        return button;
    }
}
