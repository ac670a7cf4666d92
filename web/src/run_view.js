// Running: what npar says of the choices, the command line, progress, stop.
import {analysisArguments, outputArguments, shellLine} from './arguments.js';
import {announce, byId, h, refill} from './elements.js';

const kNotReported = /^npar: /;

/** What npar says on standard error, a line each. */
export function notesOf(stderr) {
  return stderr.split('\n').filter((line) => line.trim() !== '').map((line) => line.replace(kNotReported, ''));
}

export function runArguments(page) {
  return [...analysisArguments(page.file.name, page.choices, page.catalogue), ...outputArguments()];
}

export function showNotes(notes, isRefused) {
  byId('notes').classList.toggle('refused', isRefused);
  refill(byId('notes'), notes.map((note) => h('li', {}, note)));
}

export function showCommand(page) {
  byId('command').textContent = page.description ? shellLine(runArguments(page)) : '';
  byId('run-section').hidden = !page.description;
}

export function showRunning(isRunning) {
  byId('run').disabled = isRunning;
  byId('stop').disabled = !isRunning;
  byId('progress-box').hidden = !isRunning;
  if (isRunning) showProgress({percent: null, text: 'starting'});
}

export function showProgress({percent, text}) {
  const bar = byId('progress');
  if (percent === null) bar.removeAttribute('value');
  else bar.value = percent;
  byId('progress-text').textContent = percent === null ? text : `${percent} % ${text}`;
}

export async function copyCommand() {
  const command = byId('command');
  try {
    await navigator.clipboard.writeText(command.textContent);
    announce('The command line is copied.');
  } catch {
    getSelection().selectAllChildren(command);
    announce('The command line is selected; copy it from there.');
  }
}
