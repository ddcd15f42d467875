// The whole session on one line: screens as sections, gaps, what happened as markers, and where the replay is.
import { el, setText } from './dom.js';
import { clockTime, spokenTime } from './format.js';
import { kinds } from './kinds.js';
import { sectionAt } from './sections.js';

/** Markers of a kind closer together than this part of the line are drawn as one. */
const finest = 1 / 800;
/** A section that takes less of the line has no room for its name. */
const readable = 0.025;
const lanes = ['error', 'rage', 'dead', 'tap', 'log'];
const tintCount = 4;

export class Scrubber {
    #sections = el('div', { class: 'sections', 'aria-hidden': 'true' });
    #gaps = el('div', { class: 'gaps', 'aria-hidden': 'true' });
    #markers = el('div', { class: 'markers', 'aria-hidden': 'true' });
    #played = el('div', { class: 'played' });
    #tip = el('div', { class: 'tip', 'aria-hidden': 'true', hidden: true });
    element = el('div', { class: 'scrubber', role: 'slider', tabindex: 0, 'aria-label': 'Position', 'aria-valuemin': 0, 'aria-orientation': 'horizontal' },
        this.#sections, this.#gaps, this.#markers, this.#played, this.#tip);
    #model = null;
    #onSeek;
    #onDrag;

    /** `onSeek` gets seconds; `onDrag` true when a drag begins and false when it ends. */
    constructor(onSeek, onDrag) {
        this.#onSeek = onSeek;
        this.#onDrag = onDrag;
        this.element.addEventListener('pointerdown', (event) => this.#press(event));
        this.element.addEventListener('pointermove', (event) => this.#move(event));
        this.element.addEventListener('pointerleave', () => { this.#tip.hidden = true; });
        for (const end of ['pointerup', 'pointercancel']) {
            this.element.addEventListener(end, (event) => this.#release(event));
        }
    }

    show(model) {
        this.#model = model;
        this.element.setAttribute('aria-valuemax', String(Math.round(model.length)));
        const tint = tintOf(model.sections);
        const visible = model.sections.filter((section) => section.to - section.from >= finest * model.length);
        this.#sections.replaceChildren(...visible.map((section) => this.#across(section, 'section', tint.get(section.name), this.#nameOf(section))));
        this.#gaps.replaceChildren(...model.gaps.map((gap) => this.#across(gap, 'gap', null)));
        this.#markers.replaceChildren(...this.#spreads(), ...lanes.flatMap((kind) => this.#lane(kind)));
    }

    render(seconds) {
        const { length, sections } = this.#model;
        this.#played.style.left = percent(seconds, length);
        const rounded = String(Math.round(seconds));
        if (this.element.getAttribute('aria-valuenow') !== rounded) {
            const section = sectionAt(sections, seconds);
            this.element.setAttribute('aria-valuenow', rounded);
            this.element.setAttribute('aria-valuetext', `${spokenTime(seconds)} of ${spokenTime(length)}${section ? `, ${section.name}` : ''}`);
        }
    }

    #across({ from, to }, kind, tint, ...children) {
        const node = el('div', { class: kind, 'data-tint': tint }, ...children);
        node.style.left = percent(from, this.#model.length);
        node.style.width = percent(to - from, this.#model.length);
        return node;
    }

    #nameOf(section) {
        return section.to - section.from >= readable * this.#model.length && el('bdi', {}, section.name);
    }

    #lane(kind) {
        return this.#apart(this.#model.entries.filter((entry) => entry.kind === kind)).map((entry) => {
            const node = el('div', { class: `marker ${kind}` });
            node.style.left = percent(entry.at, this.#model.length);
            return node;
        });
    }

    #spreads() {
        return this.#apart(this.#model.entries.filter((entry) => entry.spread !== null))
            .map(({ spread }) => this.#across({ from: spread.low, to: spread.high }, 'spread', null));
    }

    // Those of `entries` that are far enough from the one before to be seen for themselves.
    #apart(entries) {
        let last = -Infinity;
        return entries.filter((entry) => {
            const seen = entry.at - last >= finest * this.#model.length;
            last = seen ? entry.at : last;
            return seen;
        });
    }

    #secondsAt(event) {
        const box = this.element.getBoundingClientRect();
        return Math.min(Math.max((event.clientX - box.left) / box.width, 0), 1) * this.#model.length;
    }

    #press(event) {
        if (event.button === 0) {
            this.element.setPointerCapture(event.pointerId);
            this.#onDrag(true);
            this.#onSeek(this.#secondsAt(event));
        }
    }

    #move(event) {
        const seconds = this.#secondsAt(event);
        this.#showTip(seconds);
        if (this.element.hasPointerCapture(event.pointerId)) {
            this.#onSeek(seconds);
        }
    }

    #release(event) {
        if (this.element.hasPointerCapture(event.pointerId)) {
            this.element.releasePointerCapture(event.pointerId);
            this.#onDrag(false);
        }
        if (event.pointerType !== 'mouse') {
            this.#tip.hidden = true;
        }
    }

    #showTip(seconds) {
        const { length, sections, entries } = this.#model;
        const section = sectionAt(sections, seconds);
        const near = entries.find((entry) => kinds[entry.kind].signal && Math.abs(entry.at - seconds) < length * 0.006);
        const words = [clockTime(seconds, true), near?.title, section?.name].filter(Boolean);
        setText(this.#tip, words.join(' · '));
        this.#tip.hidden = false;
        this.#tip.style.left = percent(seconds, length);
        this.#tip.classList.toggle('to-left', seconds > length / 2);
    }
}

function percent(seconds, length) {
    return `${length > 0 ? (100 * seconds) / length : 0}%`;
}

// The same screen has the same tint wherever it comes back.
function tintOf(sections) {
    const tints = new Map();
    for (const section of sections) {
        if (!tints.has(section.name)) {
            tints.set(section.name, tints.size % tintCount);
        }
    }
    return tints;
}


