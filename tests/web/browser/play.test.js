// Playing: what is on the screen at which second, across the borders of chunks and through gaps.
import assert from 'node:assert/strict';
import { describe, it } from 'node:test';

import { shownTime, untilPicture } from '../support/browser.js';
import { createSession, uploadChunk, videoOf } from '../support/client.js';
import { useReceiver } from '../support/fixture.js';
import { coloursAt, isNear } from '../support/pixels.js';
import { keepScreenshot } from '../support/screenshots.js';

const red = [192, 32, 32];
const green = [32, 160, 64];
const blue = [32, 64, 192];

const fixture = useReceiver();

async function phoneColour(page) {
    const box = await page.locator('.phone').boundingBox();
    const png = await page.screenshot();
    const [colour] = await coloursAt(fixture.browser, png, [{ x: box.x + box.width / 2, y: box.y + box.height * 0.7 }]);
    return colour;
}

function onStage(page, text) {
    return page.locator('.stage-words', { hasText: text });
}

function playUntil(page, seconds) {
    return page.waitForFunction((until) => {
        const parts = document.querySelector('.position .now').textContent.split(':').map(Number);
        return parts[0] * 60 + parts[1] >= until;
    }, seconds);
}

// Keeps what the clock of a video said last, whenever one is given another file.
function watchSources(page) {
    return page.addInitScript(() => {
        window.leftVideos = [];
        const source = Object.getOwnPropertyDescriptor(HTMLMediaElement.prototype, 'src');
        Object.defineProperty(HTMLMediaElement.prototype, 'src', { ...source, set(value) {
            window.leftVideos.push({ file: this.src, at: this.currentTime });
            source.set.call(this, value);
        } });
    });
}

describe('A replay', () => {
    it('opens at its first frame', async () => {
        const page = await fixture.openReplay();
        await untilPicture(page);
        assert.equal(await shownTime(page), 0);
        assert.ok(isNear(await phoneColour(page), red));
        page.expectQuiet();
    });

    it('opens at the second of its address', async () => {
        const page = await fixture.openReplay('#t=24.5');
        await untilPicture(page);
        assert.equal(await shownTime(page), 24.5);
        assert.ok(isNear(await phoneColour(page), blue));
        page.expectQuiet();
    });

    it('goes where the address goes', async () => {
        const page = await fixture.openReplay();
        await untilPicture(page);
        await page.evaluate(() => { window.location.hash = '#t=12'; });
        await page.waitForFunction(() => document.querySelector('.position .now').textContent === '0:12.0');
        await untilPicture(page);
        assert.ok(isNear(await phoneColour(page), green));
    });

    it('plays over the border of two chunks without a gap', async () => {
        const page = await fixture.openReplay('#t=8.5', { before: watchSources });
        await untilPicture(page);
        // What the entering video's own clock says at the very moment at which it takes the other's place.
        await page.evaluate(() => {
            window.entered = new Promise((resolve) => {
                const leaving = document.querySelector('video.front');
                new MutationObserver(() => {
                    const video = document.querySelector('video.front');
                    if (video !== leaving) {
                        resolve({ file: video.src, at: video.currentTime, ready: video.readyState, seeking: video.seeking });
                    }
                }).observe(document.querySelector('.phone'), { subtree: true, attributeFilter: ['class'] });
            });
        });
        const colours = [];
        await page.getByRole('button', { name: 'Play', exact: true }).click();
        while (await shownTime(page) < 11.5) {
            colours.push(await phoneColour(page));
        }
        colours.forEach((colour) => assert.ok(isNear(colour, red) || isNear(colour, green), `something else was on screen: ${colour}`));
        assert.ok(isNear(await phoneColour(page), green));

        const entered = await page.evaluate(() => window.entered);
        assert.match(entered.file, /chunks\/1\.mp4$/);
        const left = await page.evaluate(() => window.leftVideos.find(({ file }) => file.endsWith('/chunks/0.mp4')));
        assert.ok(left.at > 9.9, `the first chunk was left at ${left.at}`);
        assert.ok(entered.at < 0.1, `the second chunk was entered at ${entered.at}`);
        assert.ok(entered.ready >= 2 && !entered.seeking, 'the second chunk was shown before it had a picture');
        page.expectQuiet();
    });

    it('plays and pauses where the picture is pressed', async () => {
        const page = await fixture.openReplay();
        await untilPicture(page);
        await page.locator('.phone').click();
        await page.getByRole('button', { name: 'Pause' }).waitFor();
        await page.locator('.phone').click();
        await page.getByRole('button', { name: 'Play', exact: true }).waitFor();
    });

    it('stops at its end, and begins again from there', async () => {
        const page = await fixture.openReplay('#t=27');
        await untilPicture(page);
        await page.getByRole('button', { name: 'Play', exact: true }).click();
        await page.getByRole('button', { name: 'Pause' }).waitFor();
        await page.getByRole('button', { name: 'Play', exact: true }).waitFor();
        assert.equal(await shownTime(page), 28);
        await page.getByRole('button', { name: 'Play', exact: true }).click();
        await page.waitForFunction(() => document.querySelector('.position .now').textContent.startsWith('0:00'));
        page.expectQuiet();
    });

    it('plays at every speed it offers', async () => {
        const page = await fixture.openReplay();
        await untilPicture(page);
        for (const rate of ['0.5', '1', '2', '4', '8']) {
            await page.getByRole('combobox', { name: 'Speed' }).selectOption(rate);
            assert.equal(await page.evaluate(() => document.querySelector('video.front').playbackRate), Number(rate));
        }
        await page.getByRole('button', { name: 'Play', exact: true }).click();
        await playUntil(page, 25);
        page.expectQuiet();
    });
});

