// web_test.mjs PAGE.html NPAR EXAMPLES FOLDER: uses the page as a person would, in headless Chromium: drops and
// chooses files, gives roles, runs, stops, keeps what npar made, saves choices and opens them again.
// The figures are those of the program NPAR with the command line that the page shows. Nothing leaves
// the page, axe-core finds no serious violation, nothing scrolls sideways. Files and screenshots go to
// FOLDER.
import {execFileSync} from 'node:child_process';
import {copyFileSync, existsSync, mkdirSync, readFileSync, rmSync, writeFileSync} from 'node:fs';
import {createRequire} from 'node:module';
import {join, resolve} from 'node:path';
import {pathToFileURL} from 'node:url';
import {gzipSync} from 'node:zlib';
import puppeteer from 'puppeteer-core';

const [pagePath, program, examples, folder] = process.argv.slice(2).map((path) => resolve(path));
const axeSource = readFileSync(createRequire(import.meta.url).resolve('axe-core/axe.min.js'), 'utf8');
const kLong = 120000;  // milliseconds: what a million records may take on a busy machine
const kRecords = 1e6;
const kLargestPage = 1.2e6;  // bytes
const downloads = join(folder, 'downloads');
const address = pathToFileURL(pagePath).href;
const faults = [];
const check = (isTrue, text) => isTrue || faults.push(text);

async function open(browser) {
  const page = await browser.newPage();
  page.setDefaultTimeout(kLong);
  page.on('console', (message) => {
    if (['error', 'warn', 'warning'].includes(message.type())) faults.push(`console: ${message.text()}`);
  });
  page.on('pageerror', (error) => faults.push(`error: ${error.message}`));
  page.on('request', (request) => {
    const isOwn = request.url() === address || /^(blob|data|about):/.test(request.url());
    check(isOwn, `requests ${request.url()}`);
  });
  const session = await page.createCDPSession();
  await session.send('Browser.setDownloadBehavior', {behavior: 'allow', downloadPath: downloads});
  await page.goto(address);
  return page;
}

const textOf = (page, selector) => page.$eval(selector, (element) => element.textContent);
const waitForText = (page, selector, part) => page.waitForFunction(
  (selector, part) => document.querySelector(selector).textContent.includes(part), {}, selector, part);

async function drop(page, name, bytes) {
  await page.evaluate((name, base64) => {
    const data = Uint8Array.from(atob(base64), (letter) => letter.charCodeAt(0));
    const dataTransfer = new DataTransfer();
    dataTransfer.items.add(new File([data], name));
    for (const kind of ['dragover', 'drop']) {
      document.body.dispatchEvent(new DragEvent(kind, {dataTransfer, bubbles: true, cancelable: true}));
    }
  }, name, Buffer.from(bytes).toString('base64'));
}

/** Drags the name of a field to a role, as a mouse does. */
async function dragToRole(page, field, role) {
  await page.evaluate((field, role) => {
    const from = [...document.querySelectorAll('.field > h3')].find((name) => name.textContent === field);
    const to = document.getElementById(`role-box-${role}`);
    const dataTransfer = new DataTransfer();
    from.dispatchEvent(new DragEvent('dragstart', {dataTransfer, bubbles: true}));
    for (const kind of ['dragover', 'drop']) {
      to.dispatchEvent(new DragEvent(kind, {dataTransfer, bubbles: true, cancelable: true}));
    }
  }, field, role);
}

async function choose(page, name) {
  await (await page.$('#file')).uploadFile(join(folder, name));
  await waitForText(page, '#file-facts', 'record');
}

async function run(page) {
  await page.click('#run');
  await waitForText(page, '#status', 'The report is ready.');
}

async function keep(page, name, id) {
  const path = join(downloads, name);
  rmSync(path, {force: true});
  await page.click(`[id="${id}"]`);
  for (let i = 0; i < 100 && !existsSync(path); ++i) await new Promise((done) => setTimeout(done, 50));
  return readFileSync(path, 'utf8');
}

/** The command line of the page, run where the file lies, makes the same figures. */
async function checkFigures(page, dataFile) {
  const command = await textOf(page, '#command');
  const shell = command.replace(/^npar /, '"$0" ');
  execFileSync('sh', ['-c', shell, program], {cwd: folder, stdio: ['ignore', 'ignore', 'ignore']});
  const stem = dataFile.replace(/\.gz$/, '').replace(/\.csv$/, '');
  const figures = (text) => {
    const report = JSON.parse(text);
    delete report.trace;  // times
    delete report.modelId;  // a random number
    return JSON.stringify(report);
  };
  const kept = figures(await keep(page, `${stem}.report.json`, 'download-report.json'));
  check(kept === figures(readFileSync(join(folder, 'report.json'), 'utf8')), `other figures: ${command}`);
  const table = await keep(page, `${stem}.tests.csv`, 'download-tests.csv');
  check(table === readFileSync(join(folder, 'tests.csv'), 'utf8'), `another table: ${command}`);
}

