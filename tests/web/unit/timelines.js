// Short timelines, written by hand: `wall` and `touch` say what happened when, in milliseconds of a session whose wall
// clock began at `wallZero` and whose uptime clock at `uptimeZero`.

export const wallZero = 1_700_000_000_000;
export const uptimeZero = 5_000_000;

export const somewhere = { xNormalizedTo1: 0.5, yNormalizedTo1: 0.5, xOriginalPx: 585, yOriginalPx: 1266 };
export const elsewhere = { xNormalizedTo1: 0.1, yNormalizedTo1: 0.1, xOriginalPx: 117, yOriginalPx: 253 };

function event(timestamp, type, eventDetails, chunkNumber) {
    return eventDetails === null ? { timestamp, type, chunkNumber } : { timestamp, type, eventDetails, chunkNumber };
}

export function start(chunkNumber = 0) {
    return event(wallZero, 'SessionStartMarker', null, chunkNumber);
}

export function firstFrame() {
    return event(wallZero + 500, 'WindowDimensions', { windowWidthPx: 1170, windowHeightPx: 2532, mode: 'Regular' }, 0);
}

export function appears(at, screenName, chunkNumber = 0) {
    return change(at, 'appear', [screenName], chunkNumber);
}

export function disappears(at, screenName, chunkNumber = 0) {
    return change(at, 'disappear', [screenName], chunkNumber);
}

export function change(at, changeType, path, chunkNumber = 0) {
    const screenHierarchy = path.map((screenName, depth) => ({ depth, screenName, screenType: 'Screen' }));
    return event(wallZero + at, 'ScreenChange', { changeType, detectionType: 'manual', screenHierarchy }, chunkNumber);
}

export function tap(at, chunkNumber = 0, target = somewhere) {
    return event(uptimeZero + at, 'UserInteraction', { interactionId: 'Tap', target }, chunkNumber);
}

export function rageTap(at, chunkNumber = 0, target = somewhere) {
    return event(uptimeZero + at, 'SignalCaptured', { signalId: 'RageTap', target }, chunkNumber);
}

export function deadTap(at, chunkNumber = 0, target = somewhere) {
    return event(uptimeZero + at, 'SignalCaptured', { signalId: 'DeadTap', target }, chunkNumber);
}

export function errorTap(at, message = '', chunkNumber = 0, target = somewhere) {
    return event(wallZero + at, 'SignalCaptured', { signalId: 'ErrorTap', target, error: { message } }, chunkNumber);
}

export function chunkEnd(at, chunkNumber) {
    return event(wallZero + at, 'ChunkEndMarker', null, chunkNumber);
}

/** Chunks as the receiver describes them: numbers that are there, and how many frames the last one has. */
export function chunks(numbers, lastFrames = 20) {
    return numbers.map((number, index) => {
        const frames = index === numbers.length - 1 ? lastFrames : 20;
        return { number, frames, durationMillis: frames * 500, bytes: 15000, receivedMillis: 0, url: `/api/sessions/S/chunks/${number}.mp4` };
    });
}
