// The list of sessions, newest first, a page at a time. It keeps itself up to date while somebody looks.
import { listAddress } from './address.js';
import { facetsResource, listResource } from './api.js';
import { announce, arrange, el, setText } from './dom.js';
import { filterForm } from './filters.js';
import { counted, number } from './format.js';
import { failureNotice, isOurs, notice, strip, troubleOf } from './notice.js';
import { Pager } from './pager.js';
import { Poll } from './poll.js';
import { columns, sessionRow } from './sessionrow.js';

const pageSize = 50;

/** Fills `main`. `logIn` is called when the receiver wants to know who is there. */
export function showList(main, filters, logIn) {
    document.title = 'Sessions · MirethVex';
    new SessionList(main, filters, logIn).begin();
}

class SessionList {
    #main;
    #filters;
    #logIn;
    #cursors = [null];
    #resource = null;
    #facets = facetsResource();
    #facetsAreOld = true;
    #poll = null;
    #requests = 0;
    #page = null;
    #shown = new Map();
    #form;
    #pager = new Pager();
    #count = el('p', { class: 'total' });
    #trouble = strip();
    #content = el('div', { class: 'sessions' }, el('p', { class: 'waiting' }, 'Loading'));

    constructor(main, filters, logIn) {
        this.#main = main;
        this.#filters = filters;
        this.#logIn = logIn;
        this.#form = filterForm(filters, (chosen) => this.#filter(chosen));
    }

    begin() {
        document.getElementById('heading').replaceChildren(el('h1', {}, 'Sessions'), this.#count);
        this.#main.replaceChildren(this.#form.element, this.#trouble.element, this.#content);
        this.#open();
    }

    #filter(chosen) {
        this.#filters = chosen;
        this.#cursors = [null];
        window.history.replaceState(null, '', listAddress(chosen));
        this.#open(true);
    }

    #turn(cursors) {
        this.#cursors = cursors;
        this.#open();
        this.#main.scrollIntoView();
    }

    // Reads the page that the cursors end with, and goes on reading it.
    #open(aloud = false) {
        this.#poll?.stop();
        this.#resource = listResource(this.#filters, this.#cursors.at(-1), pageSize);
        this.#poll = new Poll(() => this.#read(false), {
            onSuccess: () => this.#trouble.say(''),
            onFailure: (failure) => this.#fail(failure),
        });
        this.#read(aloud).catch((failure) => this.#fail(failure)).finally(() => this.#poll.start());
    }

    // Answers and failures of what is not asked for any more are let go.
    async #read(aloud) {
        const request = ++this.#requests;
        try {
            const answer = await this.#resource.read();
            if (request === this.#requests) {
                this.#take(answer, aloud);
            }
        } catch (failure) {
            if (request === this.#requests) {
                throw failure;
            }
        }
    }

    #take(answer, aloud) {
        this.#facetsAreOld ||= answer !== null;
        this.#offerFacets();
        // What is live and what was today changes without a word of the receiver.
        const page = answer ?? this.#page;
        this.#page = page;
        this.#show(page);
        if (aloud) {
            announce(page.total === null ? 'The list has changed' : `${counted(page.total, 'session')} found`);
        }
    }

    // What came in since may be of another project, or have been on another screen.
    async #offerFacets() {
        if (!this.#facetsAreOld) {
            return;
        }
        this.#facetsAreOld = false;
        try {
            const found = await this.#facets.read();
            if (found !== null) {
                this.#form.offer(found);
            }
        } catch {
            // The filters are still of use; the next time may go better.
            this.#facetsAreOld = true;
        }
    }

    #fail(failure) {
        if (isOurs(failure)) {
            console.error(failure);
        }
        if (failure.kind === 'unauthorised') {
            this.#poll.stop();
            this.#logIn();
        } else if (this.#shown.size > 0) {
            this.#trouble.say(`${troubleOf(failure)} This is what it last said; the page keeps trying.`);
        } else {
            this.#shown.clear();
            setText(this.#count, '');
            this.#content.replaceChildren(failureNotice(failure, 'The list of sessions', () => this.#open()));
        }
    }

    #show(page) {
        setText(this.#count, page.total ? counted(page.total, 'session') : '');
        if (page.sessions.length === 0) {
            this.#shown.clear();
            this.#content.replaceChildren(this.#nothing());
            return;
        }
        const rows = this.#rows(page.sessions);
        const body = this.#content.querySelector('tbody');
        if (body) {
            arrange(body, rows);
        } else {
            this.#content.replaceChildren(table(rows), this.#pager.element);
        }
        this.#showPager(page);
    }

    // A session that did not change keeps its row, and so the focus and the selection in it.
    #rows(sessions) {
        const known = this.#shown;
        this.#shown = new Map();
        return sessions.map((session) => {
            const row = sessionRow(session);
            const text = JSON.stringify(session) + row.textContent;
            const before = known.get(session.id);
            const entry = before?.text === text ? before : { text, row };
            if (before && before !== entry && before.row.contains(document.activeElement)) {
                requestAnimationFrame(() => entry.row.querySelector('a').focus());
            }
            this.#shown.set(session.id, entry);
            return entry.row;
        });
    }

    #nothing() {
        if (this.#cursors.length > 1) {
            return notice('screen', 'Nothing further', ['The sessions of this page have been removed meanwhile.'], [{ text: 'Back to the newest', act: () => this.#turn([null]) }]);
        }
        if (Object.keys(this.#filters).length > 0) {
            return notice('screen', 'No session fits', ['Fewer filters show more. Free text is looked for in screen names and error messages.']);
        }
        const { origin } = window.location;
        const command = `mireth-phone examples/scenarios/checkout.json \\\n    --sr-endpoint ${origin} \\\n    --kelda-endpoint ${origin}`;
        return notice('screen', 'No sessions yet', [
            'Sessions appear here by themselves as soon as a client starts recording. Nothing has to be reloaded.',
            'To see one right away, have the scripted phone record one:',
            el('pre', { tabindex: 0 }, el('code', {}, command)),
            'If this receiver takes uploads only with a token, both addresses go on with /t/ and the token.',
        ]);
    }

    #showPager({ sessions, total, next }) {
        const first = (this.#cursors.length - 1) * pageSize + 1;
        const of = total === null ? '' : ` of ${number(total)}`;
        this.#pager.show(`${number(first)}–${number(first + sessions.length - 1)}${of}`,
            this.#cursors.length > 1 ? () => this.#turn(this.#cursors.slice(0, -1)) : null,
            next ? () => this.#turn([...this.#cursors, next]) : null);
    }
}

// The roles are said again because a narrow window lays the table out as blocks.
function table(rows) {
    return el('table', { role: 'table', 'aria-label': 'Sessions, newest first' },
        el('thead', { role: 'rowgroup' }, el('tr', { role: 'row' },
            columns.map(([name, kind]) => el('th', { role: 'columnheader', scope: 'col', class: kind }, name)))),
        el('tbody', { role: 'rowgroup' }, rows));
}