async function checkAccess(page, where) {
  await page.evaluate(axeSource);
  const {violations} = await page.evaluate(() => axe.run(document, {iframes: false}));
  for (const {impact, id, help, nodes} of violations) {
    const text = `axe, ${where}: ${impact} ${id}: ${help} (${nodes[0].target.join(' ')})`;
    if (['serious', 'critical'].includes(impact)) faults.push(text);
    else console.log(`note: ${text}`);
  }
}

async function checkViews(page, name) {
  const session = await page.createCDPSession();
  for (const [width, scheme] of [[1200, 'light'], [1200, 'dark'], [400, 'light'], [360, 'dark']]) {
    await session.send('Emulation.setEmulatedMedia',
      {media: 'screen', features: [{name: 'prefers-color-scheme', value: scheme}]});
    await page.setViewport({width, height: 900});
    const where = `${name}-${width}-${scheme}`;
    const spare = await page.evaluate(() => document.documentElement.scrollWidth - innerWidth);
    check(spare <= 0, `${where} scrolls sideways by ${spare} pixels`);
    await checkAccess(page, where);
    await page.screenshot({path: join(folder, `${where}.png`), fullPage: true});
  }
  await page.setViewport({width: 1200, height: 900});
}

// A file is dropped, roles are given by selects and by dragging, the choice is npar's own.
async function testDroppedFile(page) {
  await drop(page, 'teeth, 1.csv', readFileSync(join(folder, 'teeth, 1.csv')));
  await waitForText(page, '#file-facts', '60 records, 3 fields');
  await page.select('#role-0', 'independent');
  await dragToRole(page, 'supp', 'group');
  await waitForText(page, '#choice-independent', 'Mann-Whitney U test is chosen, because supp has 2 groups');
  await run(page);
  const frame = await (await page.$('#report')).contentFrame();
  await frame.waitForSelector('table.overview');
  const shown = await frame.evaluate(() => document.querySelector('table.overview').textContent);
  check(shown.includes('Mann-Whitney'), `the report shows ${shown}`);
  check(await frame.$eval('button.copy', (button) => !button.hidden), 'the script of the report does not run');
  await page.click('#print');
  const printed = await (await page.waitForSelector('#print-frame')).contentFrame();
  await printed.waitForSelector('table.overview');
  await checkFigures(page, 'teeth, 1.csv');
}

// Kinds, orders and options reach npar; the choices come back from their file.
async function testChoices(browser, page) {
  await page.select('#kind-1', 'ordinal');
  await page.click('#order-1-down-0');
  await page.click('#test-moses');
  await page.click('#test-jonckheere-terpstra');
  await page.type('#option-moses-outliers', '2');
  await page.keyboard.press('Tab');
  await page.select('#option-jonckheere-terpstra-order', 'descending');
  const command = await textOf(page, '#command');
  const wanted = "--ordinal 'supp=VC<OJ' --test moses:outliers=2 --test jonckheere-terpstra:order=descending";
  check(command.includes(wanted), `the choices make ${command}`);
  await run(page);
  await checkFigures(page, 'teeth, 1.csv');
  await checkViews(page, 'report');
  await keep(page, 'npar_choices.json', 'save');
  const again = await open(browser);
  await (await again.$('#choices')).uploadFile(join(downloads, 'npar_choices.json'));
  await waitForText(again, '#file-facts', 'teeth, 1.csv');
  await choose(again, 'teeth, 1.csv');
  check((await textOf(again, '#command')) === command, 'saved choices came back as others');
  await again.close();
}

// Names and categories that hold what separates names and categories.
async function testOddNames(page) {
  const lines = ['-w,"height, cm","=x<y|z\\","""q"" it\'s"'];
  for (let i = 0; i < 12; ++i) {
    lines.push(`${i % 5},${(i * 7) % 11},${(i * i) % 13},"${i % 2 ? 'a|b' : '""c,d='}"`);
  }
  writeFileSync(join(folder, '-odd\'s.csv'), `${lines.join('\n')}\n`);
  await choose(page, '-odd\'s.csv');
  for (const field of [0, 1, 2]) await page.select(`#role-${field}`, 'independent');
  await page.select('#role-3', 'group');
  await page.click('#test-mann-whitney');
  await page.click('[id="option-mann-whitney-group1"] input');
  await page.click('[id="option-mann-whitney-group2"] label:last-child input');
  await run(page);
  await checkFigures(page, '-odd\'s.csv');
}

