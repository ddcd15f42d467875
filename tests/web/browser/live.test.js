// A replay that grows while somebody looks: what they opened, chose, scrolled to or hold the focus on stays as it is.
import assert from 'node:assert/strict';
import { describe, it } from 'node:test';

import { untilPicture } from '../support/browser.js';
import { postLog, uploadChunk, videoOf } from '../support/client.js';
import { useReceiver } from '../support/fixture.js';

const fixture = useReceiver();

const wall = 1_700_000_000_000;
const target = { xNormalizedTo1: 0.5, yNormalizedTo1: 0.5, xOriginalPx: 585, yOriginalPx: 1266 };
const start = { timestamp: wall, type: 'SessionStartMarker' };
const error = (millis, message) => ({ timestamp: wall + millis, type: 'SignalCaptured', eventDetails: { signalId: 'ErrorTap', target, error: { message } } });
const screen = (millis, screenName) => ({ timestamp: wall + millis, type: 'ScreenChange', eventDetails: { changeType: 'appear', detectionType: 'manual', screenHierarchy: [{ depth: 0, screenName, screenType: 'Screen' }] } });
const end = (number) => ({ timestamp: wall + 500 + (number + 1) * 10000, type: 'ChunkEndMarker' });
const screens = (number, count) => Array.from({ length: count }, (_, index) => screen(600 + number * 10000 + index * 100, `Screen ${number}.${index}`));

async function send(session, number, events) {
    const { origin } = fixture.receiver;
    await uploadChunk(origin, session, number, [...events, end(number)], await videoOf(origin, fixture.session, number % 2));
}

/** A page that shows an open session of `chunks`. */
async function watching(chunks, options = {}) {
    const session = await fixture.seed([], { close: false });
    for (const [number, events] of Object.entries(chunks)) {
        await send(session, Number(number), events);
    }
    const page = await fixture.open(`/sessions/${session}${options.hash ?? ''}`, options);
    await page.locator('.entry').first().waitFor();
    return { session, page };
}

const row = (page, text) => page.locator('.entry', { hasText: text });
const untilLength = (page, length) => page.getByText(`/ ${length}`).waitFor();

