// --format sql and csv, read by the program sqlite3.
import assert from "node:assert/strict";
import { execFileSync, spawnSync } from "node:child_process";
import { writeFileSync } from "node:fs";
import { join } from "node:path";
import { test } from "node:test";
import { demo, logs, marvane, objects, withFolder } from "./marvane.mjs";

const skip = spawnSync("sqlite3", ["--version"]).error ? "sqlite3 is not installed (Debian package sqlite3)" : false;

/** What sqlite3 answers to statements, as rows; `first` goes to its input before them. */
function ask(first, statement) {
  const options = { encoding: "utf8", input: `.bail on\n${first}\n.mode json\n${statement}\n`, maxBuffer: 1 << 30 };
  return JSON.parse(execFileSync("sqlite3", [":memory:"], options) || "[]");
}

for (const log of logs())
  test(`${log}: the database has the records of the JSON Lines`, { skip }, () => {
    const counts = {};
    for (const { kind } of objects(marvane("export", "--format", "jsonl", log))) counts[kind] = (counts[kind] ?? 0) + 1;
    const tables = ["log", "session", "call", "event", "item", "comms", "exchange", "param", "mark", "problem"];
    const count = (kind) => `SELECT '${kind}' AS kind, count(*) AS n FROM ${kind === "comms" ? kind : kind + "s"}`;
    const rows = ask(marvane("export", "--format", "sql", "--lines", log), tables.map(count).join(" UNION ALL ") + ";");
    assert.deepEqual(
      rows,
      tables.map((kind) => ({ kind, n: counts[kind] ?? 0 })),
    );
  });

test("the views show what was slow and what was refused", { skip }, () => {
  const statements = marvane("export", "--format", "sql", "--zone", "Z", demo);
  const refused = ask(statements, "SELECT summary, request, nrc_name, ms, line FROM refused;");
  assert.deepEqual(refused, [
    { summary: "read identifier", request: "22ffff", nrc_name: "requestOutOfRange", ms: 2.088, line: 918 },
    { summary: "security key", request: "270200000000", nrc_name: "invalidKey", ms: 2.144, line: 1225 },
  ]);
  const slowest = ask(statements, "SELECT ms, summary, outcome FROM slowest LIMIT 2;");
  assert.deepEqual(slowest, [
    { ms: 22.189, summary: "start routine", outcome: "answered" },
    { ms: 2.211, summary: "read identifier", outcome: "answered" },
  ]);
});

for (const table of ["calls", "exchanges", "params", "items", "comms", "problems"])
  test(`csv: the table ${table} has the rows of the database`, { skip }, () =>
    withFolder((folder) => {
      for (const [i, log] of logs().entries()) {
        const file = join(folder, `${i}.csv`);
        writeFileSync(file, marvane("export", "--format", "csv", "--table", table, log));
        const statement = `SELECT (SELECT count(*) FROM ${table}) AS a, (SELECT count(*) FROM read) AS b;`;
        // An import into a table that is there keeps the head as a row.
        const [{ a, b }] = ask(`${marvane("export", "--format", "sql", log)}\n.import --csv ${file} read`, statement);
        assert.equal(b, a, log);
      }
    }));
