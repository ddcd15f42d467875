// How soon a replay of 30 minutes is there: node measure.js. Prints medians; docs/benchmarks.md keeps them.
import { launch } from './support/browser.js';
import { closeSession, createSession, uploadChunk, videoOf } from './support/client.js';
import { record, startReceiver } from './support/programs.js';
import { simulateSession } from './unit/simulatedphone.js';

const rounds = 15;

function median(values) {
    return [...values].sort((a, b) => a - b)[Math.floor(values.length / 2)];
}

async function seedHalfAnHour({ origin }, recorded) {
    const id = await createSession(origin);
    const { timeline, chunks } = simulateSession(1, { seconds: 1800, taps: 600, screens: 60, errors: 40 });
    const video = await videoOf(origin, recorded, 0);
    for (const { number } of chunks) {
        await uploadChunk(origin, id, number, timeline.filter((event) => event.chunkNumber === number), video);
    }
    await closeSession(origin, id);
    return { id, chunks: chunks.length, events: timeline.length };
}

// Runs in the page: notes when the first picture of a video was handed to the screen.
function noteFirstFrame() {
    const source = Object.getOwnPropertyDescriptor(HTMLMediaElement.prototype, 'src');
    Object.defineProperty(HTMLMediaElement.prototype, 'src', { ...source, set(value) {
        this.requestVideoFrameCallback((now, { presentationTime }) => { window.firstFrame ??= presentationTime; });
        source.set.call(this, value);
    } });
}

// When the page was painted first, and when the video's first picture was, in milliseconds from the request.
async function load(browser, address) {
    const context = await browser.newContext({ viewport: { width: 1280, height: 800 } });
    const page = await context.newPage();
    await page.addInitScript(noteFirstFrame);
    await page.goto(address, { waitUntil: 'commit' });
    const times = await page.waitForFunction(() => window.firstFrame !== undefined && {
        paint: performance.getEntriesByName('first-contentful-paint')[0].startTime, frame: window.firstFrame,
    }, null, { timeout: 10000 });
    const found = await times.jsonValue();
    await context.close();
    return found;
}

async function measure(receiver, browser) {
    const session = await seedHalfAnHour(receiver, await record(receiver, 'colours'));
    const loads = [];
    for (let round = 0; round < rounds; ++round) {
        loads.push(await load(browser, `${receiver.origin}/sessions/${session.id}`));
    }
    console.log(`${session.chunks} chunks, ${session.events} events, ${rounds} loads without a cache`);
    for (const [name, times] of [['first paint', loads.map(({ paint }) => paint)], ['first frame', loads.map(({ frame }) => frame)]]) {
        console.log(`${name}  median ${Math.round(median(times))} ms, slowest ${Math.round(Math.max(...times))} ms`);
    }
}

const receiver = await startReceiver();
const browser = await launch();
try {
    await measure(receiver, browser);
} finally {
    await browser.close();
    await receiver.stop();
}
