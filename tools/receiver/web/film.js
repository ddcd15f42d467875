// A session's video: its chunks on one clock, and the gaps between them.
import { chunkMillis } from './videoclock.js';

/** A gap shorter than this is a matter of rounding. */
const shortestGap = 0.25;

/**
 * The film of the receiver's `chunks`: `chunks` ({number, from, to, url}, in seconds), `gaps` ({from, to, first, last}:
 * chunk numbers that are missing, or null where a chunk is only short), and `length`.
 */
export function filmOf(chunks) {
    const reels = chunks.map(({ number, durationMillis, url }) => {
        const from = (number * chunkMillis) / 1000;
        return { number, from, to: (number * chunkMillis + Math.min(durationMillis, chunkMillis)) / 1000, url };
    });
    return { chunks: reels, gaps: gapsOf(reels), length: reels.length > 0 ? reels.at(-1).to : 0 };
}

function gapsOf(chunks) {
    const gaps = [];
    let end = 0;
    let expected = 0;
    for (const chunk of chunks) {
        if (chunk.from - end >= shortestGap) {
            const missing = chunk.number > expected;
            gaps.push({ from: end, to: chunk.from, first: missing ? expected : null, last: missing ? chunk.number - 1 : null });
        }
        end = chunk.to;
        expected = chunk.number + 1;
    }
    return gaps;
}

/** What a viewer is told of a gap. */
export function wordsOfGap({ first, last }) {
    if (first === null) {
        return 'No frames were recorded here';
    }
    return first === last ? `Chunk ${first} never arrived` : `Chunks ${first} to ${last} never arrived`;
}
