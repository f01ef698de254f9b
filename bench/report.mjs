// bench/report: the report page of a long log in Chromium.
import { execFileSync } from "node:child_process";
import { readFileSync, readdirSync, statSync, writeFileSync } from "node:fs";
import { join } from "node:path";
import { chromium } from "playwright-core";

const [folder, given] = process.argv.slice(2);
const browserPath = ["/usr/bin/chromium", "/usr/bin/chromium-browser"].find((path) =>
  statSync(path, { throwIfNoEntry: false }),
);

/** The demo's session again and again, its time going on. */
function longLog(lineCount) {
  const demo = join(process.env.MARVANE_SOURCE, "tests", "logs", "demo");
  const session = readFileSync(join(demo, readdirSync(demo)[0]), "utf8")
    .trimEnd()
    .split("\n");
  const clock = (text, by) => {
    const [h, m, s, ms] = text.split(/[:.]/).map(Number);
    return new Date(((h * 60 + m) * 60 + s) * 1000 + ms + by).toISOString().slice(11, 23);
  };
  const path = join(folder, "D-PDU_API_Logger_22-11-2026_00-27-36.LGR");
  const parts = [];
  for (let i = 0; i * session.length < lineCount; ++i)
    parts.push(
      session.map((line) => (line[0] === "{" ? `{${clock(line.slice(1, 13), i * 200)}${line.slice(13)}` : line)).join("\n"),
    );
  writeFileSync(path, `${parts.join("\n")}\n`);
  return path;
}

const page = join(folder, "report.html");
execFileSync(process.env.MARVANE, ["report", given ?? longLog(1_000_000), "-o", page], { stdio: "inherit" });
const best = new Map();
const note = (what, ms) => best.set(what, Math.min(ms, best.get(what) ?? Infinity));
for (let run = 0; run < 5; ++run) {
  const browser = await chromium.launch({
    executablePath: browserPath,
    args: process.getuid() === 0 ? ["--no-sandbox"] : [],
  });
  const tab = await browser.newPage({ viewport: { width: 1280, height: 800 } });
  await tab.goto(`file://${page}`);
  await tab.waitForFunction(() => document.documentElement.dataset.ready === "all", null, { timeout: 0 });
  for (const { name, startTime } of await tab.evaluate(() =>
    performance.getEntriesByType("mark").map(({ name, startTime }) => ({ name, startTime })),
  ))
    note(name, startTime);
  for (const view of ["talk", "calls"])
    for (const query of ["requestOutOfRange", "22F190", "PDU", "nothing of this kind"]) {
      const ms = await tab.evaluate(
        ([view, query]) => {
          Object.assign(state, { view, query });
          const begin = performance.now();
          update();
          void byId("list").offsetHeight;
          return performance.now() - begin;
        },
        [view, query],
      );
      note(`search "${query}", ${view === "talk" ? "conversation" : "all calls"}`, ms);
    }
  await browser.close();
}
console.log(`${(statSync(page).size / 1e6).toFixed(1).padStart(8)} MB  page`);
for (const [what, ms] of best) console.log(`${ms.toFixed(0).padStart(8)} ms  ${what}`);
