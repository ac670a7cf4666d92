// The report as npar made it, and the files of a run for keeping.
import {kOutputs} from './arguments.js';
import {byId, download, h, refill} from './elements.js';

const kMarkup = new TextDecoder();

/** The name of the data file leads those of what was made of it. */
function nameFor(dataFile, output) {
  return `${dataFile.replace(/\.gz$|\.zst$/, '').replace(/\.\w+$/, '')}.${output}`;
}

export function showReport(files, dataFile) {
  const section = byId('report-section');
  section.hidden = !files['report.html'];
  if (section.hidden) return;
  byId('report').srcdoc = kMarkup.decode(files['report.html']);
  refill(byId('downloads'), kOutputs.filter(({file}) => files[file]).map(({file, title, type}) => h('li', {},
    h('button', {type: 'button', id: `download-${file}`,
      onclick: () => download(nameFor(dataFile, file), files[file], type)}, title))));
}

/** Prints the whole report and nothing else. */
export function printReport() {
  // The shown frame is of a foreign origin; one without scripts may be told to print.
  byId('print-frame')?.remove();
  const frame = h('iframe', {id: 'print-frame', class: 'away', title: 'Report for printing',
    sandbox: 'allow-same-origin allow-modals', srcdoc: byId('report').srcdoc.replace(/<script>.*<\/script>/s, '')});
  frame.addEventListener('load', () => {
    frame.contentWindow.addEventListener('afterprint', () => frame.remove());
    frame.contentWindow.print();
  });
  document.body.append(frame);
}
