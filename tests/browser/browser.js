// What the browser tests share: the browser, the program, and the rule that a page is quiet: no error in its console,
// no request to anybody else.
import { spawn, spawnSync } from 'node:child_process';
import { existsSync, mkdtempSync, rmSync } from 'node:fs';
import { tmpdir } from 'node:os';
import { join } from 'node:path';

const CHROMIUM = '/usr/bin/chromium';
const SKIPPED = 77;
const FLAGS = ['--headless', '--no-sandbox', '--disable-gpu', '--disable-quic', '--no-first-run',
  '--disable-background-networking', '--disable-component-update', '--disable-sync'];

export const program = process.argv[2];
export const samples = process.argv[3];

export function check(condition, what) {
  if (!condition) throw new Error(`not as it should be: ${what}`);
}

export async function eventually(condition, what, seconds = 15) {
  const deadline = Date.now() + seconds * 1000;
  while (Date.now() < deadline) {
    if (await condition()) return;
    await new Promise((resolve) => setTimeout(resolve, 50));
  }
  throw new Error(`did not happen within ${seconds} s: ${what}`);
}

async function openBrowser() {
  if (!existsSync(CHROMIUM)) return skip(`${CHROMIUM} is not there`);
  try {
    const { chromium } = await import('playwright-core');
    return await chromium.launch({ executablePath: CHROMIUM, args: FLAGS });
  } catch (problem) {
    if (problem.code === 'ERR_MODULE_NOT_FOUND') return skip('playwright-core is not installed; scripts/setup does it');
    throw problem;
  }
}

function skip(why) {
  console.log(`skipped: ${why}`);
  process.exit(SKIPPED);
}

// A page that notes everything it should not do. `allowed`: where its requests may go to.
export async function openPage(browser, url, options = {}) {
  const page = await browser.newPage({ viewport: { width: 1440, height: 900 }, ...options });
  page.troubles = [];
  page.on('console', (message) => { if (['error', 'warning'].includes(message.type())) page.troubles.push(message.text()); });
  page.on('pageerror', (error) => page.troubles.push(String(error)));
  page.on('dialog', (dialog) => { page.troubles.push(`dialog: ${dialog.message()}`); dialog.dismiss(); });
  const own = new URL(url);
  page.on('request', (request) => {
    const to = new URL(request.url());
    const isOwn = to.protocol === 'data:' || (to.protocol === own.protocol && to.host === own.host);
    if (!isOwn) page.troubles.push(`request to ${to}`);
  });
  await page.goto(url);
  return page;
}

export function run(...parameters) {
  const done = spawnSync(program, parameters, { encoding: 'utf8' });
  check(done.status === 0, `${parameters.join(' ')}: ${done.stderr}`);
  return done.stdout;
}

// A program that serves; resolves once it has said where.
export function serve(...parameters) {
  const child = spawn(program, parameters);
  let said = '';
  child.ended = new Promise((resolve) => child.on('exit', (code, signal) => resolve({ code, signal })));
  child.url = new Promise((resolve, reject) => {
    const listen = (bytes) => {
      said += bytes;
      const found = said.match(/http:\/\/127\.0\.0\.1:\d+\//);
      if (found) resolve(found[0]);
    };
    child.stdout.on('data', listen);
    child.stderr.on('data', listen);
    child.on('exit', () => reject(new Error(`ended early: ${said}`)));
  });
  child.url.catch(() => {});
  children.push(child);
  return child;
}

const children = [];

// Runs one test with a browser and a folder of its own; cleans up in every case.
export async function test(body) {
  const limit = setTimeout(() => { console.error('the test hangs'); process.exit(1); }, 100_000);
  const browser = await openBrowser();
  const folder = mkdtempSync(join(tmpdir(), 'qtrace-browser-'));
  let code = 0;
  try {
    await body(browser, folder);
  } catch (problem) {
    console.error(problem);
    code = 1;
  }
  for (const child of children) child.kill('SIGKILL');
  await browser.close();
  rmSync(folder, { recursive: true, force: true });
  clearTimeout(limit);
  process.exit(code);
}
