// What the scrubber's line shows: a lane of markers for each kind of event that there is, the screens as sections, and
// gaps. How closely things may stand depends on how wide it is.
import { el } from './dom.js';
import { wordsOfGap } from './film.js';
import { kinds, sign } from './kinds.js';

const order = ['error', 'rage', 'dead', 'tap', 'log'];
/** Pixels that a sign needs for itself; closer together, events are bars. */
const roomForSign = 15;
/** Bars closer together than these pixels are drawn as one. */
const finest = 2;
/** Pixels that a section's name, a gap's word needs. */
const roomForName = 48;
const roomForWord = 64;
const tintCount = 4;
/** Pixels within which an event counts as pointed at. */
const reach = 7;

export class Track {
    #model = null;
    #width = 0;
    /** The signs of the lanes, to stand beside them. */
    legend = el('div', { class: 'legend', 'aria-hidden': 'true' });
    element = el('div', { class: 'track', 'aria-hidden': 'true' });

    constructor() {
        new ResizeObserver(() => this.#resize()).observe(this.element);
    }

    show(model) {
        this.#model = model;
        this.#width = this.element.clientWidth;
        this.#draw();
    }

    /** What is to be said of `seconds`: the signals and the gap there. */
    wordsAt(seconds) {
        const { length, entries, gaps } = this.#model;
        const near = (reach / this.#width) * length;
        const signals = entries.filter((entry) => kinds[entry.kind].signal && Math.abs(entry.at - seconds) < near);
        const gap = gaps.find((each) => each.from <= seconds && seconds < each.to);
        return [...new Set(signals.map((entry) => entry.title)), gap && wordsOfGap(gap)].filter(Boolean);
    }

    #resize() {
        if (this.#model !== null && this.element.clientWidth !== this.#width) {
            this.#width = this.element.clientWidth;
            this.#draw();
        }
    }

    #draw() {
        const { entries, sections, gaps } = this.#model;
        const lanes = order.map((kind) => ({ kind, entries: entries.filter((entry) => entry.kind === kind) })).filter((lane) => lane.entries.length > 0);
        this.legend.replaceChildren(...lanes.map(({ kind }) => sign(kind)));
        const tints = tintsOf(sections);
        this.element.replaceChildren(
            ...lanes.map((lane) => this.#lane(lane)),
            el('div', { class: 'sections' }, sections.filter((section) => this.#pixels(section) >= finest).map((section) => this.#section(section, tints))),
            ...gaps.map((gap) => this.#gap(gap)));
    }

    #lane({ kind, entries }) {
        const spreads = this.#apart(entries.filter((entry) => entry.spread !== null))
            .map(({ spread }) => this.#across({ from: spread.low, to: spread.high }, `spread ${kind}`));
        const room = (roomForSign / this.#width) * this.#model.length;
        const alone = (at) => (entries[at].at - (entries[at - 1]?.at ?? -Infinity) >= room) && ((entries[at + 1]?.at ?? Infinity) - entries[at].at >= room);
        const signs = new Set(entries.filter((entry, at) => alone(at)));
        return el('div', { class: 'lane' }, spreads, this.#apart(entries).map((entry) => {
            const marker = signs.has(entry) ? el('div', { class: `marker ${kind}` }, sign(kind)) : el('div', { class: `marker bar ${kind}` });
            marker.style.left = this.#percent(entry.at);
            return marker;
        }));
    }

    #section(section, tints) {
        const node = this.#across(section, 'section', this.#pixels(section) >= roomForName && el('bdi', {}, section.name));
        node.dataset.tint = tints.get(section.name);
        return node;
    }

    #gap(gap) {
        return this.#across(gap, 'gap', this.#pixels(gap) >= roomForWord && el('span', {}, 'missing'));
    }

    #across({ from, to }, kind, ...children) {
        const node = el('div', { class: kind }, ...children);
        node.style.left = this.#percent(from);
        node.style.width = this.#percent(to - from);
        return node;
    }

    #pixels({ from, to }) {
        return ((to - from) / this.#model.length) * this.#width;
    }

    #percent(seconds) {
        return percentOf(seconds, this.#model.length);
    }

    // Those of `entries` that are far enough from the one before to be seen for themselves.
    #apart(entries) {
        const least = (finest / this.#width) * this.#model.length;
        let last = -Infinity;
        return entries.filter((entry) => {
            const seen = entry.at - last >= least;
            last = seen ? entry.at : last;
            return seen;
        });
    }
}

/** Where `seconds` of `length` lie on the line. */
export function percentOf(seconds, length) {
    return `${length > 0 ? (100 * seconds) / length : 0}%`;
}

// The same screen has the same tint wherever it comes back.
function tintsOf(sections) {
    const tints = new Map();
    for (const { name } of sections) {
        if (!tints.has(name)) {
            tints.set(name, tints.size % tintCount);
        }
    }
    return tints;
}
