// JSON Lines against their schema, which is judged by ajv.
import assert from "node:assert/strict";
import { readFileSync } from "node:fs";
import { join } from "node:path";
import { test } from "node:test";
import Ajv from "ajv/dist/2020.js";
import addFormats from "ajv-formats";
import { demo, logs, marvane, objects, source } from "./marvane.mjs";

const schema = JSON.parse(readFileSync(join(source, "docs", "marvane-log.schema.json"), "utf8"));
const ajv = new Ajv({ strict: true, allowUnionTypes: true });
addFormats(ajv);
const fits = ajv.compile(schema);

/** The first line that does not fit, with the reasons; nothing if all fit. */
function misfit(lines) {
  const found = lines.find((line) => !fits(line));
  return found && JSON.stringify({ found, errors: (fits(found), fits.errors) }, null, 1);
}

for (const log of logs())
  for (const options of [[], ["--redact"], ["--lines", "--tag", "bench=7", "--tag", "site=north west", "--zone", "-03:30"]])
    test(`${log} ${options.join(" ")}`, () => {
      const lines = objects(marvane("export", "--format", "jsonl", ...options, log));
      assert.equal(lines[0].kind, "log");
      assert.ok(lines.length > 1);
      assert.equal(misfit(lines), undefined);
    });

for (const log of logs().filter((path) => path.endsWith(".LGR")))
  test(`${log}: each call, callback and item of the log is a record`, () => {
    const text = readFileSync(log, "latin1");
    const lines = objects(marvane("export", "--format", "jsonl", log));
    const count = (...kinds) => lines.filter(({ kind }) => kinds.includes(kind)).length;
    const calls = /^\{[0-9:.]+ - [0-9A-F]{8}\} (\+ |.* - Called but library not)/gm;
    assert.equal(count("call", "event"), [...text.matchAll(calls)].length);
    assert.equal(count("item"), text.split("*ppEventItem (").length - 1);
  });

test("each kind of record is in the exported logs", () => {
  const kinds = new Set();
  for (const log of logs())
    for (const line of objects(marvane("export", "--format", "jsonl", log))) kinds.add(line.kind);
  assert.deepEqual([...kinds].sort(), [...schema.properties.kind.enum].sort());
});

test("a line of another shape does not fit", () => {
  const [call] = objects(marvane("export", "--format", "jsonl", demo)).filter((line) => line.kind === "call");
  assert.ok(fits(call));
  for (const wrong of [{ hcll: null }, { seq: "1" }, { unheard: 1 }, { ts: "2026-11-22 00:27" }, { kind: "cal" }])
    assert.equal(fits({ ...call, ...wrong }), false, JSON.stringify(wrong));
});
