// When on the video's clock each event of a timeline happened: the stamps of the wall clock as they stand, the touches
// as closely as the offset of the two clocks is known.
import { appendDelayMillis, carriesUptime, delayOf, wallNeighbours } from './touchbounds.js';
import { anything, intersection, isEmpty, middle } from './intervals.js';
import { touchOffsets } from './offsets.js';
import { videoClock } from './videoclock.js';

/** A main thread that stalls for longer is ended by its phone. */
const longestStallMillis = 10000;

/**
 * For every event `{at, low, high}`: the best single answer and the earliest and latest moment possible, in
 * milliseconds of the video. Moments before the first frame are negative.
 */
export function placeEvents(timeline, chunks) {
    const { offsets, waits, cuts } = touchOffsets(timeline);
    const clock = videoClock(timeline, chunks, cuts);
    const neighbours = wallNeighbours(timeline);
    const spans = timeline.map((event, index) => {
        if (!carriesUptime(event)) {
            const at = clock.millisOf(index);
            return { low: at, high: at };
        }
        const bracket = bracketOf(timeline, index, neighbours, clock, delayOf(event, waits));
        const levels = [neighbours.before[index], neighbours.after[index]]
            .filter((neighbour) => neighbour >= 0)
            .map((neighbour) => clock.levelOf(neighbour));
        return within(bracket, candidate(event, offsets.get(index), levels));
    });
    return togetherByTouch(timeline, spans).map((span) => ({ at: middle(span), ...span }));
}

// A tap and the dead tap that came of it are one touch, and so at one moment.
function togetherByTouch(timeline, spans) {
    const ofTouch = new Map();
    timeline.forEach((event, index) => {
        if (carriesUptime(event)) {
            const common = intersection(ofTouch.get(event.timestamp) ?? anything, spans[index]);
            ofTouch.set(event.timestamp, isEmpty(common) ? spans[index] : common);
        }
    });
    return spans.map((span, index) => {
        const common = carriesUptime(timeline[index]) ? intersection(span, ofTouch.get(timeline[index].timestamp)) : span;
        return isEmpty(common) ? span : common;
    });
}

// Between which moments the order of the timeline alone puts a touch.
function bracketOf(timeline, index, neighbours, clock, delay) {
    const limits = clock.limitsOf(timeline[index].chunkNumber);
    const before = neighbours.before[index];
    const after = neighbours.after[index];
    const earliest = before < 0 ? limits.low : Math.max(limits.low, clock.millisOf(before));
    const latest = after < 0 ? limits.high : Math.min(limits.high, clock.millisOf(after) + appendDelayMillis);
    const low = earliest - delay.longest;
    return { low, high: Math.max(low, latest - delay.shortest) };
}

// Where the wall clock was set between its neighbours, a touch may belong to either side.
function candidate(event, offset, levels) {
    if (levels.length === 0) {
        return { low: -Infinity, high: Infinity };
    }
    return {
        low: event.timestamp + offset.low - Math.max(...levels),
        high: event.timestamp + offset.high - Math.min(...levels),
    };
}

function within(bracket, { low, high }) {
    const stalled = high < bracket.low && high > bracket.low - longestStallMillis;
    if (stalled) {
        return { low: Math.max(low, bracket.low - longestStallMillis), high };
    }
    const common = intersection({ low, high }, bracket);
    return isEmpty(common) ? bracket : common;
}
