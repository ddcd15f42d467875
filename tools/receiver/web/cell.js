// One of the video elements that take turns: holds a chunk, at the picture that is wanted of it.
import { el } from './dom.js';

export class Cell {
    chunk = null;
    failed = false;
    video = el('video', { muted: true, playsinline: true, preload: 'auto', disablepictureinpicture: true, tabindex: -1, 'aria-hidden': 'true' });

    /** `onFailure` gets a chunk that cannot be played. */
    constructor(onFailure) {
        this.video.muted = true;
        this.video.addEventListener('error', () => {
            this.failed = true;
            onFailure(this.chunk);
        });
    }

    load(chunk, offset) {
        this.chunk = chunk;
        this.failed = false;
        this.video.src = chunk.url;
        this.video.currentTime = offset;
    }

    /** True once it shows the picture that was asked for last. */
    get ready() {
        return this.video.readyState >= HTMLMediaElement.HAVE_CURRENT_DATA && !this.video.seeking;
    }
}
