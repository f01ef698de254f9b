// The data blocks of the page: base64, gzip.
"use strict";

function bytesOfBase64(text) {
  if (Uint8Array.fromBase64) return Uint8Array.fromBase64(text);
  const binary = atob(text);
  const bytes = new Uint8Array(binary.length);
  for (let i = 0; i < bytes.length; ++i) bytes[i] = binary.charCodeAt(i);
  return bytes;
}

/** The unpacked bytes of a block as a stream; null if the page has no such block. The block is removed. */
function streamOf(id) {
  const block = byId(id);
  if (!block) return null;
  const bytes = bytesOfBase64(block.textContent);
  block.remove();
  return new Blob([bytes]).stream().pipeThrough(new DecompressionStream("gzip"));
}

/** The columns of the model, as typed arrays; those named in `growing` are stored as differences. */
function columnsOf(columns, growing = []) {
  const result = { length: 0 };
  for (const [name, values] of Object.entries(columns)) {
    const isWide =
      name === "time" || name === "latency" || name === "after" || name === "line" || name === "dur" || name === "end";
    const column = isWide ? Float64Array.from(values) : Int32Array.from(values);
    if (growing.includes(name)) for (let i = 1; i < column.length; ++i) column[i] += column[i - 1];
    result[name] = column;
    result.length = column.length;
  }
  return result;
}

async function readModel() {
  const model = JSON.parse(await new Response(streamOf("model")).text());
  if (model.format !== "marvane-report/1") throw new Error(`unknown format ${model.format}`);
  model.records = columnsOf(model.records, ["line", "time", "seq"]);
  model.exchanges = columnsOf(model.exchanges, ["seq"]);
  model.responses = columnsOf(model.responses, ["of"]);
  model.answers = columnsOf(model.answers, ["of"]);
  model.remarks = columnsOf(model.remarks);
  indexModel(model);
  return model;
}

/** Links and threads of several sessions that carry the same name are shown as one. Adds "group" to each. */
function groupSources(model) {
  const group = (sources, labelOf) => {
    const labels = new Map();
    for (const source of sources) {
      const label = labelOf(source);
      if (!labels.has(label)) labels.set(label, labels.size);
      source.group = labels.get(label);
    }
    return [...labels.keys()];
  };
  model.linkLabels = group(model.links, linkLabel);
  model.threadLabels = group(model.threads, (thread) => `thread ${threadText(thread.id)}`);
}

/** "link 1 ISO_15765_3_on_ISO_15765_2"; what concerns a module as a whole has no link. */
function linkLabel(link) {
  const name = link.protocol || link.resource || "";
  if (link.hcll === undefined && link.hmod !== undefined) return `module ${link.hmod}`;
  return `link ${link.hcll ?? "?"}${name ? ` ${name}` : ""}`;
}

/** For sorted `of`: where the elements of each owner begin; owner i has first[i] to first[i + 1]. */
function firstOfEach(of, count) {
  const first = new Int32Array(count + 1);
  for (const owner of of) ++first[owner + 1];
  for (let i = 0; i < count; ++i) first[i + 1] += first[i];
  return first;
}

/** Adds what is found by number. */
function indexModel(model) {
  const { records, exchanges } = model;
  const recordOfCall = new Int32Array(records.length > 0 ? records.seq.at(-1) + 1 : 0).fill(-1);
  for (let i = 0; i < records.length; ++i) if (records.kind[i] === 0) recordOfCall[records.seq[i]] = i;
  model.recordOfCall = recordOfCall;
  exchanges.record = exchanges.seq.map((seq) => recordOfCall[seq] ?? -1);
  model.exchangeOf = new Int32Array(records.length).fill(-1);
  exchanges.record.forEach((record, i) => record >= 0 && (model.exchangeOf[record] = i));
  model.firstResponse = firstOfEach(model.responses.of, exchanges.length);
  model.firstAnswer = firstOfEach(model.answers.of, exchanges.length);
  let lines = 0;
  for (const file of model.files) {
    file.begin = lines;
    lines += file.lines;
  }
  model.lineCount = lines;
  groupSources(model);
  model.end = endOf(model);
  const spread = spreadTimes(records);
  model.spread = spread;
  model.begins = records.time.map((ms, i) => spread(ms, records.line[i]));
  model.ends = records.time.map((ms, i) => endOfRecord(records, i, spread));
}

/** What never returned lasts until the end of the log. */
function endOfRecord(records, i, spread) {
  if (records.kind[i] > 1) return spread(records.time[i], records.line[i]);
  if (records.dur[i] < 0) return Infinity;
  return spread(records.time[i] + records.dur[i], records.line[i] + records.lines[i]);
}

/** The times of a millisecond's lines, spread over it in the order of the log: its clock is no finer. */
function spreadTimes(records) {
  const places = new Map();
  const firsts = [];
  const counts = [];
  const see = (ms, line) => {
    const place = places.get(ms);
    if (place === undefined) {
      places.set(ms, firsts.length);
      firsts.push(line);
      counts.push(1);
      return;
    }
    const first = Math.min(firsts[place], line);
    counts[place] = Math.max(firsts[place] + counts[place], line + 1) - first;
    firsts[place] = first;
  };
  for (let i = 0; i < records.length; ++i) {
    see(records.time[i], records.line[i]);
    if (records.dur[i] >= 0) see(records.time[i] + records.dur[i], records.line[i] + records.lines[i]);
  }
  return (ms, line) => {
    const place = places.get(ms);
    if (place === undefined) return ms;
    const share = (line - firsts[place]) / counts[place];
    return share >= 0 && share < 1 ? ms + share : ms;
  };
}

/** The last time that is known, in ms since the beginning. */
function endOf(model) {
  const { records, exchanges } = model;
  let end = 1;
  for (let i = 0; i < records.length; ++i) end = Math.max(end, records.time[i] + Math.max(0, records.dur[i]));
  for (let i = 0; i < exchanges.length; ++i)
    if (exchanges.record[i] >= 0) end = Math.max(end, records.time[exchanges.record[i]] + Math.max(0, exchanges.end[i]));
  return end + 1;
}
