// --format trace, opened by speedscope in a browser.
import assert from "node:assert/strict";
import { spawnSync } from "node:child_process";
import { readFileSync, writeFileSync } from "node:fs";
import { createServer } from "node:http";
import { createRequire } from "node:module";
import { dirname, join, normalize } from "node:path";
import { test } from "node:test";
import { demo, logs, marvane, withFolder } from "./marvane.mjs";

const browserPath = ["/usr/bin/chromium", "/usr/bin/chromium-browser"].find((path) => !spawnSync(path, ["--version"]).error);
const skip = browserPath ? false : "Chromium is not installed (Debian package chromium)";
const require = createRequire(import.meta.url);

/** Serves speedscope's page, and the traces of a folder, to this machine only. */
async function serve(traces, use) {
  const page = join(dirname(require.resolve("speedscope/package.json")), "dist", "release");
  const types = { html: "text/html", js: "text/javascript", css: "text/css", json: "application/json" };
  const server = createServer(({ url }, response) => {
    const path = normalize(decodeURIComponent(new URL(url, "http://localhost").pathname));
    const [, folder, name] = path.match(/^\/(page|traces)\/([^/]+)$/) ?? [];
    try {
      const body = readFileSync(join(folder === "page" ? page : traces, name ?? "missing"));
      response.writeHead(200, { "content-type": types[name.split(".").pop()] ?? "application/octet-stream" }).end(body);
    } catch {
      response.writeHead(404).end();
    }
  });
  await new Promise((resolve) => server.listen(0, "127.0.0.1", resolve));
  try {
    return await use(`http://127.0.0.1:${server.address().port}`);
  } finally {
    server.closeAllConnections?.();
    server.close();
  }
}

/** Opens a trace in speedscope; returns the text of the page and what the page complained about. */
async function open(browser, root, trace) {
  const page = await browser.newPage();
  page.setDefaultTimeout(0);
  const faults = [];
  page.on("pageerror", (error) => faults.push(error.message));
  page.on("console", (message) => message.type() === "error" && faults.push(message.text()));
  page.on("dialog", (dialog) => faults.push(dialog.message()) && dialog.dismiss());
  await page.goto(`${root}/page/index.html#profileURL=${encodeURIComponent(`${root}/traces/${trace}`)}`);
  const isDone = () => /Time Order|Something went wrong|Unrecognized|error/i.test(document.body.innerText);
  await page.waitForFunction(isDone);
  const text = await page.evaluate(() => document.body.innerText);
  await page.close();
  return { text, faults };
}

test("speedscope opens traces of the demo and of logs that are hard", { skip }, () =>
  withFolder(async (folder) => {
    const { chromium } = await import("playwright-core");
    const args = process.getuid?.() === 0 ? ["--no-sandbox"] : [];
    const browser = await chromium.launch({ executablePath: browserPath, args, timeout: 0 });
    try {
      await serve(folder, async (root) => {
        for (const log of [demo, ...logs().filter((log) => /in_flight|two_processes|midnight/.test(log))]) {
          writeFileSync(join(folder, "trace.json"), marvane("export", "--format", "trace", log));
          const { text, faults } = await open(browser, root, "trace.json");
          assert.deepEqual(faults, [], log);
          assert.match(text, /process 1.*, thread [0-9A-F]{8}/, log);
        }
      });
    } finally {
      await browser.close();
    }
  }));
