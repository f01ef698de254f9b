// `marvane lnav`: the real lnav reads logs by the format.
import assert from "node:assert/strict";
import { spawnSync } from "node:child_process";
import { mkdirSync, readdirSync, readFileSync, writeFileSync } from "node:fs";
import { join } from "node:path";
import { test } from "node:test";
import { demo, goldenLogs, logs, marvane, withFolder } from "./marvane.mjs";

const skip = spawnSync("lnav", ["-V"]).error ? "lnav is not installed (Debian package lnav)" : false;

/** Calls `use` with a function that runs lnav with the format as its only own one. */
const withFormat = (use) =>
  withFolder((home) => {
    mkdirSync(join(home, "formats", "marvane"), { recursive: true });
    writeFileSync(join(home, "formats", "marvane", "marvane.json"), marvane("lnav"));
    const env = { ...process.env, HOME: home, XDG_CONFIG_HOME: home, TERM: "dumb" };
    const lnav = (...words) => spawnSync("lnav", ["-I", home, ...words], { encoding: "utf8", env, maxBuffer: 1 << 30 });
    return use(lnav, home);
  });

/** What lnav answers to a statement, as objects. */
function ask(lnav, log, statement) {
  const { stdout, stderr } = lnav("-n", "-c", `;${statement}`, "-c", ":write-json-to -", log);
  assert.equal(stderr.replace(/^Running as.*\n?|^warning: .*\n?/gm, ""), "", log);
  return JSON.parse(stdout || "[]");
}

const fileOf = (log) => (log.endsWith(".LGR") ? log : join(log, readdirSync(log)[0]));

test("lnav finds nothing wrong with the format and its samples", { skip }, () =>
  withFormat((lnav) => {
    const { status, stdout, stderr } = lnav("-W", "-C");
    assert.deepEqual({ status, text: (stdout + stderr).match(/(error|warning): .*/g) }, { status: 0, text: null });
  }));

test("every line with a stamp is a message", { skip }, () =>
  withFormat((lnav, home) => {
    for (const log of [...logs().map(fileOf), ...goldenLogs(home)]) {
      const lines = readFileSync(log, "latin1").match(/^\{\d\d:\d\d:\d\d\.\d{3} - [0-9A-F]{8}\} /gm) ?? [];
      const [{ n }] = ask(lnav, log, "SELECT count(*) AS n FROM marvane_log");
      assert.equal(n, lines.length, log);
    }
  }));

test("failed calls and errors are errors", { skip }, () =>
  withFormat((lnav) => {
    const statement = "SELECT thread, call, status, code FROM marvane_log WHERE log_level = 'error'";
    assert.deepEqual(ask(lnav, fileOf(demo), statement), [
      { thread: "00004251", call: "PDULockResource", status: "PDU_ERR_RSC_LOCKED_BY_OTHER_CLL", code: "0x00A1" },
      { thread: "00004251", call: null, status: null, code: null },
      { thread: "00004251", call: "PDUGetObjectId", status: "PDU_ERR_ID_NOT_SUPPORTED", code: "0x0062" },
    ]);
  }));

test("calls can be counted", { skip }, () =>
  withFormat((lnav) => {
    const statement = "SELECT call, count(*) AS n FROM marvane_log WHERE status IS NOT NULL GROUP BY call ORDER BY n DESC LIMIT 1";
    assert.deepEqual(ask(lnav, fileOf(demo), statement), [{ call: "PDUGetEventItem", n: 117 }]);
  }));