describe('While a session grows', () => {
    it('opened fields stay open, and text that was selected stays selected', async () => {
        const { session, page } = await watching({ 0: [start, error(2000, 'First')] });
        await postLog(fixture.receiver.origin, session, { logTag: 'NETWORK', logMessage: 'Upload was slow', networkType: 'wifi' });
        await row(page, 'Upload was slow').getByText('Fields').click();
        await page.evaluate(() => window.getSelection().selectAllChildren(document.querySelector('.entry.log .title')));
        await send(session, 1, [error(12000, 'Second')]);
        await row(page, 'Second').waitFor();
        assert.equal(await row(page, 'Upload was slow').getByText('networkType').isVisible(), true);
        assert.equal(await page.evaluate(() => String(window.getSelection())), 'Upload was slow');
        page.expectQuiet();
    });

    it('text that was selected among the facts stays selected', async () => {
        const { session, page } = await watching({ 0: [start] });
        await page.evaluate(() => window.getSelection().selectAllChildren(document.querySelector('.facts .mono')));
        await send(session, 1, []);
        await untilLength(page, '0:20.0');
        await page.locator('.facts').getByText('2 chunks').waitFor();
        assert.equal(await page.evaluate(() => String(window.getSelection())), session);
    });

    it('the switch that has the focus keeps it, and counts on', async () => {
        const { session, page } = await watching({ 0: [start, error(2000, 'First')] });
        await page.getByRole('button', { name: 'Signals 1' }).focus();
        await send(session, 1, [error(12000, 'Second')]);
        await page.getByRole('button', { name: 'Signals 2' }).waitFor();
        assert.equal(await page.evaluate(() => document.activeElement.textContent), 'Signals 2');
    });

    it('the list stays where somebody scrolled it, whatever comes above', async () => {
        const { session, page } = await watching({ 0: screens(0, 40), 2: screens(2, 40) }, { height: 480 });
        await page.locator('.scroller').hover();
        await page.mouse.wheel(0, 1300);
        const place = () => row(page, 'Screen 2.10').evaluate((node) => node.getBoundingClientRect().top - node.closest('.scroller').getBoundingClientRect().top);
        await page.waitForFunction(() => document.querySelector('.scroller').scrollTop > 1200);
        const before = await place();
        await send(session, 1, screens(1, 30));
        await row(page, 'Screen 1.0').waitFor({ state: 'attached' });
        await row(page, 'never arrived').waitFor({ state: 'detached' });
        assert.ok(Math.abs(await place() - before) < 2, `it stood at ${before}, now at ${await place()}`);
    });

    it('what was chosen stays chosen, also of two at one instant', async () => {
        const { session, page } = await watching({ 0: [start, error(5000, 'First'), error(5000, 'Second')] });
        await row(page, 'First').getByRole('button').click();
        await page.locator('.entry[aria-current]', { hasText: 'First' }).waitFor();
        await send(session, 1, []);
        await untilLength(page, '0:20.0');
        assert.equal(await page.locator('.entry[aria-current] .text').textContent(), 'First');
    });

    it('marks on the video are not drawn anew', async () => {
        const { session, page } = await watching({ 0: [start, error(5000, 'First')] }, { hash: '#t=5' });
        await page.locator('.mark.error').evaluate((node) => { node.seen = true; });
        await send(session, 1, []);
        await untilLength(page, '0:20.0');
        assert.equal(await page.locator('.mark.error').evaluate((node) => node.seen), true);
    });

    it('a button of the header that has the focus keeps it when the session ends', async () => {
        const { session, page } = await watching({ 0: [start] });
        await page.locator('.heading .live').waitFor();
        await page.getByRole('button', { name: 'Delete' }).focus();
        await fixture.end(session);
        await page.locator('.heading .live').waitFor({ state: 'detached' });
        assert.equal(await page.evaluate(() => document.activeElement.textContent), 'Delete');
    });
});

describe('A chunk that comes late and fills a gap', () => {
    it('leaves the focus on the entry that has it', async () => {
        const { session, page } = await watching({ 0: [start, error(2000, 'First')], 2: [error(22000, 'Third'), error(23000, 'Fourth')] });
        await row(page, 'Third').getByRole('button').focus();
        await send(session, 1, [error(12000, 'Late one'), error(13000, 'Late two')]);
        await row(page, 'Late one').waitFor();
        assert.match(await page.evaluate(() => document.activeElement.textContent), /Third $/);
        assert.deepEqual(await page.locator('.entry.error .text').allTextContents(), ['First', 'Late one', 'Late two', 'Third', 'Fourth']);
        await page.keyboard.press('Enter');
        await page.locator('.entry[aria-current]', { hasText: 'Third' }).waitFor();
        page.expectQuiet();
    });

    it('shows the picture where the gap was', async () => {
        const { session, page } = await watching({ 0: [start], 2: [] }, { hash: '#t=15' });
        await page.locator('.stage-words', { hasText: 'Chunk 1 never arrived' }).waitFor();
        await send(session, 1, []);
        await page.locator('.without-picture').waitFor({ state: 'detached' });
        await untilPicture(page);
        assert.equal(await row(page, 'never arrived').count(), 0);
    });
});

describe('A session that has no video yet', () => {
    it('keeps the fields of its log open when another line comes', async () => {
        const { origin } = fixture.receiver;
        const session = await fixture.seed([], { close: false });
        await postLog(origin, session, { logTag: 'NETWORK', logMessage: 'No network', networkType: 'wifi' });
        const page = await fixture.open(`/sessions/${session}`);
        await row(page, 'No network').getByText('Fields').click();
        await postLog(origin, session, { logTag: 'NETWORK', logMessage: 'Still no network' });
        await row(page, 'Still no network').waitFor();
        assert.equal(await row(page, 'No network').getByText('networkType').isVisible(), true);
        page.expectQuiet();
    });
});
