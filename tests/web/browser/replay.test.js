// The replay of a session that the scripted phone recorded: events, keys, marks, the scrubber, and what one can do with it.
import assert from 'node:assert/strict';
import { describe, it } from 'node:test';

import { assertAccessible } from '../support/accessibility.js';
import { shownTime, untilPicture } from '../support/browser.js';
import { postLog } from '../support/client.js';
import { useReceiver } from '../support/fixture.js';
import { coloursAt, isNear } from '../support/pixels.js';
import { keepScreenshot } from '../support/screenshots.js';

const fixture = useReceiver();

const entry = (page, text) => page.locator('.entry button', { hasText: text });

async function opened(hash, options) {
    const page = await fixture.openReplay(hash, options);
    await untilPicture(page);
    await page.locator('.entry').first().waitFor();
    return page;
}

function untilTime(page, text) {
    return page.waitForFunction((wanted) => document.querySelector('.position .now').textContent === wanted, text);
}

describe('The list of events', () => {
    it('holds every tap, signal and screen of the scenario', async () => {
        const page = await opened();
        const titles = await page.locator('.entry .title').allTextContents();
        assert.deepEqual(titles.filter((title) => title.endsWith('Screen')).length, 7);
        assert.equal(titles.filter((title) => title === 'Tap').length, 4);
        for (const [title, count] of [['Dead tap', 2], ['Rage tap', 1], ['Error tap', 1]]) {
            assert.equal(titles.filter((each) => each === title).length, count, title);
        }
        page.expectQuiet();
    });

    it('seeks to what is chosen in it', async () => {
        const page = await opened();
        await entry(page, 'Rage tap').click();
        await untilPicture(page);
        // The fourth tap began at 13.65 s of the session and ended 80 ms later; the video begins half a second in.
        assert.ok(Math.abs(await shownTime(page) - 13.23) < 0.5, `at ${await shownTime(page)}`);
        assert.equal(await entry(page, 'Rage tap').locator('..').getAttribute('aria-current'), 'true');
        assert.match(page.url(), /#t=13/);
        page.expectQuiet();
    });

    it('has the same entry current when its address is opened, and its mark on the video', async () => {
        const page = await opened();
        const places = await page.locator('.entry').count();
        for (let place = 0; place < places; ++place) {
            await page.locator('.entry button').nth(place).click();
            const words = await page.locator('.entry[aria-current]').textContent();
            const marks = await page.locator('.mark').count();
            await page.reload();
            await untilPicture(page);
            await page.locator('.entry[aria-current]').waitFor();
            assert.equal(await page.locator('.entry[aria-current]').textContent(), words);
            assert.equal(await page.locator('.mark').count(), marks, words);
        }
        page.expectQuiet();
    });

    it('goes along with the replay', async () => {
        const page = await opened('#t=18', { height: 480 });
        await page.getByRole('combobox', { name: 'Speed' }).selectOption('8');
        await page.getByRole('button', { name: 'Play', exact: true }).click();
        await page.locator('.entry[aria-current]', { hasText: 'Error tap' }).waitFor();
        const [row, list] = await Promise.all([page.locator('.entry[aria-current]').boundingBox(), page.locator('.scroller').boundingBox()]);
        assert.ok(row.y >= list.y - 1 && row.y + row.height <= list.y + list.height + 1);
    });

    it('stays where somebody scrolled it until told to follow again', async () => {
        const page = await opened('', { height: 480 });
        await page.locator('.scroller').hover();
        await page.mouse.wheel(0, 400);
        await page.getByRole('button', { name: 'Follow the replay' }).click();
        await page.getByRole('button', { name: 'Follow the replay' }).waitFor({ state: 'hidden' });
        assert.ok(await page.locator('.scroller').evaluate((node) => node.scrollTop) < 100);
    });

    it('hides the kinds that are switched off', async () => {
        const page = await opened();
        await page.getByRole('button', { name: 'Taps 4' }).click();
        assert.deepEqual(await page.locator('.entry.tap:visible').count(), 0);
        assert.equal(await page.getByRole('button', { name: 'Taps 4' }).getAttribute('aria-pressed'), 'false');
        await page.getByRole('button', { name: 'Taps 4' }).click();
        assert.equal(await page.locator('.entry.tap:visible').count(), 4);
    });

    it('is walked through with the arrow keys, and is one stop of the tabulator', async () => {
        const page = await opened();
        assert.equal(await page.locator('.entry button[tabindex="0"]').count(), 1);
        await page.locator('.entry button[tabindex="0"]').focus();
        await page.keyboard.press('ArrowDown');
        const focused = await page.evaluate(() => document.activeElement.textContent);
        await page.keyboard.press('Enter');
        assert.ok(focused.length > 0);
        assert.equal(await page.locator('.entry[aria-current] button').textContent(), focused);
    });

    it('holds the client’s log lines on the same clock, with their fields', async () => {
        const project = { brandId: 'loam', projectId: 'colours' };
        await postLog(fixture.receiver.origin, fixture.session, { logTag: 'NETWORK', logMessage: 'Upload was slow', networkType: 'wifi' }, project);
        const page = await opened();
        const line = page.locator('.entry.log', { hasText: 'Upload was slow' });
        await line.getByText('Fields').click();
        await line.getByText('networkType').waitFor();
        await line.getByText('error · NETWORK').waitFor();
        page.expectQuiet();
    });
});

describe('A mark', () => {
    it('is drawn where the tap happened, for a moment', async () => {
        const page = await opened();
        await entry(page, 'Tap').first().click();
        await untilPicture(page);
        // The window of 390 by 844 points fills the frame's height; the tap was at a quarter of its width and height.
        const box = await page.locator('.phone').boundingBox();
        const width = (500 / 844) * 390;
        const x = box.x + (box.width * ((250 - width) / 2 + width / 4)) / 250;
        const y = box.y + box.height / 4;
        const before = await coloursAt(fixture.browser, await page.screenshot(), [{ x, y }, { x: x + 14, y }, { x: x + 60, y }]);
        assert.ok(!isNear(before[0], [192, 32, 32], 20), `no mark at its place: ${before[0]}`);
        assert.ok(isNear(before[2], [192, 32, 32], 20), `a mark beside its place: ${before[2]}`);
        for (let step = 0; step < 4; ++step) {
            await page.keyboard.press('.');
        }
        await untilPicture(page);
        const [after] = await coloursAt(fixture.browser, await page.screenshot(), [{ x, y }]);
        assert.ok(isNear(after, [192, 32, 32], 20), `the mark stayed: ${after}`);
        page.expectQuiet();
    });

    it('of a signal says what it is', async () => {
        const page = await opened();
        await entry(page, 'Rage tap').click();
        await page.locator('.caption', { hasText: 'Rage tap' }).waitFor();
        await entry(page, 'Error tap').click();
        await page.locator('.caption', { hasText: 'Error tap: Payment failed: card declined' }).waitFor();
        page.expectQuiet();
    });
});

describe('A touch of which the moment is uncertain', () => {
    it('says so in the list, on the scrubber and on the video', async () => {
        const stamps = { wall: 1_700_000_000_000, uptime: 5_000_000 };
        const target = { xNormalizedTo1: 0.5, yNormalizedTo1: 0.5, xOriginalPx: 585, yOriginalPx: 1266 };
        const session = await fixture.seed([{ number: 0, events: [
            { timestamp: stamps.wall, type: 'SessionStartMarker' },
            { timestamp: stamps.wall + 2500, type: 'WindowDimensions', eventDetails: { windowWidthPx: 1170, windowHeightPx: 2532, mode: 'Regular' } },
            { timestamp: stamps.uptime, type: 'UserInteraction', eventDetails: { interactionId: 'Tap', target } },
            { timestamp: stamps.wall + 6000, type: 'ScreenChange', eventDetails: { changeType: 'appear', detectionType: 'manual', screenHierarchy: [{ depth: 0, screenName: 'Next', screenType: 'Screen' }] } },
        ] }]);
        const page = await fixture.open(`/sessions/${session}`);
        await untilPicture(page);
        // The tap was made after the first frame and up to 3.5 s later: its neighbours allow no more to be said.
        const row = page.locator('.entry.tap');
        assert.match(await row.textContent(), /^0:01\.\d.*± 1\.\d s$/);
        await page.locator('.facts').getByText(/^placed to ± 1\.\d s$/).waitFor();
        const [spread, line] = await Promise.all([page.locator('.track .spread').boundingBox(), page.locator('.scrubber').boundingBox()]);
        assert.ok(spread.width / line.width > 0.3 && spread.width / line.width < 0.4, `a span of ${spread.width / line.width}`);
        await row.locator('button').click();
        await page.locator('.mark.tap.uncertain').waitFor();
        assert.equal(await page.locator('.mark').evaluate((node) => getComputedStyle(node).borderTopStyle), 'dotted');
        page.expectQuiet();
    });
});

describe('Keys', () => {
    it('play and pause', async () => {
        const page = await opened();
        await page.keyboard.press(' ');
        await page.getByRole('button', { name: 'Pause' }).waitFor();
        await page.keyboard.press('k');
        await page.getByRole('button', { name: 'Play', exact: true }).waitFor();
        page.expectQuiet();
    });

    it('go by frames, by seconds, and to either end', async () => {
        const page = await opened();
        for (const [key, time] of [['.', '0:00.5'], ['.', '0:01.0'], [',', '0:00.5'], ['ArrowRight', '0:05.5'], ['ArrowLeft', '0:00.5'], ['End', '0:28.0'], ['ArrowRight', '0:28.0'], [',', '0:27.5'], ['Home', '0:00.0'], [',', '0:00.0']]) {
            await page.keyboard.press(key);
            await untilTime(page, time);
        }
        page.expectQuiet();
    });

    it('go from signal to signal', async () => {
        const page = await opened();
        for (const signal of ['Dead tap', 'Dead tap', 'Rage tap', 'Error tap']) {
            await page.keyboard.press('n');
            await page.locator('.entry[aria-current]', { hasText: signal }).waitFor();
        }
        await page.keyboard.press('p');
        await page.locator('.entry[aria-current]', { hasText: 'Rage tap' }).waitFor();
    });

    it('change the speed, and the page remembers it', async () => {
        const page = await opened();
        await page.keyboard.press('>');
        assert.equal(await page.getByRole('combobox', { name: 'Speed' }).inputValue(), '2');
        await page.reload();
        await untilPicture(page);
        assert.equal(await page.getByRole('combobox', { name: 'Speed' }).inputValue(), '2');
        for (let step = 0; step < 4; ++step) {
            await page.keyboard.press('<');
        }
        assert.equal(await page.getByRole('combobox', { name: 'Speed' }).inputValue(), '0.5');
    });

    it('are explained', async () => {
        const page = await opened();
        await page.keyboard.press('?');
        await page.getByRole('dialog').getByText('Previous, next signal').waitFor();
        await assertAccessible(page);
        await page.keyboard.press('Escape');
        assert.equal(await page.getByRole('dialog').count(), 0);
    });

    it('that write something can be switched off, and the page remembers it', async () => {
        const page = await opened();
        await page.getByRole('button', { name: 'Keys' }).click();
        await page.getByRole('checkbox', { name: 'Use letters and signs as keys' }).uncheck();
        await assertAccessible(page);
        await page.getByRole('button', { name: 'Close' }).click();
        const nothingWritten = async () => {
            for (const key of ['n', '.', '>', 's', 'K', '?']) {
                await page.keyboard.press(key);
            }
            assert.equal(await shownTime(page), 0);
            assert.equal(await page.getByRole('combobox', { name: 'Speed' }).inputValue(), '1');
            assert.equal(await page.getByRole('dialog').count(), 0);
            await page.keyboard.press('ArrowRight');
            await untilTime(page, '0:05.0');
        };
        await nothingWritten();
        await page.keyboard.press('Home');
        await page.reload();
        await untilPicture(page);
        await nothingWritten();
        await page.getByRole('button', { name: 'Keys' }).click();
        await page.getByRole('checkbox', { name: 'Use letters and signs as keys' }).check();
        await page.getByRole('button', { name: 'Close' }).click();
        await page.keyboard.press('.');
        await untilTime(page, '0:05.5');
        page.expectQuiet();
    });

    it('leave Home and End to the facts while these have the focus and do not fit', async () => {
        const page = await opened('#t=12', { height: 640 });
        await page.locator('.facts').focus();
        await page.keyboard.press('End');
        await page.waitForFunction(() => document.querySelector('.facts').scrollTop > 0);
        assert.equal(await shownTime(page), 12);
        await page.keyboard.press('Home');
        await page.waitForFunction(() => document.querySelector('.facts').scrollTop === 0);
        assert.equal(await shownTime(page), 12);
        await page.setViewportSize({ width: 1280, height: 1200 });
        await page.keyboard.press('End');
        await untilTime(page, '0:28.0');
    });

    it('leave the browser’s own alone', async () => {
        const page = await opened();
        await page.keyboard.press('Control+ArrowRight');
        await page.getByRole('combobox', { name: 'Speed' }).focus();
        await page.keyboard.press('End');
        assert.equal(await shownTime(page), 0);
    });
});

describe('The scrubber', () => {
    it('shows the screens as sections', async () => {
        const page = await opened();
        assert.deepEqual(await page.locator('.section').allTextContents(), ['RedScreen', 'GreenScreen', 'BlueScreen']);
        const [green, line] = await Promise.all([page.locator('.section').nth(1).boundingBox(), page.locator('.scrubber').boundingBox()]);
        assert.ok(Math.abs((green.x - line.x) / line.width - 9.7 / 28) < 0.01);
    });

    it('marks taps and signals', async () => {
        const page = await opened();
        for (const [kind, count] of [['tap', 4], ['dead', 2], ['rage', 1], ['error', 1]]) {
            assert.equal(await page.locator(`.marker.${kind}`).count(), count, kind);
        }
    });

    it('has a sign for an event by itself, and bars where signs would cover each other', async () => {
        const wall = 1_700_000_000_000;
        const target = { xNormalizedTo1: 0.5, yNormalizedTo1: 0.5, xOriginalPx: 585, yOriginalPx: 1266 };
        const error = (millis) => ({ timestamp: wall + millis, type: 'SignalCaptured', eventDetails: { signalId: 'ErrorTap', target, error: { message: 'Failed' } } });
        const session = await fixture.seed([{ number: 0, events: [
            { timestamp: wall, type: 'SessionStartMarker' }, error(2000), error(6000), error(6050), error(6100)] }]);
        const page = await fixture.open(`/sessions/${session}`);
        await untilPicture(page);
        await page.locator('.marker.error').first().waitFor();
        assert.equal(await page.locator('.marker.error').count(), 4);
        assert.equal(await page.locator('.marker.error .sign').count(), 1);
        assert.equal(await page.locator('.marker.error.bar').count(), 3);
        page.expectQuiet();
    });

    it('seeks to where it is pressed and dragged', async () => {
        const page = await opened();
        const line = await page.locator('.scrubber').boundingBox();
        await page.mouse.move(line.x + line.width / 2, line.y + 35);
        await page.mouse.down();
        await untilTime(page, '0:14.0');
        await page.mouse.move(line.x + line.width * 0.75, line.y + 35, { steps: 5 });
        await untilTime(page, '0:21.0');
        await page.mouse.up();
        await page.locator('.tip').waitFor();
        assert.match(await page.locator('.tip').textContent(), /^0:21\.0 · .*BlueScreen$/);
        assert.match(page.url(), /#t=21$/);
        page.expectQuiet();
    });

    it('tells a screen reader where it is', async () => {
        const page = await opened('#t=12');
        const slider = page.getByRole('slider', { name: 'Position' });
        await page.waitForFunction(() => document.querySelector('.scrubber').getAttribute('aria-valuenow') === '12');
        assert.equal(await slider.getAttribute('aria-valuetext'), '12 seconds of 28 seconds, GreenScreen');
        await slider.focus();
        await page.keyboard.press('ArrowRight');
        await page.waitForFunction(() => document.querySelector('.scrubber').getAttribute('aria-valuenow') === '17');
        for (const [key, time] of [['ArrowUp', '0:22.0'], ['ArrowDown', '0:17.0'], ['PageUp', '0:28.0'], ['PageDown', '0:00.0']]) {
            await page.keyboard.press(key);
            await untilTime(page, time);
        }
    });
});

describe('A session', () => {
    it('is described', async () => {
        const page = await opened();
        for (const text of ['loam / colours', '4.2.0', 'iOS 17.4', 'phone14,2', '1170 × 2532 px', '3 chunks']) {
            await page.locator('.facts').getByText(text).first().waitFor();
        }
    });

    it('is told about in words while it plays', async () => {
        const page = await opened('#t=12.5');
        await page.getByRole('combobox', { name: 'Speed' }).selectOption('4');
        await page.evaluate(() => {
            window.said = [];
            new MutationObserver(() => window.said.push(document.getElementById('announcer').textContent)).observe(document.getElementById('announcer'), { childList: true });
        });
        await page.getByRole('button', { name: 'Play', exact: true }).click();
        await page.waitForFunction(() => window.said.some((words) => words.includes('Rage tap')));
        await page.getByRole('button', { name: 'Pause' }).click();
        await page.waitForFunction(() => /^Paused at \d+ seconds$/.test(window.said.at(-1)));
    });

    it('can be linked to by the second', async () => {
        const page = await opened();
        await page.keyboard.press('ArrowRight');
        await page.getByRole('button', { name: 'Copy link' }).click();
        await page.getByText(/^Link to 0:05\.0 (copied|is in the address bar)$/).waitFor();
        assert.match(page.url(), /#t=5$/);
    });

    it('offers its video and its timeline for download', async () => {
        const page = await opened();
        const address = async (name) => new URL(await page.getByRole('link', { name }).getAttribute('href'), page.url());
        const timeline = await page.request.get((await address('Timeline')).href);
        assert.equal((await timeline.json())[0].type, 'SessionStartMarker');
        const video = await page.request.get((await address('Video')).href);
        assert.match(video.headers()['content-disposition'], /^attachment/);
        // What was downloaded is one video of all chunks, which the browser itself can play.
        const length = await page.evaluate((source) => new Promise((resolve, reject) => {
            const player = document.createElement('video');
            player.addEventListener('durationchange', () => resolve(player.duration));
            player.addEventListener('error', () => reject(new Error(player.error.message)));
            player.src = source;
        }), (await address('Video')).href);
        assert.ok(Math.abs(length - 28) < 0.1, `it is ${length} s long`);
    });

    it('obeys the rules of accessibility, light, dark and narrow', async () => {
        for (const options of [{}, { colorScheme: 'dark' }, { width: 390, height: 844 }]) {
            const page = await opened('#t=13.4', options);
            await assertAccessible(page);
        }
    });

    it('fits a phone', async () => {
        const page = await opened('#t=13.4', { width: 390, height: 844 });
        assert.ok(await page.evaluate(() => document.documentElement.scrollWidth <= 390));
        const [video, play] = await Promise.all([page.locator('.phone').boundingBox(), page.locator('.play').boundingBox()]);
        assert.ok(video.height > 300);
        assert.ok(play.y + play.height <= 844, 'playing needs no scrolling');
        await keepScreenshot(page, 'replay-phone');
    });

    it('looks as somebody can judge', async () => {
        for (const colorScheme of ['light', 'dark']) {
            const page = await opened('#t=13.4', { colorScheme });
            await keepScreenshot(page, `replay-${colorScheme}`);
        }
    });
});
