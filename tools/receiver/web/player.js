// A replay: the video, the scrubber, the list and the controls on one clock. It knows nothing of the receiver.
import { hashAt } from './address.js';
import { Controls } from './controls.js';
import { showKeys } from './dialogs.js';
import { announce, el } from './dom.js';
import { EventList } from './eventlist.js';
import { clockTime } from './format.js';
import { actionOf } from './keys.js';
import { Narrator } from './narrator.js';
import { recall, remember } from './preferences.js';
import { Scrubber } from './scrubber.js';
import { sectionAt } from './sections.js';
import { Stage } from './stage.js';
import { Transport } from './transport.js';

/** For so many milliseconds the rest of the page waits for the first picture. */
const patience = 300;

export class Player {
    #model = null;
    #drawing = false;
    #resumeAfterDrag = false;
    #letters = recall('letters', 'yes') === 'yes';
    #narrator = new Narrator();
    #stage;
    #reel;
    #scrubber = new Scrubber((seconds) => this.#transport.seek(seconds), (dragging) => this.#drag(dragging));
    #list = new EventList((seconds) => this.#transport.seek(seconds));
    #controls = new Controls({
        act: (name) => this.#act(name),
        setRate: (rate) => { this.#transport.rate = rate; },
        setSkip: (skip) => { this.#transport.skip = skip; },
    });
    #transport;
    element;

    /** `facts` is an element that has its place beside the video; `onFailure` is called when a chunk cannot be played. */
    constructor(facts, onFailure) {
        this.#stage = new Stage({ onPress: () => this.#act('toggle'), onFailure });
        this.#reel = this.#stage.reel;
        this.#transport = new Transport(this.#reel, {
            seek: () => this.#moved(), play: () => this.#began(), pause: () => this.#rested(), change: () => this.#changed(),
        });
        this.element = el('div', { class: 'replay' }, this.#stage.element,
            el('div', { class: 'deck' }, this.#scrubber.element, this.#controls.element), this.#list.element, facts);
        this.#changed();
        document.addEventListener('keydown', (event) => this.#key(event));
    }

    /**
     * Puts the picture of `film` on screen, at `seconds` or where the replay stands; what happened comes with `show`. The
     * promise is kept once the picture is there, or after a while without one.
     */
    begin(film, seconds = this.#reel.time) {
        this.#stage.show(film, seconds);
        this.#draw();
        const until = performance.now() + patience;
        return new Promise((resolve) => {
            const look = () => {
                if (this.#reel.waiting && performance.now() < until) {
                    requestAnimationFrame(look);
                } else {
                    // Behind the frame that is being drawn.
                    setTimeout(resolve);
                }
            };
            look();
        });
    }

    /** Shows what happened; of a model that grew, from where the replay stands. */
    show(model) {
        this.#model = model;
        this.#stage.overlay.entries = model.entries;
        this.#transport.show(model);
        this.#narrator.show(model);
        this.#scrubber.show(model);
        this.#list.show(model);
        this.#narrator.skipTo(this.#reel.time);
        this.#draw();
    }

    /** Of several entries at the second where the replay stands, the one with this id is meant. */
    choose(entry) {
        this.#list.chosen = entry;
    }

    goTo(seconds, entry) {
        this.choose(entry);
        this.#reel.seek(seconds);
        this.#arrived();
    }

    /** Asks once more for a picture that could not be had. */
    retry() {
        this.#reel.retry();
        this.#draw();
    }

    stop() {
        this.#reel.pause();
        this.#draw();
    }

    #key(event) {
        const action = this.element.isConnected ? actionOf(event, this.#letters) : null;
        if (action !== null) {
            event.preventDefault();
            this.#act(action);
        }
    }

    #act(name) {
        if (name === 'link') {
            this.#copyLink();
        } else if (name === 'help') {
            showKeys(this.#letters, (letters) => this.#setLetters(letters));
        } else {
            this.#transport.act(name);
        }
    }

    #setLetters(letters) {
        this.#letters = letters;
        remember('letters', letters ? 'yes' : 'no');
    }

    #moved() {
        this.#keepAddress();
        this.#arrived();
    }

    #arrived() {
        this.#narrator.skipTo(this.#reel.time);
        this.#list.follow();
        this.#draw();
    }

    #began() {
        this.#narrator.skipTo(this.#reel.time);
        this.#draw();
    }

    #rested() {
        this.#keepAddress();
        this.#draw();
    }

    #changed() {
        this.#controls.rate = this.#transport.rate;
        this.#controls.skip = this.#transport.skip;
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
        window.history.replaceState(null, '', hashAt(this.#reel.time, this.#list.chosenAt(this.#reel.time)));
    }

    // Draws now, and goes on for as long as something moves.
    #draw() {
        if (this.#drawing) {
            return;
        }
        this.#drawing = true;
        requestAnimationFrame((now) => {
            this.#drawing = false;
            this.#advance(now);
            this.#stage.render(now);
            if (this.#model !== null) {
                this.#render();
            }
            const { playing, waiting } = this.#reel;
            if (playing || waiting) {
                this.#draw();
            }
        });
    }

    #render() {
        const { time, playing, length } = this.#reel;
        this.#scrubber.render(time);
        this.#list.render(time);
        this.#controls.render({ playing, time, length, screen: sectionAt(this.#model.sections, time)?.name ?? '' });
    }

    #advance(now) {
        const wasPlaying = this.#reel.playing;
        this.#transport.advance(now);
        if (wasPlaying) {
            this.#narrator.hear(this.#reel.time);
        }
        if (wasPlaying && !this.#reel.playing) {
            announce('The end');
            this.#keepAddress();
        }
    }
}
