// A receiver that strangers can reach: the page asks for the viewing token, keeps the viewer logged in, and lets go.
import assert from 'node:assert/strict';
import { describe, it } from 'node:test';

import { assertAccessible } from '../support/accessibility.js';
import { untilPicture } from '../support/browser.js';
import { useReceiver } from '../support/fixture.js';
import { record, tokens } from '../support/programs.js';
import { keepScreenshot } from '../support/screenshots.js';

const fixture = useReceiver({ strangers: true });

// The browser writes the refused request down.
const refused = /401/;

async function logIn(page, token = tokens.viewing) {
    await page.getByLabel('Viewing token').fill(token);
    await page.getByRole('button', { name: 'Show sessions' }).click();
}

describe('Without a login', () => {
    it('neither the list nor a replay is shown, but the question who is there', async () => {
        for (const path of ['/', `/sessions/${fixture.session}`]) {
            const page = await fixture.open(path);
            await page.getByRole('heading', { name: 'Who is there?' }).waitFor();
            await assertAccessible(page);
            assert.equal(await page.getByText('colours').count(), 0);
            page.expectQuiet(refused);
        }
    });

    it('a wrong token is refused in words', async () => {
        const page = await fixture.open('/');
        await logIn(page, 'no-token-of-this-receiver');
        await page.getByText('The receiver does not know this token.').waitFor();
        await keepScreenshot(page, 'login');
        page.expectQuiet(refused);
    });
});

describe('The viewing token', () => {
    it('opens the session that was asked for, and lasts over a reload', async () => {
        const page = await fixture.openReplay('#t=12');
        await logIn(page);
        await untilPicture(page);
        assert.match(page.url(), /#t=12$/);
        await page.reload();
        await untilPicture(page);
        page.expectQuiet(refused);
    });

    it('is asked for again when the login has run out while a session is watched', async () => {
        const page = await fixture.openReplay();
        await logIn(page);
        await untilPicture(page);
        await page.context().clearCookies();
        await page.keyboard.press('End');
        await page.getByRole('heading', { name: 'Who is there?' }).waitFor();
    });

    it('is out of reach of the page’s scripts afterwards', async () => {
        const page = await fixture.open('/');
        await logIn(page);
        await page.locator('tbody tr').first().waitFor();
        assert.equal(await page.evaluate(() => document.cookie), '');
        const [cookie] = await page.context().cookies();
        assert.equal(cookie.httpOnly, true);
        assert.equal(cookie.sameSite, 'Strict');
        assert.ok(!cookie.value.includes(tokens.viewing));
    });

    it('lets a viewer download and delete', async () => {
        const page = await fixture.openReplay();
        await logIn(page);
        await untilPicture(page);
        const downloading = page.waitForEvent('download');
        await page.getByRole('link', { name: 'Timeline' }).click();
        assert.match((await downloading).suggestedFilename(), /\.json$/);
        await page.getByRole('button', { name: 'Delete' }).click();
        await page.getByRole('dialog').getByRole('button', { name: 'Delete' }).click();
        await page.getByRole('heading', { name: 'No sessions yet' }).waitFor();
        page.expectQuiet(refused);
    });
});

describe('Logging out', () => {
    it('is offered beside a replay too, on a phone’s width as well', async () => {
        const session = await record(fixture.receiver, 'colours');
        for (const width of [1280, 390, 320]) {
            const page = await fixture.open(`/sessions/${session}`, { width });
            await logIn(page);
            await untilPicture(page);
            const button = page.getByRole('button', { name: 'Log out' });
            await button.waitFor();
            await assertAccessible(page);
            assert.ok(await page.evaluate((most) => document.documentElement.scrollWidth <= most, width), `${width} pixels`);
            await button.click();
            await page.getByRole('heading', { name: 'Who is there?' }).waitFor();
        }
    });

    it('asks again who is there', async () => {
        const page = await fixture.open('/');
        await logIn(page);
        await page.getByRole('button', { name: 'Log out' }).click();
        await page.getByRole('heading', { name: 'Who is there?' }).waitFor();
        assert.equal((await page.request.get(`${fixture.receiver.origin}/api/sessions`)).status(), 401);
        page.expectQuiet(refused);
    });
});
