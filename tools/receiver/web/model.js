// A session as the replay shows it: the receiver's answer, put in order on the one clock of the video, in seconds.
import { filmOf, wordsOfGap } from './film.js';
import { counted } from './format.js';
import { frameMillis, videoClock } from './videoclock.js';
import { logClock } from './logclock.js';
import { placeEvents } from './placement.js';
import { sectionsOf } from './sections.js';
import { carriesUptime } from './touchbounds.js';

/** A touch whose moment is less certain than this is shown with its bounds. */
const noticeableSpread = 0.5;

/**
 * The `film` with its `chunks`, `gaps` and `length`, and beside it `entries` (what happened, by time), `sections` (screens),
 * `session`, `metadata`, and `widestSpread`, the seconds that the least certain touch may be off by, or null without one. An
 * entry has `id`, which it keeps when more of the session arrives, `kind`, `at`, `spread` ({low, high}, or null where the moment is certain enough), `point` ({x, y} as parts of
 * the frame, or null), `title`, `text` and `fields`.
 */
export function buildModel(answer, film = filmOf(answer.chunks)) {
    const { chunks, gaps, length } = film;
    const places = placeEvents(answer.timeline, answer.chunks);
    // Whole milliseconds, so that an address can name the very moment.
    const seconds = (millis) => Math.min(Math.max(Math.round(millis) / 1000, 0), length);
    const ids = idsOf(answer.timeline);
    const events = answer.timeline
        .map((event, index) => entryOf(event, ids[index], places[index], seconds))
        .filter((entry) => entry !== null);
    const entries = [...events, ...logEntries(answer, places, seconds), ...gaps.map(gapEntry)].sort((a, b) => a.at - b.at);
    return {
        session: answer.session,
        chunks,
        gaps,
        length,
        entries,
        sections: sectionsOf(entries, gaps, length),
        metadata: answer.metadata,
        widestSpread: widestSpread(answer.timeline, places),
    };
}

// By the chunk and the place in it: a chunk that comes late leaves everything else its name.
function idsOf(timeline) {
    const counts = new Map();
    return timeline.map(({ chunkNumber }) => {
        const place = counts.get(chunkNumber) ?? 0;
        counts.set(chunkNumber, place + 1);
        return `e${chunkNumber}.${place}`;
    });
}

// What is not there has its line too.
function gapEntry(gap) {
    return {
        id: `g${gap.from}-${gap.to}`, kind: 'gap', at: gap.from, spread: null, point: null,
        title: wordsOfGap(gap), text: counted(Math.round(gap.to - gap.from), 'second'), fields: null,
    };
}

function widestSpread(timeline, places) {
    return timeline.reduce((widest, event, index) => {
        const { low, high } = places[index];
        return carriesUptime(event) ? Math.max(widest ?? 0, (high - low) / 1000) : widest;
    }, null);
}

const signalKinds = { RageTap: 'rage', DeadTap: 'dead', ErrorTap: 'error' };
const signalTitles = { rage: 'Rage tap', dead: 'Dead tap', error: 'Error tap' };

function entryOf(event, id, place, seconds) {
    const described = describe(event);
    if (described === null) {
        return null;
    }
    const spread = { low: seconds(place.low), high: seconds(place.high) };
    const uncertain = spread.high - spread.low > noticeableSpread;
    return { id, at: seconds(place.at), spread: uncertain ? spread : null, point: null, text: '', fields: null, ...described };
}

function describe(event) {
    const details = event.eventDetails ?? {};
    switch (event.type) {
        case 'UserInteraction':
            return { kind: 'tap', title: 'Tap', point: pointOf(details.target) };
        case 'SignalCaptured': {
            const kind = signalKinds[details.signalId];
            return kind ? { kind, title: signalTitles[kind], point: pointOf(details.target), text: details.error?.message ?? '' } : null;
        }
        case 'ScreenChange':
            return screenChange(details);
        case 'WindowDimensions':
            return { kind: 'note', title: `Window ${details.windowWidthPx} × ${details.windowHeightPx}` };
        case 'SessionStartMarker':
            return { kind: 'note', title: 'Recording started' };
        default:
            return null;
    }
}

function screenChange(details) {
    const path = (details.screenHierarchy ?? []).map((element) => element.screenName);
    const appeared = details.changeType === 'appear';
    return { kind: 'screen', title: path.at(-1) ?? '', text: appeared ? '' : 'disappeared', path, appeared };
}

function pointOf(target) {
    const x = target?.xNormalizedTo1;
    const y = target?.yNormalizedTo1;
    return Number.isFinite(x) && Number.isFinite(y) ? { x, y } : null;
}

function logEntries(answer, places, seconds) {
    const anchors = [{ received: answer.session.startMillis, at: -frameMillis }];
    const { ends } = videoClock(answer.timeline, answer.chunks);
    const endOf = new Map(ends.map((end) => [end.number, places[end.index].at]));
    for (const chunk of answer.chunks) {
        if (endOf.has(chunk.number) && Number.isFinite(chunk.receivedMillis)) {
            anchors.push({ received: chunk.receivedMillis, at: endOf.get(chunk.number) });
        }
    }
    const millisAt = logClock(anchors.sort((a, b) => a.received - b.received));
    return answer.logs.map((line, index) => ({
        id: `l${index}`, kind: 'log', at: seconds(millisAt(line.receivedMillis)), spread: null, point: null,
        title: line.message, text: [line.level, line.tag].filter(Boolean).join(' · '), level: line.level, fields: line.fields,
    }));
}
