// The page's own files: nothing in them may turn a text into markup or script, or fetch from elsewhere.
import assert from 'node:assert/strict';
import { readFileSync, readdirSync } from 'node:fs';
import { it } from 'node:test';

const folder = new URL('../../../tools/receiver/web/', import.meta.url);
const files = readdirSync(folder).map((name) => ({ name, text: readFileSync(new URL(name, folder), 'utf8') }));
const scripts = files.filter(({ name }) => name.endsWith('.js'));

it('No module writes markup or runs text', () => {
    const forbidden = /innerHTML|outerHTML|insertAdjacentHTML|document\.write|DOMParser|createContextualFragment|\beval\b|new Function|srcdoc|setHTML/;
    for (const { name, text } of scripts) {
        assert.doesNotMatch(text, forbidden, name);
    }
});

it('No style stands in the markup, where the content security policy forbids it', () => {
    for (const { name, text } of files.filter((file) => !file.name.endsWith('.css'))) {
        assert.doesNotMatch(text, /\bstyle\s*[=:]\s*['"{]|setAttribute\('style'|<style|\son\w+="/, name);
    }
});

it('Nothing is fetched from another host', () => {
    for (const { name, text } of files) {
        assert.deepEqual([...text.matchAll(/https?:\/\/[^\s'"`)]+/g)].map(([address]) => address).filter((address) => !address.startsWith('http://www.w3.org/')), [], name);
    }
});

it('Every module stays short enough to be read', () => {
    for (const { name, text } of scripts) {
        assert.ok(text.split('\n').length <= 250, name);
    }
});

it('The page’s modules are all reached from its entrance', () => {
    const reached = new Set();
    const visit = (name) => {
        if (!reached.has(name)) {
            reached.add(name);
            const { text } = files.find((file) => file.name === name);
            [...text.matchAll(/from '\.\/([^']+)'/g)].forEach(([, next]) => visit(next));
        }
    };
    visit('app.js');
    assert.deepEqual(scripts.map(({ name }) => name).filter((name) => !reached.has(name)), []);
});

it('The entrance names every module, so that none is fetched only after another', () => {
    const { text } = files.find(({ name }) => name === 'index.html');
    const named = [...text.matchAll(/(?:src|modulepreload" href)="\/([^"]+\.js)"/g)].map(([, name]) => name);
    assert.deepEqual(named.sort(), scripts.map(({ name }) => name).sort());
});
