// The phone's picture: the reel, the marks on it, and words where there is no picture.
import { el, setText } from './dom.js';
import { Overlay } from './overlay.js';
import { Reel } from './reel.js';

/** Loading that takes less is not worth a word. */
const patience = 400;

export class Stage {
    #words = el('p', { class: 'stage-words' });
    #failed = false;
    #gaps = [];
    #waitingSince = null;
    overlay = new Overlay();
    phone = el('div', { class: 'phone' }, this.#words, this.overlay.element);
    element = el('section', { class: 'stage', 'aria-label': 'Video' }, this.phone);
    reel = new Reel(this.phone, () => { this.#failed = true; });

    show(model) {
        this.#gaps = model.gaps;
        this.reel.show(model.chunks, model.length);
        this.overlay.entries = model.entries;
    }

    render(now) {
        const { time, waiting } = this.reel;
        this.#waitingSince = waiting ? (this.#waitingSince ?? now) : null;
        const slow = waiting && now - this.#waitingSince > patience;
        this.phone.classList.toggle('slow', slow);
        setText(this.#words, this.#wordsFor(time, slow));
        this.overlay.render(time);
    }

    #wordsFor(time, slow) {
        if (slow) {
            return 'Loading';
        }
        if (this.reel.chunk !== null) {
            return '';
        }
        const gap = this.#gaps.find((each) => each.from <= time && time < each.to);
        if (gap && gap.first !== null) {
            return gap.first === gap.last ? `Chunk ${gap.first} never arrived` : `Chunks ${gap.first} to ${gap.last} never arrived`;
        }
        if (gap) {
            return 'No frames were recorded here';
        }
        return this.#failed ? 'This part cannot be played' : '';
    }
}
