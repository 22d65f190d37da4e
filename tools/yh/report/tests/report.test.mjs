// Opens reports that yh writes in Debian's Chromium (headless, from disk, with
// every request off the disk refused) and uses them as a person would.
// Environment: YH (the yh program), YH_SAMPLES (the sample backups' folder),
// YH_HOSTILE (the hostile backup), YH_MANY (a folder holding one benchmark
// backup), YH_MEDIA (a backup of real pictures and sounds), YH_REPORT_OUT (a folder for reports and
// screenshots), CHROMIUM (default /usr/bin/chromium).
import {after, before, describe, test} from 'node:test';
import assert from 'node:assert/strict';
import {execFileSync} from 'node:child_process';
import fs from 'node:fs';
import path from 'node:path';
import {pathToFileURL} from 'node:url';
import {chromium} from 'playwright-core';

const yh = process.env.YH;
const out = process.env.YH_REPORT_OUT;
const env = {...process.env, TZ: 'UTC'};
// Tables and lists draw at most this many rows at a time.
const MOST_ROWS = 500;

let browser;

before(async () => {
  browser = await chromium.launch({executablePath: process.env.CHROMIUM || '/usr/bin/chromium',
    chromiumSandbox: false});
});

after(async () => {
  await browser?.close();
});

function writeReport(name, backup, ...options) {
  const folder = path.join(out, name);
  fs.rmSync(folder, {recursive: true, force: true});
  execFileSync(yh, ['report', backup, '--out', folder, ...options], {env, stdio: ['ignore', 'pipe', 'pipe']});
  return folder;
}

// The records of each kind as yh show counts them (messages: every message).
function counts(backup, ...options) {
  const all = JSON.parse(execFileSync(yh, ['show', backup, 'all', ...options], {env, maxBuffer: 1 << 30}));
  const result = {};
  for (const [kind, records] of Object.entries(all)) {
    result[kind] = kind === 'messages' || kind === 'whatsapp'
      ? (records || []).reduce((sum, chat) => sum + (chat.message || []).length, 0)
      : (records || []).length;
  }
  return result;
}

// A page of the report with every console message, page error and request
// that leaves the disk kept for the checks.
async function open(folder) {
  const page = await browser.newPage({viewport: {width: 1200, height: 900}});
  const problems = [];
  page.on('console', (message) => {
    if (message.type() === 'error' || message.type() === 'warning') problems.push(message.text());
  });
  page.on('pageerror', (error) => problems.push(String(error)));
  await page.route('**/*', (route) => {
    if (route.request().url().startsWith('file:')) return route.continue();
    problems.push('request off the disk: ' + route.request().url());
    return route.abort();
  });
  await page.goto(pathToFileURL(path.join(folder, 'index.html')).href);
  await page.waitForSelector('#kinds');
  return {page, problems};
}

async function cardCounts(page) {
  return page.$$eval('#kinds .card', (cards) => Object.fromEntries(
      cards.map((card) => [card.dataset.kind, Number(card.querySelector('.count').textContent)])));
}

async function go(page, hash, selector) {
  await page.evaluate((target) => { location.hash = target; }, hash);
  await page.waitForSelector(selector);
}

async function columnTexts(page, column) {
  return page.$$eval(`#table tbody tr td:nth-child(${column})`, (cells) => cells.map((cell) => cell.textContent));
}

async function rowCount(page) {
  return page.$$eval('tr, li, figure, .bubble', (nodes) => nodes.length);
}

