// The command under test, and the logs of the tests.
import { execFileSync } from "node:child_process";
import { mkdirSync, mkdtempSync, readdirSync, readFileSync, rmSync, writeFileSync } from "node:fs";
import { tmpdir } from "node:os";
import { join } from "node:path";

export const source = process.env.MARVANE_SOURCE;

/** Runs marvane and returns its standard output. Throws if its status is not 0. */
export function marvane(...words) {
  return execFileSync(process.env.MARVANE, words, {
    encoding: "utf8",
    maxBuffer: 1 << 30,
    stdio: ["ignore", "pipe", "inherit"],
  });
}

/** The objects of JSON Lines. */
export function objects(text) {
  return text
    .split("\n")
    .filter((line) => line !== "")
    .map((line) => JSON.parse(line));
}

const folder = join(source, "tests", "logs");

/** The conversation of the sample application with the simulated library. */
export const demo = join(folder, "demo");

/** Every log of the tests: files, and folders whose files belong together. */
export function logs() {
  const isLog = (name) => name.endsWith(".LGR");
  return readdirSync(folder, { withFileTypes: true })
    .filter((entry) => isLog(entry.name) || (entry.isDirectory() && readdirSync(join(folder, entry.name)).some(isLog)))
    .map((entry) => join(folder, entry.name));
}

/** Calls `use` with a folder that is removed afterwards. */
export async function withFolder(use) {
  const path = mkdtempSync(join(tmpdir(), "marvane-web-"));
  try {
    return await use(path);
  } finally {
    rmSync(path, { recursive: true });
  }
}

/** The golden logs of the logger library, written into a folder: their stamps get a time, a millisecond more at each
 * entry line. */
export function goldenLogs(path) {
  const names = readdirSync(join(source, "tests", "golden")).filter((name) => name.endsWith(".log"));
  return names.map((name) => {
    let entries = 0;
    const stamp = (_, thread, plus) => {
      entries += plus ? 1 : 0;
      return `{10:00:00.${String(entries).padStart(3, "0")} - 0000000${thread}} ${plus ?? ""}`;
    };
    const text = readFileSync(join(source, "tests", "golden", name), "utf8");
    mkdirSync(join(path, name));
    const file = join(path, name, "D-PDU_API_Logger_21-11-2026_10-00-00.LGR");
    writeFileSync(file, text.replace(/^\{time - T(\d)\} (\+)?/gm, stamp));
    return file;
  });
}
