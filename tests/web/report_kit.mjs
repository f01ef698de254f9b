// The report page in a browser: written by the command under test, opened from its file, watched for faults.
import assert from "node:assert/strict";
import { spawnSync } from "node:child_process";
import { mkdtempSync, readdirSync, readFileSync, rmSync, statSync } from "node:fs";
import { tmpdir } from "node:os";
import { join } from "node:path";
import { after, before, test } from "node:test";
import { pathToFileURL } from "node:url";
import { demo, marvane } from "./marvane.mjs";

export const browserPath = ["/usr/bin/chromium", "/usr/bin/chromium-browser"].find(
  (path) => !spawnSync(path, ["--version"]).error,
);
export const skip = browserPath ? false : "Chromium is not installed (Debian package chromium)";

export async function withBrowser(use) {
  const { chromium } = await import("playwright-core");
  const args = process.getuid?.() === 0 ? ["--no-sandbox"] : [];
  const browser = await chromium.launch({ executablePath: browserPath, args, timeout: 0 });
  try {
    return await use(browser);
  } finally {
    await browser.close();
  }
}

/** Writes the report of a log into a folder; returns its path. */
export function writeReport(folder, log, ...options) {
  const path = join(folder, `report-${Math.random().toString(36).slice(2)}.html`);
  marvane("report", log, "-o", path, ...options);
  return path;
}

/** For a file of tests: a folder, in it the page of the demo's log as `demoPage`, and tests with that page. */
export function demoTests() {
  const tests = { folder: "", demoPage: "", pageTest };
  before(() => {
    tests.folder = mkdtempSync(join(tmpdir(), "marvane-web-"));
    if (browserPath) tests.demoPage = writeReport(tests.folder, demo);
  });
  after(() => rmSync(tests.folder, { recursive: true }));
  function pageTest(name, use, options) {
    test(name, { skip }, () => withBrowser((browser) => withPage(browser, tests.demoPage, use, options)));
  }
  return tests;
}

/** Opens a report, calls `use`, and fails if the page asked for anything, or had anything to complain about. */
export async function withPage(browser, path, use, { address = "", ...options } = {}) {
  const context = await browser.newContext({ viewport: { width: 1280, height: 800 }, ...options });
  const page = await context.newPage();
  page.setDefaultTimeout(0);
  const root = pathToFileURL(path).href;
  const faults = [];
  page.on("pageerror", (error) => faults.push(`error: ${error.stack}`));
  page.on("console", (message) => faults.push(`console: ${message.text()}`));
  page.on("dialog", (dialog) => faults.push(`dialog: ${dialog.message()}`) && dialog.dismiss());
  page.on(
    "request",
    (request) =>
      !request.url().startsWith(root) && !request.url().startsWith("blob:") && faults.push(`request: ${request.url()}`),
  );
  // What is copied, without the clipboard of this machine.
  await page.addInitScript(() => {
    window.copied = [];
    Object.defineProperty(navigator, "clipboard", { value: { writeText: async (text) => void window.copied.push(text) } });
  });
  await page.goto(root + (address ? `#${address}` : ""));
  await isReady(page);
  const result = await use(page);
  assert.deepEqual(faults, []);
  await context.close();
  return result;
}

export async function isReady(page) {
  await page.waitForFunction(() => ["all", "failed"].includes(document.documentElement.dataset.ready));
  assert.equal(await page.evaluate(() => document.documentElement.dataset.ready), "all");
  await settled(page);
}

/** What the page does at the next frames is done. */
export async function settled(page) {
  await page.evaluate(
    () => new Promise((done) => requestAnimationFrame(() => requestAnimationFrame(() => requestAnimationFrame(done)))),
  );
}

/** The address, when the page has written its state into it. */
export async function addressOf(page) {
  await settled(page);
  await page.waitForFunction(() => decodeURIComponent(location.hash.slice(1)) === decodeURIComponent(addressOf()));
  return new URLSearchParams(await page.evaluate(() => location.hash.slice(1)));
}

/** The texts of the parts of each element, joined. */
export const partsOf = (page, selector, separator) =>
  page.evaluate(
    ([selector, separator]) =>
      [...document.querySelectorAll(selector)].map((each) =>
        [...each.children].map((part) => part.textContent).join(separator),
      ),
    [selector, separator],
  );

/** The rows in the document: the texts of their cells, those for screen readers alone left out. */
export function rowsOf(page) {
  return page.evaluate(() =>
    [...document.querySelectorAll("#list > .row")].map((row) => {
      const head = row.firstChild.cloneNode(true);
      for (const unseen of head.querySelectorAll(".unseen")) unseen.remove();
      const texts = [];
      const walk = document.createTreeWalker(head, NodeFilter.SHOW_ELEMENT);
      for (let node = walk.currentNode; node; node = walk.nextNode())
        if (node.childElementCount === 0 || node.querySelector(":scope > mark"))
          if (node.tagName !== "MARK") texts.push(node.textContent);
      return texts.filter(Boolean).join("|");
    }),
  );
}

export const textOf = (page, selector) => page.evaluate((it) => document.querySelector(it).innerText.trim(), selector);

/** Types a search and waits for its result. */
export async function searchFor(page, text) {
  await page.fill("#search", text);
  await page.waitForFunction(
    (wanted) => state.query === wanted && rows.isComplete && (wanted === "" ? !rows.found : rows.found),
    text,
  );
  await settled(page);
}

/** The lines of a log without line ends; of a folder, the files of these names in their order. */
export function linesOf(log, names) {
  const files = statSync(log).isDirectory() ? (names ?? readdirSync(log)).map((name) => join(log, name)) : [log];
  return files.flatMap((file) =>
    readFileSync(file, "utf8")
      .replace(/\r?\n$/, "")
      .split(/\r?\n/),
  );
}