describe('the report of a Manifest.db sample', () => {
  const backup = "Ada's iPhone";
  const root = ['--root', process.env.YH_SAMPLES];
  let folder;
  let page;
  let problems;

  before(async () => {
    folder = writeReport('ada', backup, ...root);
    ({page, problems} = await open(folder));
  });

  after(async () => {
    await page.close();
  });

  test('shows the device and the count of every kind, as yh show has them', async () => {
    assert.deepEqual(await cardCounts(page), counts(backup, ...root));
    const facts = await page.$eval('.facts', (list) => list.textContent);
    assert.match(facts, /Ada’s iPhone/);
    assert.match(facts, /iOS version15\.8/);
    assert.match(facts, /Backup date2023-09-12 08:41:17/);
    await page.screenshot({path: path.join(out, 'overview.png')});
  });

  test('lists the conversations and shows one as bubbles on both sides', async () => {
    await go(page, '#kind/messages', '#threads li');
    const names = await page.$$eval('#threads .name', (nodes) => nodes.map((node) => node.textContent));
    assert.deepEqual(names, ['Mary Somerville', 'Charles Babbage']);
    await page.click('#threads li:first-child a');
    await page.waitForSelector('#bubbles .bubble');
    assert.equal(await page.$$eval('#bubbles .bubble.sent', (nodes) => nodes.length), 1);
    assert.equal(await page.$$eval('#bubbles .bubble.received', (nodes) => nodes.length), 2);
    const first = await page.$eval('#bubbles .bubble', (node) => node.textContent);
    assert.match(first, /Did you see the comet last night\?2023-09-11 07:30:05/);
    // The picture the third message carried, as its thumbnail linked to the copy.
    const picture = await page.$eval('#bubbles .bubble a.attachment.picture', (link) =>
      [link.getAttribute('href'), link.querySelector('img').getAttribute('src')]);
    assert.deepEqual(picture, ['media/attachments/IMG_0412.HEIC', 'previews/attachments/IMG_0412.HEIC.jpg']);
    await page.waitForFunction(() => [...document.images].every((image) => image.complete && image.naturalWidth));
    await page.screenshot({path: path.join(out, 'thread.png')});
  });

  test('sorts a table by any column, both ways', async () => {
    await go(page, '#kind/calls', '#table tbody tr');
    await page.click('#table th[data-key="name"] button');
    assert.deepEqual(await columnTexts(page, 1), ['', 'Alan Turing', 'Charles Babbage', 'Mary Somerville']);
    await page.click('#table th[data-key="duration"] button');
    await page.click('#table th[data-key="duration"] button');
    assert.equal(await page.$eval('#table th[data-key="duration"]', (th) => th.getAttribute('aria-sort')),
        'descending');
    assert.deepEqual(await columnTexts(page, 5), ['00:25:20', '00:12:14', '00:01:35', '00:00:00']);
  });

  test('filters a table with its search box', async () => {
    await go(page, '#kind/contacts', '#table tbody tr');
    await page.fill('#search', 'bletchley');
    await page.waitForFunction(() => document.querySelectorAll('#table tbody tr').length === 1);
    assert.deepEqual(await columnTexts(page, 1), ['Alan Turing']);
    await page.fill('#search', '');
    await page.waitForFunction(() => document.querySelectorAll('#table tbody tr').length === 3);
  });

  test('shows every number and address of a contact and finds contacts by them', async () => {
    await go(page, '#kind/contacts', '#table tbody tr');
    const values = await page.$$eval('#table dl.properties', (lists) => lists.map((list) =>
      [...list.children].map((node) => node.textContent)));
    assert.deepEqual(values, [['Mobile', '+44 20 7946 0018', 'Work', 'charles@example.org'],
      ['iPhone', '+1 (617) 555-0199', 'Home', 'mary.somerville@example.com'], ['Home', 'alan.turing@example.com']]);
    for (const [wanted, name] of [['442079460018', 'Charles Babbage'], ['+1 617 555 0199', 'Mary Somerville'],
      ['7946 0018', 'Charles Babbage'], ['mary.somerville@', 'Mary Somerville'], ['TURING@EXAMPLE', 'Alan Turing']]) {
      await page.fill('#search', wanted);
      await page.waitForFunction(() => document.querySelectorAll('#table tbody tr').length === 1);
      assert.deepEqual(await columnTexts(page, 1), [name], wanted);
    }
    await page.fill('#search', '');
    await page.screenshot({path: path.join(out, 'contacts.png')});
  });

  test("shows each contact's picture linked to its copy", async () => {
    await go(page, '#kind/contacts', '#table tbody tr');
    const pictures = await page.$$eval('#table tbody td:nth-child(2)', (cells) => cells.map((cell) => {
      const link = cell.querySelector('a');
      return link && [link.getAttribute('href'), link.querySelector('img').getAttribute('src')];
    }));
    assert.deepEqual(pictures, [['media/contacts/1.jpg', 'media/contacts/1.jpg'],
      ['media/contacts/2.jpg', 'media/contacts/2.jpg'], null]);
    await page.waitForFunction(() => [...document.images].every((image) => image.complete && image.naturalWidth));
    assert.deepEqual(await columnTexts(page, 10), ['2023-08-30 17:05:00', '2023-04-02 16:45:00', '2023-09-01 12:00:00']);
    await page.screenshot({path: path.join(out, 'contact-pictures.png')});
  });

  test('shows the service of each call and marks the missed ones', async () => {
    await go(page, '#kind/calls', '#table tbody tr');
    assert.deepEqual(await columnTexts(page, 6), ['FaceTime Audio', 'Phone', 'FaceTime Video', 'Phone']);
    const missed = await page.$$eval('#table tr.missed', (rows) => rows.map((row) => row.textContent));
    assert.equal(missed.length, 1);
    assert.match(missed[0], /\+14155550100.*Incoming \(missed\)/);
    await page.screenshot({path: path.join(out, 'calls.png')});
  });

  test('gives reminders their own columns', async () => {
    await go(page, '#kind/reminders', '#table tbody tr');
    const headings = await page.$$eval('#table th', (cells) => cells.map((cell) => cell.textContent));
    assert.deepEqual(headings, ['Title', 'List', 'Due', 'Completed', 'Completed on', 'Notes']);
    const rows = await page.$$eval('#table tbody tr', (trs) => trs.map((tr) =>
      [...tr.cells].map((cell) => cell.textContent)));
    assert.deepEqual(rows[0], ['Water the plants', 'Reminders', '2023-09-13 07:00:00', 'yes', '', '']);
    assert.deepEqual(rows[1], ['Call the bank', 'Reminders', '2023-09-15 09:00:00', 'no', '', 'About the new card']);
  });

  test('orders conversations by their last message or by name', async () => {
    await go(page, '#kind/messages', '#threads li');
    const names = () => page.$$eval('#threads .name', (nodes) => nodes.map((node) => node.textContent));
    assert.deepEqual(await names(), ['Mary Somerville', 'Charles Babbage']);
    await page.selectOption('#order', 'name');
    assert.deepEqual(await names(), ['Charles Babbage', 'Mary Somerville']);
  });

  test('finds messages by their text and opens the conversation at the one chosen', async () => {
    await go(page, '#kind/messages', '#threads li');
    await page.fill('#search', 'tickets');
    await page.waitForSelector('#found-messages li');
    const found = await page.$$eval('#found-messages li', (items) => items.map((item) => item.textContent));
    assert.deepEqual(found, ['Charles Babbage2023-09-10 09:50:21No problem, I will bring the tickets.']);
    await page.screenshot({path: path.join(out, 'message-search.png')});
    await page.click('#found-messages a');
    await page.waitForSelector('#bubbles .bubble.focus');
    assert.match(await page.$eval('.bubble.focus', (node) => node.textContent), /I will bring the tickets/);
  });

  test('tells SMS from iMessage bubbles', async () => {
    await go(page, '#thread/1', '#bubbles .bubble');
    const sms = await page.$eval('#bubbles .bubble.sent', (node) => [node.className, getComputedStyle(node).backgroundColor]);
    await go(page, '#kind/messages', '#threads li');
    await go(page, '#thread/0', '#bubbles .bubble.sent');
    const imessage = await page.$eval('#bubbles .bubble.sent', (node) => [node.className, getComputedStyle(node).backgroundColor]);
    assert.equal(sms[0], 'bubble sent sms');
    assert.equal(imessage[0], 'bubble sent imessage');
    assert.notEqual(sms[1], imessage[1]);
    await go(page, '#thread/1', '#bubbles .bubble');
    await page.screenshot({path: path.join(out, 'sms-thread.png')});
  });

  test("lists WhatsApp's chats apart, draws one with its media and finds its messages", async () => {
    await go(page, '#kind/whatsapp', '#threads li a');
    const names = await page.$$eval('#threads .name', (nodes) => nodes.map((node) => node.textContent));
    assert.deepEqual([...names].sort(), ['Analytical Society', 'Mary Somerville']);
    assert.equal(await page.$eval('h1', (node) => node.textContent), 'WhatsApp');
    await page.click('#threads li a:has-text("Mary Somerville")');
    await page.waitForSelector('#bubbles .bubble');
    assert.match(await page.evaluate(() => location.hash), /^#thread\/whatsapp\/\d+$/);
    assert.equal(await page.$$eval('#bubbles .bubble', (nodes) => nodes.length), 3);
    const picture = await page.$eval('#bubbles a.attachment', (link) => link.getAttribute('href'));
    assert.equal(picture, 'media/whatsapp/4A2B9C1D-7E3F-4A5B-8C6D-9E0F1A2B3C4D.jpg');
    assert.ok(fs.existsSync(path.join(folder, picture)), picture);
    assert.equal(await page.$eval('p a[href="#kind/whatsapp"]', (link) => link.textContent), '← WhatsApp');
    await page.screenshot({path: path.join(out, 'whatsapp-thread.png')});
    // Its search reads WhatsApp's texts, not those of Messages.
    await go(page, '#kind/whatsapp', '#threads li a');
    await page.fill('#search', 'engine drawings');
    await page.waitForSelector('#found-messages li');
    const found = await page.$$eval('#found-messages a', (links) => links.map((link) => link.getAttribute('href')));
    assert.equal(found.length, 1);
    await page.click('#found-messages a');
    await page.waitForSelector('#bubbles .bubble.focus');
    assert.match(await page.$eval('.bubble.focus', (node) => node.textContent), /The engine drawings are ready/);
  });

  test('gives each voice memo an audio element with its copied file', async () => {
    await go(page, '#kind/recordings', '#table audio');
    const sources = await page.$$eval('#table audio', (nodes) => nodes.map((node) => node.getAttribute('src')));
    assert.equal(sources.length, 2);
    for (const source of sources) assert.ok(fs.existsSync(path.join(folder, decodeURIComponent(source))), source);
  });

  test('shows the photos as a grid of the copied files', async () => {
    await go(page, '#kind/camera-photos', '#grid figure');
    const links = await page.$$eval('#grid figure a', (nodes) => nodes.map((node) => node.getAttribute('href')));
    assert.deepEqual([...links].sort(), ['media/camera-photos/IMG_0415.HEIC', 'media/camera-photos/IMG_0416.HEIC',
      'media/camera-photos/IMG_0417.JPG']);
    // The HEIC pictures show their thumbnails; the stand-in JPEG is no picture and shows as a tile.
    await page.waitForFunction(() => [...document.images].every((image) => image.complete));
    const tiles = await page.$$eval('#grid figure a', (nodes) => nodes.map((node) =>
      node.querySelector('img') && node.querySelector('img').naturalWidth ? 'picture' : node.textContent));
    assert.deepEqual(tiles, ['picture', 'picture', 'JPG']);
    // Each tile's caption names the file its link leads to.
    await go(page, '#kind/attachments', '#grid figure');
    const named = await page.$$eval('#grid figure', (figures) => figures.map((figure) =>
      [figure.querySelector('.name').textContent, decodeURIComponent(figure.querySelector('a').getAttribute('href'))]));
    assert.deepEqual(named, [['IMG_0412.HEIC', 'media/attachments/IMG_0412.HEIC'],
      ['Itinerary.pdf', 'media/attachments/Itinerary.pdf']]);
  });

  test('ran with no console error and nothing fetched off the disk', () => {
    assert.deepEqual(problems, []);
  });
});

describe('the report of a sample with its deleted records', () => {
  const backup = "Ada's iPhone";
  const root = ['--root', process.env.YH_SAMPLES];
  let page;
  let problems;

  before(async () => {
    ({page, problems} = await open(writeReport('ada-deleted', backup, ...root, '--deleted')));
  });

  after(async () => {
    await page.close();
  });

  test('counts the live records as yh show does and says how many of each kind were recovered', async () => {
    assert.deepEqual(await cardCounts(page), counts(backup, ...root));
    const recovered = await page.$$eval('#kinds .card', (cards) => Object.fromEntries(cards.map((card) =>
      [card.dataset.kind, card.querySelector('.recovered-count').textContent])));
    assert.equal(recovered.calls, '1 recovered');
    assert.equal(recovered.messages, '1 recovered');
    assert.equal(recovered.whatsapp, '1 recovered');
    assert.equal(recovered.notes, '0 recovered');
    await page.screenshot({path: path.join(out, 'deleted-overview.png')});
  });

  test('marks a recovered call, says where it was found, and keeps only the recovered on demand', async () => {
    await go(page, '#kind/calls', '#table tr.deleted');
    const headings = await page.$$eval('#table th', (cells) => cells.map((cell) => cell.textContent));
    assert.equal(headings[0], 'Recovered');
    const row = await page.$eval('#table tr.deleted', (tr) => [tr.cells[0].textContent, tr.cells[3].textContent,
      tr.querySelector('.deleted-mark').title, getComputedStyle(tr.cells[1]).backgroundColor]);
    assert.match(row[0], /^Deleted · unallocated/);
    assert.equal(row[1], '2023-09-11 19:04:12');
    assert.match(row[2], /^Recovered from unallocated space in a page of the database$/);
    assert.notEqual(row[3], 'rgba(0, 0, 0, 0)');
    assert.match(await page.$eval('#recovered', (note) => note.textContent), /^1 of 5 calls were recovered/);
    await page.check('#recovered-only');
    await page.waitForFunction(() => document.querySelectorAll('#table tbody tr').length === 1);
    await page.screenshot({path: path.join(out, 'deleted-calls.png')});
  });

  test('puts a recovered message into its conversation in date order, marked', async () => {
    await go(page, '#kind/messages', '#threads li');
    assert.match(await page.$eval('#threads li', (item) => item.textContent), /1 recovered/);
    await go(page, '#thread/0', '#bubbles .bubble');
    const bubbles = await page.$$eval('#bubbles .bubble', (nodes) => nodes.map((node) =>
      [node.classList.contains('deleted'), node.querySelector('p') ? node.querySelector('p').textContent : '']));
    assert.deepEqual(bubbles.map(([deleted]) => deleted), [false, false, true, false]);
    assert.equal(bubbles[2][1], 'Forget the comet, it was a satellite.');
    const mark = await page.$eval('#bubbles .bubble.deleted .deleted-mark', (node) => [node.textContent, node.title]);
    assert.deepEqual(mark, ['Deleted · unallocated', 'Recovered from unallocated space in a page of the database']);
    assert.match(await page.$eval('p.note', (note) => note.textContent), /4 messages · 1 of them recovered/);
    await page.screenshot({path: path.join(out, 'deleted-thread.png')});
  });

  test("puts a recovered WhatsApp message into its chat", async () => {
    await go(page, '#kind/whatsapp', '#threads li a');
    await page.click('#threads li a:has-text("Mary Somerville")');
    await page.waitForSelector('#bubbles .bubble.deleted');
    const texts = await page.$$eval('#bubbles .bubble', (nodes) => nodes.map((node) =>
      (node.classList.contains('deleted') ? 'deleted: ' : '') + (node.querySelector('p') || {}).textContent));
    assert.deepEqual(texts.slice(0, 3), ['Are you coming to the lecture tomorrow?', 'deleted: Which room is it in?',
      'Yes, I will bring the notes.']);
  });

  test('ran with no console error and nothing fetched off the disk', () => {
    assert.deepEqual(problems, []);
  });
});

describe('the report of a backup of real pictures and sounds', () => {
  let folder;
  let page;
  let problems;

  before(async () => {
    folder = writeReport('media', process.env.YH_MEDIA);
    ({page, problems} = await open(folder));
  });

  after(async () => {
    await page.close();
  });

  test('shows a HEIC photo as its thumbnail linked to the original, and plays videos in place', async () => {
    await go(page, '#kind/camera-photos', '#grid figure');
    await page.waitForFunction(() => [...document.images].every((image) => image.complete));
    const tiles = await page.$$eval('#grid figure', (figures) => figures.map((figure) => {
      const image = figure.querySelector('img');
      const link = figure.querySelector('a');
      const video = figure.querySelector('video');
      return {name: figure.querySelector('.name').textContent, link: link && link.getAttribute('href'),
        image: image && [image.getAttribute('src'), image.naturalWidth, image.naturalHeight],
        video: video && video.getAttribute('src')};
    }));
    const heic = tiles.find((tile) => tile.name === 'IMG_0101.HEIC');
    assert.deepEqual(heic, {name: 'IMG_0101.HEIC', link: 'media/camera-photos/IMG_0101.HEIC',
      image: ['previews/camera-photos/IMG_0101.HEIC.jpg', 480, 360], video: null});
    const jpeg = tiles.find((tile) => tile.name === 'IMG_0102.JPG');
    assert.deepEqual(jpeg.image, ['media/camera-photos/IMG_0102.JPG', 800, 600]);
    const movie = tiles.find((tile) => tile.name === 'IMG_0103.MOV');
    assert.equal(movie.video, 'media/camera-photos/IMG_0103.MOV');
    const headings = await page.$$eval('#grid h2.month', (nodes) => nodes.map((node) => node.textContent));
    assert.deepEqual(headings.slice(0, 2), ['September 2023', 'August 2023']);
    await page.screenshot({path: path.join(out, 'photos-heic.png')});
  });

  test('says which photos have no file in the backup and shows only those on demand', async () => {
    await go(page, '#kind/camera-photos', '#grid figure');
    assert.equal(await page.$eval('#missing', (node) => node.textContent),
        '1 of 4 camera photos have no file in the backup. Show only these');
    await page.check('#missing-only');
    await page.waitForFunction(() => document.querySelectorAll('#grid figure').length === 1);
    assert.deepEqual(await page.$$eval('#grid figure', (nodes) => nodes.map((node) => node.textContent)),
      ['not in the backupIMG_0104.HEIC2023-09-04 10:00:00']);
    await go(page, '#overview', '#kinds');
    assert.match(await page.$eval('#kinds .card[data-kind="camera-photos"]', (node) => node.textContent),
        /1 without a file in the backup/);
  });

  test("shows each message's attachments in its bubble and names the last one in the list", async () => {
    await go(page, '#kind/messages', '#threads li');
    assert.equal(await page.$eval('#threads .last', (node) => node.textContent), 'Attachment: IMG_0203.JPG');
    await page.click('#threads li a');
    await page.waitForSelector('#bubbles .bubble');
    await page.waitForFunction(() => [...document.images].every((image) => image.complete));
    const bubbles = await page.$$eval('#bubbles .bubble', (nodes) => nodes.map((node) => ({
      text: [...node.querySelectorAll('p')].map((p) => p.textContent).join(),
      picture: [...node.querySelectorAll('a.picture')].map((a) => [a.getAttribute('href'),
        a.querySelector('img').getAttribute('src'), a.querySelector('img').naturalWidth]),
      files: [...node.querySelectorAll('a.file')].map((a) => [a.getAttribute('href'), a.textContent]),
      missing: [...node.querySelectorAll('.attachment.missing')].map((span) => span.textContent)})));
    assert.deepEqual(bubbles, [
      {text: 'The view from the top', picture: [['media/attachments/IMG_0201.HEIC',
        'previews/attachments/IMG_0201.HEIC.jpg', 480]], files: [], missing: []},
      {text: '', picture: [], files: [['media/attachments/Tickets.pdf', 'Tickets.pdf']], missing: []},
      {text: '', picture: [], files: [], missing: ['IMG_0203.JPG (not in the backup)']}]);
    await page.screenshot({path: path.join(out, 'thread-attachments.png')});
  });

  test('plays AMR voicemail in the page, decoded to WAV', async () => {
    await go(page, '#kind/voicemail', '#table audio');
    const audio = await page.$eval('#table audio', (node) => node.getAttribute('src'));
    assert.equal(audio, 'previews/voicemail/1.amr.wav');
    const duration = await page.$eval('#table audio', (node) => new Promise((resolve) => {
      node.addEventListener('loadedmetadata', () => resolve(node.duration));
      node.addEventListener('error', () => resolve(-1));
      node.preload = 'metadata';
      node.load();
    }));
    assert.ok(Math.abs(duration - 2) < 0.1, String(duration));
    await page.screenshot({path: path.join(out, 'voicemail.png')});
  });

  test('ran with no console error and nothing fetched off the disk', () => {
    assert.deepEqual(problems, []);
  });
});

describe('an interrupted report', () => {
  test('says that it is incomplete and how to finish it instead of loading for ever', async () => {
    const folder = writeReport('interrupted', "Ada's iPhone", '--root', process.env.YH_SAMPLES);
    // What a run killed before its end leaves: the overview is written last.
    fs.rmSync(path.join(folder, 'data', 'overview.js'));
    const page = await browser.newPage({viewport: {width: 1200, height: 500}});
    await page.goto(pathToFileURL(path.join(folder, 'index.html')).href);
    await page.waitForSelector('#incomplete');
    assert.match(await page.$eval('main', (node) => node.textContent), /incomplete: run again.*--resume/);
    await page.screenshot({path: path.join(out, 'incomplete.png')});
    await page.close();
  });
});

describe('the report of a Manifest.mbdb sample', () => {
  test('opens every page and counts what yh show counts', async () => {
    const backup = "Grace's iPhone";
    const root = ['--root', process.env.YH_SAMPLES];
    const {page, problems} = await open(writeReport('grace', backup, ...root));
    assert.deepEqual(await cardCounts(page), counts(backup, ...root));
    for (const kind of Object.keys(await cardCounts(page))) {
      await go(page, '#kind/' + kind, '#table, #threads, #grid');
    }
    await go(page, '#thread/0', '#bubbles .bubble');
    assert.deepEqual(problems, []);
    await page.close();
  });

  test('keeps to the kinds asked for', async () => {
    const {page} = await open(writeReport('grace-calls', "Grace's iPhone", '--root', process.env.YH_SAMPLES,
        '--kinds', 'calls,camera-photos'));
    assert.deepEqual(Object.keys(await cardCounts(page)), ['calls', 'camera-photos']);
    await page.close();
  });
});

describe('the report of a hostile backup', () => {
  let folder;
  let page;
  let problems;

  before(async () => {
    folder = writeReport('hostile', process.env.YH_HOSTILE, '--deleted');
    ({page, problems} = await open(folder));
  });

  after(async () => {
    await page.close();
  });

  // Every page and conversation, then what no text of the backup may do.
  async function visitAll() {
    const kinds = Object.keys(await cardCounts(page));
    for (const kind of kinds) await go(page, '#kind/' + kind, '#table, #threads, #grid');
    await go(page, '#kind/messages', '#threads li');
    const threads = await page.$$eval('#threads li', (nodes) => nodes.length);
    for (let i = 0; i < threads; ++i) await go(page, '#thread/' + i, '#bubbles .bubble');
    return kinds;
  }

  test('shows markup, quotes, entities and control characters as text', async () => {
    const device = await page.$eval('h1', (node) => node.textContent);
    assert.equal(device, '<img src=x onerror="window.pwned=2"> & <script>window.pwned=1</script>');
    await go(page, '#thread/0', '#bubbles .bubble');
    const texts = await page.$$eval('#bubbles .bubble p', (nodes) => nodes.map((node) => node.textContent));
    assert.deepEqual(texts.slice(0, 4), ['<script>window.pwned=1</script>', '</script><script>window.pwned=3</script>',
      '"><svg onload="window.pwned=4">\'', '&lt;b&gt;bold&lt;/b&gt; &amp; &#x3C;i&#x3E; &quot;']);
    // Control characters show as their symbols; the line separators stay text.
    assert.equal(texts[4], 'bell␇ escape␛[31m tab\t nul-free ␁␡ line\u2028para\u2029end');
    await page.screenshot({path: path.join(out, 'hostile-thread.png')});
  });

  test('links only http(s) addresses and copied files', async () => {
    await go(page, '#kind/safari', '#table tbody tr');
    const links = await page.$$eval('#table a', (nodes) => nodes.map((node) => node.getAttribute('href')));
    assert.deepEqual(links, ['https://example.com/search?q="><script>window.pwned=10</script>&x=<b>']);
    const addresses = await columnTexts(page, 2);
    assert.ok(addresses.includes('javascript:window.pwned=5'));
    await visitAll();
    await go(page, '#kind/camera-photos', '#grid figure');
    await page.waitForFunction(() => [...document.images].every((image) => image.complete));
    const files = await page.$$eval('#grid a', (nodes) => nodes.map((node) => node.getAttribute('href')));
    // The grid keeps the answer's order, which is the photo library's; the set is what matters here.
    assert.deepEqual([...files].sort(), ['media/camera-photos/%22%3E%3Cimg%20src%3Dx%20onerror%3Dwindow.pwned%3D6%3E.JPG',
      'media/camera-photos/Sunset.BMP', 'media/camera-photos/a%23b%3Fc%3D%252e%252e.BMP']);
    for (const file of files) assert.ok(fs.existsSync(path.join(folder, decodeURIComponent(file))), file);
    // The two real pictures load; the stand-in JPEG shows as a tile.
    assert.equal(await page.$$eval('#grid img[loading="lazy"]',
        (nodes) => nodes.filter((node) => node.naturalWidth > 0).length), 2);
    await page.screenshot({path: path.join(out, 'photos.png')});
  });

  test('runs no script of the data anywhere', async () => {
    await visitAll();
    assert.equal(await page.evaluate(() => window.pwned), undefined);
    assert.equal(await page.$$eval('script', (nodes) => nodes.filter((node) => !node.src).length), 0);
    const hrefs = await page.$$eval('[href], [src]', (nodes) =>
      nodes.map((node) => node.getAttribute('href') || node.getAttribute('src')));
    for (const href of hrefs) assert.match(href, /^(https?:\/\/|#|media\/|previews\/|data\/|assets\/)/, href);
    assert.deepEqual(problems, []);
  });

  test('writes nothing outside its folder and no file the page does not name', () => {
    const names = fs.readdirSync(folder).sort();
    assert.deepEqual(names, ['assets', 'data', 'index.html', 'media']);
  });
});

describe('a report of many records', () => {
  test('draws only a page of rows at a time', async () => {
    const backups = process.env.YH_MANY;
    const folder = writeReport('many', path.join(backups, fs.readdirSync(backups)[0]));
    const {page, problems} = await open(folder);
    const cards = await cardCounts(page);
    assert.ok(cards.messages > 2 * MOST_ROWS, JSON.stringify(cards));
    assert.ok(await rowCount(page) < MOST_ROWS);
    for (const kind of Object.keys(cards)) {
      await go(page, '#kind/' + kind, '#table, #threads, #grid');
      assert.ok(await rowCount(page) <= MOST_ROWS, kind);
    }
    await go(page, '#kind/calls', '#table tbody tr');
    await page.click('.pager button:nth-of-type(2)');
    await page.waitForFunction(() => document.querySelector('.pager .position').textContent.startsWith('251–'));
    await go(page, '#thread/0', '#bubbles .bubble');
    assert.ok(await rowCount(page) <= MOST_ROWS);
    assert.deepEqual(problems, []);
    await page.close();
  });

  test('reaches every message of a long conversation through its search', async () => {
    const backup = path.join(process.env.YH_MANY, fs.readdirSync(process.env.YH_MANY)[0]);
    const chats = JSON.parse(execFileSync(yh, ['show', backup, 'messages'], {env, maxBuffer: 1 << 30}));
    const longest = chats.reduce((best, chat, i) => chat.message.length > chats[best].message.length ? i : best, 0);
    const messages = chats[longest].message;
    assert.ok(messages.length > 400, String(messages.length));
    const {page, problems} = await open(path.join(out, 'many'));
    await go(page, '#kind/messages', '#threads li');
    await go(page, '#thread/' + longest, '#bubbles .bubble');
    const first = messages[0].text;
    await page.fill('#thread-search', first);
    await page.waitForSelector('#bubbles .bubble.focus');
    const matches = messages.map((m, i) => [m.text, i]).filter(([text]) => text.toLowerCase().includes(first.toLowerCase()));
    // The newest match first, then back to the oldest, which is the conversation's first message.
    for (let i = 1; i < matches.length; ++i) await page.click('#thread-previous');
    assert.equal(await page.$eval('.bubble.focus', (node) => node.dataset.index), '0');
    assert.equal(await page.$eval('#thread-found', (node) => node.textContent), '1 of ' + matches.length);
    assert.ok(await rowCount(page) <= MOST_ROWS);
    await page.screenshot({path: path.join(out, 'thread-search.png')});
    // The latest messages are one click away.
    await page.click('#later');
    assert.ok(await page.$('.bubble[data-index="' + (messages.length - 1) + '"]') || await page.isVisible('#later'));
    assert.deepEqual(problems, []);
    await page.close();
  });

  test('searches message texts across conversations a page at a time', async () => {
    const {page, problems} = await open(path.join(out, 'many'));
    await go(page, '#kind/messages', '#threads li');
    await page.fill('#search', 'harbour');
    await page.waitForSelector('#found-messages li');
    const heading = await page.$eval('#found h2', (node) => node.textContent);
    const total = Number(heading.split(' ')[0]);
    assert.ok(total > 250, heading);
    assert.equal(await page.$$eval('#found-messages li', (items) => items.length), 250);
    const names = new Set(await page.$$eval('#found-messages .name', (nodes) => nodes.map((node) => node.textContent)));
    assert.ok(names.size > 1);
    assert.deepEqual(problems, []);
    await page.close();
  });

  test('shows grids in date order under month headings, searched by name, a page at a time', async () => {
    const {page, problems} = await open(path.join(out, 'many'));
    await go(page, '#kind/attachments', '#grid figure');
    const dates = await page.$$eval('#grid figure .date', (nodes) => nodes.map((node) => node.textContent));
    assert.deepEqual(dates, [...dates].sort().reverse());
    const headings = await page.$$eval('#grid h2.month', (nodes) => nodes.map((node) => node.textContent));
    assert.ok(headings.length > 1 && /^[A-Z][a-z]+ \d{4}$/.test(headings[0]), headings.join());
    await page.selectOption('#order', 'oldest');
    const oldest = await page.$$eval('#grid figure .date', (nodes) => nodes.map((node) => node.textContent));
    assert.deepEqual(oldest, [...dates].sort());
    const name = await page.$eval('#grid figure .name', (node) => node.textContent);
    await page.fill('#search', name);
    await page.waitForFunction(() => document.querySelectorAll('#grid figure').length === 1);
    await page.screenshot({path: path.join(out, 'attachments.png')});
    await page.fill('#search', '');
    // Which records have no file in the backup, and only those on demand.
    const missing = await page.$eval('#missing', (node) => node.textContent);
    const count = Number(missing.split(' ')[0]);
    assert.ok(count > 0 && /of 150 attachments have no file in the backup/.test(missing), missing);
    await page.check('#missing-only');
    await page.waitForFunction((n) => document.querySelectorAll('#grid figure.missing').length === n &&
      document.querySelectorAll('#grid figure').length === n, count);
    await go(page, '#kind/camera-photos', '#grid figure');
    await page.fill('.pager .jump', '3');
    await page.dispatchEvent('.pager .jump', 'change');
    await page.waitForFunction(() => document.querySelector('.pager .position').textContent.startsWith('481–'));
    assert.deepEqual(problems, []);
    await page.close();
  });
});
