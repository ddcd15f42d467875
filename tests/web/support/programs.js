// Runs the receiver and the scripted phone.
import { execFile, spawn } from 'node:child_process';
import { mkdtemp, rm, writeFile } from 'node:fs/promises';
import { tmpdir } from 'node:os';
import { join } from 'node:path';
import { createInterface } from 'node:readline';
import { fileURLToPath } from 'node:url';
import { promisify } from 'node:util';

const built = new URL('../../../build/dev/bin/', import.meta.url);
const receiverProgram = process.env.MIRETH_RECEIVER_PROGRAM ?? fileURLToPath(new URL('mireth-receiver', built));
const phoneProgram = process.env.MIRETH_PHONE_PROGRAM ?? fileURLToPath(new URL('mireth-phone', built));

/** What a receiver for strangers is started with in tests. */
export const tokens = { upload: 'upload-token-of-the-tests', viewing: 'viewing-token-of-the-tests' };

/** Arguments that make a receiver ask for both. Their files are in `folder`. */
async function askForTokens(folder) {
    const more = [];
    for (const [name, token] of Object.entries(tokens)) {
        const file = join(folder, name);
        await writeFile(file, token, { mode: 0o600 });
        more.push(`--${name}-token-file`, file);
    }
    return more;
}

/**
 * A receiver on a free port, with a data folder of its own: `{origin, stop, pause, resume}`. With `strangers` it asks for tokens;
 * `uploads` is the address that clients are given.
 */
export async function startReceiver({ strangers = false } = {}) {
    const data = await mkdtemp(join(tmpdir(), 'mireth-web-'));
    const more = strangers ? await askForTokens(data) : [];
    const receiver = { data };
    const run = async (listen) => {
        const child = spawn(receiverProgram, ['--listen', listen, '--data', data, '--print-ready', ...more], { stdio: ['ignore', 'pipe', 'pipe'] });
        let complaint = '';
        child.stderr.on('data', (text) => { complaint += text; });
        const lines = createInterface({ input: child.stdout });
        const line = await Promise.race([
            new Promise((resolve) => { lines.once('line', resolve); }),
            new Promise((resolve) => { child.once('exit', () => resolve(null)); }),
        ]);
        if (line === null) {
            throw new Error(`the receiver did not begin: ${complaint}`);
        }
        receiver.origin = JSON.parse(line).sr;
        receiver.uploads = strangers ? `${receiver.origin}/t/${tokens.upload}` : receiver.origin;
        receiver.end = () => new Promise((resolve) => {
            child.once('exit', resolve);
            child.kill('SIGTERM');
        });
    };
    await run('127.0.0.1:0');
    /** Ends the program but keeps its data and its port, for `resume`. */
    receiver.pause = () => receiver.end();
    receiver.resume = () => run(new URL(receiver.origin).host);
    receiver.stop = async () => {
        await receiver.end();
        await rm(data, { recursive: true, force: true });
    };
    return receiver;
}

/** Plays a scenario of this folder, in no time, and answers the id of the session that it recorded. */
export async function record(receiver, scenario) {
    const caches = await mkdtemp(join(tmpdir(), 'mireth-web-phone-'));
    try {
        const file = fileURLToPath(new URL(`../scenarios/${scenario}.json`, import.meta.url));
        const { stdout } = await promisify(execFile)(phoneProgram, [
            '--speed', 'max', '--caches', caches, '--sr-endpoint', receiver.uploads, '--kelda-endpoint', receiver.uploads, file]);
        const started = stdout.split('\n').filter(Boolean).map((line) => JSON.parse(line)).find((line) => line.sessionId);
        return started.sessionId;
    } finally {
        await rm(caches, { recursive: true, force: true });
    }
}
