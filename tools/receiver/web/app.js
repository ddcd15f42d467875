// Decides what the address shows.
import { readAddress } from './address.js';
import { showList } from './list.js';
import { offerLogout, showLogin } from './login.js';
import { showReplay } from './replay.js';

const main = document.getElementById('main');

function show() {
    const address = readAddress(window.location);
    const logIn = () => showLogin(main, () => window.location.reload());
    offerLogout(document.querySelector('.top'), () => window.location.reload());
    if (address.session !== null) {
        showReplay(main, address.session, logIn);
    } else {
        showList(main, address.filters, logIn);
    }
}

show();
