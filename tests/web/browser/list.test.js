// The list of sessions: what it says, how it is filtered and paged, and that it keeps itself up to date.
import assert from 'node:assert/strict';
import { describe, it } from 'node:test';

import { assertAccessible } from '../support/accessibility.js';
import { closeSession, createSession, uploadChunk, videoOf } from '../support/client.js';
import { useReceiver } from '../support/fixture.js';
import { keepScreenshot } from '../support/screenshots.js';

const fixture = useReceiver();

const other = { brandId: 'brand', projectId: 'other' };
const start = { timestamp: 1_700_000_000_000, type: 'SessionStartMarker' };

function rowOf(page, id) {
    return page.locator(`tr[data-id="${id}"]`);
}

function rows(page) {
    return page.locator('tbody tr');
}

async function cellsOf(row) {
    await row.waitFor();
    return (await row.locator('td').allInnerTexts()).map((text) => text.replace(/\s+/g, ' ').trim());
}

describe('The list', () => {
    it('says of a session when, how long, what and where, and counts what happened', async () => {
        const page = await fixture.open('/');
        const cells = await cellsOf(rowOf(page, fixture.session));
        assert.match(cells[0], /^Today \d\d:\d\d$/);
        assert.match(cells[1], /^0:28/);
        assert.equal(cells[2], 'colours loam');
        assert.equal(cells[3], 'Phone iOS 17.4');
        assert.equal(cells[4], 'RedScreen, GreenScreen, BlueScreen');
        assert.match(cells[5], /^4/);
        assert.match(cells[6], /^1/);
        assert.match(cells[7], /^2/);
        assert.match(cells[8], /^1/);
        page.expectQuiet();
    });

    it('leads to the replay with the keyboard alone', async () => {
        const page = await fixture.open('/');
        await rowOf(page, fixture.session).getByRole('link').focus();
        await page.keyboard.press('Enter');
        await page.waitForURL(`**/sessions/${fixture.session}`);
        await page.getByRole('button', { name: 'Play', exact: true }).waitFor();
        await page.getByRole('link', { name: 'Sessions' }).click();
        await rowOf(page, fixture.session).waitFor();
        page.expectQuiet();
    });

    it('has the newest first', async () => {
        const id = await fixture.seed([], { close: true });
        const page = await fixture.open('/');
        await rowOf(page, id).waitFor();
        assert.equal(await rows(page).first().getAttribute('data-id'), id);
    });

    it('shows a session that begins, grows and ends, without being reloaded', async () => {
        const { origin } = fixture.receiver;
        const page = await fixture.open('/');
        await rowOf(page, fixture.session).waitFor();
        const id = await createSession(origin);
        await rowOf(page, id).getByText('live').waitFor();
        await uploadChunk(origin, id, 0, [start], await videoOf(origin, fixture.session, 0));
        await rowOf(page, id).getByText('0:10').waitFor();
        await closeSession(origin, id);
        await rowOf(page, id).getByText('live').waitFor({ state: 'detached' });
        page.expectQuiet();
    });

    it('no longer calls a session live of which nothing has come for a minute', async () => {
        const id = await createSession(fixture.receiver.origin);
        const page = await fixture.open('/');
        await rowOf(page, id).getByText('live').waitFor();
        await page.clock.setSystemTime(Date.now() + 61000);
        await rowOf(page, id).getByText('not closed').waitFor();
        page.expectQuiet();
    });

    it('leaves the focus where it is when a row changes', async () => {
        const { origin } = fixture.receiver;
        const id = await createSession(origin);
        const page = await fixture.open('/');
        await rowOf(page, id).getByRole('link').focus();
        await uploadChunk(origin, id, 0, [start], await videoOf(origin, fixture.session, 0));
        await rowOf(page, id).getByText('0:10').waitFor();
        await page.waitForFunction((wanted) => document.activeElement.closest('tr')?.dataset.id === wanted, id);
    });
});

