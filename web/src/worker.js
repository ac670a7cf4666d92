// Runs npar's command line once. The program's glue stands above this text as makeNpar.
const kFolder = '/work';
const kGiven = '/given';

const kProgress = /\[[#.]*\]\s+(\d+) %\s*([^\x1b]*)/;

/** Collects bytes that the program writes; what follows a carriage return is a progress bar. */
class ErrorStream {
  bytes = [];
  bar = [];
  isBar = false;

  put(byte) {
    if (byte === 13) {
      this.isBar = true;
      this.bar = [];
    } else if (this.isBar) {
      this.bar.push(byte);
      // The bar clears the rest of its line at its end: ESC [ K.
      if (byte === 75 && this.bar.at(-2) === 91 && this.bar.at(-3) === 27) this.tellBar();
    } else {
      this.bytes.push(byte);
    }
  }

  tellBar() {
    this.isBar = false;
    const [, percent, text] = kProgress.exec(textOf(this.bar)) ?? [];
    if (percent !== undefined) postMessage({progress: {percent: Number(percent), text: text.trim()}});
  }
}

function textOf(bytes) {
  return new TextDecoder().decode(Uint8Array.from(bytes));
}

function prepareFiles(npar, files) {
  const {FS} = npar;
  FS.mkdir(kFolder);
  FS.mkdir(kGiven);
  FS.mount(npar.WORKERFS, {blobs: files.map(({name, blob}) => ({name, data: blob}))}, kGiven);
  for (const {name, blob} of files) {
    FS.utime(`${kGiven}/${name}`, blob.lastModified, blob.lastModified);
    FS.symlink(`${kGiven}/${name}`, `${kFolder}/${name}`);
  }
  FS.chdir(kFolder);
}

function readOutputs({FS}, outputs) {
  const found = outputs.filter((name) => FS.analyzePath(`${kFolder}/${name}`).exists);
  return Object.fromEntries(found.map((name) => [name, FS.readFile(`${kFolder}/${name}`)]));
}

async function run({module, words, files, outputs}) {
  const stdout = [];
  const stderr = new ErrorStream();
  const npar = await makeNpar({
    noInitialRun: true,
    instantiateWasm: (imports, use) => {
      WebAssembly.instantiate(module, imports).then((instance) => use(instance, module));
      return {};
    },
    stdin: () => null,
    stdout: (byte) => stdout.push(byte & 255),
    preRun: ({ENV}) => { ENV.TERM = 'page'; },
  });
  // A terminal, so that the program shows its progress.
  const ignore = () => {};
  npar.FS.getStream(2).tty = {ops: {put_char: (tty, byte) => stderr.put(byte & 255), flush: ignore, fsync: ignore}};
  prepareFiles(npar, files);
  const exit = npar.callMain(words);
  return {exit, stdout: textOf(stdout), stderr: textOf(stderr.bytes), files: readOutputs(npar, outputs)};
}

onmessage = async ({data}) => {
  try {
    const answer = await run(data);
    postMessage(answer, Object.values(answer.files).map(({buffer}) => buffer));
  } catch (error) {
    postMessage({exit: null, stdout: '', stderr: '', files: {}, crash: String(error)});
  }
};
