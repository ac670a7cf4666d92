// Choices as the words of npar's command line.
import {kFamilies, kRoles} from './state.js';

/** A text in which lists, options and orders take no character for a separator. */
export const escaped = (text) => text.replace(/[\\,=|<]|^"/g, '\\$&');

const list = (fields) => fields.map(escaped).join(',');

/** A text that begins with a dash is no option of its own. */
const given = (option, text) => (text.startsWith('-') ? [`${option}=${text}`] : [option, text]);

const kListTypes = ['words', 'categories', 'expected'];

function readingArguments(reading) {
  const words = [];
  for (const [option, text] of Object.entries(reading)) {
    // Several texts stand for missing values, each on a line of its own.
    const texts = option.endsWith('missing-token') ? text.split('\n') : [text];
    words.push(...texts.filter((each) => each !== '').flatMap((each) => given(`--${option}`, each)));
  }
  return words;
}

function kindArguments({kinds, orders}) {
  const words = [];
  for (const [field, kind] of Object.entries(kinds)) {
    const isOrdered = kind === 'ordinal' || kind === 'scores';
    const order = isOrdered && orders[field] ? `=${orders[field].map(escaped).join('<')}` : '';
    words.push(...given(`--${kind}`, escaped(field) + order));
  }
  return words;
}

function testArguments({tests, roles}, catalogue) {
  const words = [];
  for (const {name, family, options} of catalogue) {
    const {role} = kFamilies.find((each) => each.name === family);
    if (!tests[name] || roles[role].length === 0) continue;
    const settings = [];
    for (const {name: option, type} of options) {
      const text = tests[name][option] ?? '';
      // Lists hold separators; their items are escaped where they are chosen.
      if (text !== '') settings.push(`${option}=${kListTypes.includes(type) ? text : escaped(text)}`);
    }
    words.push('--test', name + (settings.length > 0 ? `:${settings.join(',')}` : ''));
  }
  return words;
}

/** As the command line takes a path. */
const filePath = (name) => (name.startsWith('-') ? `./${name}` : name);

export function describeArguments(file, reading) {
  return ['describe', filePath(file), '--json', ...readingArguments(reading)];
}

/** npar analyse without what it writes. */
export function analysisArguments(file, choices, catalogue) {
  const words = ['analyse', filePath(file)];
  for (const {key, option} of kRoles) {
    if (choices.roles[key].length > 0) words.push(...given(option, list(choices.roles[key])));
  }
  words.push(...kindArguments(choices), ...testArguments(choices, catalogue));
  for (const [option, text] of Object.entries(choices.settings)) {
    if (text !== '') words.push(...given(`--${option}`, text));
  }
  return [...words, ...readingArguments(choices.reading)];
}

export const kOutputs = [
  {file: 'report.html', option: '--report', form: 'html', title: 'Report', type: 'text/html'},
  {file: 'result.xml', option: '--out', title: 'Result document', type: 'application/xml'},
  {file: 'report.json', option: '--report', form: 'json', title: 'JSON', type: 'application/json'},
  {file: 'tests.csv', option: '--report', form: 'csv', title: 'Table of the tests', type: 'text/csv'},
  {file: 'report.md', option: '--report', form: 'markdown', title: 'Tables in Markdown', type: 'text/markdown'},
  {file: 'report.tex', option: '--report', form: 'latex', title: 'Tables in LaTeX', type: 'text/x-tex'},
  {file: 'report.txt', option: '--report', form: 'text', title: 'Text', type: 'text/plain'},
];

export function outputArguments() {
  return kOutputs.flatMap(({file, option, form}) => [option, form ? `${form}=${file}` : file]);
}

/** As a shell takes the words. */
export function shellLine(words) {
  const quoted = words.map((word) => (/^[\w./:=,+@%-]+$/.test(word) ? word :
    `'${word.replaceAll("'", "'\\''")}'`));
  return ['npar', ...quoted].join(' ');
}
