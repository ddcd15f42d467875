// One session: gets it from the receiver, and keeps getting it while it is still being recorded.
import { entryOf, secondOf } from './address.js';
import { deleteSession, sessionResource } from './api.js';
import { confirmDelete } from './dialogs.js';
import { Facts } from './facts.js';
import { filmOf } from './film.js';
import { buildModel } from './model.js';
import { failureNotice, isOurs, notice, strip, troubleOf } from './notice.js';
import { Player } from './player.js';
import { Poll } from './poll.js';
import { ReplayHead, wayUp } from './replayhead.js';

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
    #head;
    #facts = new Facts();
    #arranged = '';
    #player = new Player(this.#facts.element, () => this.#findOutWhy());

    constructor(main, id, logIn) {
        this.#main = main;
        this.#id = id;
        this.#logIn = logIn;
        this.#resource = sessionResource(id);
        this.#head = new ReplayHead(id, () => this.#askToDelete());
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
        this.#showHead();
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
            this.#player.choose(entryOf(window.location.hash));
            await this.#player.begin(film, secondOf(window.location.hash) ?? 0);
        } else if (watchable) {
            this.#player.begin(film);
        }
        this.#model = buildModel(answer, film);
        this.#showHead();
        this.#facts.show(this.#model);
        if (watchable) {
            this.#player.show(this.#model);
        }
    }

    // What is live and what was today changes without a word of the receiver.
    #showHead() {
        this.#head.show(this.#model.session, this.#model.chunks.length > 0);
        if (this.#heading.firstChild !== this.#head.parts[0]) {
            this.#heading.replaceChildren(...this.#head.parts);
        }
    }

    #arrange(watchable, session) {
        const wanted = watchable ? 'replay' : session.state;
        if (wanted === this.#arranged) {
            return;
        }
        this.#arranged = wanted;
        if (watchable) {
            this.#player.element.append(this.#facts.element);
            this.#main.replaceChildren(this.#trouble.element, this.#player.element);
        } else {
            this.#main.replaceChildren(this.#trouble.element, nothingYet(session), this.#facts.element);
        }
    }

    #fail(failure) {
        if (isOurs(failure)) {
            this.#poll.stop();
            console.error(failure);
        }
        if (failure.kind === 'unauthorised') {
            this.#poll.stop();
            this.#logIn();
        } else if (this.#model !== null && failure.kind !== 'missing') {
            const next = isOurs(failure) ? 'loading it again may help' : 'the page keeps trying';
            this.#trouble.say(`${troubleOf(failure)} What has been loaded can still be watched; ${next}.`);
        } else {
            this.#player.stop();
            this.#model = null;
            this.#resource = sessionResource(this.#id);
            this.#arranged = '';
            this.#heading.replaceChildren(wayUp());
            this.#main.replaceChildren(failureNotice(failure, 'This session', () => this.#watch()));
            if (failure.kind === 'missing') {
                this.#poll.stop();
            }
        }
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
            this.#player.goTo(seconds, entryOf(window.location.hash));
        }
    }
}

function nothingYet(session) {
    return session.state === 'open'
        ? notice('screen', 'Nothing to watch yet', ['The recording has begun. Its first ten seconds appear here as soon as they arrive.'])
        : notice('screen', 'Nothing to watch', ['This session was closed before any of its video arrived. What is known of it is below.']);
}
