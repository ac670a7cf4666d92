// Choosing a file: by the button, dropped on the page, or an example; and how it is read.
import {announce, byId, count, h, makeDropTarget, option, refill} from './elements.js';
import {kEncodings, kReadingOptions} from './reading.js';

function readingControl(page, {name, title, help, isLong}) {
  const id = `reading-${name}`;
  const attributes = {id, 'aria-describedby': `${id}-help`, autocomplete: 'off', spellcheck: 'false'};
  const text = page.choices.reading[name] ?? '';
  attributes.onchange = ({target}) => page.read({...page.choices.reading, [name]: target.value});
  let control;
  if (name === 'encoding') {
    control = h('select', attributes, option('', 'by itself', text),
      kEncodings.map((encoding) => option(encoding, encoding, text)));
  } else {
    control = isLong ? h('textarea', {...attributes, rows: 2}, text) : h('input', {...attributes, value: text});
  }
  return h('div', {class: 'control'}, h('label', {for: id}, title), control,
    h('p', {class: 'help', id: `${id}-help`}, help));
}

export function showReading(page) {
  refill(byId('reading-options'), kReadingOptions.map((each) => readingControl(page, each)));
}

export function showFile(page) {
  const {file, description, fileError, isReading} = page;
  byId('file-error').textContent = fileError ?? '';
  byId('reading').hidden = !file;
  byId('save').disabled = !description;
  const facts = byId('file-facts');
  if (isReading) facts.textContent = `Reading ${file.name} …`;
  else if (description) {
    facts.textContent = `${file.name}: ${count(description.records, 'record', 'records')}, ` +
      count(description.fields.length, 'field', 'fields');
    byId('example-files').open = false;
    announce(facts.textContent);
  } else {
    facts.textContent = file ? file.name : '';
  }
}

export function startDataView(page, examples) {
  const take = (files) => (files.length > 0 ? page.open(files[0]) : undefined);
  byId('file').addEventListener('change', ({target}) => {
    take(target.files);
    target.value = '';  // the same file may be chosen again
  });
  makeDropTarget(document.documentElement, 'Files', take);
  refill(byId('examples'), examples.map((example) => h('li', {},
    h('button', {type: 'button', id: `example-${example.file}`, onclick: () => page.openExample(example)},
      example.title))));
}
