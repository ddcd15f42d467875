// The rules of axe-core, run in the page as it stands.
import assert from 'node:assert/strict';
import { readFile } from 'node:fs/promises';
import { createRequire } from 'node:module';

const axe = await readFile(createRequire(import.meta.url).resolve('axe-core/axe.min.js'), 'utf8');

export async function assertAccessible(page) {
    await page.evaluate(axe);
    const violations = await page.evaluate(async () => {
        const options = { runOnly: ['wcag2a', 'wcag2aa', 'wcag21a', 'wcag21aa', 'wcag22aa', 'best-practice'] };
        const result = await globalThis.axe.run(document, options);
        return result.violations.map(({ id, nodes }) => `${id}: ${nodes.map((node) => `${node.target} ${node.failureSummary}`).join(' | ')}`);
    });
    assert.deepEqual(violations, []);
}
