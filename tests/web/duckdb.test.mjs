// docs/fleet.md: its statements for DuckDB, run with exported logs.
import assert from "node:assert/strict";
import { readFileSync } from "node:fs";
import { join } from "node:path";
import { test } from "node:test";
import { DuckDBInstance } from "@duckdb/node-api";
import { demo, logs, marvane, objects, source, withFolder } from "./marvane.mjs";

const hosts = ["bench-1", "bench-2"];

/** The statements of the document, in their order. */
function statements() {
  const text = readFileSync(join(source, "docs", "fleet.md"), "utf8");
  return [...text.matchAll(/```sql\n(.*?)```/gs)].map((match) => match[1]);
}

/** Rows as plain objects, numbers as numbers. */
async function rows(connection, statement) {
  const reader = await connection.runAndReadAll(statement);
  const plain = (value) => (typeof value === "bigint" ? Number(value) : value);
  return reader
    .getRowObjectsJS()
    .map((row) => Object.fromEntries(Object.entries(row).map(([key, value]) => [key, plain(value)])));
}

/** Runs the statements with a folder of exports, and gives out the rows of each query by its first column. */
async function run(folder) {
  const instance = await DuckDBInstance.create(":memory:");
  const connection = await instance.connect();
  const results = {};
  for (const statement of statements()) {
    const here = statement.replace("'fleet/", `'${folder}/fleet/`).replace("'parquet", `'${folder}/parquet`);
    const found = await rows(connection, here);
    const column = statement.match(/^SELECT (\w+)/);
    if (column) results[column[1]] = found;
  }
  const count = (view) => rows(connection, `SELECT kind, count(*) AS n FROM ${view} GROUP BY kind ORDER BY kind`);
  results.loaded = await count("record");
  results.stored = await count("stored");
  connection.closeSync();
  return results;
}

/** How many records of each kind there are, as a query shows it. */
function counts(lines) {
  const kinds = {};
  for (const { kind } of lines) kinds[kind] = (kinds[kind] ?? 0) + 1;
  return Object.entries(kinds)
    .sort()
    .map(([kind, n]) => ({ kind, n }));
}

test("every exported line is loaded, and what is kept is in the Parquet files", () =>
  withFolder(async (folder) => {
    const all = [];
    for (const [i, log] of logs().entries()) {
      // A day's file is replaced whole, so each log is of a machine of its own.
      marvane("export", "--format", "jsonl", "--host", `host${i}`, "--out", join(folder, "fleet"), log);
      all.push(...objects(marvane("export", "--format", "jsonl", log)));
    }
    const results = await run(folder);
    const isNoHead = ({ kind }) => kind !== "log"; // there is one in each file, and a log may have several days
    assert.deepEqual(results.loaded.filter(isNoHead), counts(all.filter(isNoHead)));
    assert.deepEqual(results.stored, counts(all.filter(({ kind }) => ["session", "exchange", "problem"].includes(kind))));
    const died = all.filter(({ what }) => what === "in_flight");
    assert.ok(died.length > 0);
    assert.equal(results.host.length, died.length);
  }));

test("the queries find what was slow, refused and in use on two machines", () =>
  withFolder(async (folder) => {
    for (const host of hosts)
      marvane("export", "--format", "jsonl", "--zone", "Z", "--host", host, "--out", join(folder, "fleet"), demo);
    const results = await run(folder);
    assert.deepEqual(results.nrc_name, [
      { nrc_name: "invalidKey", summary: "security key", times: 2, hosts: 2 },
      { nrc_name: "requestOutOfRange", summary: "read identifier", times: 2, hosts: 2 },
    ]);
    assert.deepEqual(results.target_version, [
      { target_version: "R01.004.0002.0007", hosts: 2, last_day: "2026-11-22" },
    ]);
    const [slowest] = results.summary;
    assert.equal(slowest.summary, "start routine");
    assert.equal(slowest.requests, 2);
    assert.equal(slowest.p50_ms, 22.189);
    assert.ok(hosts.includes(slowest.slowest_host));
    assert.deepEqual(results.host, []);
  }));
