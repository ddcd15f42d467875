// What the page says when there is nothing, when something is broken, and when a session means harm.
import assert from 'node:assert/strict';
import { describe, it } from 'node:test';

import { assertAccessible } from '../support/accessibility.js';
import { openPage, untilPicture } from '../support/browser.js';
import { closeSession, createSession, postLog, uploadChunk, videoOf } from '../support/client.js';
import { useReceiver } from '../support/fixture.js';
import { hostileTexts } from '../support/hostiletexts.js';
import { startReceiver } from '../support/programs.js';
import { keepScreenshot } from '../support/screenshots.js';

const fixture = useReceiver();

const start = { timestamp: 1_700_000_000_000, type: 'SessionStartMarker' };

describe('An empty receiver', () => {
    it('says how a session gets there, and shows the first one when it comes', async () => {
        const receiver = await startReceiver();
        try {
            const page = await openPage(fixture.browser, receiver.origin, '/');
            await page.getByRole('heading', { name: 'No sessions yet' }).waitFor();
            await page.getByText(`--sr-endpoint ${receiver.origin}`).waitFor();
            await assertAccessible(page);
            await keepScreenshot(page, 'list-empty');
            const id = await createSession(receiver.origin);
            await page.locator(`tr[data-id="${id}"]`).waitFor();
            page.expectQuiet();
        } finally {
            await receiver.stop();
        }
    });
});

describe('A session without video', () => {
    it('that is still open says what it waits for, and shows it when it comes', async () => {
        const { origin } = fixture.receiver;
        const id = await createSession(origin);
        const page = await fixture.open(`/sessions/${id}`);
        await page.getByRole('heading', { name: 'Nothing to watch yet' }).waitFor();
        await assertAccessible(page);
        await uploadChunk(origin, id, 0, [start], await videoOf(origin, fixture.session, 0));
        await untilPicture(page);
        await uploadChunk(origin, id, 1, [], await videoOf(origin, fixture.session, 1));
        await page.getByText('/ 0:20.0').waitFor();
        page.expectQuiet();
    });

    it('that is closed says what is known', async () => {
        const id = await fixture.seed([]);
        await postLog(fixture.receiver.origin, id, { logTag: 'NETWORK', logMessage: 'Failed to push chunk.' });
        const page = await fixture.open(`/sessions/${id}`);
        await page.getByRole('heading', { name: 'Nothing to watch', exact: true }).waitFor();
        await page.getByText('Failed to push chunk.').waitFor();
        await page.getByText('brand / project').waitFor();
        await assertAccessible(page);
        page.expectQuiet();
    });
});

describe('An address', () => {
    it('of no session says so, and leads back', async () => {
        const page = await fixture.open('/sessions/no-such-session');
        await page.getByRole('heading', { name: 'This session is not here' }).waitFor();
        await assertAccessible(page);
        await page.getByRole('link', { name: 'All sessions' }).click();
        await page.getByRole('heading', { name: 'Sessions' }).waitFor();
        page.expectQuiet(/404/);
    });
});