// The browser itself refuses what a text in the page would send.
async function testPolicy(browser) {
  const page = await browser.newPage();
  await page.goto(address);
  const refused = await page.evaluate(() => new Promise((resolve) => {
    document.addEventListener('securitypolicyviolation', ({effectiveDirective}) => resolve(effectiveDirective));
    fetch('https://npar.invalid/').catch(() => {});
  }));
  check(refused === 'connect-src', `a request meets ${refused}`);
  await page.close();
}

async function testBadFiles(page) {
  await drop(page, 'book.xlsx', Buffer.from('PK\x03\x04'.padEnd(200, ' ')));
  await waitForText(page, '#file-error', 'zip archive');
  await drop(page, 'ragged.csv', 'a,b\n1,2\n3\n');
  await waitForText(page, '#file-error', 'the record has 1 cell,');
  await drop(page, 'choices.json', '{"nparPage": 1, "roles": 3}');
  await waitForText(page, '#file-error', 'damaged');
  await page.evaluate(() => {
    const dataTransfer = new DataTransfer();
    dataTransfer.items.add(new File([new Uint8Array(201e6)], 'large.csv'));
    document.body.dispatchEvent(new DragEvent('drop', {dataTransfer, bubbles: true, cancelable: true}));
  });
  await waitForText(page, '#file-error', 'This page takes up to 200 MB');
  check(await page.$eval('#run-section', (section) => section.hidden), 'a bad file can be run');
}

// With the keyboard alone, from the first stop to the report.
async function testKeyboard(page) {
  const press = async (id, key) => {
    for (let stop = 0; stop < 200; ++stop) {
      await page.keyboard.press('Tab');
      if (await page.evaluate((id) => document.activeElement.id === id, id)) return page.keyboard.press(key);
    }
    return faults.push(`Tab does not reach ${id}`);
  };
  await press('example-sleep.csv', 'Enter');
  await waitForText(page, '#file-facts', '10 records');
  await press('test-sign', 'Space');
  check(await page.evaluate(() => document.activeElement.id === 'test-sign'), 'a tick loses the focus');
  await press('run', 'Enter');
  await waitForText(page, '#status', 'The report is ready.');
  check(await page.evaluate(() => document.activeElement.id === 'report-heading'), 'the report is not focused');
}

// A million records, packed: progress is told, a run stops at once, and another one ends.
async function testMillionRecords(page) {
  await choose(page, 'million.csv.gz');
  await page.select('#role-0', 'independent');
  await page.select('#role-1', 'group');
  await page.click('#run');
  await page.waitForFunction(() => document.querySelector('#progress').value > 0);
  await page.click('#stop');
  await waitForText(page, '#status', 'The run is stopped.');
  check(await page.$eval('#report-section', (section) => section.hidden), 'a stopped run shows a report');
  const begin = Date.now();
  await run(page);
  console.log(`a million records in ${((Date.now() - begin) / 1000).toFixed(1)} s`);
  await checkFigures(page, 'million.csv.gz');
}

function writeData() {
  mkdirSync(downloads, {recursive: true});
  copyFileSync(join(examples, 'tooth_growth.csv'), join(folder, 'teeth, 1.csv'));
  const lines = ['value,side'];
  for (let i = 0; i < kRecords; ++i) lines.push(`${((i * 7919) % 104729) / 8},${'abc'[i % 3]}`);
  writeFileSync(join(folder, 'million.csv.gz'), gzipSync(lines.join('\n') + '\n'));
}

writeData();
check(readFileSync(pagePath).length <= kLargestPage, 'the page is larger than 1.2 MB');
const browser = await puppeteer.launch({
  executablePath: process.env.CHROMIUM ?? '/usr/bin/chromium',
  headless: true,
  args: ['--no-sandbox', '--disable-gpu', '--disable-quic', '--no-first-run', '--disable-background-networking',
    '--disable-component-update', '--disable-sync'],
});
try {
  const page = await open(browser);
  await testPolicy(browser);
  await checkViews(page, 'start');
  await testDroppedFile(page);
  await testChoices(browser, page);
  for (const test of [testOddNames, testBadFiles, testKeyboard, testMillionRecords]) {
    const fresh = await open(browser);
    await test(fresh);
    await fresh.close();
  }
} catch (error) {
  faults.push(`${error.stack}`);
} finally {
  await browser.close();
}
for (const text of faults) console.error(`fault: ${text}`);
console.log(`the page in Chromium: ${faults.length} faults`);
process.exit(faults.length > 0 ? 1 : 0);
