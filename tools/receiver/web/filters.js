// The list's filters: a form whose every change is at once in the address and in the list.
import { el } from './dom.js';

const typingPause = 300;
const signals = [['', 'Any'], ['rageTap', 'Rage taps'], ['deadTap', 'Dead taps'], ['errorTap', 'Error taps'], ['tap', 'Taps']];

/** `element`, and `offer(facets)`, which fills in the projects and screens that there are. `changed` gets the new filters. */
export function filterForm(filters, changed) {
    const text = el('input', { type: 'search', id: 'text', name: 'text', placeholder: 'Screen or error message', maxlength: 200 });
    const project = choice('project', [['', 'All']]);
    const screen = choice('screen', [['', 'Any']]);
    const signal = choice('signal', signals);
    const from = el('input', { type: 'date', id: 'from', name: 'from' });
    const to = el('input', { type: 'date', id: 'to', name: 'to' });
    const fields = { text, project, screen, signal, from, to };
    const clear = el('button', { type: 'button', class: 'quiet', hidden: true, on: { click: () => reset() } }, 'Clear');

    let timer = null;
    const report = () => {
        clearTimeout(timer);
        const chosen = {};
        for (const [name, field] of Object.entries(fields)) {
            if (field.value.trim() !== '') {
                chosen[name] = field.value.trim();
            }
        }
        clear.hidden = Object.keys(chosen).length === 0;
        changed(chosen);
    };
    const reset = () => {
        Object.values(fields).forEach((field) => { field.value = ''; });
        report();
        text.focus();
    };

    for (const [name, field] of Object.entries(fields)) {
        keep(field, filters[name] ?? '');
        field.addEventListener('change', report);
    }
    clear.hidden = Object.keys(filters).length === 0;
    text.addEventListener('input', () => {
        clearTimeout(timer);
        timer = setTimeout(report, typingPause);
    });
    const more = el('button', { type: 'button', class: 'more', 'aria-expanded': 'false' }, 'Filters');
    more.addEventListener('click', () => {
        const open = element.classList.toggle('open');
        more.setAttribute('aria-expanded', String(open));
    });
    const element = el('form', { class: clear.hidden ? 'filters' : 'filters open', role: 'search', 'aria-label': 'Sessions', on: { submit: (event) => { event.preventDefault(); report(); } } },
        labelled('Search', text, 'wide'), more, labelled('Project', project), labelled('Screen', screen), labelled('Signal', signal),
        labelled('From', from), labelled('Until', to), clear);
    const offer = (facets) => {
        refill(project, [['', 'All'], ...facets.projects.map((each) => [each, each])]);
        refill(screen, [['', 'Any'], ...facets.screens.map((each) => [each, each])]);
    };
    return { element, offer };
}

function labelled(name, field, kind = '') {
    return el('div', { class: `field ${kind}` }, el('label', { for: field.id }, name), field);
}

function choice(name, options) {
    return el('select', { id: name, name }, options.map(([value, label]) => el('option', { value }, label)));
}

// A value that is not among a select's options is still what the address asks for.
function keep(field, value) {
    if (field instanceof HTMLSelectElement && ![...field.options].some((option) => option.value === value)) {
        field.append(el('option', { value }, value));
    }
    field.value = value;
}

function refill(select, options) {
    const chosen = select.value;
    select.replaceChildren(...options.map(([value, label]) => el('option', { value }, label)));
    keep(select, chosen);
}
