// Debian's Chromium, and pages that keep what they complained about.
import assert from 'node:assert/strict';
import { chromium } from 'playwright-core';

const flags = [
    '--headless', '--no-sandbox', '--disable-gpu', '--disable-quic', '--no-first-run', '--disable-background-networking',
    '--disable-component-update', '--disable-sync',
];

export function launch() {
    return chromium.launch({ executablePath: process.env.MIRETH_CHROMIUM ?? '/usr/bin/chromium', args: flags });
}

/**
 * A page in a context of its own, at `path`. `expectQuiet` fails if the page ever complained on its console, ran into an
 * error, or opened a dialog as only a script from a session would.
 */
export async function openPage(browser, origin, path, { width = 1280, height = 800, colorScheme = 'light', before = async () => {} } = {}) {
    const context = await browser.newContext({ viewport: { width, height }, colorScheme, timezoneId: 'UTC', locale: 'en-GB' });
    const page = await context.newPage();
    const complaints = [];
    page.on('console', (message) => {
        if (['error', 'warning'].includes(message.type())) {
            complaints.push(message.text());
        }
    });
    page.on('pageerror', (error) => complaints.push(String(error)));
    page.on('dialog', (dialog) => {
        complaints.push(`dialog: ${dialog.message()}`);
        dialog.dismiss();
    });
    page.expectQuiet = (...allowed) => {
        assert.deepEqual(complaints.filter((text) => !allowed.some((pattern) => pattern.test(text))), []);
    };
    page.setDefaultTimeout(30000);
    await before(page);
    await page.goto(origin + path, { waitUntil: 'commit' });
    return page;
}

let waits = 0;

/** Waits until the picture of the second that the replay shows is there. */
export async function untilPicture(page) {
    // What was asked of the replay just now has its effect when it is drawn next, so one look is not enough.
    await page.waitForFunction((wait) => {
        const video = document.querySelector('.phone:not([aria-busy="true"]) video.front');
        const isThere = video !== null && video.readyState >= 2 && !video.seeking;
        const looks = window.looks?.wait === wait ? window.looks.count : 0;
        window.looks = { wait, count: isThere ? looks + 1 : 0 };
        return window.looks.count > 2;
    }, ++waits);
}

/** The seconds that the replay shows. */
export async function shownTime(page) {
    const text = await page.locator('.position .now').textContent();
    return text.split(':').reduce((sum, part) => sum * 60 + Number(part), 0);
}
