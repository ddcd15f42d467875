// Which screen was in front when, and when nothing happened.

/**
 * Sections `{from, to, name, path}` that follow each other; between two of them it is not known what was in front. What was in
 * front at the beginning and after a gap is known only from the screen that disappears next.
 */
export function sectionsOf(entries, gaps, length) {
    const sections = [];
    let current = null;
    let unknownSince = 0;
    const close = (at) => {
        if (current !== null && at > current.from) {
            sections.push({ ...current, to: at });
        }
        current = null;
    };
    const changes = [...entries.filter((entry) => entry.kind === 'screen'), ...gaps.map((gap) => ({ kind: 'gap', at: gap.from, to: gap.to }))];
    for (const change of changes.sort((a, b) => a.at - b.at)) {
        const isCurrent = current !== null && change.kind === 'screen' && samePath(current.path, change.path);
        if (change.kind === 'gap') {
            close(change.at);
            unknownSince = change.to;
        } else if (change.appeared && !isCurrent) {
            close(change.at);
            current = { from: change.at, name: change.title, path: change.path };
            unknownSince = null;
        } else if (!change.appeared && (isCurrent || (current === null && unknownSince !== null))) {
            // A new screen may appear before the old one is gone; only the one in front ends a section.
            current ??= { from: unknownSince, name: change.title, path: change.path };
            close(change.at);
            unknownSince = null;
        }
    }
    close(length);
    return sections;
}

function samePath(a, b) {
    return a.length === b.length && a.every((name, index) => name === b[index]);
}

/** The section at a second, or null. */
export function sectionAt(sections, seconds) {
    return sections.find((section) => section.from <= seconds && seconds < section.to) ?? null;
}

const quietBefore = 2;
const quietAfter = 1;
const shortestQuiet = 3;
/** Kinds of entries that nobody did. */
const unmoved = new Set(['log', 'note', 'gap']);

/**
 * Stretches `{from, to}` worth skipping: nobody touched anything and no screen changed, but for a while after the last and
 * before the next such moment.
 */
export function quietStretches(entries, length) {
    const moments = entries.filter((entry) => !unmoved.has(entry.kind)).map((entry) => entry.at);
    const stretches = [];
    let from = 0;
    for (const moment of [...moments, length + quietAfter]) {
        const to = Math.min(moment - quietAfter, length);
        if (to - from >= shortestQuiet) {
            stretches.push({ from, to });
        }
        from = Math.max(from, moment + quietBefore);
    }
    return stretches;
}
