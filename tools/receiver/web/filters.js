// The list's filters: a form whose every change is at once in the address and in the list.
import { arrange, el } from './dom.js';

const typingPause = 300;
const signals = [['', 'Any'], ['rageTap', 'Rage taps'], ['deadTap', 'Dead taps'], ['errorTap', 'Error taps'], ['tap', 'Taps']];

/** `element`, and `offer(facets)`, which offers the projects and screens that there are now. `changed` gets the new filters. */
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
    const unfold = el('button', { type: 'button', class: 'more', 'aria-expanded': 'false' }, 'Filters');
    unfold.addEventListener('click', () => {
        const open = element.classList.toggle('open');
        unfold.setAttribute('aria-expanded', String(open));
    });
    const element = el('form', { class: clear.hidden ? 'filters' : 'filters open', role: 'search', 'aria-label': 'Sessions', on: { submit: (event) => { event.preventDefault(); report(); } } },
        labelled('Search', text, 'wide'), unfold, labelled('Project', project), labelled('Screen', screen), labelled('Signal', signal),
        labelled('From', from), labelled('Until', to), clear);
    const more = el('optgroup', { label: 'There are more: search for them' });
    const offer = ({ projects, screens, moreScreens }) => {
        refill(project, projects);
        refill(screen, screens, moreScreens ? [more] : []);
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

// The first option, which chooses none of `values`, stays; and so does the list when it is open.
function refill(select, values, after = []) {
    const chosen = select.value;
    const [none, ...known] = select.options;
    const options = new Map(known.map((option) => [option.value, option]));
    arrange(select, [none, ...values.map((value) => options.get(value) ?? el('option', { value }, value)), ...after]);
    keep(select, chosen);
}
