// Prints how long a report takes to become usable in headless Chromium:
// the overview, then each kind's page and the largest conversation, with the
// rows each page holds in its DOM. Usage: node measure.mjs REPORT_FOLDER [ROUNDS]
import path from 'node:path';
import {pathToFileURL} from 'node:url';
import {chromium} from 'playwright-core';

const [folder, roundsText] = process.argv.slice(2);
const rounds = Number(roundsText || 3);
const browser = await chromium.launch({executablePath: process.env.CHROMIUM || '/usr/bin/chromium',
  chromiumSandbox: false});

function median(values) {
  const sorted = [...values].sort((a, b) => a - b);
  return sorted[Math.floor(sorted.length / 2)];
}

// Milliseconds from the start of navigation until `selector` is there and the
// page answers a click (a task run after the drawing).
async function timed(page, action, selector) {
  await page.evaluate(() => document.getElementById('main')?.replaceChildren());
  const start = Date.now();
  await action();
  await page.waitForSelector(selector);
  await page.evaluate(() => new Promise((resolve) => setTimeout(resolve, 0)));
  return Date.now() - start;
}

const figures = new Map();
function add(name, ms, rows) {
  if (!figures.has(name)) figures.set(name, {ms: [], rows});
  figures.get(name).ms.push(ms);
}

for (let round = 0; round < rounds; ++round) {
  const page = await browser.newPage({viewport: {width: 1200, height: 900}});
  const url = pathToFileURL(path.join(folder, 'index.html')).href;
  const rows = () => page.$$eval('tr, li, figure, .bubble', (nodes) => nodes.length);
  add('overview', await timed(page, () => page.goto(url), '#kinds'), await rows());
  const kinds = await page.$$eval('#kinds .card', (cards) => cards.map((card) => card.dataset.kind));
  for (const kind of kinds) {
    const ms = await timed(page, () => page.evaluate((k) => { location.hash = '#kind/' + k; }, kind),
        '#table, #grid, #threads');
    add(kind, ms, await rows());
  }
  await page.evaluate(() => { location.hash = '#kind/messages'; });
  await page.waitForSelector('#threads li');
  const biggest = await page.$$eval('#threads li .count', (nodes) => {
    let best = 0;
    nodes.forEach((node, i) => { if (Number(node.textContent) > Number(nodes[best].textContent)) best = i; });
    return best;
  });
  const ms = await timed(page, () => page.evaluate((i) => { location.hash = '#thread/' + i; }, biggest),
      '#bubbles .bubble');
  add('largest conversation on the first page', ms, await rows());
  await page.close();
}
await browser.close();

console.log('page                                     median ms   rows in DOM');
for (const [name, {ms, rows}] of figures) {
  console.log(name.padEnd(40), String(median(ms)).padStart(9), String(rows).padStart(13));
}
