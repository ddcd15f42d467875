// What can be done with a film: an act for every key and button, each of which says aloud what came of it.
import { rates } from './controls.js';
import { announce } from './dom.js';
import { clockTime, spokenTime } from './format.js';
import { kinds } from './kinds.js';
import { recall, remember } from './preferences.js';
import { quietStretches } from './sections.js';
import { frameMillis } from './videoclock.js';

const frame = frameMillis / 1000;
const leap = 5;
const farLeap = 30;
/** Nearer than this one is at a signal already. */
const there = 0.05;
/** Playing, one goes back to the signal before the one that just passed. */
const justPassed = 1;

export class Transport {
    #reel;
    #signals = [];
    #quiet = [];
    #skip = recall('skip', 'no') === 'yes';
    #on;
    #acts = {
        toggle: () => (this.#reel.playing ? this.#pause() : this.#play()),
        back: () => this.seek(this.#reel.time - leap),
        forward: () => this.seek(this.#reel.time + leap),
        farBack: () => this.seek(this.#reel.time - farLeap),
        farForward: () => this.seek(this.#reel.time + farLeap),
        frameBack: () => this.#step(-1),
        frameForward: () => this.#step(1),
        previous: () => this.#toSignal(-1),
        next: () => this.#toSignal(1),
        start: () => this.seek(0),
        end: () => this.seek(this.#reel.length),
        slower: () => this.#changeRate(-1),
        faster: () => this.#changeRate(1),
        skip: () => this.#toggleSkip(),
    };

    /** Calls `seek` after every jump to another second, `play`, `pause`, and `change` when it is to play otherwise. */
    constructor(reel, on) {
        this.#reel = reel;
        this.#on = on;
        reel.rate = known(Number(recall('rate', '1')));
    }

    /** Takes over which signals there are, and where nothing happens. */
    show({ entries, length }) {
        this.#signals = entries.filter((entry) => kinds[entry.kind].signal);
        this.#quiet = quietStretches(entries, length);
    }

    /** Does the act called `name`. */
    act(name) {
        this.#acts[name]();
    }

    /** Jumps to `seconds`. */
    seek(seconds) {
        this.#reel.seek(seconds);
        this.#on.seek();
    }

    get rate() {
        return this.#reel.rate;
    }

    set rate(rate) {
        this.#reel.rate = known(rate);
        remember('rate', String(this.rate));
        this.#on.change();
    }

    get skip() {
        return this.#skip;
    }

    set skip(skip) {
        this.#skip = skip;
        remember('skip', skip ? 'yes' : 'no');
        this.#on.change();
    }

    /** Goes on to `now`, and over what is to be skipped. */
    advance(now) {
        this.#reel.advance(now);
        const { time, playing } = this.#reel;
        const quiet = playing && this.#skip && this.#quiet.find((each) => each.from <= time && time < each.to - frame);
        if (quiet) {
            this.#reel.seek(quiet.to);
        }
    }

    #play() {
        this.#reel.play();
        announce('Playing');
        this.#on.play();
    }

    #pause() {
        this.#reel.pause();
        announce(`Paused at ${spokenTime(this.#reel.time)}`);
        this.#on.pause();
    }

    #step(direction) {
        this.#reel.pause();
        const shown = Math.floor(this.#reel.time / frame + 1e-3);
        const last = Math.ceil(this.#reel.length / frame) - 1;
        this.seek(Math.min(Math.max(shown + direction, 0), last) * frame);
        announce(`${clockTime(this.#reel.time, true)} seconds`);
    }

    #toSignal(direction) {
        const { time, playing } = this.#reel;
        const found = direction > 0
            ? this.#signals.find((entry) => entry.at > time + there)
            : this.#signals.findLast((entry) => entry.at < time - (playing ? justPassed : there));
        if (found) {
            this.seek(found.at);
            announce(`${found.title} at ${spokenTime(found.at)}`);
        } else {
            announce(direction > 0 ? 'No further signal' : 'No earlier signal');
        }
    }

    #changeRate(direction) {
        const at = rates.indexOf(this.rate) + direction;
        this.rate = rates[Math.min(Math.max(at, 0), rates.length - 1)];
        announce(`${this.rate} times`);
    }

    #toggleSkip() {
        this.skip = !this.skip;
        announce(this.skip ? 'Skipping inactivity' : 'Not skipping inactivity');
    }
}

function known(rate) {
    return rates.includes(rate) ? rate : 1;
}
