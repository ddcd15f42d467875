// Runs the receiver and the scripted phone.
import { execFile, spawn } from 'node:child_process';
import { mkdtemp, rm } from 'node:fs/promises';
import { tmpdir } from 'node:os';
import { join } from 'node:path';
import { createInterface } from 'node:readline';
import { fileURLToPath } from 'node:url';
import { promisify } from 'node:util';

const built = new URL('../../../build/dev/bin/', import.meta.url);
const receiverProgram = process.env.MIRETH_RECEIVER_PROGRAM ?? fileURLToPath(new URL('mireth-receiver', built));
const phoneProgram = process.env.MIRETH_PHONE_PROGRAM ?? fileURLToPath(new URL('mireth-phone', built));

/** A receiver on a free port, with a data folder of its own: `{origin, stop, resume}`. `more` are further arguments. */
export async function startReceiver(...more) {
    const data = await mkdtemp(join(tmpdir(), 'mireth-web-'));
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
            '--speed', 'max', '--caches', caches, '--sr-endpoint', receiver.origin, '--kelda-endpoint', receiver.origin, file]);
        const started = stdout.split('\n').filter(Boolean).map((line) => JSON.parse(line)).find((line) => line.sessionId);
        return started.sessionId;
    } finally {
        await rm(caches, { recursive: true, force: true });
    }
}
