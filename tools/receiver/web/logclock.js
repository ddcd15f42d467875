// When on the video's clock a log line was written. Clients put no time into their lines; the receiver knows when it
// received them, and when it received the chunks.

/**
 * A function from the receiver's milliseconds to the video's. `anchors` are moments known on both clocks, `{received, at}`,
 * in order: the start, and each chunk.
 */
export function logClock(anchors) {
    if (anchors.length === 0) {
        return () => 0;
    }
    const first = anchors[0];
    const last = anchors.at(-1);
    const recorded = last.at - first.at;
    const received = last.received - first.received;
    if (received < recorded / 2) {
        // Played by a script faster than real time: only the order between the anchors says something.
        return (millis) => between(anchors, millis);
    }
    // What arrived soonest after it was recorded tells best how far the two clocks are apart.
    const shift = anchors.reduce((least, anchor) => Math.min(least, anchor.received - anchor.at), Infinity);
    return (millis) => millis - shift;
}

function between(anchors, millis) {
    const next = anchors.findIndex((anchor) => anchor.received >= millis);
    if (next === -1) {
        return anchors.at(-1).at;
    }
    if (next === 0) {
        return anchors[0].at;
    }
    const [a, b] = [anchors[next - 1], anchors[next]];
    const part = b.received === a.received ? 1 : (millis - a.received) / (b.received - a.received);
    return a.at + part * (b.at - a.at);
}
