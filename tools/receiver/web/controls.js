// The buttons below the video. They only say what is wanted; the replay does it.
import { el, setText } from './dom.js';
import { clockTime } from './format.js';
import { icon } from './kinds.js';

export const rates = [0.5, 1, 2, 4, 8];

export class Controls {
    #play = el('button', { type: 'button', class: 'play primary' });
    #time = el('span', { class: 'now' });
    #length = el('span', { class: 'faint' });
    #screen = el('bdi', { class: 'screen-name' });
    #rate = el('select', { id: 'rate', 'aria-label': 'Speed' }, rates.map((rate) => el('option', { value: rate }, `${rate}×`)));
    #said = el('span', { class: 'said faint', role: 'status' });
    #skip = el('input', { type: 'checkbox', id: 'skip' });
    element;

    /** `act` gets what is wanted: "toggle", "frameBack", "frameForward", "previous", "next", "link", "help"; `setRate`, `setSkip` the rest. */
    constructor({ act, setRate, setSkip }) {
        this.#play.addEventListener('click', () => act('toggle'));
        this.#rate.addEventListener('change', () => setRate(Number(this.#rate.value)));
        this.#skip.addEventListener('change', () => setSkip(this.#skip.checked));
        const button = (name, label, keys) => el('button',
            { type: 'button', title: `${label} (${keys})`, 'aria-label': label, on: { click: () => act(name) } }, icon(drawings[name]));
        this.element = el('div', { class: 'controls', role: 'group', 'aria-label': 'Playing' },
            el('div', { class: 'buttons' },
                button('previous', 'Previous signal', 'P'), button('frameBack', 'Frame back', ','), this.#play,
                button('frameForward', 'Frame forward', '.'), button('next', 'Next signal', 'N')),
            el('div', { class: 'position' }, this.#time, ' ', this.#length, this.#screen),
            el('div', { class: 'options' }, this.#said,
                el('label', { class: 'check', title: 'Jump over stretches in which nobody did anything (S)' }, this.#skip, 'Skip inactivity'),
                this.#rate,
                el('button', { type: 'button', class: 'quiet', on: { click: () => act('link') } }, 'Copy link'),
                el('button', { type: 'button', class: 'quiet', 'aria-label': 'Keys', title: 'Keys (?)', on: { click: () => act('help') } }, '?')));
        this.render({ playing: false, time: 0, length: 0, screen: '' });
    }

    set rate(rate) {
        this.#rate.value = String(rate);
    }

    set skip(skip) {
        this.#skip.checked = skip;
    }

    /** Says a short thing, for a moment. */
    say(text) {
        this.#said.textContent = text;
        setTimeout(() => setText(this.#said, ''), 4000);
    }

    render({ playing, time, length, screen }) {
        const drawing = playing ? 'pause' : 'play';
        if (this.#play.dataset.drawing !== drawing) {
            this.#play.dataset.drawing = drawing;
            this.#play.setAttribute('aria-label', playing ? 'Pause' : 'Play');
            this.#play.setAttribute('title', playing ? 'Pause (Space)' : 'Play (Space)');
            this.#play.replaceChildren(icon(drawing));
        }
        setText(this.#time, clockTime(time, true));
        setText(this.#length, `/ ${clockTime(length, true)}`);
        setText(this.#screen, screen);
    }
}

const drawings = { previous: 'previous', frameBack: 'back', frameForward: 'forward', next: 'next' };
