// The report page of logs that are hard: full of markup, long, of several sessions, damaged.
import assert from "node:assert/strict";
import { mkdtempSync, readFileSync, readdirSync, rmSync, writeFileSync } from "node:fs";
import { createHash } from "node:crypto";
import { tmpdir } from "node:os";
import { join } from "node:path";
import { after, before, test } from "node:test";
import { demo, logs, source } from "./marvane.mjs";
import { linesOf, rowsOf, searchFor, settled, skip, textOf, withBrowser, withPage, writeReport } from "./report_kit.mjs";

let folder = "";
before(() => (folder = mkdtempSync(join(tmpdir(), "marvane-web-"))));
after(() => rmSync(folder, { recursive: true }));

const Markup = `<img src=x onerror="hacked=1"></script><script>hacked=2</script><!--<b>&lt;&amp;'"\u202e`;

/** The demo's log, with markup in every text that it has: names, paths, protocols, the name of the file. */
function logOfMarkup() {
  const name = "D-PDU_API_Logger_22-11-2026_00-27-36 <b>&amp;'x'.LGR";
  const text = linesOf(demo)
    .join("\n")
    .replaceAll("Simulated VCI", `Simulated ${Markup}`)
    .replaceAll("ISO_15765_3_on_ISO_15765_2", `ISO_15765_3_on_ISO_15765_2${Markup}`)
    .replaceAll("libSimVci.so", `${Markup}.so`)
    .replaceAll("PDU_IOCTL_SELF_TEST", Markup)
    .replaceAll("CP_P2Max", `CP_${Markup}`)
    .replaceAll("CAN message", `CAN ${Markup}`);
  writeFileSync(join(folder, name), text + `\n${Markup}\n`);
  return join(folder, name);
}

test("nothing in a log can run: markup is shown as it is", { skip }, () =>
  withBrowser((browser) =>
    withPage(browser, writeReport(folder, logOfMarkup()), async (page) => {
      assert.equal(await page.title(), "D-PDU_API_Logger_22-11-2026_00-27-36 <b>&amp;'x'.LGR");
      assert.equal(await textOf(page, "h1"), "D-PDU_API_Logger_22-11-2026_00-27-36 <b>&amp;'x'.LGR");
      assert.ok((await page.evaluate(() => byId("summary").textContent)).includes(`Simulated ${Markup}`));
      await page.check("input[value=calls]");
      await searchFor(page, "onerror");
      for (let i = 0; i < 3; ++i) await page.click(`#list .row[data-key^="r"] >> nth=${i} >> .head`);
      await page.waitForSelector(".detail .lines mark");
      await page.hover("#lanes");
      assert.ok((await page.evaluate(() => byId("list").textContent)).includes(Markup));
      assert.deepEqual(
        await page.evaluate(() => [
          typeof hacked,
          document.querySelectorAll("img, b:not(.chip b), iframe, object, embed").length,
          document.scripts.length,
        ]),
        ["undefined", 0, 1],
      );
    }),
  ),
);

