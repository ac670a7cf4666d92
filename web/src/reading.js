// How a file is read, where npar does not see it by itself, and how large a file may be.

export const kEncodings = ['utf-8', 'utf-16', 'utf-16be', 'latin1'];

export const kReadingOptions = [
  {name: 'separator', title: 'Between cells', help: 'comma, semicolon, tab or a character; else detected'},
  {name: 'decimal', title: 'Decimal sign', help: 'else a point'},
  {name: 'thousands', title: 'Between thousands', help: 'such as . or apostrophe; else none'},
  {name: 'missing-token', title: 'Missing values', isLong: true,
    help: 'texts that stand for nothing, one a line, besides empty cells, NA, N/A, #N/A, NaN, null and, ' +
      'among numbers, . - ? *'},
  {name: 'skip', title: 'Lines above the header', help: 'how many are passed over'},
  {name: 'comment', title: 'Comment sign', help: 'begins lines that are passed over, such as #'},
  {name: 'encoding', title: 'Encoding', help: 'else by the byte order mark, or UTF-8'},
];

const kMegabyte = 1e6;
const kLargestText = 200 * kMegabyte;
const kNotableText = 50 * kMegabyte;
const kMemoryPerByte = 12;  // of text, at most: cells of one digit, all analysed
const kGzipMagic = [0x1f, 0x8b];
const kGzipTrailer = 4;  // bytes that hold the size of the text, modulo 4 GB

/** Bytes of the text in the file, unpacked where it is packed by gzip. */
async function textSize(file) {
  const bytes = async (from, to) => new Uint8Array(await file.slice(from, to).arrayBuffer());
  const start = await bytes(0, kGzipMagic.length);
  if (file.size < kGzipTrailer || kGzipMagic.some((byte, i) => start[i] !== byte)) return file.size;
  const trailer = await bytes(file.size - kGzipTrailer, file.size);
  return Math.max(file.size, new DataView(trailer.buffer).getUint32(0, true));
}

/** {isTooLarge, text}: what to say of the file's size before it is read; no text where it is small. */
export async function judgeSize(file) {
  const size = await textSize(file);
  const megabytes = `${Math.round(size / kMegabyte).toLocaleString('en')} MB`;
  if (size <= kNotableText) return {isTooLarge: false, text: ''};
  const memory = `${((size * kMemoryPerByte) / 1e9).toFixed(1)} GB`;
  if (size <= kLargestText) {
    return {isTooLarge: false, text: `${megabytes} of text: an analysis takes up to ${memory} of memory.`};
  }
  return {isTooLarge: true, text: `${file.name} holds ${megabytes} of text. This page takes up to ` +
    `${kLargestText / kMegabyte} MB, since a browser gives a page no more than 4 GB of memory; ` +
    'leave out columns that you do not need, or analyse it with npar on the command line.'};
}
