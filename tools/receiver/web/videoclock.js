// Which second of the video a wall-clock event belongs to. The video is the one clock that always runs on: a frame
// every half second, blank ones while recording is paused, and ten seconds for a chunk that is missing.
// docs/replay.md says what is assumed.
import { carriesUptime } from './touchbounds.js';

export const frameMillis = 500;
export const framesPerChunk = 20;
export const chunkMillis = frameMillis * framesPerChunk;

/** Later than this after its last frame no chunk is finished, unless the wall clock was set or frames were lost. */
const longestFinishMillis = 2000;
/** Less is the encoder taking its time; more, chunk after chunk, means that wall clock and video drift apart. */
const noticeableDriftMillis = 250;
const noticeableStepBackMillis = 50;
const chunksLookedAhead = 6;

/**
 * `millisOf(index)`: when on the video's clock, in milliseconds from its first frame, the wall-clock event at
 * `index` of `timeline` was stamped; before the first frame is negative. `levelOf(index)`: what the wall clock reads
 * at the video's zero, by the clock that was in force there. `limitsOf(chunkNumber)`: between which moments of the
 * video the events of a chunk were appended. `chunks` are in order, each with its `number` and `frames`; `cuts` are
 * the places, by touchOffsets, where the wall clock is known to have been set.
 */
export function videoClock(timeline, chunks, cuts = []) {
    const ends = chunkEnds(timeline, chunks);
    const levels = levelsOf(timeline, ends, cuts);
    const finished = new Map(ends.map((end) => [end.number, end.stamp - levels[end.index]]));
    const limitsOf = (number) => {
        const start = number * chunkMillis;
        return { low: start - frameMillis, high: finished.get(number) ?? start + chunkMillis + longestFinishMillis };
    };
    const levelOf = (index) => levels[index];
    const millisOf = (index) => {
        const { low, high } = limitsOf(timeline[index].chunkNumber);
        return Math.min(Math.max(timeline[index].timestamp - levels[index], low), Math.max(low, high));
    };
    return { levelOf, millisOf, limitsOf, ends };
}

/** One entry for every chunk-end marker: its place, its stamp, and when on the video's clock the last frame was taken. */
function chunkEnds(timeline, chunks) {
    const frames = new Map(chunks.map((chunk) => [chunk.number, chunk.frames]));
    const ends = [];
    timeline.forEach((event, index) => {
        const count = frames.get(event.chunkNumber);
        if (event.type === 'ChunkEndMarker' && count !== undefined) {
            const lastFrame = event.chunkNumber * chunkMillis + Math.max(0, count - 1) * frameMillis;
            ends.push({ index, number: event.chunkNumber, stamp: event.timestamp, lastFrame, full: count >= framesPerChunk });
        }
    });
    return ends;
}

// The wall clock at the video's zero, for each place in the timeline.
function levelsOf(timeline, ends, cuts) {
    const shifts = shiftsOf(timeline, cuts);
    const lateAt = (end, level) => end.stamp - shifts[end.index] - end.lastFrame - level;
    const start = startLevel(timeline, ends);
    const finishes = ends.map((end) => lateAt(end, start)).filter((late) => 0 <= late && late < longestFinishMillis);
    const finish = finishes.length === 0 ? 0 : finishes.reduce((least, each) => Math.min(least, each));
    const levels = new Array(timeline.length);
    let level = start;
    let from = 0;
    ends.forEach((end, at) => {
        const following = ends.slice(at + 1, at + 1 + chunksLookedAhead).map((each) => lateAt(each, level) - finish);
        const change = changeUntil(end, lateAt(end, level) - finish, finish, following);
        const changed = change === 0 ? end.index + 1 : placeOfChange(timeline, from, end.index, change);
        levels.fill(level, from, changed);
        level += change;
        levels.fill(level, changed, end.index + 1);
        from = end.index + 1;
    });
    levels.fill(level, from);
    return levels.map((each, index) => each + shifts[index]);
}

// By how much the wall clock has been set since the start, as far as the touches tell.
function shiftsOf(timeline, cuts) {
    const steps = new Array(timeline.length).fill(0);
    for (const cut of cuts) {
        const to = Math.min(timeline.length - 1, cut.before);
        steps[placeOfChange(timeline, Math.max(0, cut.after), to, cut.millis)] += cut.millis;
    }
    let shift = 0;
    return steps.map((step) => (shift += step));
}

// The first frame is taken half a second after the start, and reports the window's size.
function startLevel(timeline, ends) {
    const ofFirstChunk = (type) => timeline.find((event) => event.type === type && event.chunkNumber === 0);
    const firstFrame = ofFirstChunk('WindowDimensions');
    const start = ofFirstChunk('SessionStartMarker');
    if (firstFrame) {
        return firstFrame.timestamp;
    }
    if (start) {
        return start.timestamp + frameMillis;
    }
    if (ends.length > 0) {
        return ends[0].stamp - ends[0].lastFrame;
    }
    const first = timeline.find((event) => !carriesUptime(event));
    return first ? first.timestamp - first.chunkNumber * chunkMillis : 0;
}

// By how much the wall clock has moved against the video when the chunk of `end` is finished, `late` as things stood
// before and beyond the `finish` that every chunk takes.
function changeUntil(end, late, finish, following) {
    if (late + finish < -noticeableStepBackMillis) {
        return late;
    }
    if (!end.full || following.length === 0) {
        // The last one also waits for the stop, and nothing after it tells a slow encoder from a drift.
        return late > longestFinishMillis ? late : 0;
    }
    const lasting = Math.min(late, ...following);
    return lasting > noticeableDriftMillis ? lasting : 0;
}

// Where between two events the wall clock was set: at the largest step between two stamps that goes its way.
function placeOfChange(timeline, from, to, change) {
    let place = to;
    let largest = -Infinity;
    let previous = from - 1;
    while (previous >= 0 && carriesUptime(timeline[previous])) {
        --previous;
    }
    for (let index = from; index <= to; ++index) {
        if (!carriesUptime(timeline[index])) {
            const step = previous < 0 ? -Infinity : (timeline[index].timestamp - timeline[previous].timestamp) * Math.sign(change);
            if (step > largest) {
                largest = step;
                place = index;
            }
            previous = index;
        }
    }
    return place;
}
