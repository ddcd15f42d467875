// Closed intervals `{low, high}` of numbers.

export const anything = Object.freeze({ low: -Infinity, high: Infinity });

export function intersection(a, b) {
    return { low: Math.max(a.low, b.low), high: Math.min(a.high, b.high) };
}

/** The smallest interval that holds all of `intervals`, of which there is at least one. */
export function hull(intervals) {
    // One by one: a function takes no more than some hundred thousand arguments.
    return intervals.reduce((all, each) => ({ low: Math.min(all.low, each.low), high: Math.max(all.high, each.high) }));
}

export function isEmpty(interval) {
    return interval.low > interval.high;
}

/** Not a finite number when the interval has no end. */
export function middle(interval) {
    return (interval.low + interval.high) / 2;
}
