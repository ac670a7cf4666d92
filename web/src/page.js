// What is open in the page, what happens when a choice changes, and the calls of npar.
import {analysisArguments, describeArguments, kOutputs} from './arguments.js';
import {showFile, showReading} from './data_view.js';
import {announce, byId, download} from './elements.js';
import {start} from './engine.js';
import {showFields, showRoles} from './fields_view.js';
import {judgeSize} from './reading.js';
import {showReport} from './report_view.js';
import {notesOf, runArguments, showCommand, showNotes, showProgress, showRunning} from './run_view.js';
import {completed, fitToFields, hasFields, newChoices, readChoices, writeChoices} from './state.js';
import {showAutomaticChoice, showSettings, showTests} from './tests_view.js';

const kQuiet = 300;  // milliseconds without a change before npar is asked about the choices
const crashText = ({crash}) => 'npar came to no end in this page, perhaps for lack of memory; close ' +
  `other pages, leave out columns that you do not need, or use npar on the command line (${crash})`;

const kViewsOf = {
  data: [showFile, showReading, showFields, showRoles, showTests, showSettings, showCommand],
  kinds: [showFields, showTests, showCommand],
  roles: [showFields, showRoles, showTests, showCommand],
  tests: [showTests, showCommand],
  values: [showCommand],
};

export class Page {
  constructor(examples) {
    this.examples = examples;
    const {result} = start({words: ['tests', '--json']});
    this.ready = result.then((answer) => {
      if (answer.exit !== 0) throw new Error(answer.crash ?? answer.stderr);
      this.catalogue = JSON.parse(answer.stdout).tests;
    });
  }

  choices = newChoices();
  awaited = null;  // choices that were opened before their data
  catalogue = [];
  file = null;  // {name, blob}
  description = null;  // as npar describe --json
  fileError = null;
  isReading = false;
  planned = null;  // the call that looks at the choices
  running = null;  // the call that runs them
  timer = 0;

  changed(topic) {
    for (const show of kViewsOf[topic]) show(this);
    this.plan();
  }

  call(request, onProgress) {
    return start({...request, files: this.file ? [this.file] : []}, onProgress);
  }

  async open(blob, choices = this.awaited ?? newChoices()) {
    if (blob.name.endsWith('.json')) return this.openChoices(blob);
    await this.ready;
    this.stop();
    this.awaited = null;
    this.file = {name: blob.name, blob};
    this.choices = choices;
    this.description = null;
    showReport({}, '');
    const {isTooLarge, text} = await judgeSize(blob);
    byId('size-note').textContent = isTooLarge ? '' : text;
    if (isTooLarge) {
      this.file = null;
      this.fileError = text;
      return this.changed('data');
    }
    return this.read(choices.reading);
  }

  openExample({file, text, choices}) {
    return this.open(new File([text], file), completed(choices));
  }

  async read(reading) {
    this.choices.reading = reading;
    this.fileError = null;
    this.isReading = true;
    this.planned?.stop();
    showFile(this);
    const asked = this.call({words: describeArguments(this.file.name, reading)});
    const answer = await asked.result;
    this.isReading = false;
    if (answer.exit === 0) {
      this.description = JSON.parse(answer.stdout);
      const unknown = fitToFields(this.choices, this.description.fields.map(({name}) => name));
      if (unknown.length > 0) this.fileError = `The data have no ${unknown.join(', ')}, which the choices name.`;
    } else {
      this.description = null;
      this.fileError = answer.exit === null ? crashText(answer) : notesOf(answer.stderr).join(' ');
    }
    this.changed('data');
  }

  /** Asks npar what it would run and why. */
  plan() {
    this.planned?.stop();
    clearTimeout(this.timer);
    if (!this.description || !hasFields(this.choices)) return showNotes([], false);
    this.timer = setTimeout(async () => {
      const words = analysisArguments(this.file.name, this.choices, this.catalogue);
      const answer = await (this.planned = this.call({words: [...words, '--plan']})).result;
      if (!answer || this.running) return;
      const notes = answer.exit === null ? [crashText(answer)] : notesOf(answer.stderr);
      showNotes(notes, answer.exit !== 0);
      showAutomaticChoice(this, notes);
    }, kQuiet);
  }

  async run() {
    this.planned?.stop();
    clearTimeout(this.timer);
    showRunning(true);
    announce('npar is running.');
    this.running = this.call({words: runArguments(this), outputs: kOutputs.map(({file}) => file)}, showProgress);
    const answer = await this.running.result;
    this.running = null;
    showRunning(false);
    if (!answer) return announce('The run is stopped.');
    showNotes(answer.exit === null ? [crashText(answer)] : notesOf(answer.stderr), answer.exit !== 0);
    showReport(answer.files, this.file.name);
    announce(answer.files['report.html'] ? 'The report is ready.' : 'npar made no report; it says why above.');
    if (answer.files['report.html']) byId('report-heading').focus();
  }

  stop() {
    this.running?.stop();
    this.planned?.stop();
  }

  save() {
    download('npar_choices.json', writeChoices(this.choices, this.file.name), 'application/json');
  }

  /** The choices of a saved file, for the data that are open, for its example, or for the next file. */
  async openChoices(blob) {
    try {
      const {choices, file} = readChoices(await blob.text());
      const example = this.examples.find((each) => each.file === file);
      if (this.file) await this.open(this.file.blob, choices);
      else if (example) await this.openExample({...example, choices});
      else {
        this.awaited = choices;
        byId('file-facts').textContent = `The choices are open; now choose ${file || 'the data file'}.`;
        announce(byId('file-facts').textContent);
      }
    } catch (error) {
      this.fileError = error.message;
      showFile(this);
    }
  }
}
