// Draws taps and signals on the video where they happened, for a moment.
import { el, foreign } from './dom.js';
import { kinds, sign } from './kinds.js';

/** How long a mark stays. */
export const marksFor = 1.2;
/** A mark's sign must not leave the frame altogether. */
const outermost = 0.02;

/**
 * The marks to see at a second, `{entry, age}`: `age` goes from 0 to 1 while a mark fades. One whose moment is
 * uncertain stays for as long as it may have been.
 */
export function marksAt(entries, seconds) {
    const marks = [];
    for (const entry of entries) {
        if (entry.point === null) {
            continue;
        }
        const from = entry.spread?.low ?? entry.at;
        const to = (entry.spread?.high ?? entry.at) + marksFor;
        if (from <= seconds && seconds < to) {
            marks.push({ entry, age: Math.max(0, seconds - (to - marksFor)) / marksFor });
        }
    }
    return marks;
}

function inside(part) {
    return Math.min(Math.max(part, outermost), 1 - outermost);
}

export class Overlay {
    #captions = el('div', { class: 'captions' });
    #entries = [];
    #marks = new Map();
    element = el('div', { class: 'overlay', 'aria-hidden': 'true' }, this.#captions);

    set entries(entries) {
        this.#entries = entries.filter((entry) => entry.point !== null);
    }

    render(seconds) {
        const marks = marksAt(this.#entries, seconds);
        const seen = new Set(marks.map((mark) => mark.entry.id));
        for (const [id, nodes] of this.#marks) {
            if (!seen.has(id)) {
                nodes.forEach((node) => node.remove());
                this.#marks.delete(id);
            }
        }
        for (const { entry, age } of marks) {
            const nodes = this.#nodesOf(entry);
            nodes[0].classList.toggle('uncertain', entry.spread !== null);
            nodes.forEach((node) => node.style.setProperty('--age', age.toFixed(3)));
        }
        // Words keep away from the place that they are about.
        this.#captions.classList.toggle('low', marks.some((mark) => mark.entry.kind !== 'tap' && mark.entry.point.y < 0.4));
    }

    #nodesOf(entry) {
        const known = this.#marks.get(entry.id);
        if (known) {
            return known;
        }
        const ring = ringOf(entry);
        ring.style.left = `${inside(entry.point.x) * 100}%`;
        ring.style.top = `${inside(entry.point.y) * 100}%`;
        this.element.append(ring);
        const nodes = entry.kind === 'tap' ? [ring] : [ring, captionOf(entry)];
        this.#captions.append(...nodes.slice(1));
        this.#marks.set(entry.id, nodes);
        return nodes;
    }
}

function ringOf({ id, kind, point: { x, y } }) {
    const outside = x < 0 || x > 1 || y < 0 || y > 1;
    const classes = ['mark', kind, outside && 'outside'];
    return el('div', { class: classes.filter(Boolean).join(' '), 'data-entry': id });
}

function captionOf(entry) {
    return el('p', { class: `caption ${entry.kind}` },
        sign(entry.kind), el('span', {}, kinds[entry.kind].name, entry.text && ': ', entry.text && foreign(entry.text)));
}
