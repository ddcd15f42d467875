// Asks for the token that allows viewing.
import { logIn, logOut, viewer } from './api.js';
import { el } from './dom.js';
import { icon, sign } from './kinds.js';

const complaints = {
    unauthorised: 'The receiver does not know this token.',
    tooMany: 'Too many attempts. Wait a minute, then try again.',
    unreachable: 'The receiver does not answer. Try again in a moment.',
    broken: 'The receiver could not check the token. Its own output says why.',
};

/** Fills `main` with the form; `done` is called once the receiver has taken a token. */
export function showLogin(main, done) {
    const input = el('input', { type: 'password', id: 'token', name: 'token', autocomplete: 'current-password', required: true });
    const complaint = el('p', { class: 'complaint', role: 'alert' });
    const button = el('button', { type: 'submit', class: 'primary' }, 'Show sessions');
    const submit = async (event) => {
        event.preventDefault();
        button.disabled = true;
        try {
            await logIn(input.value);
            done();
        } catch (failure) {
            complaint.textContent = complaints[failure.kind] ?? complaints.broken;
            button.disabled = false;
            input.select();
        }
    };
    const form = el('form', { class: 'notice login', on: { submit } },
        sign('screen'),
        el('h1', {}, 'Who is there?'),
        el('p', {}, 'Sessions show what people did, so this receiver asks for its viewing token. Whoever runs it has it.'),
        el('label', { for: 'token' }, 'Viewing token'),
        input, complaint, button);
    document.getElementById('heading').replaceChildren();
    main.replaceChildren(form);
    document.title = 'Log in · MirethVex';
    input.focus();
}

/** Puts a button that logs out into `place`, on a receiver that wants one to log in. */
export async function offerLogout(place, done) {
    if (await viewer().catch(() => 'none') !== 'done' || place.querySelector('.log-out')) {
        return;
    }
    const leave = async () => {
        await logOut().catch(() => {});
        button.remove();
        done();
    };
    const button = el('button', { type: 'button', class: 'quiet log-out', title: 'Log out', on: { click: leave } }, icon('leave'), el('span', { class: 'words' }, 'Log out'));
    place.append(button);
}
