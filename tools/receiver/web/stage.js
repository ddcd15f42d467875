// The phone's picture: the reel, the marks on it, and words where there is no picture.
import { el, setText } from './dom.js';
import { wordsOfGap } from './film.js';
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
    reel;

    /** `onPress` is called when the picture is pressed, `onFailure` when a chunk cannot be played. */
    constructor({ onPress, onFailure }) {
        this.reel = new Reel(this.phone, () => {
            this.#failed = true;
            onFailure();
        });
        this.phone.addEventListener('click', onPress);
    }

    /** Puts `film` on screen at `seconds`, or where it stands. */
    show(film, seconds = this.reel.time) {
        this.#gaps = film.gaps;
        this.reel.show(film, seconds);
    }

    render(now) {
        const { time, waiting } = this.reel;
        this.#waitingSince = waiting ? (this.#waitingSince ?? now) : null;
        this.phone.setAttribute('aria-busy', String(waiting));
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
        if (gap) {
            return wordsOfGap(gap);
        }
        return this.#failed ? 'This part cannot be played' : '';
    }
}
