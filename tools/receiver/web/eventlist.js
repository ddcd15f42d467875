// What happened, in order: scrolls along with the replay, and seeks where it is told to.
import { arrange, el, setText } from './dom.js';
import { EventRow } from './eventrow.js';
import { counted } from './format.js';
import { KindChips } from './kindchips.js';

/** No session that a person made has more. */
const mostRows = 10000;
const instant = 0.001;

export class EventList {
    #onSeek;
    /** The id of the entry that was chosen last, or null. */
    chosen = null;
    #more = 0;
    #rows = new Map();
    #shown = [];
    #current = null;
    #stop = null;
    #following = true;
    #chips = new KindChips(() => this.#filter());
    #list = el('ol', { class: 'entries' });
    #empty = el('p', { class: 'faint nothing', hidden: true });
    #follow = el('button', { type: 'button', class: 'follow', hidden: true }, 'Follow the replay');
    #scroller = el('div', { class: 'scroller' }, this.#list, this.#empty);
    element = el('section', { class: 'events', 'aria-label': 'What happened' },
        el('header', {}, el('h2', {}, 'What happened'), this.#chips.element), this.#scroller, this.#follow);

    /** `onSeek` gets the seconds of the entry that was chosen. */
    constructor(onSeek) {
        this.#onSeek = onSeek;
        for (const gesture of ['wheel', 'touchmove']) {
            this.#scroller.addEventListener(gesture, () => this.#setFollowing(false), { passive: true });
        }
        this.#scroller.addEventListener('pointerdown', (event) => {
            // The scroll bar belongs to the scroller itself.
            if (event.target === this.#scroller) {
                this.#setFollowing(false);
            }
        });
        this.#list.addEventListener('keydown', (event) => this.#walk(event));
        this.#follow.addEventListener('click', () => this.follow());
    }

    /** An entry that is there already keeps its row, and the rows in view stay where they are. */
    show(model) {
        const entries = model.entries.slice(0, mostRows);
        this.#more = model.entries.length - entries.length;
        this.#rows = new Map(entries.map((entry) => [entry.id, this.#rowOf(entry)]));
        const { scrollTop } = this.#scroller;
        const inView = scrollTop > 0 && this.#shown.find((row) => this.#above(row) >= scrollTop && this.#rows.has(row.entry.id));
        const above = inView && this.#above(inView);
        arrange(this.#list, [...this.#rows.values()].map((row) => row.element));
        this.#chips.show(entries);
        this.#filter();
        if (inView) {
            this.#scroller.scrollTop = scrollTop + this.#above(inView) - above;
        }
    }

    /** The id of the entry that was chosen, if it is at `seconds`; or null. */
    chosenAt(seconds) {
        const row = this.#rows.get(this.chosen);
        return row && Math.abs(row.entry.at - seconds) < instant ? this.chosen : null;
    }

    render(seconds) {
        const current = this.#rowAt(seconds);
        if (current === this.#current) {
            return;
        }
        this.#current?.element.removeAttribute('aria-current');
        this.#current = current;
        current?.element.setAttribute('aria-current', 'true');
        this.#makeStop(current ?? this.#shown[0]);
        if (this.#following) {
            this.#scrollToCurrent();
        }
    }

    /** Goes along with the replay again. */
    follow() {
        this.#setFollowing(true);
        this.#scrollToCurrent();
    }

    #setFollowing(following) {
        this.#following = following;
        this.#follow.hidden = following || this.#list.scrollHeight <= this.#scroller.clientHeight;
    }

    #rowOf(entry) {
        const row = this.#rows.get(entry.id) ?? new EventRow(entry, (chosen) => this.#choose(chosen));
        row.entry = entry;
        return row;
    }

    // Of several at one instant the one that was chosen is the one that is meant.
    #rowAt(seconds) {
        const chosen = this.chosenAt(seconds);
        return this.#rows.get(chosen) ?? this.#shown.findLast((row) => row.entry.at <= seconds + instant) ?? null;
    }

    // Only the list scrolls, never the page under it.
    #scrollToCurrent() {
        const scroller = this.#scroller;
        if (this.#current === null) {
            scroller.scrollTop = 0;
            return;
        }
        const above = this.#above(this.#current);
        if (above < scroller.scrollTop || above + this.#current.element.offsetHeight > scroller.scrollTop + scroller.clientHeight) {
            scroller.scrollTop = above - scroller.clientHeight / 3;
        }
    }

    // How much of the list stands above a row.
    #above(row) {
        return row.element.offsetTop - this.#list.offsetTop;
    }

    #choose(entry) {
        this.chosen = entry.id;
        this.#onSeek(entry.at);
    }

    // The list is one stop of the tabulator key; the arrow keys go through it.
    #makeStop(row) {
        this.#stop?.button.setAttribute('tabindex', '-1');
        row?.button.setAttribute('tabindex', '0');
        this.#stop = row ?? null;
    }

    #walk(event) {
        const step = { ArrowDown: 1, ArrowUp: -1 }[event.key];
        const at = this.#shown.findIndex((row) => row.button === event.target);
        if (!step || at === -1) {
            return;
        }
        event.preventDefault();
        event.stopPropagation();
        const next = this.#shown[at + step];
        if (next) {
            this.#setFollowing(false);
            this.#makeStop(next);
            next.button.focus();
        }
    }

    #words() {
        if (this.#more > 0) {
            return `${counted(this.#more, 'more entry', 'more entries')} are in the timeline, too many to list.`;
        }
        return this.#rows.size === 0 ? 'Nothing has been recorded yet.' : 'Everything is filtered out.';
    }

    #filter() {
        const rows = [...this.#rows.values()];
        rows.forEach((row) => { row.element.hidden = this.#chips.hides(row.entry.kind); });
        this.#shown = rows.filter((row) => !row.element.hidden);
        this.#empty.hidden = this.#shown.length > 0 && this.#more === 0;
        setText(this.#empty, this.#words());
        if (!this.#shown.includes(this.#stop)) {
            this.#makeStop(this.#shown.includes(this.#current) ? this.#current : this.#shown[0]);
        }
    }
}
