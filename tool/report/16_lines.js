// The lines of the log. They are unpacked after the page is shown; what needs them waits for `lines.ready`.
"use strict";

const SameStamp = 1; // character before a line that has the timestamp of the line before
const NoStamp = 2;
const StampLength = 26; // "{12:34:56.789 - 00001234} "

const lines = {
  blocks: [], // {text, lower, first: index of its first line}
  starts: null, // by line: offset in its block
  stamps: null, // by line: the line that has its timestamp, -1 none
  owner: null, // by line: the record that it belongs to, -1 none
  others: { line: [], count: [] }, // runs of lines without a record: headers, damaged lines
  ready: null,
  isReady: false,
};

/** Unpacks the lines, a block at a time, so that the page stays usable. */
async function readLines(model) {
  lines.starts = new Uint32Array(model.lineCount);
  lines.stamps = new Int32Array(model.lineCount).fill(-1);
  const reader = streamOf("lines").getReader();
  const decoder = new TextDecoder();
  let parts = [];
  let size = 0;
  const state = { line: 0, stamp: -1 };
  for (;;) {
    const { value, done } = await reader.read();
    const part = decoder.decode(value, { stream: !done });
    parts.push(part);
    size += part.length;
    if (size < 4e6 && !done) continue;
    const text = parts.join("");
    const cut = done ? text.length : text.lastIndexOf("\n") + 1;
    addBlock(text.slice(0, cut), state);
    parts = [text.slice(cut)];
    size = text.length - cut;
    if (done) break;
  }
  findOwners(model);
  lines.isReady = true;
}

function addBlock(text, state) {
  if (text === "") return;
  const lower = text.toLowerCase();
  lines.blocks.push({
    text,
    lower: lower.length === text.length ? lower : text.replace(/[A-Z]/g, (letter) => letter.toLowerCase()),
    first: state.line,
  });
  const { starts, stamps } = lines;
  let { line, stamp } = state;
  for (let at = 0; at < text.length && line < starts.length; ++line) {
    starts[line] = at;
    const kind = text.charCodeAt(at);
    if (kind > NoStamp) stamp = line;
    if (kind !== NoStamp) stamps[line] = stamp;
    const end = text.indexOf("\n", at);
    at = end < 0 ? text.length : end + 1;
  }
  Object.assign(state, { line, stamp });
}

/** The last of `blocks` that begins at or before the line. */
function blockOf(line) {
  let low = 0;
  let high = lines.blocks.length - 1;
  while (low < high) {
    const middle = (low + high + 1) >> 1;
    if (lines.blocks[middle].first <= line) low = middle;
    else high = middle - 1;
  }
  return lines.blocks[low];
}

/** A line: its timestamp with braces and blank ("" if it has none), and the text after it. */
function lineAt(line) {
  const block = blockOf(line);
  const begin = lines.starts[line];
  const end = block.text.indexOf("\n", begin);
  const text = block.text.slice(begin, end < 0 ? undefined : end);
  const kind = text.charCodeAt(0);
  if (kind === NoStamp) return { stamp: "", text: text.slice(1) };
  if (kind !== SameStamp) return { stamp: text.slice(0, StampLength), text: text.slice(StampLength) };
  const from = lines.stamps[line];
  const source = blockOf(from);
  return { stamp: source.text.slice(lines.starts[from], lines.starts[from] + StampLength), text: text.slice(1) };
}

/** The thread of a line that begins with its timestamp. */
function threadOfStamp(text, at) {
  let id = 0;
  for (let i = at + 16; i < at + 24; ++i) {
    const code = text.charCodeAt(i);
    id = id * 16 + (code < 58 ? code - 48 : (code | 32) - 87);
  }
  return id;
}

/** Gives each line to the innermost record of its thread that is open there. */
function findOwners(model) {
  const { records, threads } = model;
  const owner = new Int32Array(model.lineCount).fill(-1);
  const stacks = new Map();
  const stackOf = (id) => stacks.get(id) ?? stacks.set(id, []).get(id);
  let next = 0;
  let stack = [];
  for (const block of lines.blocks) {
    const end = block === lines.blocks.at(-1) ? model.lineCount : lines.blocks[lines.blocks.indexOf(block) + 1].first;
    for (let line = block.first; line < end; ++line) {
      if (lines.stamps[line] === line) stack = stackOf(threadOfStamp(block.text, lines.starts[line]));
      for (; next < records.length && records.line[next] <= line; ++next) {
        stack = stackOf(threads[records.thread[next]]?.id ?? 0);
        stack.push(next);
      }
      if (stack.length > 0) owner[line] = stack.at(-1);
      while (stack.length > 0 && records.line[stack.at(-1)] + records.lines[stack.at(-1)] <= line) stack.pop();
    }
  }
  lines.owner = owner;
  for (let line = 0; line < owner.length; ++line) {
    if (owner[line] >= 0) continue;
    const first = line;
    while (line + 1 < owner.length && owner[line + 1] < 0) ++line;
    lines.others.line.push(first);
    lines.others.count.push(line - first + 1);
  }
}

/** The file of a line, and its number in it. */
function placeOf(model, line) {
  const file = model.files.findLast((each) => each.begin <= line) ?? model.files[0];
  return { file, number: line - file.begin + file.first };
}

/** "918", or "2:918" where there are several files. */
function lineText(model, line) {
  if (line < 0) return "";
  const { file, number } = placeOf(model, line);
  return model.files.length > 1 ? `${model.files.indexOf(file) + 1}:${number}` : String(number);
}
