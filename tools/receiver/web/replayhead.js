// The header of a replay: whose session, whether more of it is coming, and what can be done with it.
import { timelineAddress, videoAddress } from './api.js';
import { el, foreign, setText } from './dom.js';
import { fullDate, when } from './format.js';
import { icon } from './kinds.js';
import { liveSign } from './livesign.js';

export class ReplayHead {
    #project = foreign('');
    #started = el('span', { class: 'faint' });
    #state = el('span', { class: 'state' });
    #title = el('h1', {}, this.#project, ' ', this.#started, ' ', this.#state);
    #video;
    /** What stands in the header, in order. */
    parts;

    /** `remove` is called when the session is to be deleted. */
    constructor(id, remove) {
        const download = (address, title, ...children) => el('a', { class: 'button', href: address, download: true, title }, ...children);
        this.#video = download(videoAddress(id), 'Download the whole session as one MP4', icon('video'), words('Video'));
        this.parts = [wayUp(), this.#title, el('div', { class: 'actions' },
            this.#video,
            download(timelineAddress(id), 'Download the timeline as JSON', icon('download'), words('Timeline')),
            el('button', { type: 'button', class: 'quiet danger', title: 'Delete this session', on: { click: remove } }, icon('remove'), words('Delete')))];
    }

    /** Says how things stand; what has not changed stays untouched. */
    show(session, hasVideo) {
        const started = when(session.startMillis);
        document.title = `${session.projectId}, ${started} · MirethVex`;
        setText(this.#project, session.projectId);
        setText(this.#started, started);
        this.#title.title = fullDate(session.startMillis);
        this.#video.hidden = !hasVideo;
        const sign = liveSign(session);
        if (this.#state.textContent !== (sign?.textContent ?? '')) {
            this.#state.replaceChildren(...(sign ? [sign] : []));
        }
    }
}

/** The way back to the list. */
export function wayUp() {
    return el('a', { href: '/', class: 'up' }, el('span', {}, 'Sessions'));
}

// On a phone's width the drawing has to do.
function words(text) {
    return el('span', { class: 'words' }, text);
}
