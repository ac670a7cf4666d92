// report_test.mjs RESULT.html...: opens each page in headless Chromium and checks what only a browser
// knows: plots have an extent, nothing is logged or loaded, nothing scrolls sideways at any width,
// axe-core finds no serious violation, the keyboard reaches everything, the overview sorts and
// filters, a page opens in a second and prints on few sheets. Screenshots go to the folder that
// SCREENSHOTS names.
import {mkdirSync, mkdtempSync, readFileSync, rmSync} from 'node:fs';
import {createRequire} from 'node:module';
import {tmpdir} from 'node:os';
import {basename, join, resolve} from 'node:path';
import {pathToFileURL} from 'node:url';
import puppeteer from 'puppeteer-core';

const axeSource = readFileSync(createRequire(import.meta.url).resolve('axe-core/axe.min.js'), 'utf8');
// The rules of axe-core that a view is checked by: colours alone differ in the dark, and nothing
// between a telephone and a desk.
const views = [
  {name: 'light', width: 1100, scheme: 'light', media: 'screen', rules: {}},
  {name: 'dark', width: 1100, scheme: 'dark', media: 'screen', rules: {runOnly: ['color-contrast']}},
  {name: 'narrow', width: 360, scheme: 'light', media: 'screen', rules: {}},
  {name: 'tablet', width: 768, scheme: 'light', media: 'screen'},
  {name: 'wide', width: 1920, scheme: 'light', media: 'screen'},
  {name: 'print', width: 720, scheme: 'dark', media: 'print'},
];
const slowestOpening = 1000;  // milliseconds of processor time
// Sheets of A4 that a page may take; a test with its plots and tables takes about one.
const mostSheets = {departments_pairwise: 12, departments_stepwise: 12, many_tests: 12};
const patience = 600000;  // milliseconds, on a machine that others use
const tallestPicture = 16000;  // Chromium takes no larger ones
const pages = process.argv.slice(2);
const screenshots = process.env.SCREENSHOTS;
const faults = [];
let slowest = 0;

async function open(browser, file) {
  const page = await browser.newPage();
  const at = {view: views[0]};
  const fault = (text) => faults.push(`${basename(file)}, ${at.view.name}: ${text}`);
  const address = pathToFileURL(resolve(file)).href;
  page.on('console', (message) => {
    if (['error', 'warn', 'warning'].includes(message.type())) fault(`console: ${message.text()}`);
  });
  page.on('pageerror', (error) => fault(`error: ${error.message}`));
  page.on('request', (request) => {
    if (request.url() !== address) fault(`loads ${request.url()}`);
  });
  const session = await page.createCDPSession();
  const show = async (view) => {
    at.view = view;
    await page.setViewport({width: view.width, height: 900});
    // In one call: each of the page's own calls for media type and features undoes the other's.
    await session.send('Emulation.setEmulatedMedia', {
      media: view.media,
      features: [{name: 'prefers-color-scheme', value: view.scheme}],
    });
  };
  await show(views[0]);
  // The page's own time on a processor, whatever else the machine does.
  await session.send('Performance.enable', {timeDomain: 'threadTicks'});
  await page.goto(address, {timeout: patience});
  const {metrics} = await session.send('Performance.getMetrics');
  const opened = 1000 * metrics.find((metric) => metric.name === 'TaskDuration').value;
  if (opened > slowestOpening) fault(`opens in ${Math.round(opened)} ms`);
  slowest = Math.max(slowest, opened);
  return {page, show, fault};
}

async function checkLayout(page, view, fault) {
  const found = await page.evaluate(() => ({
    plots: [...document.querySelectorAll('svg')].map((svg) => {
      const box = svg.getBoundingClientRect();
      const drawn = svg.querySelectorAll('rect, circle, line, path, polyline').length;
      return {title: svg.querySelector('title').textContent, width: box.width, height: box.height, drawn};
    }),
    // A text that leaves its picture is cut.
    cut: [...document.querySelectorAll('svg text')].filter((text) => {
      const box = text.getBoundingClientRect();
      const frame = text.closest('svg').getBoundingClientRect();
      return box.width > 0 && (box.left < frame.left - 1 || box.right > frame.right + 1 ||
        box.top < frame.top - 1 || box.bottom > frame.bottom + 1);
    }).map((text) => text.textContent),
    scrolls: document.documentElement.scrollWidth - document.documentElement.clientWidth,
    // The overview is read at a glance, at any width; a number stands in one line.
    overview: [...document.querySelectorAll('#overview .scroll')].map((box) => box.scrollWidth - box.clientWidth),
    broken: [...document.querySelectorAll('table.figures td')].filter((cell) => {
      const lines = parseFloat(getComputedStyle(cell).lineHeight);
      const number = cell.querySelector('data');
      return number !== null && /^[-\d.]+$/.test(number.textContent) && number.getBoundingClientRect().height > 1.5 * lines;
    }).map((cell) => cell.textContent),
    figures: document.querySelectorAll('figure').length,
    isHidden: document.querySelector('section.test')?.offsetParent === null,
  }));
  if (found.plots.length === 0) fault('no plot');
  if (found.isHidden && view.media === 'screen') fault('sections are hidden');
  if (found.plots.length !== found.figures) fault('a figure without its plot');
  for (const plot of found.isHidden ? [] : found.plots) {
    if (plot.width < 200 || plot.height < 30 || plot.drawn === 0) fault(`no extent: ${plot.title}`);
  }
  for (const text of found.cut) fault(`cut: ${text}`);
  if (found.scrolls > 0) fault(`scrolls sideways by ${found.scrolls} pixels`);
  if (Math.max(0, ...found.overview) > 0) fault(`the overview scrolls sideways by ${found.overview} pixels`);
  for (const number of found.broken) fault(`in two lines: ${number}`);
}

