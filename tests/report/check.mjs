// Opens reports in a browser: `node check.mjs NODE_MODULES PICTURES REPORT...`. A report is named after what it
// shows. Each must load nothing, say nothing in the console, keep its layout in every width, and have no
// violation that axe-core finds; the questions next to this file can be answered. Pictures are saved as
// REPORT-WIDTH.png in PICTURES.
import {createRequire} from 'node:module';
import {readFileSync} from 'node:fs';
import path from 'node:path';
import process from 'node:process';

const [modules, pictures, ...reports] = process.argv.slice(2);
const require = createRequire(path.join(modules, 'package.json'));
const puppeteer = require('puppeteer-core');
const axe = readFileSync(require.resolve('axe-core/axe.min.js'), 'utf8');
const questions = JSON.parse(
    readFileSync(new URL('questions.json', import.meta.url), 'utf8'));
const widths = {phone: 360, desktop: 1280};
const faults = [];

function fault(report, text) {
  faults.push(`${report}: ${text}`);
}

async function opened(browser, file, name) {
  const page = await browser.newPage();
  await page.setViewport({width: widths.desktop, height: 900});
  page.on('console', message => fault(name, `console: ${message.text()}`));
  page.on('pageerror', error => fault(name, `error: ${error.message}`));
  page.on('request', request => {
    if (request.url() !== `file://${file}`) fault(name, `requests ${request.url()}`);
  });
  await page.goto(`file://${file}`);
  return page;
}

async function checkStyle(page, name) {
  const family = await page.evaluate(() => getComputedStyle(document.body).fontFamily);
  if (!family.includes('system-ui')) fault(name, 'the policy keeps its own style out');
}

async function checkLayout(page, name) {
  for (const [width, pixels] of Object.entries(widths)) {
    await page.setViewport({width: pixels, height: 900});
    const broad = await page.evaluate(() => document.documentElement.scrollWidth);
    if (broad > pixels) fault(name, `is ${broad} pixels wide on a screen of ${pixels}`);
    await page.screenshot({path: path.join(pictures, `${name}-${width}.png`)});
  }
  await page.emulateMediaType('print');
  await page.setViewport({width: 794, height: 1123});
  await page.screenshot({path: path.join(pictures, `${name}-print.png`)});
  await page.emulateMediaType('screen');
  await page.setViewport({width: widths.desktop, height: 900});
}

async function openDetails(page) {
  await page.evaluate(() => document.querySelectorAll('details').forEach(each => { each.open = true; }));
}

async function checkAccess(page, name, scheme) {
  await page.emulateMediaFeatures([{name: 'prefers-color-scheme', value: scheme}]);
  const results = await page.evaluate(async () => {
    const {violations} = await globalThis.axe.run(document, {resultTypes: ['violations']});
    return violations.map(each => `${each.id}: ${each.nodes.length} times, ${each.nodes[0].html}`);
  });
  for (const result of results) fault(name, `${scheme}: axe: ${result.slice(0, 300)}`);
}

async function checkQuestions(page, name) {
  for (const {question, report, part, answer} of questions) {
    if (report !== name) continue;
    const selector = part === 'top' ? 'header' : `section[aria-labelledby="${part}"]`;
    const text = await page.$eval(selector, element => element.innerText);
    if (!text.includes(answer)) fault(name, `no answer to "${question}"`);
  }
}

const browser = await puppeteer.launch({
  executablePath: '/usr/bin/chromium',
  args: ['--no-sandbox', '--disable-gpu', '--no-proxy-server'],
});
try {
  for (const file of reports) {
    const name = path.basename(file, '.html');
    const page = await opened(browser, file, name);
    await checkStyle(page, name);
    await checkLayout(page, name);
    await page.close();
    // What is put into a page by its checks is no part of it.
    const helped = await browser.newPage();
    await helped.setBypassCSP(true);
    await helped.setViewport({width: widths.desktop, height: 900});
    await helped.goto(`file://${file}`);
    await openDetails(helped);
    await checkQuestions(helped, name);
    if (name !== 'large') {
      await helped.evaluate(axe);
      for (const scheme of ['light', 'dark']) await checkAccess(helped, name, scheme);
    }
    await helped.close();
  }
} finally {
  await browser.close();
}
for (const {question, report} of questions)
  if (!reports.some(file => path.basename(file, '.html') === report)) faults.push(`not asked: ${question}`);
for (const each of faults) console.error(each);
console.log(`${reports.length} reports, ${questions.length} questions, ${faults.length} faults`);
process.exitCode = faults.length === 0 ? 0 : 1;
