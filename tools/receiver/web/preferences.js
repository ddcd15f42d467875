// What a viewer chose last time, where the browser remembers anything at all.

export function recall(name, fallback) {
    try {
        return window.localStorage.getItem(`mireth.${name}`) ?? fallback;
    } catch {
        return fallback;
    }
}

export function remember(name, value) {
    try {
        window.localStorage.setItem(`mireth.${name}`, value);
    } catch {
        // Chosen for this time only.
    }
}
