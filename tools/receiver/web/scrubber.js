// The whole session on one line: shows where the replay is, and goes where it is pressed, dragged or told to.
import { el, setText } from './dom.js';
import { clockTime, spokenTime } from './format.js';
import { sectionAt } from './sections.js';
import { Track, percentOf } from './track.js';

export class Scrubber {
    #model = null;
    #track = new Track();
    #played = el('div', { class: 'played' });
    #tip = el('div', { class: 'tip', 'aria-hidden': 'true', hidden: true });
    #slider = el('div', { class: 'scrubber', role: 'slider', tabindex: 0, 'aria-label': 'Position', 'aria-valuemin': 0, 'aria-orientation': 'horizontal' },
        this.#track.element, this.#played, this.#tip);
    #onSeek;
    #onDrag;
    element = el('div', { class: 'timeline' }, this.#track.legend, this.#slider);

    /** `onSeek` gets seconds; `onDrag` true when a drag begins and false when it ends. */
    constructor(onSeek, onDrag) {
        this.#onSeek = onSeek;
        this.#onDrag = onDrag;
        const slider = this.#slider;
        slider.addEventListener('pointerdown', (event) => this.#press(event));
        slider.addEventListener('pointermove', (event) => this.#move(event));
        slider.addEventListener('pointerleave', () => { this.#tip.hidden = true; });
        for (const end of ['pointerup', 'pointercancel']) {
            slider.addEventListener(end, (event) => this.#release(event));
        }
    }

    show(model) {
        this.#model = model;
        this.#slider.setAttribute('aria-valuemax', String(Math.round(model.length)));
        this.#track.show(model);
    }

    render(seconds) {
        const { length, sections } = this.#model;
        this.#played.style.left = percentOf(seconds, length);
        const rounded = String(Math.round(seconds));
        if (this.#slider.getAttribute('aria-valuenow') !== rounded) {
            const section = sectionAt(sections, seconds);
            this.#slider.setAttribute('aria-valuenow', rounded);
            this.#slider.setAttribute('aria-valuetext', `${spokenTime(seconds)} of ${spokenTime(length)}${section ? `, ${section.name}` : ''}`);
        }
    }

    #secondsAt(event) {
        const box = this.#slider.getBoundingClientRect();
        return Math.min(Math.max((event.clientX - box.left) / box.width, 0), 1) * (this.#model?.length ?? 0);
    }

    #press(event) {
        if (event.button === 0) {
            this.#slider.setPointerCapture(event.pointerId);
            this.#onDrag(true);
            this.#onSeek(this.#secondsAt(event));
        }
    }

    #move(event) {
        const seconds = this.#secondsAt(event);
        this.#showTip(seconds);
        if (this.#slider.hasPointerCapture(event.pointerId)) {
            this.#onSeek(seconds);
        }
    }

    #release(event) {
        if (this.#slider.hasPointerCapture(event.pointerId)) {
            this.#slider.releasePointerCapture(event.pointerId);
            this.#onDrag(false);
        }
        if (event.pointerType !== 'mouse') {
            this.#tip.hidden = true;
        }
    }

    #showTip(seconds) {
        if (this.#model === null) {
            return;
        }
        const { length, sections } = this.#model;
        const words = [clockTime(seconds, true), ...this.#track.wordsAt(seconds), sectionAt(sections, seconds)?.name];
        setText(this.#tip, words.filter(Boolean).join(' · '));
        this.#tip.hidden = false;
        this.#tip.style.left = percentOf(seconds, length);
        this.#tip.classList.toggle('to-left', seconds > length / 2);
    }
}
