// One session: gets it from the receiver, and keeps getting it while it is still being recorded.
import { secondOf } from './address.js';
import { deleteSession, sessionResource, timelineAddress, videoAddress } from './api.js';
import { detailsList } from './details.js';
import { confirmDelete } from './dialogs.js';
import { el, foreign } from './dom.js';
import { placelessRow } from './eventrow.js';
import { filmOf } from './film.js';
import { fullDate, when } from './format.js';
import { icon } from './kinds.js';
import { liveSign } from './livesign.js';
import { buildModel } from './model.js';
import { failureNotice, notice, strip, troubleOf } from './notice.js';
import { Player } from './player.js';
import { Poll } from './poll.js';

/** Fills `main` with the session's replay. `logIn` is called when the receiver wants to know who is there. */
export function showReplay(main, id, logIn) {
    document.title = 'Session · MirethVex';
    new Replay(main, id, logIn).begin();
}

class Replay {
    #main;
    #id;
    #logIn;
    #resource;
    #poll = null;
    #model = null;
    #trouble = strip();
    #heading = document.getElementById('heading');
    #facts = el('section', { class: 'facts', 'aria-label': 'Session', tabindex: 0 });
    #said = '';
    #player = new Player(this.#facts, () => this.#findOutWhy());

    constructor(main, id, logIn) {
        this.#main = main;
        this.#id = id;
        this.#logIn = logIn;
        this.#resource = sessionResource(id);
    }

    begin() {
        window.addEventListener('hashchange', () => this.#goToAddress());
        this.#watch();
    }

    // A chunk cannot be had: the receiver may be gone, or the session, or the login.
    #findOutWhy() {
        if (this.#model !== null) {
            this.#watch();
        }
    }

    // Asks until all of a closed session is here.
    #watch() {
        this.#poll?.stop();
        this.#poll = new Poll(() => this.#read(), { onSuccess: () => this.#answered(), onFailure: (failure) => this.#fail(failure) });
        this.#poll.now();
    }

    #answered() {
        this.#head();
        if (!this.#trouble.element.hidden) {
            this.#trouble.say('');
            this.#player.retry();
        }
    }

    async #read() {
        const answer = await this.#resource.read();
        if (answer !== null) {
            await this.#take(answer);
        }
        // A session that is closed gets nothing more.
        if (this.#model.session.state === 'closed') {
            this.#poll.stop();
        }
    }

    // The picture first, for it is what one waits for; then what happened, which takes longer to work out.
    async #take(answer) {
        const film = filmOf(answer.chunks);
        const watchable = film.chunks.length > 0;
        this.#arrange(watchable, answer.session);
        if (watchable && this.#model === null) {
            await this.#player.begin(film, secondOf(window.location.hash) ?? 0);
        } else if (watchable) {
            this.#player.begin(film);
        }
        this.#model = buildModel(answer, film);
        this.#head();
        this.#facts.replaceChildren(el('h2', {}, 'Session'), detailsList(this.#model), ...(watchable ? [] : logOf(this.#model)));
        if (watchable) {
            this.#player.show(this.#model);
        }
    }

    // The header says the same again only where it has changed, so that what has the focus in it keeps it.
    #head() {
        const { session, chunks } = this.#model;
        const children = this.#headingOf(session, chunks);
        const said = children.map((child) => child.textContent ?? child).join();
        if (said !== this.#said) {
            this.#said = said;
            document.title = `${session.projectId}, ${when(session.startMillis)} · MirethVex`;
            this.#heading.replaceChildren(...children);
        }
    }

    #arrange(watchable, session) {
        if (!watchable) {
            this.#main.replaceChildren(this.#trouble.element, nothingYet(session), this.#facts);
        } else if (!this.#player.element.isConnected) {
            this.#player.element.append(this.#facts);
            this.#main.replaceChildren(this.#trouble.element, this.#player.element);
        }
    }

    #fail(failure) {
        if (failure.kind === 'unauthorised') {
            this.#poll.stop();
            this.#logIn();
        } else if (this.#model !== null && failure.kind !== 'missing') {
            this.#trouble.say(`${troubleOf(failure)} What has been loaded can still be watched; the page keeps trying.`);
        } else {
            this.#player.stop();
            this.#model = null;
            this.#resource = sessionResource(this.#id);
            this.#said = '';
            this.#heading.replaceChildren(el('a', { href: '/', class: 'up' }, 'Sessions'));
            this.#main.replaceChildren(failureNotice(failure, 'This session', () => this.#watch()));
            if (failure.kind === 'missing') {
                this.#poll.stop();
            }
        }
    }

    #headingOf(session, chunks) {
        return [
            el('a', { href: '/', class: 'up' }, 'Sessions'),
            el('h1', { title: fullDate(session.startMillis) }, foreign(session.projectId), ' ', el('span', { class: 'faint' }, when(session.startMillis))),
            liveSign(session) ?? '',
            el('div', { class: 'actions' },
                chunks.length > 0 && el('a', { class: 'button', href: videoAddress(this.#id), download: true, title: 'Download the whole session as one MP4' }, icon('video'), words('Video')),
                el('a', { class: 'button', href: timelineAddress(this.#id), download: true, title: 'Download the timeline as JSON' }, icon('download'), words('Timeline')),
                el('button', { type: 'button', class: 'quiet danger', title: 'Delete this session', on: { click: () => this.#askToDelete() } }, icon('remove'), words('Delete'))),
        ];
    }

    #askToDelete() {
        confirmDelete(async () => {
            await deleteSession(this.#id);
            window.location.assign('/');
        });
    }

    #goToAddress() {
        const seconds = secondOf(window.location.hash);
        if (seconds !== null && this.#model !== null) {
            this.#player.goTo(seconds);
        }
    }
}

// Without a video to stand beside, the log may still say why there is none.
function logOf({ entries }) {
    const lines = entries.filter((entry) => entry.kind === 'log');
    return lines.length > 0 ? [el('h2', {}, 'Log'), el('ol', { class: 'entries' }, lines.map(placelessRow))] : [];
}

// On a phone's width the drawing has to do.
function words(text) {
    return el('span', { class: 'words' }, text);
}

function nothingYet(session) {
    return session.state === 'open'
        ? notice('screen', 'Nothing to watch yet', ['The recording has begun. Its first ten seconds appear here as soon as they arrive.'])
        : notice('screen', 'Nothing to watch', ['This session was closed before any of its video arrived. What is known of it is below.']);
}
