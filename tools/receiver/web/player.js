// The replay of a model: the video, the scrubber, the list and the controls on one clock. It knows nothing of the
// receiver.
import { hashAt } from './address.js';
import { Controls, rates } from './controls.js';
import { showKeys } from './dialogs.js';
import { announce, el } from './dom.js';
import { EventList } from './eventlist.js';
import { clockTime, spokenTime } from './format.js';
import { actionOf } from './keys.js';
import { kinds } from './kinds.js';
import { recall, remember } from './preferences.js';
import { Scrubber } from './scrubber.js';
import { quietStretches, sectionAt } from './sections.js';
import { Stage } from './stage.js';
import { frameMillis } from './videoclock.js';

const frame = frameMillis / 1000;
const leap = 5;
/** Playing, one goes back to the signal before the one that just passed. */
const justPassed = 1;

export class Player {
    #model = null;
    #quiet = [];
    #skip = recall('skip', 'no') === 'yes';
    #drawing = false;
    #resumeAfterDrag = false;
    #lastSaid = 0;
    #stage = new Stage();
    #reel = this.#stage.reel;
    #scrubber = new Scrubber((seconds) => this.#seek(seconds), (dragging) => this.#drag(dragging));
    #list = new EventList((seconds) => this.#seek(seconds));
    #controls = new Controls({
        act: (name) => this.#act(name), setRate: (rate) => this.#setRate(rate), setSkip: (skip) => this.#setSkip(skip),
    });
    #acts = {
        toggle: () => (this.#reel.playing ? this.#pause() : this.#play()),
        back: () => this.#seek(this.#reel.time - leap),
        forward: () => this.#seek(this.#reel.time + leap),
        frameBack: () => this.#step(-1),
        frameForward: () => this.#step(1),
        previous: () => this.#toSignal(-1),
        next: () => this.#toSignal(1),
        start: () => this.#seek(0),
        end: () => this.#seek(this.#reel.length),
        slower: () => this.#changeRate(-1),
        faster: () => this.#changeRate(1),
        skip: () => this.#setSkip(!this.#skip, true),
        link: () => this.#copyLink(),
        help: () => showKeys(),
    };
    element;

    /** `facts` is an element that has its place beside the video. */
    constructor(facts) {
        this.element = el('div', { class: 'replay' }, this.#stage.element,
            el('div', { class: 'deck' }, this.#scrubber.element, this.#controls.element), this.#list.element, facts);
        this.#setRate(Number(recall('rate', '1')));
        this.#setSkip(this.#skip);
        document.addEventListener('keydown', (event) => this.#key(event));
    }

    /** Shows `model`; one that grew is taken over where the replay stands. */
    show(model) {
        this.#model = model;
        this.#quiet = quietStretches(model.entries, model.length);
        this.#scrubber.show(model);
        this.#list.show(model);
        this.#stage.show(model);
        this.#draw();
    }

    goTo(seconds) {
        this.#reel.seek(seconds);
        this.#lastSaid = this.#reel.time;
        this.#list.follow();
        this.#draw();
    }

    stop() {
        this.#reel.pause();
        this.#draw();
    }

    #key(event) {
        const action = this.element.isConnected ? actionOf(event) : null;
        if (action !== null) {
            event.preventDefault();
            this.#act(action);
        }
    }

    #act(name) {
        this.#acts[name]();
    }

    #play() {
        this.#reel.play();
        this.#lastSaid = this.#reel.time;
        announce('Playing');
        this.#draw();
    }

    #pause() {
        this.#reel.pause();
        announce(`Paused at ${spokenTime(this.#reel.time)}`);
        this.#keepAddress();
        this.#draw();
    }

    #seek(seconds) {
        this.goTo(seconds);
        this.#keepAddress();
    }

    #drag(dragging) {
        if (dragging) {
            this.#resumeAfterDrag = this.#reel.playing;
            this.#reel.pause();
        } else if (this.#resumeAfterDrag) {
            this.#reel.play();
        }
        this.#draw();
    }

    #step(direction) {
        this.#reel.pause();
        const shown = Math.floor(this.#reel.time / frame + 1e-3);
        const last = Math.ceil(this.#reel.length / frame) - 1;
        this.#seek(Math.min(Math.max(shown + direction, 0), last) * frame);
        announce(`${clockTime(this.#reel.time, true)} seconds`);
    }

    #toSignal(direction) {
        const { time, playing } = this.#reel;
        const signals = this.#model.entries.filter((entry) => kinds[entry.kind].signal);
        const found = direction > 0
            ? signals.find((entry) => entry.at > time + 0.05)
            : signals.findLast((entry) => entry.at < time - (playing ? justPassed : 0.05));
        if (found) {
            this.#seek(found.at);
            announce(`${found.title} at ${spokenTime(found.at)}`);
        } else {
            announce(direction > 0 ? 'No further signal' : 'No earlier signal');
        }
    }

    #changeRate(direction) {
        const at = rates.indexOf(this.#reel.rate) + direction;
        this.#setRate(rates[Math.min(Math.max(at, 0), rates.length - 1)]);
        announce(`${this.#reel.rate} times`);
    }

    #setRate(rate) {
        const chosen = rates.includes(rate) ? rate : 1;
        this.#reel.rate = chosen;
        this.#controls.rate = chosen;
        remember('rate', String(chosen));
    }

    #setSkip(skip, aloud = false) {
        this.#skip = skip;
        this.#controls.skip = skip;
        remember('skip', skip ? 'yes' : 'no');
        if (aloud) {
            announce(skip ? 'Skipping inactivity' : 'Not skipping inactivity');
        }
    }

    async #copyLink() {
        this.#keepAddress();
        const link = `Link to ${clockTime(this.#reel.time, true)}`;
        try {
            await navigator.clipboard.writeText(window.location.href);
            this.#controls.say(`${link} copied`);
        } catch {
            this.#controls.say(`${link} is in the address bar`);
        }
    }

    #keepAddress() {
        window.history.replaceState(null, '', hashAt(this.#reel.time));
    }

    // Draws now, and goes on for as long as something moves.
    #draw() {
        if (this.#drawing || this.#model === null) {
            return;
        }
        this.#drawing = true;
        requestAnimationFrame((now) => {
            this.#drawing = false;
            this.#advance(now);
            const { time, playing, length, waiting } = this.#reel;
            this.#stage.render(now);
            this.#scrubber.render(time);
            this.#list.render(time);
            this.#controls.render({ playing, time, length, screen: sectionAt(this.#model.sections, time)?.name ?? '' });
            if (playing || waiting) {
                this.#draw();
            }
        });
    }

    #advance(now) {
        const wasPlaying = this.#reel.playing;
        this.#reel.advance(now);
        const { time, playing } = this.#reel;
        if (playing && this.#skip) {
            const quiet = this.#quiet.find((each) => each.from <= time && time < each.to - frame);
            if (quiet) {
                this.#reel.seek(quiet.to);
            }
        }
        if (wasPlaying) {
            this.#saySignals(time);
        }
        if (wasPlaying && !playing) {
            announce('The end');
            this.#keepAddress();
        }
    }

    // Those who do not see the marks hear of them.
    #saySignals(seconds) {
        const passed = this.#model.entries.filter((entry) => kinds[entry.kind].signal && this.#lastSaid < entry.at && entry.at <= seconds);
        if (passed.length > 0) {
            announce(passed.map((entry) => `${entry.title}${entry.text ? `: ${entry.text}` : ''}`).join(', '));
        }
        this.#lastSaid = seconds;
    }
}
