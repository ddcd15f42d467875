// The two questions that a replay may ask: what the keys are, and whether to delete.
import { el } from './dom.js';
import { keyHelp } from './keys.js';

function open(dialog) {
    dialog.addEventListener('close', () => dialog.remove());
    document.body.append(dialog);
    dialog.showModal();
}

export function showKeys() {
    open(el('dialog', { 'aria-labelledby': 'keys-title' },
        el('h2', { id: 'keys-title' }, 'Keys'),
        el('dl', { class: 'keys' }, keyHelp.flatMap(([keys, meaning]) => [el('dt', {}, keys), el('dd', {}, meaning)])),
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
