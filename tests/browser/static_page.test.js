// The page that `qtrace map` writes, opened from the file without any server.
import { mkdirSync, writeFileSync } from 'node:fs';
import { join } from 'node:path';
import { pathToFileURL } from 'node:url';
import { check, openPage, run, test } from './browser.js';

const HOSTILE = '</script><img src=x onerror=alert(1)>';

function gpx(places) {
  const points = places.map(([lat, lon], i) =>
    `<trkpt lat="${lat}" lon="${lon}"><ele>${100 + 5 * (i % 7)}</ele><time>2024-05-12T08:${String(i).padStart(2, '0')}:00Z</time></trkpt>`);
  return `<?xml version="1.0"?><gpx version="1.0" creator="t" xmlns="http://www.topografix.com/GPX/1/0"><trk><name>t</name>` +
    `<trkseg>${points.join('')}</trkseg></trk></gpx>`;
}

function drawnPage(folder, name, title, places) {
  const tracks = join(folder, 'UserData', 'Track');
  mkdirSync(tracks, { recursive: true });
  writeFileSync(join(tracks, `${name}.gpx`), gpx(places));
  const file = join(folder, `${name}.html`);
  run('map', name, '--device', folder, '-o', file, '--title', title);
  return pathToFileURL(file).href;
}

const way = Array.from({ length: 30 }, (_, i) => [47 + i * 1e-3, 8 + Math.sin(i / 3) * 2e-3]);
const acrossTheMeridian = Array.from({ length: 30 }, (_, i) => {
  const longitude = 179.9 + i * 0.01;
  return [-17, longitude > 180 ? longitude - 360 : longitude];
});

const text = (page, id) => page.locator(id).textContent();
const cursorPlace = (page) => page.locator('.cursor-ring').getAttribute('d').catch(() => null);
const lineBox = (page) => page.locator('.track-line').first().boundingBox();

async function hostileTitleIsText(browser, folder) {
  const page = await openPage(browser, drawnPage(folder, 'walk', HOSTILE, way));
  check((await text(page, '#title')) === HOSTILE, 'the title is text');
  check((await page.locator('img[src="x"]').count()) === 0, 'no element came out of the title');
  check((await page.locator('.item').count()) === 1, 'the list has one track');
  check((await page.locator('.endpoint').count()) === 2, 'start and end are marked');
  check((await text(page, '.leaflet-control-scale-line')).length > 0, 'there is a scale bar');
  check(page.troubles.length === 0, page.troubles.join('; '));
  return page;
}

async function cursorMovesTheMap(page) {
  const profile = await page.locator('#profile').boundingBox();
  await page.mouse.move(profile.x + profile.width * 0.3, profile.y + 60);
  const first = await cursorPlace(page), said = await text(page, '#readout');
  await page.mouse.move(profile.x + profile.width * 0.7, profile.y + 60);
  const second = await cursorPlace(page);
  check(first && second && first !== second, `the cursor on the map moves: ${first} ${second}`);
  check(said.includes('km/h') && said.includes('UTC'), `the readout says where: ${said}`);
  await page.locator('#profile').focus();
  await page.keyboard.press('Home');
  const start = await cursorPlace(page);
  await page.keyboard.press('ArrowRight');
  check(start !== (await cursorPlace(page)), 'the arrow key moves the cursor');
  await page.keyboard.press('Escape');
  check((await page.locator('.cursor-ring').count()) === 0, 'Escape takes the cursor away');
}

async function mapMovesTheCursor(page) {
  const place = await page.locator('.track-line').evaluate((line) => {
    const middle = line.getPointAtLength(line.getTotalLength() / 2).matrixTransform(line.getScreenCTM());
    return { x: middle.x, y: middle.y };
  });
  await page.mouse.move(place.x + 30, place.y);
  await page.mouse.move(place.x, place.y);
  check((await page.locator('.dot').count()) > 0, 'the profile shows the place under the pointer');
}

async function toggleHidesTheTrack(page) {
  await page.locator('.toggle input').uncheck();
  check((await page.locator('.track-line').count()) === 0, 'a track that is switched off is gone');
  await page.locator('.toggle input').check();
  check((await page.locator('.track-line').count()) === 1, 'and back again');
}

async function otherAxis(page) {
  await page.locator('#along-time').click();
  check((await text(page, '#profile')).includes('Time UTC'), 'the profile can stand along time');
}

async function meridianIsCrossed(browser, folder) {
  const page = await openPage(browser, drawnPage(folder, 'across', 'across', acrossTheMeridian));
  const path = await page.locator('.track-line').getAttribute('d');
  const steps = path.match(/-?\d+(?= )/g).map(Number);
  const longest = Math.max(...steps.slice(1).map((x, i) => Math.abs(x - steps[i])));
  const box = await lineBox(page), map = await page.locator('#map').boundingBox();
  check(box.width > map.width * 0.5, `the track fills the map: ${box.width}`);
  check(longest <= box.width && (path.match(/M/g) || []).length === 1, `one line without a jump: ${path}`);
  check((await text(page, '.grid-labels')).includes('180'), 'the meridian is labelled');
  check(page.troubles.length === 0, page.troubles.join('; '));
}

// Nothing lies over anything else, in light and dark, on the phone and on the desk.
async function everythingHasItsPlace(browser, url) {
  for (const [width, height] of [[390, 844], [1440, 900]])
    for (const colorScheme of ['light', 'dark']) {
      const page = await openPage(browser, url, { viewport: { width, height }, colorScheme });
      const boxes = await Promise.all(['.map-area', '.profile-area', '.detail', '.tracks', '.side-head'].map((part) =>
        page.locator(part).boundingBox()));
      const overlap = (a, b) => a.x < b.x + b.width - 1 && b.x < a.x + a.width - 1 && a.y < b.y + b.height - 1 && b.y < a.y + a.height - 1;
      for (const [i, a] of boxes.entries()) for (const b of boxes.slice(i + 1)) check(!overlap(a, b), `${width} ${colorScheme}: overlap`);
      const wide = await page.evaluate(() => document.documentElement.scrollWidth);
      check(wide <= width, `${width}: nothing sticks out, ${wide}`);
      check(page.troubles.length === 0, page.troubles.join('; '));
      await page.close();
    }
}

test(async (browser, folder) => {
  const page = await hostileTitleIsText(browser, folder);
  await cursorMovesTheMap(page);
  await mapMovesTheCursor(page);
  await toggleHidesTheTrack(page);
  await otherAxis(page);
  check(page.troubles.length === 0, page.troubles.join('; '));
  await meridianIsCrossed(browser, folder);
  await everythingHasItsPlace(browser, page.url());
});
