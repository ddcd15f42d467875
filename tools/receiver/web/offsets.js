// How far the wall clock is from the uptime clock at each touch: the bounds of all touches taken together. Where they
// contradict each other the wall clock was set in between, and each side is taken for itself.
import { boundTouches, carriesUptime, deadTapWaitsMillis, isDeadTap, stepsBack } from './touchbounds.js';
import { anything, hull, intersection, isEmpty, middle } from './intervals.js';
import { findCuts } from './clockcuts.js';

/** Real sessions need one or two; beyond this the timeline makes no sense. */
const mostRounds = 20;

/**
 * Wall clock minus uptime clock, in milliseconds, for every event of `timeline` that carries the uptime clock:
 * `offsets` maps its index to `{low, high}`. `waits` are the waits that dead taps may have had on this device;
 * `clocks` counts the stretches between which the wall clock was set. `cuts` has `{after, before, millis}` for those
 * whose size the touches tell: between which two events it was set, and by about how much.
 */
export function touchOffsets(timeline) {
    const waits = timeline.some((event) => isDeadTap(event) && carriesUptime(event)) ? deadTapWaitsMillis : [0];
    const tries = waits.map((wait) => ({ wait, ...offsetsIfWaiting(timeline, wait) }));
    // The wait is the same for a whole session; a wrong one mostly contradicts it.
    const clocks = Math.min(...tries.map((each) => each.clocks));
    const likely = tries.filter((each) => each.clocks === clocks);
    const offsets = new Map();
    for (const index of likely[0].offsets.keys()) {
        offsets.set(index, hull(likely.map((each) => each.offsets.get(index))));
    }
    return { offsets, clocks, waits: likely.map((each) => each.wait), cuts: likely[0].cuts };
}

function offsetsIfWaiting(timeline, wait) {
    const bounds = boundTouches(timeline, wait);
    const steps = visibleSteps(timeline);
    for (let round = 1; ; ++round) {
        const runs = splitAt(steps, bounds).map((run) => ({ ...run, cuts: findCuts(withoutStalls(run.bounds)) }));
        const hidden = runs.flatMap((run) => run.cuts.steps);
        if (hidden.length === 0 || round === mostRounds) {
            return join(runs);
        }
        hidden.forEach((gap) => steps.add(gap));
    }
}

// The gaps, named by the wall-clock event before them, in which the wall clock is seen to step back.
function visibleSteps(timeline) {
    const steps = new Set();
    let previous = -1;
    timeline.forEach((event, index) => {
        if (!carriesUptime(event)) {
            if (previous >= 0 && stepsBack(timeline[previous], event)) {
                steps.add(previous);
            }
            previous = index;
        }
    });
    return steps;
}

// Runs of touches between those steps, each with the touches in the gap of the step after it.
function splitAt(steps, bounds) {
    const gaps = [...steps].sort((a, b) => a - b);
    const runs = [{ bounds: [], torn: [], gap: gaps[0] }];
    for (const bound of bounds) {
        while (runs.at(-1).gap < bound.gap) {
            runs.push({ bounds: [], torn: [], gap: gaps[runs.length] });
        }
        runs.at(-1)[runs.at(-1).gap === bound.gap ? 'torn' : 'bounds'].push(bound);
    }
    return runs;
}

// A touch that waited for a stalled main thread was made earlier than its neighbours say. Its lower bound then
// contradicts touches before and after it, which a clock that is set once does not do.
function withoutStalls(run) {
    const lowestBefore = runningLowest(run);
    const lowestAfter = runningLowest([...run].reverse()).reverse();
    return run.map((bound, at) => {
        const stalled = bound.low > lowestBefore[at] && bound.low > lowestAfter[at];
        return stalled ? { ...bound, low: -Infinity } : bound;
    });
}

// For each place the lowest upper bound among those before it.
function runningLowest(run) {
    let lowest = Infinity;
    return run.map((bound) => {
        const before = lowest;
        lowest = Math.min(lowest, bound.high);
        return before;
    });
}

function join(runs) {
    const joined = { offsets: new Map(), clocks: 0, cuts: [] };
    let before = anything;
    let torn = [];
    for (const run of runs) {
        const stretches = stretchesOf(withoutStalls(run.bounds), run.cuts.cuts);
        // Touches at the very step belong to one side or the other.
        torn.forEach((bound) => joined.offsets.set(bound.index, hull([before, stretches[0].offset])));
        spread(run.bounds, stretches, joined.offsets);
        run.cuts.cuts.forEach((cut, at) => {
            const millis = middle(stretches[at + 1].offset) - middle(stretches[at].offset);
            if (Number.isFinite(millis)) {
                joined.cuts.push({ ...eventsAround(run.bounds, cut), millis });
            }
        });
        joined.clocks += stretches.length;
        before = stretches.at(-1).offset;
        torn = run.torn;
    }
    torn.forEach((bound) => joined.offsets.set(bound.index, hull([before, anything])));
    return joined;
}

function eventsAround(bounds, cut) {
    return { after: bounds[cut.earliest - 1]?.index ?? -1, before: bounds[cut.surely]?.index ?? Infinity };
}

// Stretches of one offset. `first` to `end` may belong to it; its offset comes from those that surely do.
function stretchesOf(run, cuts) {
    const stretches = [];
    for (let at = 0; at <= cuts.length; ++at) {
        const from = cuts[at - 1] ?? { earliest: 0, surely: 0, back: false };
        const to = cuts[at] ?? { earliest: run.length, surely: run.length, back: false };
        stretches.push({
            first: from.earliest,
            end: to.surely,
            besideStep: from.back || to.back,
            offset: run.slice(from.surely, to.earliest).reduce(intersection, anything),
        });
    }
    return stretches;
}

function spread(run, stretches, offsets) {
    let lowest = 0;
    let highest = 0;
    run.forEach((bound, at) => {
        while (stretches[lowest].end <= at) {
            ++lowest;
        }
        while (highest + 1 < stretches.length && stretches[highest + 1].first <= at) {
            ++highest;
        }
        offsets.set(bound.index, offsetOf(bound, stretches.slice(lowest, highest + 1)));
    });
}

function offsetOf(bound, stretches) {
    const offset = hull(stretches.map((each) => each.offset));
    const own = intersection(offset, bound);
    // Across a step back a touch's own bounds mix both clocks.
    const mixed = stretches.length > 1 && stretches.some((each) => each.besideStep);
    return mixed || isEmpty(own) ? offset : own;
}
