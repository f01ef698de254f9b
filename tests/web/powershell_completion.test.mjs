// The PowerShell completion script against a grammar of the language: Debian has no PowerShell to run it.
import assert from "node:assert/strict";
import { readFileSync } from "node:fs";
import { createRequire } from "node:module";
import { test } from "node:test";
import { setFlagsFromString } from "node:v8";
import { Language, Parser } from "web-tree-sitter";
import { marvane } from "./marvane.mjs";

const grammar = createRequire(import.meta.url).resolve("tree-sitter-powershell/tree-sitter-powershell.wasm");
// Else the end waits for the optimised code of a grammar that is used for some milliseconds.
setFlagsFromString("--liftoff-only");
await Parser.init();
const parser = new Parser();
parser.setLanguage(await Language.load(readFileSync(grammar)));

const script = marvane("completion", "powershell");
const tree = (text) => parser.parse(text).rootNode;

/** The texts of the first fault, with its place; nothing if there is none. */
function fault(node) {
  if (node.isError || node.isMissing) return `${JSON.stringify(node.startPosition)} ${node.text.slice(0, 60)}`;
  return node.children.map(fault).find((found) => found);
}

/** The keys of a hash literal, which must differ even without regard to case. */
const keys = (hash) => hash.descendantsOfType("key_expression").map((key) => key.text.toLowerCase());

test("the script is PowerShell", () => assert.equal(fault(tree(script)), undefined));

test("a script with a fault is found to have one", () => {
  for (const [good, bad] of [["@(", "@"], ["param(", "param"], ["'talk'", "'talk"], ["{ $commands }", "{ $commands"]])
    assert.ok(fault(tree(script.replace(good, bad))), bad);
});

test("every command has its options once", () => {
  const [options, values] = tree(script).descendantsOfType("hash_literal_expression").map(keys);
  const commands = /\$commands = @\((.*)\)/.exec(script)[1].match(/[\w-]+/g);
  assert.deepEqual(options, commands.filter((word) => !word.startsWith("-")).map((word) => `'${word}'`));
  assert.equal(new Set(values).size, values.length);
});
