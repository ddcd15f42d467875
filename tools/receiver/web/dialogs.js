// The dialogs of a replay: what the keys are, and whether to delete.
import { el } from './dom.js';
import { keyHelp } from './keys.js';

function open(dialog) {
    dialog.addEventListener('close', () => dialog.remove());
    document.body.append(dialog);
    dialog.showModal();
}

/** `letters`: whether keys that write something mean something; `setLetters` is called when that is switched. */
export function showKeys(letters, setLetters) {
    const choice = el('input', { type: 'checkbox', checked: letters, 'aria-describedby': 'letters-text' });
    choice.addEventListener('change', () => setLetters(choice.checked));
    open(el('dialog', { 'aria-labelledby': 'keys-title' },
        el('h2', { id: 'keys-title' }, 'Keys'),
        el('dl', { class: 'keys' }, keyHelp.flatMap(([keys, meaning]) => [el('dt', {}, keys), el('dd', {}, meaning)])),
        el('label', { class: 'check' }, choice, 'Use letters and signs as keys'),
        el('p', { id: 'letters-text', class: 'faint' }, 'Switch this off if words that you dictate, or keys touched by chance, move the replay. Space, Home, End and the arrows go on working.'),
        el('form', { method: 'dialog', class: 'actions' }, el('button', {}, 'Close'))));
}

/** Asks, and calls `remove`, which returns a promise; the dialog stays and says so when that fails. */
export function confirmDelete(remove) {
    const complaint = el('p', { class: 'complaint', role: 'alert' });
    const yes = el('button', { type: 'button', class: 'danger' }, 'Delete');
    yes.addEventListener('click', async () => {
        yes.disabled = true;
        try {
            await remove();
        } catch {
            complaint.textContent = 'It could not be deleted. The receiver may not be running.';
            yes.disabled = false;
        }
    });
    open(el('dialog', { 'aria-labelledby': 'delete-title', 'aria-describedby': 'delete-text' },
        el('h2', { id: 'delete-title' }, 'Delete this session?'),
        el('p', { id: 'delete-text' }, 'Its video, its timeline and its log lines are removed for good, for everyone.'),
        complaint,
        el('form', { method: 'dialog', class: 'actions' }, el('button', { autofocus: true }, 'Keep it'), yes)));
}
