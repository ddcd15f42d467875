// The kinds of entries that a replay shows: their names, their order of weight, and their signs. Each sign has a shape
// of its own, so that nothing hangs on colour alone.
import { svg } from './dom.js';

export const kinds = {
    tap: { name: 'Tap', plural: 'Taps' },
    rage: { name: 'Rage tap', plural: 'Rage taps', signal: true },
    dead: { name: 'Dead tap', plural: 'Dead taps', signal: true },
    error: { name: 'Error tap', plural: 'Error taps', signal: true },
    screen: { name: 'Screen', plural: 'Screens' },
    note: { name: 'Note', plural: 'Notes' },
    log: { name: 'Log line', plural: 'Log' },
    gap: { name: 'Gap', plural: 'Gaps' },
};

const shapes = {
    tap: () => [svg('circle', { cx: 8, cy: 8, r: 4.5 })],
    rage: () => [svg('circle', { cx: 8, cy: 8, r: 2.5, class: 'solid' }), svg('circle', { cx: 8, cy: 8, r: 6 })],
    dead: () => [svg('circle', { cx: 8, cy: 8, r: 5.5 }), svg('path', { d: 'M4.2 11.8 11.8 4.2' })],
    error: () => [svg('path', { d: 'M8 2 14.5 13.5h-13z' }), svg('path', { d: 'M8 6.5v3.2M8 11.3v.4' })],
    screen: () => [svg('rect', { x: 4, y: 1.5, width: 8, height: 13, rx: 1.5 })],
    note: () => [svg('path', { d: 'M8 7v4.5M8 4.3v.6' })],
    log: () => [svg('path', { d: 'M3 4.5h10M3 8h10M3 11.5h6' })],
    gap: () => [svg('path', { d: 'M2.5 8.5 8.5 2.5M4 13 13 4M8 14.5l6-6' })],
};

/** The sign of a kind, for those who see; what it says has to be said in words beside it. */
export function sign(kind) {
    return svg('svg', { class: `sign ${kind}`, viewBox: '0 0 16 16', 'aria-hidden': 'true' }, ...shapes[kind]());
}

const drawings = {
    play: ['M5 3v10l8-5z'],
    pause: ['M4.5 3h2.6v10H4.5zM8.9 3h2.6v10H8.9z'],
    back: ['M9.5 3v10L4 8zM10.8 3h1.7v10h-1.7z'],
    forward: ['M6.5 3v10L12 8zM3.5 3h1.7v10H3.5z'],
    previous: ['M13 3v10L5.5 8zM3 3h1.8v10H3z'],
    next: ['M3 3v10l7.5-5zM11.2 3H13v10h-1.8z'],
    download: ['M7.1 2h1.8v6h2.6L8 11.6 4.5 8h2.6zM3 12.6h10v1.6H3z'],
    remove: ['M6 2h4v1.2h3v1.6H3V3.2h3zM4 5.8h8l-.6 8.2H4.6z'],
    leave: ['M2.5 2h6v1.6H4.1v8.8h4.4V14h-6zM10.2 4.6 13.6 8l-3.4 3.4-1.1-1.1 1.5-1.5H6.5V7.2h4.1L9.1 5.7z'],
    video: ['M2 4h8.5v8H2zM11.5 7l3-2v6l-3-2z'],
};

/** A drawing for a button. */
export function icon(name) {
    return svg('svg', { class: 'icon', viewBox: '0 0 16 16', 'aria-hidden': 'true' }, ...drawings[name].map((d) => svg('path', { d })));
}