test("the page's policy allows its own style and script, and nothing else", { skip }, () => {
  const html = readFileSync(writeReport(folder, demo), "utf8");
  const hash = (text) => `'sha256-${createHash("sha256").update(text).digest("base64")}'`;
  const [, style] = html.match(/<style>([^]*?)<\/style>/);
  const [, script] = html.match(/<script>([^]*?)<\/script>/);
  const policy = `default-src 'none'; script-src ${hash(script)}; style-src ${hash(style)}; img-src data:; base-uri 'none'; form-action 'none'`;
  assert.equal(html.match(/http-equiv="Content-Security-Policy" content="([^"]*)"/)[1], policy);
  assert.doesNotMatch(html.replace(/[A-Za-z0-9+/=\s]{1000,}/g, ""), /\b(?:src|href)="(?!#)|url\(|@import/);
});

test("no script of the page makes markup of text, or text to run", () => {
  const scripts = readdirSync(join(source, "tool", "report")).filter((name) => /\.(js|css|html)$/.test(name));
  assert.ok(scripts.length > 10);
  for (const name of scripts) {
    const text = readFileSync(join(source, "tool", "report", name), "utf8");
    assert.doesNotMatch(
      text,
      /innerHTML|outerHTML|insertAdjacentHTML|createContextualFragment|document\.write|\beval\b|new Function|DOMParser|srcdoc/,
      name,
    );
    if (name.endsWith(".js")) assert.match(text, /^\/\/ .*\n(\/\/ .*\n)*"use strict";\n/, name);
    if (!name.endsWith(".html")) assert.doesNotMatch(text, /<\/script|<\/style|<!--/, name);
  }
});

/** All lines that the rows of all calls show, in the order of the log. */
const shownLines = (page) =>
  page.evaluate(() => {
    const ofRow = (kind, row) => {
      const ref = rows.ref[row];
      return kind === RowRecord
        ? linesOfRecord(ref)
        : kind === RowOther
          ? rangeOf(lines.others.line[ref], lines.others.count[ref])
          : [];
    };
    const all = rows.kind.flatMap(ofRow).sort((a, b) => a - b);
    return all.map((line) => lineAt(line).stamp + lineAt(line).text);
  });

test("every line of every log of the tests is shown, once", { skip }, () =>
  withBrowser(async (browser) => {
    const alone = logs().filter((log) => log.endsWith(".LGR") && !log.includes("not_utf8"));
    const together = logs().find((log) => log.endsWith("continuation"));
    for (const [options, folderOf] of [
      [alone, join(source, "tests", "logs")],
      [[together], together],
    ])
      await withPage(browser, writeReport(folder, ...options), async (page) => {
        await page.check("input[value=calls]");
        await settled(page);
        const names = await page.evaluate(() => model.files.map((file) => file.name));
        assert.deepEqual(await shownLines(page), linesOf(folderOf, names));
      });
  }),
);

/** A log of the demo's session again and again, each `step` ms after the one before. */
function longLog(times, step) {
  const session = linesOf(demo);
  const shifted = (line, by) =>
    line.replace(
      /^\{(\d\d):(\d\d):(\d\d)\.(\d{3})/,
      (_, h, m, s, ms) =>
        `{${new Date(((Number(h) * 60 + Number(m)) * 60 + Number(s)) * 1000 + Number(ms) + by).toISOString().slice(11, 23)}`,
    );
  const name = join(folder, "D-PDU_API_Logger_22-11-2026_00-27-36.LGR");
  const parts = [];
  for (let i = 0; i < times; ++i) parts.push(session.map((line) => shifted(line, i * step)).join("\n"));
  writeFileSync(name, parts.join("\n") + "\n");
  return name;
}

test("a log of 100,000 lines: rows on demand, search, the end of the list", { skip }, () =>
  withBrowser(async (browser) => {
    const times = 40;
    const log = longLog(times, 1000);
    const file = linesOf(log);
    await withPage(browser, writeReport(folder, log), async (page) => {
      assert.equal(await textOf(page, "#count"), `${24 * times} rows of the conversation`);
      assert.ok((await page.evaluate(() => document.querySelectorAll("#list > .row").length)) < 80);
      const links = await page.evaluate(() => [...document.querySelectorAll(".link-fact")].map((link) => link.textContent));
      assert.deepEqual(links, [
        "1 ISO_15765_3_on_ISO_15765_2pins 6, 14 · 600 requests",
        "2 ISO15765_CAN_6_14not connected",
        "3 ISO_14229_5_on_ISO_13400_2pins 3, 11 · 40 requests",
      ]);
      await searchFor(page, "requestoutofrange");
      assert.equal(await textOf(page, "#count"), `${times} of ${24 * times} rows of the conversation`);
      await page.check("input[value=calls]");
      await searchFor(page, "HwSerialNumber");
      assert.match(await textOf(page, "#count"), new RegExp(`^${times} of `));
      await searchFor(page, "");
      await page.evaluate(() => (byId("list-box").scrollTop = 1e9));
      await settled(page);
      assert.equal((await rowsOf(page)).at(-1), `39.157|00004251|PDUDestruct - Close this log file|${file.length}`);
      await page.click("#list .row:last-child .head");
      await page.waitForSelector(".detail .log-line");
      assert.equal(
        (await page.evaluate(() => [...document.querySelectorAll(".log-line")].at(-1).textContent)).trim(),
        `${file.length}${file.at(-1)}`,
      );
      assert.ok((await shownLines(page)).every((line, i) => line === file[i]));
    });
  }),
);

test("requests that the library refused are found by their outcome and end with their call", { skip }, () =>
  withBrowser((browser) =>
    withPage(browser, writeReport(folder, join(source, "tests", "logs", "refused_start.LGR")), async (page) => {
      const words = await page.evaluate(() => byId("summary").querySelector(".outcome-words").innerText);
      assert.equal(words.replace(/\s+/g, " ").trim(), "1 open 4 not started");
      await page.click("text=4 not started");
      await settled(page);
      assert.equal(await textOf(page, "#count"), "4 of 5 rows of the conversation");
      assert.equal((await rowsOf(page))[0].includes("not started: CLL_NOT_CONNECTED"), true);
      assert.deepEqual(
        await page.evaluate(() => [0, 4].map((i) => endOfExchange(i) === model.end)),
        [false, true],
      );
    }),
  ),
);
