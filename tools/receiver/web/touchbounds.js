// What the order of a timeline says about its touches. A touch carries the uptime clock, its neighbours the wall
// clock, and events stand in the order in which they were appended: so each touch bounds how far the two clocks
// are apart. docs/replay.md derives the bounds.

/** Longest time from a touch to the append of what was made of it, beyond a dead tap's wait. */
export const touchDelayMillis = 250;
/** Longest time from the stamp of a wall-clock event to its append: an error of another thread waits for the main one. */
export const appendDelayMillis = 50;
/** A dead tap is appended one of these waits after its touch; which one depends on the device. */
export const deadTapWaitsMillis = [1000, 1500, 2000];
/** An error tap's error came less than this after its tap. */
export const errorTapWindowMillis = 500;

// No phone has been up for ten years, and no wall clock has read less since 1980. Signals that a host injects for
// diagnosis carry the wall clock although taps of their kind do not.
const longestUptimeMillis = 10 * 365.25 * 24 * 3600 * 1000;

export function isDeadTap(event) {
    return event.type === 'SignalCaptured' && event.eventDetails?.signalId === 'DeadTap';
}

function isErrorTap(event) {
    return event.type === 'SignalCaptured' && event.eventDetails?.signalId === 'ErrorTap';
}

export function carriesUptime(event) {
    const ofATouch = event.type === 'UserInteraction' || (event.type === 'SignalCaptured' && !isErrorTap(event));
    return ofATouch && event.timestamp < longestUptimeMillis;
}

/** Shortest and longest time from the touch of `event` to its append, if dead taps wait one of `waits`. */
export function delayOf(event, waits) {
    return isDeadTap(event)
        ? { shortest: Math.min(...waits), longest: Math.max(...waits) + touchDelayMillis }
        : { shortest: 0, longest: touchDelayMillis };
}

/** True when the wall clock was set back between two neighbours in the timeline. */
export function stepsBack(earlier, later) {
    return later.timestamp + appendDelayMillis < earlier.timestamp - touchDelayMillis;
}

/** For every event the index of the nearest wall-clock event before and after it, -1 where there is none. */
export function wallNeighbours(timeline) {
    const before = [];
    const after = [];
    let last = -1;
    timeline.forEach((event, index) => {
        before.push(last);
        last = carriesUptime(event) ? last : index;
    });
    last = -1;
    for (let index = timeline.length - 1; index >= 0; --index) {
        after[index] = last;
        last = carriesUptime(timeline[index]) ? last : index;
    }
    return { before, after };
}

/**
 * One entry a touch, in the timeline's order: `index` in the timeline; `gap`, the index of the wall-clock event before
 * it, which touches between the same two share; `low` and `high`, between which wall clock minus uptime clock lies, in
 * milliseconds, unless the wall clock was set back in that gap.
 */
export function boundTouches(timeline, wait) {
    const neighbours = wallNeighbours(timeline);
    const bounds = [];
    let latestTap = null;
    timeline.forEach((event, index) => {
        if (carriesUptime(event)) {
            const bound = boundByNeighbours(timeline, index, neighbours, wait);
            bounds.push(bound);
            latestTap = event.type === 'UserInteraction' ? bound : latestTap;
        } else if (isErrorTap(event) && latestTap !== null && isTapOf(timeline[latestTap.index], event)) {
            raiseToError(latestTap, timeline[latestTap.index], event);
        }
    });
    return bounds;
}

function boundByNeighbours(timeline, index, neighbours, wait) {
    const event = timeline[index];
    const earlier = timeline[neighbours.before[index]];
    const later = timeline[neighbours.after[index]];
    const delay = delayOf(event, [wait]);
    // The uptime stamp was cut to whole milliseconds, hence one more.
    const low = earlier ? earlier.timestamp - delay.longest - 1 - event.timestamp : -Infinity;
    const high = later ? later.timestamp + appendDelayMillis - delay.shortest - event.timestamp : Infinity;
    return { index, gap: neighbours.before[index], low, high };
}

// The tap of an error tap is the last one before it, and stands at the same point. Where a chunk is missing between
// the two, the tap may be missing with it.
function isTapOf(tap, errorTap) {
    const a = tap.eventDetails?.target;
    const b = errorTap.eventDetails?.target;
    return Boolean(a && b) && a.xOriginalPx === b.xOriginalPx && a.yOriginalPx === b.yOriginalPx &&
        errorTap.chunkNumber - tap.chunkNumber <= 1;
}

function raiseToError(bound, tap, errorTap) {
    const earliest = errorTap.timestamp - errorTapWindowMillis - touchDelayMillis - 1;
    bound.low = Math.max(bound.low, earliest - tap.timestamp);
}
