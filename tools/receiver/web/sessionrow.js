// One line of the list of sessions.
import { replayAddress } from './address.js';
import { el, foreign } from './dom.js';
import { clockTime, counted, fullDate, number, spokenTime, when } from './format.js';
import { sign } from './kinds.js';
import { liveSign } from './livesign.js';

const screensShown = 3;

export const columns = [
    ['Started', 'started'], ['Length', 'length'], ['Project', 'project'], ['Device', 'device'], ['Screens', 'screens'],
    ['Taps', 'count'], ['Rage', 'count'], ['Dead', 'count'], ['Error', 'count'],
];

/** A row of the table for a session as the receiver lists it. */
export function sessionRow(session) {
    const { counts } = session;
    const start = el('a', { href: replayAddress(session.id), class: 'stretched', title: fullDate(session.startMillis) }, when(session.startMillis));
    return el('tr', { role: 'row', 'data-id': session.id },
        cell('started', start, liveSign(session)),
        cell('length', missing(session), el('span', { 'aria-hidden': 'true' }, clockTime(session.durationMillis / 1000)),
            el('span', { class: 'unseen' }, spokenTime(session.durationMillis / 1000))),
        cell('project', foreign(session.projectId), ' ', foreign(session.brandId, { class: 'faint' })),
        cell('device', ...device(session.device, session.state === 'open')),
        cell('screens', ...screens(session.screens, session.screenCount)),
        count('tap', counts.taps, 'tap'),
        count('rage', counts.rageTaps, 'rage tap'),
        count('dead', counts.deadTaps, 'dead tap'),
        count('error', counts.errorTaps, 'error tap'));
}

function cell(kind, ...children) {
    return el('td', { role: 'cell', class: kind }, ...children);
}

function missing(session) {
    return session.missingChunks > 0 &&
        el('span', { class: 'missing', title: `${counted(session.missingChunks, 'chunk')} of the video never arrived` }, 'gaps ');
}

function device({ model, system }, open) {
    if (!model && !system) {
        return [el('span', { class: 'faint' }, open ? 'device not known yet' : 'device not known')];
    }
    return [foreign(model || 'Unknown'), ' ', foreign(system || '', { class: 'faint' })];
}

/** `names` are the first of `all` screens. */
function screens(names, all) {
    const shown = names.slice(0, screensShown).flatMap((name, index) => [index > 0 && ', ', foreign(name)]);
    const more = all - screensShown;
    const title = names.slice(screensShown).concat(all > names.length ? '…' : []).join(', ');
    return more > 0 ? [...shown, el('span', { class: 'faint', title }, ` +${more}`)] : shown;
}

function count(kind, value, thing) {
    const shown = value > 0 ? el('span', { class: 'pill', 'aria-hidden': 'true' }, sign(kind), number(value)) : el('span', { 'aria-hidden': 'true' }, '–');
    return el('td', { role: 'cell', class: `count ${value > 0 ? kind : 'none'}` }, shown, el('span', { class: 'unseen' }, counted(value, thing)));
}
