// Closed intervals `{low, high}` of numbers.

export const anything = Object.freeze({ low: -Infinity, high: Infinity });

export function intersection(a, b) {
    return { low: Math.max(a.low, b.low), high: Math.min(a.high, b.high) };
}

/** The smallest interval that holds all of `intervals`, of which there is at least one. */
export function hull(intervals) {
    return {
        low: Math.min(...intervals.map((each) => each.low)),
        high: Math.max(...intervals.map((each) => each.high)),
    };
}

export function isEmpty(interval) {
    return interval.low > interval.high;
}

/** Not a finite number when the interval has no end. */
export function middle(interval) {
    return (interval.low + interval.high) / 2;
}
