// When on the video's clock each event of a timeline happened: the stamps of the wall clock as they stand, the touches
// as closely as the offset of the two clocks is known.
import { appendDelayMillis, carriesUptime, delayOf, wallNeighbours } from './touchbounds.js';
import { middle } from './intervals.js';
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
    return timeline.map((event, index) => {
        if (!carriesUptime(event)) {
            const at = clock.millisOf(index);
            return { at, low: at, high: at };
        }
        const bracket = bracketOf(timeline, index, neighbours, clock, delayOf(event, waits));
        const levels = [neighbours.before[index], neighbours.after[index]]
            .filter((neighbour) => neighbour >= 0)
            .map((neighbour) => clock.levelOf(neighbour));
        return within(bracket, candidate(event, offsets.get(index), levels));
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
        return span(Math.max(low, bracket.low - longestStallMillis), high);
    }
    const common = { low: Math.max(low, bracket.low), high: Math.min(high, bracket.high) };
    return common.low <= common.high ? span(common.low, common.high) : span(bracket.low, bracket.high);
}

function span(low, high) {
    return { at: middle({ low, high }), low, high };
}
