// The tests of the catalogue for the families that have fields, with their options and their help.
import {escaped} from './arguments.js';
import {usualOrder} from './categories.js';
import {byId, h, option, refill} from './elements.js';
import {kFamilies} from './state.js';

const kNoneTicked = 'None is ticked: npar chooses by the kinds of the fields.';
const kMostBoxes = 30;  // categories that are chosen by boxes; more are written

function setOption(page, test, name, text) {
  if (text === '') delete page.choices.tests[test][name];
  else page.choices.tests[test][name] = text;
  page.changed('values');
}

/** Splits at a separator that no backslash stands before. */
function splitEscaped(text, separator) {
  const parts = [''];
  for (let i = 0; i < text.length; ++i) {
    if (text[i] === '\\' && i + 1 < text.length) parts[parts.length - 1] += text[i] + text[++i];
    else if (text[i] === separator) parts.push('');
    else parts[parts.length - 1] += text[i];
  }
  return text === '' ? [] : parts;
}

const unescaped = (text) => text.replace(/\\(.)/gs, '$1');

/** The categories among which an option of the test chooses, as npar describe tells them. */
function categoriesFor(page, test) {
  const {roles} = page.choices;
  const family = kFamilies.find(({name}) => name === test.family);
  const isOfGroups = family.name === 'independent';
  const names = isOfGroups ? roles.group : roles[family.role];
  const values = new Set();
  for (const field of page.description.fields) {
    const isCategorical = isOfGroups || (page.choices.kinds[field.name] ?? field.kind) !== 'continuous';
    if (names.includes(field.name) && isCategorical) usualOrder(field).forEach((value) => values.add(value));
  }
  return [...values];
}

function textControl(page, test, {name, syntax, default: usual}, id) {
  const change = ({target}) => setOption(page, test.name, name, target.value.trim());
  return h('input', {id, value: page.choices.tests[test.name]?.[name] ?? '', onchange: change,
    placeholder: `${syntax}; usual: ${usual}`, autocomplete: 'off', spellcheck: 'false'});
}

function wordControl(page, test, {name, words, default: usual}, id) {
  const chosen = page.choices.tests[test.name]?.[name] ?? '';
  return h('select', {id, onchange: ({target}) => setOption(page, test.name, name, target.value)},
    option('', `usual: ${usual}`, chosen), words.map(({word}) => option(word, word, chosen)));
}

/** Boxes of which any may be ticked; the option is the list of those that are. */
function boxesControl(page, test, name, values) {
  const chosen = splitEscaped(page.choices.tests[test.name]?.[name] ?? '', '|').map(unescaped);
  const boxes = values.map((value) => ({value, box: h('input', {type: 'checkbox', checked: chosen.includes(value)})}));
  const change = () => setOption(page, test.name, name,
    boxes.filter(({box}) => box.checked).map(({value}) => escaped(value)).join('|'));
  return h('div', {class: 'boxes', onchange: change},
    boxes.map(({value, box}) => h('label', {class: 'box'}, box, ` ${value}`)));
}

/** A number for each category. */
function expectedControl(page, test, name, values) {
  const given = new Map(splitEscaped(page.choices.tests[test.name]?.[name] ?? '', '|').map((part) => {
    const [category, number = ''] = splitEscaped(part, '=');
    return [unescaped(category), number];
  }));
  const inputs = values.map((value) => ({value,
    input: h('input', {value: given.get(value) ?? '', inputmode: 'decimal', size: 6, autocomplete: 'off'})}));
  const change = () => setOption(page, test.name, name, inputs
    .filter(({input}) => input.value.trim() !== '')
    .map(({value, input}) => `${escaped(value)}=${escaped(input.value.trim())}`).join('|'));
  return h('div', {class: 'boxes', onchange: change},
    inputs.map(({value, input}) => h('label', {class: 'box'}, `${value} `, input)));
}

