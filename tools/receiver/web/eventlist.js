// What happened, in order: scrolls along with the replay, and seeks where it is told to.
import { el, setText } from './dom.js';
import { eventRow } from './eventrow.js';
import { counted } from './format.js';
import { KindChips } from './kindchips.js';

/** No session that a person made has more. */
const mostRows = 10000;
const instant = 0.001;

export class EventList {
    #onSeek;
    #entries = [];
    #more = 0;
    #rows = [];
    #current = -1;
    #chosen = null;
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

    show(model) {
        const focused = document.activeElement?.closest('li')?.dataset.entry;
        this.#entries = model.entries.slice(0, mostRows);
        this.#more = model.entries.length - this.#entries.length;
        this.#rows = this.#entries.map((entry) => eventRow(entry, () => this.#choose(entry)));
        this.#list.replaceChildren(...this.#rows);
        this.#current = -1;
        this.#chips.show(this.#entries);
        this.#filter();
        if (focused) {
            this.#rows.find((row) => row.dataset.entry === focused)?.querySelector('button').focus();
        }
    }

    render(seconds) {
        // Of several at one instant the one that was chosen is the one that is meant.
        const chosen = this.#chosen !== null && Math.abs(this.#chosen.at - seconds) < instant ? this.#entries.indexOf(this.#chosen) : -1;
        const current = chosen === -1 ? this.#lastBefore(seconds + instant) : chosen;
        if (current === this.#current) {
            return;
        }
        this.#rows[this.#current]?.removeAttribute('aria-current');
        this.#current = current;
        const row = this.#rows[current];
        row?.setAttribute('aria-current', 'true');
        this.#makeStop(row ?? this.#rows.find((each) => !each.hidden));
        if (this.#following) {
            this.#scrollTo(row);
        }
    }

    /** Goes along with the replay again. */
    follow() {
        this.#setFollowing(true);
        this.#scrollTo(this.#rows[this.#current]);
    }

    #setFollowing(following) {
        this.#following = following;
        this.#follow.hidden = following || this.#list.scrollHeight <= this.#scroller.clientHeight;
    }

    #lastBefore(seconds) {
        let found = -1;
        for (let index = 0; index < this.#entries.length && this.#entries[index].at <= seconds; ++index) {
            if (!this.#rows[index].hidden) {
                found = index;
            }
        }
        return found;
    }

    // Only the list scrolls, never the page under it.
    #scrollTo(row) {
        const scroller = this.#scroller;
        if (!row) {
            scroller.scrollTop = 0;
            return;
        }
        const above = row.offsetTop - this.#list.offsetTop;
        if (above < scroller.scrollTop || above + row.offsetHeight > scroller.scrollTop + scroller.clientHeight) {
            scroller.scrollTop = above - scroller.clientHeight / 3;
        }
    }

    #choose(entry) {
        this.#chosen = entry;
        this.#onSeek(entry.at);
    }

    // The list is one stop of the tabulator key; the arrow keys go through it.
    #makeStop(row) {
        this.#list.querySelectorAll('button[tabindex="0"]').forEach((button) => button.setAttribute('tabindex', '-1'));
        row?.querySelector('button').setAttribute('tabindex', '0');
    }

    #walk(event) {
        const step = { ArrowDown: 1, ArrowUp: -1 }[event.key];
        const row = event.target.closest('li');
        if (!step || !row || event.target.tagName !== 'BUTTON') {
            return;
        }
        const shown = this.#rows.filter((each) => !each.hidden);
        const next = shown[shown.indexOf(row) + step];
        event.preventDefault();
        event.stopPropagation();
        if (next) {
            this.#setFollowing(false);
            this.#makeStop(next);
            next.querySelector('button').focus();
        }
    }

    #words(any) {
        if (this.#more > 0) {
            return `${counted(this.#more, 'more entry', 'more entries')} are in the timeline, too many to list.`;
        }
        return this.#entries.length === 0 || any ? 'Nothing has been recorded yet.' : 'Everything is filtered out.';
    }

    #filter() {
        this.#entries.forEach((entry, index) => { this.#rows[index].hidden = this.#chips.hides(entry.kind); });
        const any = this.#rows.some((row) => !row.hidden);
        this.#empty.hidden = any && this.#more === 0;
        setText(this.#empty, this.#words(any));
        this.#makeStop(this.#rows[this.#current]?.hidden === false ? this.#rows[this.#current] : this.#rows.find((row) => !row.hidden));
    }
}
