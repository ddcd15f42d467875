// Plays chunks as one video: two video elements take turns, and while one plays, the other holds the next chunk ready
// at its first frame. The old one stays in place until the new one has a picture, so that nothing flashes in between.
// Where a chunk is missing, time goes on without a picture.
import { Cell } from './cell.js';

/** Time without a picture advances by no more than this in one go, however long the page was not drawn. */
const longestStep = 0.25;
/** Nearer to a chunk's end than this there is no further frame. */
const edge = 0.002;

export class Reel {
    #stage;
    #chunks = [];
    #length = 0;
    #cells;
    #front = null;
    #wanted = null;
    #rate = 1;
    #last = null;
    #time = 0;
    playing = false;

    /** Puts its elements into `stage`. `onFailure` gets a chunk that cannot be played. */
    constructor(stage, onFailure = () => {}) {
        this.#stage = stage;
        this.#cells = [0, 1].map(() => new Cell(onFailure));
        stage.prepend(...this.#cells.map((cell) => cell.video));
    }

    /** The chunks there are, in order, from `seconds` on; those that are on screen stay as they are. */
    show({ chunks, length }, seconds = this.#time) {
        this.#chunks = chunks;
        this.#length = length;
        this.#cells.forEach((cell) => {
            cell.chunk = chunks.find((chunk) => chunk.number === cell.chunk?.number) ?? null;
        });
        if (this.chunk === null || seconds !== this.#time) {
            this.seek(seconds);
        }
    }

    /** Seconds from the first frame. */
    get time() {
        return this.#time;
    }

    get length() {
        return this.#length;
    }

    /** True while the picture that belongs to the time is still on its way. */
    get waiting() {
        return this.#wanted !== null && !this.#wanted.failed && (this.#front !== this.#wanted || !this.#wanted.ready);
    }

    /** The chunk on screen, or null where there is none. */
    get chunk() {
        return this.#wanted === null || this.#wanted.failed ? null : this.#wanted.chunk;
    }

    get atEnd() {
        return this.#time >= this.#length;
    }

    get rate() {
        return this.#rate;
    }

    set rate(rate) {
        this.#rate = rate;
        this.#cells.forEach((cell) => { cell.video.playbackRate = rate; });
    }

    play() {
        if (this.atEnd) {
            this.seek(0);
        }
        this.playing = true;
        this.#last = null;
    }

    pause() {
        this.playing = false;
        this.#cells.forEach((cell) => cell.video.pause());
    }

    seek(seconds) {
        this.#time = Math.min(Math.max(0, seconds), this.#length);
        this.#last = null;
        this.#aim();
        this.#present();
    }

    /** Asks once more for a picture that could not be had. */
    retry() {
        if (this.#wanted?.failed) {
            this.seek(this.#time);
        }
    }

    /** Moves on to `now`, in milliseconds; called for every picture that the screen draws. */
    advance(now) {
        const step = this.#last === null ? 0 : Math.min((now - this.#last) / 1000, longestStep) * this.#rate;
        this.#last = now;
        this.#present();
        if (!this.playing || this.waiting) {
            return;
        }
        const chunk = this.chunk;
        if (chunk === null || this.#wanted.video.ended || this.#time >= chunk.to - edge) {
            this.#roll(this.#time + step);
        } else {
            this.#follow(chunk);
        }
        if (this.atEnd) {
            this.pause();
        }
    }

    // Within a chunk the video's own clock is the clock.
    #follow(chunk) {
        const { video } = this.#wanted;
        this.#run();
        this.#time = Math.min(Math.max(this.#time, chunk.from + video.currentTime), chunk.to);
        if (video.ended || this.#time >= chunk.to - edge) {
            this.#roll(chunk.to);
        }
    }

    // Time goes on over the end of a chunk, or without one.
    #roll(seconds) {
        const before = this.#wanted?.chunk ?? null;
        const next = this.#chunks.find((chunk) => chunk.from > this.#time - edge && chunk !== before);
        const crossed = next !== undefined && seconds >= next.from - edge;
        this.#time = Math.min(crossed ? next.from : seconds, this.#length);
        if (crossed) {
            this.#aim();
            this.#present();
        } else if (before !== null && this.#time > before.to + edge) {
            this.#aim();
        }
    }

    // Finds the chunk of the present time and gets a cell ready for it.
    #aim() {
        const chunk = this.#chunkAt(this.#time);
        if (chunk === null) {
            this.#wanted = null;
            this.#front?.video.pause();
            this.#prepare(this.#chunks.find((each) => each.from > this.#time));
            return;
        }
        const offset = Math.min(this.#time - chunk.from, chunk.to - chunk.from - edge);
        const holder = this.#cells.find((cell) => cell.chunk?.number === chunk.number && !cell.failed);
        const cell = holder ?? this.#idle();
        if (!holder) {
            cell.load(chunk, offset);
        } else if (Math.abs(cell.video.currentTime - offset) > edge) {
            cell.video.currentTime = offset;
        }
        this.#wanted = cell;
        if (this.#front !== cell) {
            this.#front?.video.pause();
        }
    }

    // Brings the wanted picture to the front once it is there, and has the one after it made ready.
    #present() {
        const hidden = this.#wanted === null || this.#wanted.failed;
        this.#stage.classList.toggle('without-picture', hidden);
        if (hidden || !this.#wanted.ready) {
            return;
        }
        if (this.#front !== this.#wanted) {
            this.#front = this.#wanted;
            this.#cells.forEach((cell) => cell.video.classList.toggle('front', cell === this.#front));
            this.#run();
        }
        this.#prepare(this.#chunks.find((chunk) => chunk.from > this.#front.chunk.from));
    }

    #run() {
        const { video } = this.#front;
        if (this.playing && video.paused && !video.ended) {
            video.playbackRate = this.#rate;
            video.play().catch(() => {});
        }
    }

    #prepare(chunk) {
        if (chunk && !this.#cells.some((cell) => cell.chunk?.number === chunk.number)) {
            const cell = this.#idle();
            cell.video.pause();
            cell.load(chunk, 0);
        }
    }

    #idle() {
        return this.#cells.find((cell) => cell !== this.#front) ?? this.#cells[0];
    }

    #chunkAt(seconds) {
        const found = this.#chunks.find((chunk) => chunk.from - edge <= seconds && seconds < chunk.to - edge);
        const last = this.#chunks.at(-1);
        return found ?? (last && seconds >= last.to - edge ? last : null);
    }
}
