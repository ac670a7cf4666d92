// Brings the page to life.
import {startDataView} from './data_view.js';
import {byId} from './elements.js';
import {Page} from './page.js';
import {printReport} from './report_view.js';
import {copyCommand} from './run_view.js';

function onClick(id, act) {
  byId(id).addEventListener('click', act);
}

const page = new Page(JSON.parse(byId('npar-examples').textContent));
startDataView(page, page.examples);
onClick('run', () => page.run());
onClick('stop', () => page.stop());
onClick('save', () => page.save());
onClick('copy', copyCommand);
onClick('print', printReport);
byId('choices').addEventListener('change', ({target}) => {
  if (target.files.length > 0) page.openChoices(target.files[0]);
  target.value = '';
});
addEventListener('keydown', (event) => {
  if (event.key !== 'p' || !(event.ctrlKey || event.metaKey) || byId('report-section').hidden) return;
  event.preventDefault();
  printReport();
});
page.ready.catch((error) => {
  byId('file-error').textContent = `npar cannot run in this browser: ${error.message}. ` +
    'It takes one of the last years, with WebAssembly.';
});
