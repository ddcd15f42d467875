// A phone for property tests: it draws a session from a seed, keeps two clocks that it may set, and writes the
// timeline that the library would write. It remembers what was true.

const deadTapWaits = [1000, 1500, 2000];

/** A generator of numbers in [0, 1) that repeats itself for the same seed. */
export function randomFrom(seed) {
    let state = seed >>> 0;
    return () => {
        state = (state + 0x6d2b79f5) >>> 0;
        let mixed = Math.imul(state ^ (state >>> 15), state | 1);
        mixed ^= mixed + Math.imul(mixed ^ (mixed >>> 7), mixed | 61);
        return ((mixed ^ (mixed >>> 14)) >>> 0) / 4294967296;
    };
}

/**
 * A session as `{timeline, chunks, truths}`: for each event, `truths` has `offset` (wall minus uptime clock when it
 * was appended) and `video` (milliseconds from the first frame to it). `options`: `seconds`, `taps`, `screens` and
 * `errors` to draw, `jumps` as `[{at, millis}]` by which the wall clock is set, `missing` chunk numbers, and `longestTouchDelay`.
 */
export function simulateSession(seed, options = {}) {
    const random = randomFrom(seed);
    const between = (low, high) => low + random() * (high - low);
    const settings = {
        seconds: Math.round(between(5, 90)), taps: Math.round(between(0, 25)), screens: Math.round(between(0, 8)),
        errors: 3, jumps: [], missing: [], longestTouchDelay: 240, ...options,
    };
    const wallZero = Math.round(between(1.6e12, 1.8e12));
    const uptimeZero = between(1e4, 3e9);
    const wait = deadTapWaits[Math.floor(random() * 3)];
    const encoding = between(5, 400);
    const length = settings.seconds * 1000;
    const jumped = (t) => settings.jumps.filter((jump) => jump.at <= t).reduce((sum, jump) => sum + jump.millis, 0);
    const wall = (t) => Math.floor(wallZero + t + jumped(t));
    const uptime = (t) => Math.trunc(uptimeZero + t);
    const offset = (t) => wallZero + jumped(t) - uptimeZero;

    const events = [];
    const append = (appended, happened, event) => events.push({ appended, happened, event });
    const stamped = (t, event) => append(t, t, { timestamp: wall(t), ...event });

    stamped(0, { type: 'SessionStartMarker' });
    stamped(0, { type: 'MetadataCaptured', eventDetails: { metadata: [] } });
    stamped(500 + between(0, 3), { type: 'WindowDimensions', eventDetails: { windowWidthPx: 1170, windowHeightPx: 2532, mode: 'Regular' } });
    for (let count = 0; count < settings.screens; ++count) {
        stamped(between(0, length), screenChange(`Screen${count}`));
    }
    const taps = [];
    for (let count = 0; count < settings.taps; ++count) {
        taps.push({ happened: between(0, length), delay: between(0, settings.longestTouchDelay), point: randomPoint(random) });
    }
    taps.sort((a, b) => a.happened + a.delay - b.happened - b.delay);
    for (const tap of taps) {
        const stamp = uptime(tap.happened);
        const handled = tap.happened + tap.delay;
        append(handled, tap.happened, touch('Tap', stamp, tap.point));
        if (random() < 0.3) {
            append(tap.happened + wait + between(0, settings.longestTouchDelay), tap.happened, touch('DeadTap', stamp, tap.point));
        }
        if (random() < 0.3) {
            stamped(handled + between(1, 900), screenChange('Next'));
        }
    }
    for (let count = 0; count < settings.errors && taps.length > 0; ++count) {
        const tap = taps[Math.floor(random() * taps.length)];
        const at = tap.happened + tap.delay + between(0, 499);
        const latest = taps.filter((each) => each.happened + each.delay <= at).at(-1);
        if (wall(at) - wall(latest.happened + latest.delay) < 500) {
            stamped(at, errorTap(latest.point));
        }
    }
    const frames = Math.floor((length - 1) / 500);
    const chunks = [];
    for (let number = 0; number * 20 < frames; ++number) {
        const count = Math.min(20, frames - number * 20);
        const lastFrame = 500 * (number * 20 + count);
        chunks.push({ number, frames: count, flushed: (count === 20 ? lastFrame : length) + encoding + between(0, 60) });
    }
    return written(events, chunks, settings, { wall, offset });
}

function written(events, chunks, settings, { wall, offset }) {
    events.sort((a, b) => a.appended - b.appended);
    const timeline = [];
    const truths = [];
    let next = 0;
    const write = (event, appended, happened) => {
        timeline.push(event);
        truths.push({ offset: offset(appended), video: happened - 500 });
    };
    for (const chunk of chunks) {
        const kept = !settings.missing.includes(chunk.number);
        for (; next < events.length && events[next].appended <= chunk.flushed; ++next) {
            if (kept) {
                write({ ...events[next].event, chunkNumber: chunk.number }, events[next].appended, events[next].happened);
            }
        }
        if (kept) {
            write({ timestamp: wall(chunk.flushed), type: 'ChunkEndMarker', chunkNumber: chunk.number }, chunk.flushed, chunk.flushed);
        }
    }
    return { timeline, truths, chunks: chunks.filter((chunk) => !settings.missing.includes(chunk.number)) };
}

function randomPoint(random) {
    return { xNormalizedTo1: random(), yNormalizedTo1: random(), xOriginalPx: Math.floor(random() * 1170), yOriginalPx: Math.floor(random() * 2532) };
}

function touch(kind, timestamp, target) {
    return kind === 'Tap'
        ? { timestamp, type: 'UserInteraction', eventDetails: { interactionId: kind, target } }
        : { timestamp, type: 'SignalCaptured', eventDetails: { signalId: kind, target } };
}

function errorTap(target) {
    return { type: 'SignalCaptured', eventDetails: { signalId: 'ErrorTap', target, error: { message: 'Failed' } } };
}

function screenChange(screenName) {
    return {
        type: 'ScreenChange',
        eventDetails: { changeType: 'appear', detectionType: 'manual', screenHierarchy: [{ depth: 0, screenName, screenType: 'Screen' }] },
    };
}
