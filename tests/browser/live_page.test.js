// The live page while `qtrace record --serve` runs: the track grows, the list fills, the connection heals.
import { mkdirSync, readFileSync, writeFileSync } from 'node:fs';
import { join } from 'node:path';
import { check, eventually, openPage, samples, serve, test } from './browser.js';

const HOSTILE = '&lt;/script&gt;&lt;img src=x&gt;'; // as it stands in a document

const line = (page) => page.locator('.live-line').getAttribute('d');
const kilometres = async (page) => Number((await page.locator('.item').first().textContent()).match(/([\d.]+)\u00a0km/)?.[1] ?? 0);
const points = async (page) => Number(((await page.locator('#live-figures').textContent()).match(/(\d+) points/) || [])[1] || 0);
const items = (page) => page.locator('.item').count();

// One that stands there already; its document names it as no file could be.
function storeHostileTrack(device) {
  const folder = join(device, 'UserData', 'Track');
  mkdirSync(folder, { recursive: true });
  writeFileSync(join(folder, 'stored.gpx'), '<?xml version="1.0"?><gpx version="1.0" creator="t" xmlns="http://www.topografix.com/GPX/1/0">' +
    `<trk><name>${HOSTILE}</name><trkseg><trkpt lat="46.5" lon="-23.2"></trkpt><trkpt lat="46.51" lon="-23.2"></trkpt></trkseg></trk></gpx>`);
}

// The answer to the first question comes last, and says that nothing is stored.
async function listsInTheWrongOrder(page) {
  let questions = 0, isSecondAnswered;
  const secondAnswer = new Promise((resolve) => { isSecondAnswered = resolve; });
  await page.route('**/api/tracks', async (route) => {
    if (++questions !== 1) return route.continue();
    await secondAnswer;
    return route.fulfill({ json: { tracks: [] } });
  });
  await page.evaluate(() => { window.first = takeList(); return takeList(); });
  isSecondAnswered();
  await page.evaluate(() => window.first);
  check((await items(page)) === 2, 'an answer that comes too late changes nothing');
}

test(async (browser, folder) => {
  storeHostileTrack(folder);
  const drive = readFileSync(join(samples, 'drive.nmea'));
  const recorder = serve('record', '-', '--serve=0', '--device', folder, '--save-as', 'drive');
  const page = await openPage(browser, await recorder.url);

  recorder.stdin.write(drive.subarray(0, 150_000));
  await eventually(async () => (await points(page)) > 500, 'the first points show');
  await eventually(async () => (await kilometres(page)) > 3, 'the recording has a length');
  const before = { line: await line(page), kilometres: await kilometres(page), points: await points(page) };
  recorder.stdin.write(drive.subarray(150_000, 300_000));
  await eventually(async () => (await points(page)) > before.points + 500, 'more points show');
  await eventually(async () => (await kilometres(page)) > before.kilometres + 3, 'the recording becomes longer');
  check((await line(page)) !== before.line, 'the line on the map is another one');
  check((await page.locator('#live-state').textContent()) === 'Recording', 'the page says that it records');
  check((await page.locator('.here').count()) === 1, 'the newest place is marked');

  const late = await openPage(browser, await recorder.url);
  await eventually(async () => (await points(late)) >= (await points(page)), 'a late page gets the track so far');
  await listsInTheWrongOrder(late);
  await late.close();

  const profile = await page.locator('#profile').boundingBox();
  await page.mouse.move(profile.x + profile.width / 2, profile.y + 60);
  await eventually(async () => (await page.locator('.cursor-ring').count()) === 1, 'the profile moves the cursor on the map');

  check((await items(page)) === 2, 'the list has the recording and what was stored');
  check((await page.locator('.item').nth(1).textContent()).includes('</script><img src=x>'), 'a hostile name is text');
  check((await page.locator('img').count()) === 0, 'and no element came out of it');
  recorder.stdin.end();
  await eventually(async () => (await items(page)) === 3, 'the saved track appears in the list');
  await eventually(async () => (await page.locator('#live-state').textContent()) === 'Recording ended', 'the page says that it ended');
  check(page.troubles.length === 0, page.troubles.join('; '));

  recorder.kill('SIGTERM');
  const end = await recorder.ended;
  check(end.code === 0, `the program ends cleanly with a page open: ${JSON.stringify(end)}`);
  await eventually(async () => (await page.locator('#live-state').textContent()) === 'Not connected', 'the page tells that it lost the program');
});
