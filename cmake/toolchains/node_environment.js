// The system's environment in the place of the empty one that Emscripten makes, and its terminals: it takes all three
// standard streams for one.
Module.preRun = () => Object.assign(ENV, process.env);
Module.onRuntimeInitialized = () => {
  for (const stream of FS.streams.slice(0, 3)) stream.tty = require('tty').isatty(stream.nfd);
};