describe('A receiver that fails', () => {
    it('is named as the reason, and asked again', async () => {
        let broken = true;
        const page = await fixture.open('/', {
            before: (opening) => opening.route('**/api/sessions?*', (route) => (broken
                ? route.fulfill({ status: 500, contentType: 'application/json', body: '{"error":"the disk is on fire"}' })
                : route.continue())),
        });
        await page.getByRole('heading', { name: 'Something is broken on the receiver' }).waitFor();
        await page.getByText('the disk is on fire').waitFor();
        await assertAccessible(page);
        broken = false;
        await page.getByRole('button', { name: 'Try again' }).click();
        await page.locator(`tr[data-id="${fixture.session}"]`).waitFor();
    });

    it('is not taken at its word when that is no JSON', async () => {
        const page = await fixture.open(`/sessions/${fixture.session}`, {
            before: (opening) => opening.route(`**/api/sessions/${fixture.session}`, (route) => route.fulfill({ status: 200, body: '<html>' })),
        });
        await page.getByRole('heading', { name: 'Something is broken on the receiver' }).waitFor();
    });

    it('leaves the list as it was while it does not answer', async () => {
        const page = await fixture.open('/');
        await page.locator(`tr[data-id="${fixture.session}"]`).waitFor();
        await page.route('**/api/**', (route) => route.abort());
        await page.getByText('The receiver does not answer.').waitFor();
        assert.equal(await page.locator(`tr[data-id="${fixture.session}"]`).count(), 1);
        await page.unroute('**/api/**');
        await page.getByText('The receiver does not answer.').waitFor({ state: 'hidden' });
    });

    it('leaves the list as it was while it has trouble', async () => {
        const page = await fixture.open('/');
        await page.locator(`tr[data-id="${fixture.session}"]`).waitFor();
        await page.route('**/api/sessions?*', (route) => route.fulfill({ status: 503, contentType: 'application/json', body: '{"error":"busy"}' }));
        await page.getByText('The receiver has trouble.').waitFor();
        assert.equal(await page.locator(`tr[data-id="${fixture.session}"]`).count(), 1);
        await page.unroute('**/api/sessions?*');
        await page.getByText('The receiver has trouble.').waitFor({ state: 'hidden' });
    });

    it('keeps what has been loaded of a replay, and goes on with it when it answers again', async () => {
        const page = await fixture.openReplay();
        await untilPicture(page);
        await fixture.receiver.pause();
        try {
            await page.keyboard.press('End');
            await page.getByText('What has been loaded can still be watched').waitFor();
            await page.keyboard.press('Home');
            await untilPicture(page);
            await page.keyboard.press('End');
        } finally {
            await fixture.receiver.resume();
        }
        await page.getByText('What has been loaded can still be watched').waitFor({ state: 'hidden' });
        await page.locator('.without-picture').waitFor({ state: 'detached' });
        await untilPicture(page);
    });

    it('that never says anything counts as gone', async () => {
        let silent = true;
        const page = await fixture.open('/', { before: async (opening) => {
            await opening.clock.install();
            await opening.route('**/api/sessions?*', (route) => (silent ? null : route.continue()));
        } });
        await page.getByText('Loading').waitFor();
        await page.clock.runFor(21000);
        await page.getByRole('heading', { name: 'The receiver does not answer' }).waitFor();
        silent = false;
        await page.getByRole('button', { name: 'Try again' }).click();
        await page.locator(`tr[data-id="${fixture.session}"]`).waitFor();
    });

    it('that is not there at all says so, and is found again', async () => {
        let there = false;
        const page = await fixture.open('/', { before: (opening) => opening.route('**/api/**', (route) => (there ? route.continue() : route.abort())) });
        await page.getByRole('heading', { name: 'The receiver does not answer' }).waitFor();
        there = true;
        await page.locator(`tr[data-id="${fixture.session}"]`).waitFor();
    });
});

describe('A page that fails', () => {
    const nonsense = { before: (opening) => opening.route(/api.sessions.[^/]+$/, (route) => route.fulfill({ status: 200, contentType: 'application/json', body: '{"session":{},"chunks":[null]}' })) };

    it('says so itself, and does not blame the receiver', async () => {
        const page = await fixture.open(`/sessions/${fixture.session}`, nonsense);
        await page.getByRole('heading', { name: 'This page has failed' }).waitFor();
        await assertAccessible(page);
        assert.equal(await page.getByText('receiver has trouble').count(), 0);
        page.expectQuiet(/TypeError/);
        await page.unrouteAll();
        await page.getByRole('button', { name: 'Try again' }).click();
        await untilPicture(page);
    });

    it('leaves what has been loaded where it is', async () => {
        const id = await fixture.seed([{ number: 0, events: [start] }], { close: false });
        const page = await fixture.open(`/sessions/${id}`);
        await untilPicture(page);
        await nonsense.before(page);
        await page.getByText('This page has failed').waitFor();
        await page.getByRole('button', { name: 'Play', exact: true }).waitFor();
        page.expectQuiet(/TypeError/);
    });

    it('says so on the list', async () => {
        const page = await fixture.open('/', { before: (opening) => opening.route('**/api/sessions?*', (route) => route.fulfill({ status: 200, contentType: 'application/json', body: '{}' })) });
        await page.getByRole('heading', { name: 'This page has failed' }).waitFor();
        page.expectQuiet(/TypeError/);
    });
});

describe('Deleting', () => {
    it('asks first, and does nothing when the answer is no', async () => {
        const page = await fixture.openReplay();
        await untilPicture(page);
        await page.getByRole('button', { name: 'Delete' }).click();
        await assertAccessible(page);
        await page.getByRole('button', { name: 'Keep it' }).click();
        assert.equal((await page.request.get(`${fixture.receiver.origin}/api/sessions/${fixture.session}`)).status(), 200);
        page.expectQuiet();
    });

    it('removes the session for everyone', async () => {
        const id = await fixture.seed([{ number: 0, events: [start] }]);
        const page = await fixture.open(`/sessions/${id}`);
        await page.getByRole('button', { name: 'Delete' }).click();
        await page.getByRole('dialog').getByRole('button', { name: 'Delete' }).click();
        await page.waitForURL((url) => url.pathname === '/');
        await page.locator(`tr[data-id="${fixture.session}"]`).waitFor();
        assert.equal(await page.locator(`tr[data-id="${id}"]`).count(), 0);
        assert.equal((await page.request.get(`${fixture.receiver.origin}/api/sessions/${id}/chunks/0.mp4`)).status(), 404);
        page.expectQuiet();
    });

    it('says so when it did not work', async () => {
        const page = await fixture.openReplay('', {
            before: (opening) => opening.route('**/api/sessions/*', (route) => (route.request().method() === 'DELETE' ? route.fulfill({ status: 500, body: '{}' }) : route.continue())),
        });
        await untilPicture(page);
        await page.getByRole('button', { name: 'Delete' }).click();
        await page.getByRole('dialog').getByRole('button', { name: 'Delete' }).click();
        await page.getByText('It could not be deleted.').waitFor();
    });
});