function optionControl(page, test, each) {
  const id = `option-${test.name}-${each.name}`;
  const categories = ['categories', 'expected'].includes(each.type) ? categoriesFor(page, test) : [];
  const isKnown = categories.length > 0 && categories.length <= kMostBoxes;
  const help = h('p', {class: 'help', id: `${id}-help`},
    `${each.help[0].toUpperCase()}${each.help.slice(1)}. Usual: ${each.default}.`);
  let group = null;
  if (each.type === 'words') group = boxesControl(page, test, each.name, each.words.map(({word}) => word));
  if (each.type === 'categories' && isKnown) group = boxesControl(page, test, each.name, categories);
  if (each.type === 'expected' && isKnown) group = expectedControl(page, test, each.name, categories);
  if (group) {
    return h('fieldset', {id, class: 'control', 'aria-describedby': `${id}-help`},
      h('legend', {}, each.name), group, help);
  }
  const control = each.type === 'word' ? wordControl(page, test, each, id) : textControl(page, test, each, id);
  control.setAttribute('aria-describedby', `${id}-help`);
  return h('div', {class: 'control'}, h('label', {for: id}, each.name), control, help);
}

function testItem(page, test) {
  const id = `test-${test.name}`;
  const {tests} = page.choices;
  const options = h('div', {class: 'options', hidden: !tests[test.name]},
    tests[test.name] ? test.options.map((each) => optionControl(page, test, each)) : null);
  const toggle = ({target}) => {
    if (target.checked) tests[test.name] = {};
    else delete tests[test.name];
    page.changed('tests');
  };
  return h('li', {class: 'test'},
    h('label', {for: id}, h('input', {type: 'checkbox', id, checked: Boolean(tests[test.name]),
      'aria-describedby': `${id}-help`, onchange: toggle}), ` ${test.title}`),
    h('p', {class: 'help', id: `${id}-help`}, `${test.name}: ${test.fields.description}` +
      (test.effectSize ? `; effect size ${test.effectSize}` : '')),
    options);
}

function familySection(page, {name, title, role}) {
  if (page.choices.roles[role].length === 0) return null;
  const tests = page.catalogue.filter((test) => test.family === name);
  const isChosen = tests.some((test) => page.choices.tests[test.name]);
  return h('section', {class: 'family', 'aria-labelledby': `family-${name}`},
    h('h3', {id: `family-${name}`}, title),
    h('p', {class: 'choice', id: `choice-${name}`}, isChosen ? 'Those that are ticked are run.' : kNoneTicked),
    h('ul', {class: 'tests'}, tests.map((test) => testItem(page, test))));
}

/** Says of each family which tests npar has chosen and why. */
export function showAutomaticChoice(page, notes) {
  for (const {name} of kFamilies) {
    const place = byId(`choice-${name}`);
    const chosen = page.catalogue.filter((test) => test.family === name).flatMap((test) => notes
      .filter((note) => note.startsWith(`${test.name} is chosen, `))
      .map((note) => test.title + note.slice(test.name.length)));
    if (place && chosen.length > 0) place.textContent = `${kNoneTicked} ${chosen.join('. ')}.`;
  }
}

export function showTests(page) {
  const families = page.description ? kFamilies.map((family) => familySection(page, family)) : [];
  const isEmpty = families.every((family) => family === null);
  refill(byId('families'), isEmpty ? h('p', {class: 'none'},
    'Give fields a use as one sample, related or independent first.') : families);
  byId('tests').hidden = !page.description;
}

const kSettings = [
  {name: 'significance', title: 'Significance level', usual: '0.05'},
  {name: 'confidence', title: 'Confidence level in percent', usual: '95'},
  {name: 'missing', title: 'Records with missing values',
    words: {analysis: 'left out test by test', listwise: 'left out of all tests'}},
  {name: 'adjust', title: 'Adjusted over all tests', words: {none: 'none', bonferroni: 'Bonferroni', holm: 'Holm',
    bh: 'Benjamini and Hochberg'}},
];

export function showSettings(page) {
  const change = (name) => ({target}) => {
    page.choices.settings[name] = target.value.trim();
    page.changed('values');
  };
  refill(byId('settings'), kSettings.map(({name, title, usual, words}) => {
    const id = `setting-${name}`;
    const text = page.choices.settings[name] ?? '';
    const control = words ?
      h('select', {id, onchange: change(name)},
        Object.entries(words).map(([word, words], i) => option(i === 0 ? '' : word, words, text))) :
      h('input', {id, value: text, placeholder: usual, inputmode: 'decimal', autocomplete: 'off',
        onchange: change(name)});
    return h('div', {class: 'control'}, h('label', {for: id}, title), control);
  }));
}