describe('The filters', () => {
    it('find a session by its project, and keep that in the address', async () => {
        const { origin } = fixture.receiver;
        const id = await createSession(origin, other);
        const page = await fixture.open('/');
        await page.getByRole('combobox', { name: 'Project' }).selectOption('other');
        await rowOf(page, fixture.session).waitFor({ state: 'detached' });
        assert.equal(await rowOf(page, id).count(), 1);
        assert.equal(new URL(page.url()).search, '?project=other');
        await page.reload();
        await rowOf(page, id).waitFor();
        assert.equal(await page.getByRole('combobox', { name: 'Project' }).inputValue(), 'other');
        await page.getByRole('button', { name: 'Clear' }).click();
        await rowOf(page, fixture.session).waitFor();
        assert.equal(new URL(page.url()).search, '');
        page.expectQuiet();
    });

    it('offer projects and screens that come while somebody looks', async () => {
        const { origin } = fixture.receiver;
        const page = await fixture.open('/');
        await rowOf(page, fixture.session).waitFor();
        await page.getByRole('combobox', { name: 'Screen' }).selectOption('GreenScreen');
        const late = { brandId: 'brand', projectId: 'latecomer' };
        const id = await createSession(origin, late);
        const appeared = { timestamp: start.timestamp + 100, type: 'ScreenChange', eventDetails: { changeType: 'appear', detectionType: 'manual', screenHierarchy: [{ depth: 0, screenName: 'Alcove', screenType: 'Screen' }] } };
        await uploadChunk(origin, id, 0, [start, appeared], await videoOf(origin, fixture.session, 0), late);
        await page.locator('#screen option[value="Alcove"]').waitFor({ state: 'attached' });
        assert.equal(await page.getByRole('combobox', { name: 'Screen' }).inputValue(), 'GreenScreen');
        await page.getByRole('combobox', { name: 'Screen' }).selectOption('');
        await page.getByRole('combobox', { name: 'Project' }).selectOption('latecomer');
        await rowOf(page, fixture.session).waitFor({ state: 'detached' });
        assert.equal(await rowOf(page, id).count(), 1);
        page.expectQuiet();
    });

    it('say so where there are more screens than they list', async () => {
        const answer = { projects: ['colours'], screens: ['RedScreen', 'GreenScreen'], moreScreens: true };
        const page = await fixture.open('/', { before: (opening) => opening.route('**/api/facets', (route) => route.fulfill({ json: answer })) });
        await page.locator('#screen optgroup[label="There are more: search for them"]').waitFor({ state: 'attached' });
        await assertAccessible(page);
    });

    it('find a session by a signal, a screen and a word', async () => {
        await fixture.seed([]);
        for (const query of ['signal=rageTap', 'screen=GreenScreen', 'text=greenscr']) {
            const page = await fixture.open(`/?${query}`);
            await rowOf(page, fixture.session).waitFor();
            assert.equal(await rows(page).count(), 1, query);
        }
    });

    it('hear nothing any more of a search that another one has replaced', async () => {
        const page = await fixture.open('/');
        await rowOf(page, fixture.session).waitFor();
        const held = [];
        await page.route(/text=gre$/, (route) => { held.push(route); });
        const search = page.getByRole('searchbox', { name: 'Search' });
        await search.fill('gre');
        await page.waitForURL('**/?text=gre');
        await search.fill('green');
        await page.waitForURL('**/?text=green');
        await page.locator('#announcer', { hasText: 'The list has changed' }).waitFor({ state: 'attached' });
        assert.equal(held.length, 1);
        await page.evaluate(() => {
            const strip = document.querySelector('.strip');
            window.troubles = [];
            new MutationObserver(() => window.troubles.push(strip.textContent)).observe(strip, { childList: true, characterData: true, subtree: true });
        });
        await held[0].abort();
        await page.waitForResponse(/text=green/);
        assert.deepEqual((await page.evaluate(() => window.troubles)).filter((text) => text !== ''), []);
    });

    it('find a session by its day, both days included', async () => {
        const today = new Date().toISOString().slice(0, 10);
        const found = await fixture.open(`/?from=${today}&to=${today}`);
        await rowOf(found, fixture.session).waitFor();
        const long = await fixture.open('/?from=2001-01-01&to=2001-12-31');
        await long.getByRole('heading', { name: 'No session fits' }).waitFor();
    });

    it('look for what is typed without a key being pressed after it', async () => {
        const page = await fixture.open('/');
        await rowOf(page, fixture.session).waitFor();
        await page.getByRole('searchbox', { name: 'Search' }).fill('no such screen');
        await page.getByRole('heading', { name: 'No session fits' }).waitFor();
        assert.equal(new URL(page.url()).search, '?text=no+such+screen');
        await assertAccessible(page);
    });
});

