// Asks again and again while somebody looks, and less often while nothing answers.

const pauses = { usual: 2000, afterFailure: 5000 };

/**
 * Calls `ask` now and then until `stop`; `ask` returns a promise. While the page is hidden it rests. `onFailure` gets what
 * `ask` failed with, `onSuccess` is called after each time that it did not.
 */
export class Poll {
    #ask;
    #onSuccess;
    #onFailure;
    #timer = null;
    #stopped = false;
    #running = false;
    #look = () => this.now();

    constructor(ask, { onSuccess = () => {}, onFailure = () => {} } = {}) {
        this.#ask = ask;
        this.#onSuccess = onSuccess;
        this.#onFailure = onFailure;
        document.addEventListener('visibilitychange', this.#look);
    }

    start() {
        this.#wait(pauses.usual);
        return this;
    }

    stop() {
        this.#stopped = true;
        document.removeEventListener('visibilitychange', this.#look);
        clearTimeout(this.#timer);
    }

    /** Asks at once instead of at the end of the pause. */
    async now() {
        if (this.#stopped || this.#running || document.hidden) {
            return;
        }
        clearTimeout(this.#timer);
        this.#running = true;
        let pause = pauses.usual;
        try {
            await this.#ask();
            this.#onSuccess();
        } catch (error) {
            pause = pauses.afterFailure;
            this.#onFailure(error);
        }
        this.#running = false;
        this.#wait(pause);
    }

    #wait(pause) {
        if (!this.#stopped) {
            clearTimeout(this.#timer);
            this.#timer = setTimeout(() => this.now(), pause);
        }
    }
}
