// npar itself: its command line, run in a worker of its own for each call.

function embedded(id) {
  return Uint8Array.from(atob(document.getElementById(id).textContent), (letter) => letter.charCodeAt(0));
}

async function unzipped(bytes) {
  const stream = new Blob([bytes]).stream().pipeThrough(new DecompressionStream('gzip'));
  return new Response(stream).arrayBuffer();
}

let parts = null;

/** The compiled program and the address of the worker's script. */
function load() {
  parts ??= (async () => {
    const module = await WebAssembly.compile(await unzipped(embedded('npar-wasm')));
    const script = await unzipped(embedded('npar-worker'));
    return {module, address: URL.createObjectURL(new Blob([script], {type: 'text/javascript'}))};
  })();
  return parts;
}

/**
 * Starts npar with these words and files {name, blob}; {result, stop}. The result is {exit, stdout,
 * stderr, files: {name: Uint8Array}}, with exit null and `crash`, a text, where the program came to
 * no end; null after stop(). onProgress takes {percent, text}.
 */
export function start({words, files = [], outputs = []}, onProgress = () => {}) {
  let worker = null;
  let finish = null;
  const result = new Promise((resolve) => {
    finish = (answer) => {
      worker?.terminate();
      worker = null;
      finish = () => {};
      resolve(answer);
    };
  });
  const crashed = (text) => finish({exit: null, stdout: '', stderr: '', files: {}, crash: text});
  load().then(({module, address}) => {
    worker = new Worker(address);
    worker.onmessage = ({data}) => (data.progress ? onProgress(data.progress) : finish(data));
    worker.onerror = (event) => {
      event.preventDefault();
      crashed(event.message || 'the worker could not be started');
    };
    worker.postMessage({module, words, files, outputs});
  }).catch((error) => crashed(String(error)));
  return {result, stop: () => finish(null)};
}