describe('Pages', () => {
    it('are turned to older sessions and back', async () => {
        const { origin } = fixture.receiver;
        const paged = { brandId: 'brand', projectId: 'paged' };
        const ids = [];
        for (let count = 0; count < 60; ++count) {
            ids.push(await createSession(origin, paged));
        }
        const page = await fixture.open('/?project=paged');
        await rowOf(page, ids.at(-1)).waitFor();
        assert.equal(await rows(page).count(), 50);
        assert.equal(await page.getByRole('button', { name: 'Newer' }).isDisabled(), true);
        await page.getByRole('button', { name: 'Older' }).click();
        await rowOf(page, ids[0]).waitFor();
        assert.equal(await rows(page).count(), 10);
        await page.getByText('51–60').waitFor();
        assert.equal(await page.getByRole('button', { name: 'Older' }).isDisabled(), true);
        await page.getByRole('button', { name: 'Newer' }).click();
        await rowOf(page, ids.at(-1)).waitFor();
        page.expectQuiet();
    });
});

// Sessions as different as they come; answers the id of the last one.
async function keepGallery() {
    const { origin } = fixture.receiver;
    const target = { xNormalizedTo1: 0.5, yNormalizedTo1: 0.5, xOriginalPx: 585, yOriginalPx: 1266 };
    const at = (millis, type, eventDetails) => ({ timestamp: start.timestamp + millis, type, eventDetails });
    const screenNamed = (screenName) => at(600, 'ScreenChange', { changeType: 'appear', detectionType: 'manual', screenHierarchy: [{ depth: 0, screenName, screenType: 'Screen' }] });
    const taps = (count) => Array.from({ length: count }, () => at(700, 'UserInteraction', { interactionId: 'Tap', target }));
    const signals = (...ids) => ids.map((signalId) => at(800, 'SignalCaptured', { signalId, target, ...(signalId === 'ErrorTap' && { error: { message: 'Failed' } }) }));
    const gallery = [
        { brandId: 'a-brand-of-long-name', device: [], screens: [], chunks: [] },
        { brandId: 'brand', device: ['Phone 8', 'iOS 16.7.2'], screens: ['Accounts', 'Transfer to somebody else'], happened: [...taps(1204), ...signals('DeadTap')], chunks: [0, 3] },
        { brandId: 'brand', device: ['Phone 14 Pro', 'iOS 17.4'], screens: ['Home', 'Search', 'Product', 'Bag', 'Checkout'], happened: [...taps(37), ...signals('RageTap', 'DeadTap', 'DeadTap', 'ErrorTap')], chunks: [0, 1], open: true },
    ];
    let id;
    for (const { brandId, device: [model, system], screens, happened = [], chunks, open } of gallery) {
        const project = { brandId, projectId: 'gallery' };
        const metadata = [{ metadataId: 'DeviceModel', metadataValue: model }, { metadataId: 'OperatingSystem', metadataValue: system }];
        id = await createSession(origin, project);
        for (const number of chunks) {
            const events = number === 0 ? [start, at(1, 'MetadataCaptured', { metadata }), ...screens.map(screenNamed), ...happened] : [];
            await uploadChunk(origin, id, number, events, await videoOf(origin, fixture.session, 0), project);
        }
        if (!open) {
            await closeSession(origin, id, project);
        }
    }
    return id;
}

describe('The page', () => {
    it('obeys the rules of accessibility, light, dark and narrow', async () => {
        const last = await keepGallery();
        for (const [name, options] of Object.entries({ 'list-light': {}, 'list-dark': { colorScheme: 'dark' }, 'list-phone': { width: 390, height: 844 } })) {
            const page = await fixture.open('/?project=gallery', options);
            await rowOf(page, last).waitFor();
            await assertAccessible(page);
            await keepScreenshot(page, name);
        }
    });

    it('says as much on a narrow window as on a wide one', async () => {
        const wide = await fixture.open('/?project=colours');
        const said = await cellsOf(rowOf(wide, fixture.session));
        for (const width of [960, 700, 390, 320]) {
            const page = await fixture.open('/?project=colours', { width });
            assert.deepEqual(await cellsOf(rowOf(page, fixture.session)), said, `${width} pixels`);
            assert.equal(await rowOf(page, fixture.session).getByText('iOS 17.4').isVisible(), true, `${width} pixels`);
            assert.ok(await page.evaluate((most) => document.documentElement.scrollWidth <= most, width), `${width} pixels`);
        }
    });

    it('fits a phone, with its filters folded away', async () => {
        const page = await fixture.open('/', { width: 360, height: 740 });
        await rows(page).first().waitFor();
        assert.ok(await page.evaluate(() => document.documentElement.scrollWidth <= 360));
        assert.equal(await page.getByRole('combobox', { name: 'Project' }).isVisible(), false);
        await page.getByRole('button', { name: 'Filters' }).click();
        await page.getByRole('combobox', { name: 'Project' }).waitFor();
        assert.ok(await page.evaluate(() => document.documentElement.scrollWidth <= 360));
    });
});