// Of hundreds of tests the sections are alike, and axe takes minutes for all.
async function checkAccess(page, rules, fault) {
  await page.evaluate(axeSource);
  const {violations, passes} = await page.evaluate((given) => {
    const isMany = document.body.classList.contains('many');
    const parts = ['header', '#overview', '#test1', '#test2', '#test3', 'footer'];
    return axe.run(isMany ? {include: parts} : document, given);
  }, rules);
  if (passes.length < (rules.runOnly ? 1 : 20)) fault(`axe looked at ${passes.length} rules only`);
  for (const violation of violations) {
    const places = violation.nodes.slice(0, 3).map((node) => node.target.join(' ')).join(', ');
    const text = `axe ${violation.impact}: ${violation.id}: ${violation.help} (${places})`;
    if (['serious', 'critical'].includes(violation.impact)) fault(text);
    else console.log(`note: ${text}`);
  }
}

// Each stop can be seen, and its name tells it from the others of its kind.
async function checkKeyboard(page, mostStops, fault) {
  const names = new Map();
  for (let stop = 0; stop < mostStops; ++stop) {
    await page.keyboard.press('Tab');
    const at = await page.evaluate(() => {
      const active = document.activeElement;
      const box = active.getBoundingClientRect();
      const label = document.getElementById(active.getAttribute('aria-labelledby')) ?? active.labels?.[0];
      return {
        isPage: active === document.body,
        name: active.getAttribute('aria-label') ?? (label ?? active).textContent.trim(),
        target: active.getAttribute('href') ?? active.closest('section')?.id,
        isSeen: box.width > 0 && box.right > 0 && box.bottom > 0,
      };
    });
    if (at.isPage) break;
    if (stop === 0 && at.target !== '#main') fault('the first stop is no skip link');
    if (!at.isSeen) fault(`a stop out of sight: ${at.name}`);
    const key = `${at.name} in ${at.target}`;
    names.set(key, (names.get(key) ?? 0) + 1);
  }
  for (const [key, count] of names) {
    if (count > 1 && !key.startsWith('Values drawn')) fault(`${count} stops alike: ${key}`);
  }
}

async function checkOverview(page, fault) {
  const found = await page.evaluate(() => {
    const table = document.querySelector('table.overview');
    if (!table || table.tBodies[0].rows.length < 2) return null;
    const shown = () => [...table.tBodies[0].rows].filter((row) => row.offsetHeight > 0);
    const column = [...table.tHead.rows[0].cells].findIndex((cell) => cell.textContent === 'p');
    table.tHead.rows[0].cells[column].querySelector('button').click();
    const sorted = shown().map((row) => row.cells[column].querySelector('data')?.value)
      .filter((value) => value !== undefined).map(Number);
    document.getElementById('only-rejected').click();
    const rejected = shown();
    const wrong = rejected.filter((row) => !row.querySelector('.reject')).length;
    document.getElementById('only-rejected').click();
    return {sorted, wrong, all: shown().length === table.tBodies[0].rows.length};
  });
  if (!found) return;
  if (found.sorted.some((p, i) => i > 0 && p < found.sorted[i - 1])) fault('p is not sorted');
  if (found.wrong > 0) fault('the filter shows hypotheses that are not rejected');
  if (!found.all) fault('a cleared filter hides tests');
}

async function checkSheets(page, file, fault) {
  const name = basename(file, '.html');
  const pdf = Buffer.from(await page.pdf({format: 'A4', timeout: patience}));
  const sheets = pdf.toString('latin1').match(/\/Type\s*\/Page\b/g).length;
  console.log(`${name}: ${sheets} sheets`);
  if (mostSheets[name] && sheets > mostSheets[name]) fault(`prints on ${sheets} sheets`);
}

const profile = mkdtempSync(join(tmpdir(), 'npar-browser-'));
const browser = await puppeteer.launch({
  executablePath: process.env.CHROMIUM ?? '/usr/bin/chromium',
  headless: true,
  userDataDir: profile,
  protocolTimeout: patience,
  args: ['--no-sandbox', '--disable-gpu', '--disable-quic', '--no-first-run',
    '--disable-background-networking', '--disable-component-update', '--disable-sync'],
});
try {
  if (screenshots) mkdirSync(screenshots, {recursive: true});
  for (const file of pages) {
    const {page, show, fault} = await open(browser, file);
    const isMany = await page.evaluate(() => document.body.classList.contains('many'));
    for (const view of views) {
      await show(view);
      await checkLayout(page, view, fault);
      // Far below the window nothing is laid out, and what scrolls there is no stop yet.
      const isFar = isMany && view.name === 'narrow';
      if (view.rules && !isFar) await checkAccess(page, view.rules, fault);
      if (screenshots) {
        const name = `${basename(file, '.html')}-${view.name}.png`;
        const height = await page.evaluate(() => document.documentElement.scrollHeight);
        const clip = {x: 0, y: 0, width: view.width, height: Math.min(height, tallestPicture)};
        await page.screenshot({path: join(screenshots, name), clip, captureBeyondViewport: true});
      }
      if (view.name === 'light') {
        await checkKeyboard(page, isMany ? 60 : 400, fault);
        await checkOverview(page, fault);
        await page.evaluate(() => scrollTo(0, 0));
      }
      if (view.media === 'print') await checkSheets(page, file, fault);
    }
    await page.close();
  }
} finally {
  await browser.close();
  rmSync(profile, {recursive: true, force: true});
}
for (const text of faults) console.error(`fault: ${text}`);
console.log(`the slowest page opens in ${Math.round(slowest)} ms of processor time`);
console.log(`${pages.length} pages in ${views.length} views: ${faults.length} faults`);
process.exit(faults.length > 0 ? 1 : 0);
