// Everything about the session as a whole, and the log of one that has no video to stand beside.
import { arrange, el, foreign } from './dom.js';
import { placelessRow } from './eventrow.js';
import { bytes, clockTime, counted, fullDate, number } from './format.js';

const names = {
    AppVersion: 'App', OperatingSystem: 'System', DeviceModel: 'Device', DeviceCodename: 'Codename', SdkVersion: 'Library',
    Platform: 'Platform', DeviceId: 'Device ID',
};
const order = Object.keys(names);

export class Facts {
    #said = new Map();
    #lines = new Map();
    #list = el('dl', { class: 'details' });
    #log = el('ol', { class: 'entries' });
    #logHeading = el('h2', {}, 'Log');
    element = el('section', { class: 'facts', 'aria-label': 'Session', tabindex: 0 }, el('h2', {}, 'Session'), this.#list, this.#logHeading, this.#log);

    /** What is said of it already stays untouched. */
    show(model) {
        this.#said = new Map(factsOf(model).map(([name, value]) => [name, this.#pair(name, value)]));
        arrange(this.#list, [...this.#said.values()].flat());
        // Without a video the log may still say why there is none.
        const lines = model.chunks.length > 0 ? [] : model.entries.filter((entry) => entry.kind === 'log');
        this.#lines = new Map(lines.map((entry) => [entry.id, this.#lines.get(entry.id) ?? placelessRow(entry)]));
        arrange(this.#log, [...this.#lines.values()]);
        this.#log.hidden = this.#logHeading.hidden = lines.length === 0;
    }

    #pair(name, value) {
        const pair = [el('dt', {}, name), el('dd', {}, value)];
        const before = this.#said.get(name);
        return before?.[1].textContent === pair[1].textContent ? before : pair;
    }
}

function factsOf(model) {
    const { session } = model;
    const metadata = [...model.metadata].sort((a, b) => rank(a.id) - rank(b.id));
    const facts = [
        ['Started', fullDate(session.startMillis)],
        ['Length', model.chunks.length > 0 && `${clockTime(model.length)}${session.state === 'open' ? ', not closed' : ''}`],
        ['Project', foreign(`${session.brandId} / ${session.projectId}`)],
        ...metadata.map((entry) => [names[entry.id] ?? entry.id, foreign(entry.value)]),
        ['Window', session.window && `${session.window.widthPx} × ${session.window.heightPx} px`],
        ['Video', model.chunks.length > 0 && `${counted(model.chunks.length, 'chunk')}, ${bytes(session.bytes)}${missing(model)}`],
        ['Touches', precision(model)],
        ['Session', foreign(session.id, { class: 'mono' })],
    ];
    return facts.filter(([, value]) => value);
}

function rank(id) {
    const at = order.indexOf(id);
    return at === -1 ? order.length : at;
}

function missing(model) {
    const count = model.gaps.filter((gap) => gap.first !== null).reduce((sum, gap) => sum + gap.last - gap.first + 1, 0);
    return count > 0 ? `, ${number(count)} missing` : '';
}

// Touches are timed by another clock than the rest: how closely the two could be brought together.
function precision({ widestSpread }) {
    return widestSpread === null ? null : `placed to ± ${Math.max(widestSpread / 2, 0.1).toFixed(1)} s`;
}
