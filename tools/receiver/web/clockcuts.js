// Cuts a run of bounds into as few stretches as allow one offset each: the places where the wall clock was set.
import { anything, intersection, isEmpty } from './intervals.js';

/**
 * `cuts`, in order. The place of a cut is known only roughly: from the left it is found as late, from the right as early
 * as it can be. `earliest` is the first touch that may come after the cut, `surely` the first that must; `back`
 * says that the clock was set back. Across a step back, touches between the same two wall-clock events bound nothing:
 * where that shows, `steps` names their gap, and the run has to be split there first.
 */
export function findCuts(run) {
    const fromLeft = contradictions(run);
    const fromRight = contradictions([...run].reverse()).reverse();
    const steps = [...gapsAtOdds(run), ...gapsBetweenSteps(run, fromLeft)];
    const cuts = fromLeft.map((found, at) => {
        const late = found.at;
        const early = run.length - 1 - fromRight[at].at;
        // Seen from the right, a later clock that is behind looks like an earlier one that is ahead.
        const back = found.below || !fromRight[at].below;
        return back
            ? { back, earliest: firstOfGap(run, early), surely: lastOfGap(run, late) + 1 }
            : { back, earliest: early + 1, surely: late };
    });
    return { cuts, steps };
}

// Where the bounds, taken from the first on, have nothing left in common. `below`: because one lies too low.
function contradictions(run) {
    const found = [];
    let common = anything;
    run.forEach((bound, at) => {
        const next = intersection(common, bound);
        if (isEmpty(next)) {
            found.push({ at, below: bound.high < common.low });
            common = bound;
        } else {
            common = next;
        }
    });
    return found;
}

// Gaps whose own touches contradict each other: more time passed between them than the wall clock says.
function gapsAtOdds(run) {
    const gaps = [];
    let common = anything;
    run.forEach((bound, at) => {
        common = at > 0 && run[at - 1].gap === bound.gap ? intersection(common, bound) : bound;
        if (isEmpty(common) && gaps.at(-1) !== bound.gap) {
            gaps.push(bound.gap);
        }
    });
    return gaps;
}

// A stretch that both begins and ends at a step back, within one gap, is the mixture of two clocks.
function gapsBetweenSteps(run, found) {
    const gaps = [];
    for (let k = 0; k + 1 < found.length; ++k) {
        const gap = run[found[k].at].gap;
        if (found[k].below && found[k + 1].below && run[found[k + 1].at - 1].gap === gap) {
            gaps.push(gap);
        }
    }
    return gaps;
}

function firstOfGap(run, at) {
    let first = at;
    while (first > 0 && run[first - 1].gap === run[at].gap) {
        --first;
    }
    return first;
}

function lastOfGap(run, at) {
    let last = at;
    while (last + 1 < run.length && run[last + 1].gap === run[at].gap) {
        ++last;
    }
    return last;
}
