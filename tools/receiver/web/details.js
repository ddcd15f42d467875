// Everything about the session as a whole.
import { el, foreign } from './dom.js';
import { bytes, clockTime, counted, fullDate, number } from './format.js';

const names = {
    AppVersion: 'App', OperatingSystem: 'System', DeviceModel: 'Device', DeviceCodename: 'Codename', SdkVersion: 'Library',
    Platform: 'Platform', DeviceId: 'Device ID',
};
const order = Object.keys(names);

/** A description list of the session. */
export function detailsList(model) {
    const { session } = model;
    const metadata = [...model.metadata].sort((a, b) => rank(a.id) - rank(b.id));
    const pairs = [
        ['Started', fullDate(session.startMillis)],
        ['Length', model.chunks.length > 0 && `${clockTime(model.length)}${session.state === 'open' ? ', not closed' : ''}`],
        ['Project', foreign(`${session.brandId} / ${session.projectId}`)],
        ...metadata.map((entry) => [names[entry.id] ?? entry.id, foreign(entry.value)]),
        ['Window', session.window && `${session.window.widthPx} × ${session.window.heightPx} px`],
        ['Video', model.chunks.length > 0 && `${counted(model.chunks.length, 'chunk')}, ${bytes(session.bytes)}${missing(model)}`],
        ['Touches', precision(model)],
        ['Session', foreign(session.id, { class: 'mono' })],
    ];
    return el('dl', { class: 'details' }, pairs.filter(([, value]) => value).flatMap(([name, value]) => [el('dt', {}, name), el('dd', {}, value)]));
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
