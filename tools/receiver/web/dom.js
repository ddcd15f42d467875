// Builds elements. Everything that came from a session goes in as text or as an attribute's value, never as markup.

const svgNamespace = 'http://www.w3.org/2000/svg';

/**
 * An element with `attributes` and `children` (nodes or texts; null and false are left out). An attribute that is true is
 * set empty, one that is false, null or undefined is left out, and `on` holds listeners by event.
 */
export function el(name, attributes = {}, ...children) {
    return furnished(document.createElement(name), attributes, children);
}

/** The same for SVG. */
export function svg(name, attributes = {}, ...children) {
    return furnished(document.createElementNS(svgNamespace, name), attributes, children);
}

function furnished(element, { on = {}, ...attributes }, children) {
    for (const [key, value] of Object.entries(attributes)) {
        if (value !== false && value !== null && value !== undefined) {
            element.setAttribute(key, value === true ? '' : String(value));
        }
    }
    for (const [event, listener] of Object.entries(on)) {
        element.addEventListener(event, listener);
    }
    element.append(...children.flat().filter((child) => child !== null && child !== undefined && child !== false));
    return element;
}

/** Writes `text` only when it differs, so that nothing is laid out or read aloud again without need. */
export function setText(element, text) {
    if (element.textContent !== text) {
        element.textContent = text;
    }
}

/**
 * Makes `nodes` the children of `parent`, each of them an element. Those that are there already are left alone: what has the
 * focus, is selected or was opened in them stays so.
 */
export function arrange(parent, nodes) {
    const focused = document.activeElement;
    const staying = new Set(nodes);
    [...parent.children].filter((child) => !staying.has(child)).forEach((child) => child.remove());
    let place = parent.firstElementChild;
    for (const node of nodes) {
        if (node === place) {
            place = place.nextElementSibling;
        } else {
            parent.insertBefore(node, place);
        }
    }
    // One that changed places with another has lost it.
    if (parent.contains(focused) && document.activeElement !== focused) {
        focused.focus({ preventScroll: true });
    }
}

/** A text that somebody else wrote: kept apart from the direction of what surrounds it. */
export function foreign(text, attributes = {}) {
    return el('bdi', attributes, text);
}

/** Has a screen reader say `text` when it is idle. */
export function announce(text) {
    document.getElementById('announcer').textContent = text;
}