describe('Texts of a session', () => {
    const target = { xNormalizedTo1: 0.5, yNormalizedTo1: 0.5, xOriginalPx: 1, yOriginalPx: 1 };
    const metadataIds = ['AppVersion', 'OperatingSystem', 'DeviceModel', 'DeviceCodename', 'SdkVersion', 'Platform', 'DeviceId'];

    /** A closed session of `project` with `events` and a log line for each of `lines`. */
    async function keep(project, events, lines) {
        const { origin } = fixture.receiver;
        const id = await createSession(origin, project);
        await uploadChunk(origin, id, 0, [start, ...events], await videoOf(origin, fixture.session, 0), project);
        for (const text of lines) {
            await postLog(origin, id, { logTag: text, logMessage: text, [text]: text }, project);
        }
        await closeSession(origin, id, project);
        return id;
    }

    async function openWatched(path) {
        const page = await fixture.open(path, { before: (opening) => opening.addInitScript(() => { window.harm = 0; }) });
        await page.locator('.entry, tbody tr').first().waitFor();
        return page;
    }

    async function expectHarmless(page) {
        assert.equal(await page.evaluate(() => window.harm), 0);
        const markup = 'img, iframe, script, object, embed, style, link, base, form:not([role="search"])';
        assert.equal(await page.evaluate((kinds) => document.querySelectorAll(`:is(main, header) :is(${kinds})`).length, markup), 0);
        page.expectQuiet();
    }

    it('of screens and errors are shown as they are, and none of them runs', async () => {
        const events = hostileTexts.flatMap((text, index) => [
            { timestamp: 1_700_000_000_000 + index * 90, type: 'ScreenChange', eventDetails: { changeType: 'appear', detectionType: 'manual', screenHierarchy: [{ depth: 0, screenName: text, screenType: text }] } },
            { timestamp: 1_700_000_000_050 + index * 90, type: 'SignalCaptured', eventDetails: { signalId: 'ErrorTap', target, error: { message: text } } },
        ]);
        const id = await keep({ brandId: 'brand', projectId: 'project' }, events, []);
        const page = await openWatched(`/sessions/${id}`);
        await untilPicture(page);
        await page.getByRole('combobox', { name: 'Speed' }).selectOption('8');
        await page.getByRole('button', { name: 'Play', exact: true }).click();
        await page.getByRole('button', { name: 'Play', exact: true }).waitFor();
        assert.deepEqual(await page.locator('.entry.screen .title').allTextContents(), hostileTexts);
        assert.deepEqual(await page.locator('.entry.error .text').allTextContents(), hostileTexts);
        await expectHarmless(page);
    });

    it('of metadata, projects and log lines are shown as they are, and none of them runs', async () => {
        const ids = [];
        for (let from = 0; from < hostileTexts.length; from += metadataIds.length) {
            const texts = metadataIds.map((id, index) => hostileTexts[(from + index) % hostileTexts.length]);
            const metadata = metadataIds.map((metadataId, index) => ({ metadataId, metadataValue: texts[index] }));
            const project = { brandId: texts[0], projectId: texts[1] };
            const id = await keep(project, [{ timestamp: 1_700_000_000_001, type: 'MetadataCaptured', eventDetails: { metadata } }], texts);
            const page = await openWatched(`/sessions/${id}`);
            await page.locator('.entry.log').nth(texts.length - 1).waitFor();
            const facts = await page.locator('.facts dd bdi').allTextContents();
            assert.deepEqual(facts.slice(0, -1), [`${texts[0]} / ${texts[1]}`, ...texts]);
            assert.deepEqual(await page.locator('.entry.log .title').allTextContents(), texts);
            assert.equal(await page.locator('h1 bdi').textContent(), texts[1]);
            await page.locator('.entry details').evaluateAll((all) => all.forEach((each) => { each.open = true; }));
            await expectHarmless(page);
            await page.context().close();
            ids.push(id);
        }
        const list = await openWatched('/');
        for (const id of ids) {
            await list.locator(`tr[data-id="${id}"]`).waitFor();
        }
        await expectHarmless(list);
    });
});