describe('A gap', () => {
    const start = { timestamp: 1_700_000_000_000, type: 'SessionStartMarker' };

    it('is shown and named where a chunk never arrived', async () => {
        const session = await fixture.seed([{ number: 0, events: [start] }, { number: 3, events: [] }]);
        const page = await fixture.open(`/sessions/${session}#t=15`);
        await onStage(page, 'Chunks 1 to 2 never arrived').waitFor();
        await page.locator('.entry.gap', { hasText: 'Chunks 1 to 2 never arrived 20 seconds' }).waitFor();
        const [gap, line] = await Promise.all([page.locator('.track .gap').boundingBox(), page.locator('.scrubber').boundingBox()]);
        assert.ok(Math.abs(gap.x - line.x - line.width * 0.25) < 2);
        assert.ok(Math.abs(gap.width - line.width * 0.5) < 2);
        await keepScreenshot(page, 'replay-gap');
        await page.getByText('2 chunks, ').waitFor();
        await page.getByText('2 missing').waitFor();
        page.expectQuiet();
    });

    it('takes its time, and the video goes on after it', async () => {
        const session = await fixture.seed([{ number: 0, events: [start] }, { number: 3, events: [] }]);
        const page = await fixture.open(`/sessions/${session}#t=9`);
        await untilPicture(page);
        await page.getByRole('combobox', { name: 'Speed' }).selectOption('8');
        await page.getByRole('button', { name: 'Play', exact: true }).click();
        await onStage(page, 'Chunks 1 to 2 never arrived').waitFor();
        await playUntil(page, 31);
        await untilPicture(page);
        assert.ok(isNear(await phoneColour(page), green));
        page.expectQuiet();
    });

    it('is where a chunk in the middle is short, and list, replay and download are equally long', async () => {
        const { origin } = fixture.receiver;
        const session = await createSession(origin);
        // The last chunk of the recorded session is two seconds short.
        for (const [number, from] of [[0, 0], [1, 2], [2, 0]]) {
            await uploadChunk(origin, session, number, number === 0 ? [start] : [], await videoOf(origin, fixture.session, from));
        }
        await fixture.end(session);
        const page = await fixture.open(`/sessions/${session}#t=19`);
        await onStage(page, 'No frames were recorded here').waitFor();
        await page.getByText('/ 0:30.0').waitFor();
        const length = await page.evaluate((address) => new Promise((resolve, reject) => {
            const player = document.createElement('video');
            player.addEventListener('durationchange', () => resolve(player.duration));
            player.addEventListener('error', () => reject(new Error(player.error.message)));
            player.src = address;
        }), `/api/sessions/${session}/video.mp4`);
        assert.ok(Math.abs(length - 30) < 0.1, `it is ${length} s long`);
        await page.getByRole('link', { name: 'Sessions' }).click();
        await page.locator(`tr[data-id="${session}"]`).getByText('0:30').waitFor();
        page.expectQuiet();
    });

    it('is told about when the replay comes to it', async () => {
        const session = await fixture.seed([{ number: 0, events: [start] }, { number: 2, events: [] }]);
        const page = await fixture.open(`/sessions/${session}#t=9`);
        await untilPicture(page);
        await page.getByRole('button', { name: 'Play', exact: true }).click();
        await page.locator('#announcer', { hasText: 'Chunk 1 never arrived: 10 seconds' }).waitFor({ state: 'attached' });
        await page.locator('.scrubber').hover();
        await page.locator('.tip', { hasText: 'Chunk 1 never arrived' }).waitFor();
        page.expectQuiet();
    });

    it('is skipped with everything else in which nothing happened', async () => {
        const session = await fixture.seed([{ number: 0, events: [start] }, { number: 11, events: [] }]);
        const page = await fixture.open(`/sessions/${session}#t=1`);
        await untilPicture(page);
        await page.getByLabel('Skip inactivity').check();
        await page.getByRole('button', { name: 'Play', exact: true }).click();
        await playUntil(page, 119);
        page.expectQuiet();
    });

    it('at the beginning does not keep the rest from being seen', async () => {
        const session = await fixture.seed([{ number: 1, events: [] }]);
        const page = await fixture.open(`/sessions/${session}`);
        await onStage(page, 'Chunk 0 never arrived').waitFor();
        await page.keyboard.press('End');
        await untilPicture(page);
        assert.ok(isNear(await phoneColour(page), green));
        page.expectQuiet();
    });
});

describe('A chunk that cannot be played', () => {
    it('does not keep the rest of the page away when it is the first', async () => {
        const page = await fixture.openReplay('', {
            before: (opening) => opening.route('**/chunks/0.mp4', (route) => route.fulfill({ status: 200, contentType: 'video/mp4', body: 'no video' })),
        });
        await page.getByText('This part cannot be played').waitFor();
        await page.locator('.entry.rage').waitFor();
        await page.keyboard.press('End');
        await untilPicture(page);
        assert.ok(isNear(await phoneColour(page), blue));
    });

    it('is said to be so, and the rest is played', async () => {
        const page = await fixture.openReplay('#t=9', {
            before: (opening) => opening.route('**/chunks/1.mp4', (route) => route.fulfill({ status: 200, contentType: 'video/mp4', body: 'no video' })),
        });
        await untilPicture(page);
        await page.getByRole('combobox', { name: 'Speed' }).selectOption('8');
        await page.getByRole('button', { name: 'Play', exact: true }).click();
        await page.getByText('This part cannot be played').waitFor();
        await playUntil(page, 22);
        await untilPicture(page);
        assert.ok(isNear(await phoneColour(page), blue));
    });
});
