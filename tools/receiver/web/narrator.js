// Tells those who do not see the marks on the video what is passing.
import { announce } from './dom.js';
import { kinds } from './kinds.js';

export class Narrator {
    #entries = [];
    #last = 0;

    show({ entries }) {
        this.#entries = entries.filter((entry) => kinds[entry.kind].signal || entry.kind === 'gap');
    }

    /** What lies before `seconds` has been told, or was jumped over. */
    skipTo(seconds) {
        this.#last = seconds;
    }

    /** Tells what has passed until `seconds`. */
    hear(seconds) {
        const passed = this.#entries.filter((entry) => this.#last < entry.at && entry.at <= seconds);
        if (passed.length > 0) {
            announce(passed.map((entry) => `${entry.title}${entry.text ? `: ${entry.text}` : ''}`).join(', '));
        }
        this.#last = seconds;
    }
}
