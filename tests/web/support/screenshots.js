// Pictures for a person to look at.
import { mkdir } from 'node:fs/promises';
import { join } from 'node:path';
import { fileURLToPath } from 'node:url';

const folder = process.env.MIRETH_SCREENSHOTS ?? fileURLToPath(new URL('../../../build/screenshots', import.meta.url));

export async function keepScreenshot(page, name) {
    await mkdir(folder, { recursive: true });
    await page.screenshot({ path: join(folder, `${name}.png`) });
}
