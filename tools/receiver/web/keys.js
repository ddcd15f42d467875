// The replay's keys.

export const keyHelp = [
    ['Space or K', 'Play, pause'],
    ['← →', 'Five seconds back, forward'],
    [', .', 'One frame back, forward'],
    ['P N', 'Previous, next signal'],
    ['< >', 'Slower, faster'],
    ['Home End', 'To the start, to the end'],
    ['S', 'Skip inactivity'],
    ['↑ ↓', 'Through the list, when it has the focus'],
    ['?', 'This list'],
];

const actions = new Map([
    [' ', 'toggle'], ['k', 'toggle'], ['ArrowLeft', 'back'], ['ArrowRight', 'forward'], [',', 'frameBack'], ['.', 'frameForward'],
    ['p', 'previous'], ['n', 'next'], ['<', 'slower'], ['>', 'faster'], ['Home', 'start'], ['End', 'end'], ['s', 'skip'], ['?', 'help'],
]);

// What a slider's users expect of it besides.
const sliderActions = new Map([['ArrowUp', 'forward'], ['ArrowDown', 'back'], ['PageUp', 'farForward'], ['PageDown', 'farBack']]);

/**
 * What a key means here, or null where it belongs to what has the focus, or to the browser. Without `letters` no key that
 * writes a letter or a sign means anything.
 */
export function actionOf(event, letters = true) {
    if (event.ctrlKey || event.metaKey || event.altKey || event.defaultPrevented) {
        return null;
    }
    if (!letters && event.key.length === 1 && event.key !== ' ') {
        return null;
    }
    const target = event.target instanceof Element ? event.target : document.body;
    if (target.closest('dialog, textarea, select, input:not([type="checkbox"])')) {
        return null;
    }
    if (target.role === 'slider' && sliderActions.has(event.key)) {
        return sliderActions.get(event.key);
    }
    if (['Home', 'End'].includes(event.key) && scrolls(target)) {
        return null;
    }
    if (event.key === ' ' && target.closest('button, a, summary, input')) {
        return null;
    }
    return actions.get(event.key.length === 1 ? event.key.toLowerCase() : event.key) ?? null;
}

// Whether `target`, which has the focus, has something to scroll to with these keys itself.
function scrolls(target) {
    return target !== document.body && target.scrollHeight > target.clientHeight && getComputedStyle(target).overflowY !== 'visible';
}
