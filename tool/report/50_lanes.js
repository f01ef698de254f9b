// What the timeline shows: a lane for each thread with its calls and callbacks, one for each link with its exchanges.
"use strict";

const BarHeight = 11;
const LanePadding = 8;
const LabelHeight = 13;
const MostDepth = 4; // deeper calls share a row
const MostStack = 3; // exchanges at the same time likewise

let lanes = [];

function makeLanes() {
  lanes = [...threadLanes(), ...linkLanes()];
  return placeLanes();
}

/** Returns the height of all. Where there is no room for names at the left, they stand above the bars. */
function placeLanes() {
  let top = 0;
  for (const lane of lanes) {
    lane.top = top;
    lane.bar = top + LanePadding / 2 + (isNarrow.matches ? LabelHeight : 0);
    lane.height = lane.depth * BarHeight + LanePadding + (isNarrow.matches ? LabelHeight : 0);
    top += lane.height;
  }
  return top;
}

function threadLanes() {
  const { records, threads } = model;
  const made = new Map();
  for (let i = 0; i < records.length; ++i) {
    if (records.kind[i] === 3) continue;
    const group = threads[records.thread[i]]?.group ?? -1;
    if (!made.has(group))
      made.set(group, { kind: "thread", label: model.threadLabels[group] ?? "thread ?", bars: [], rowOf: [], depth: 1 });
    const lane = made.get(group);
    const depth = Math.min(MostDepth - 1, records.depth[i]);
    lane.bars.push(i);
    lane.rowOf.push(depth);
    lane.depth = Math.max(lane.depth, depth + 1);
  }
  return [...made.values()].map((lane) => finished(lane, model.begins, model.ends));
}

function linkLanes() {
  const { exchanges, links } = model;
  const made = new Map();
  const begins = new Float64Array(exchanges.length);
  const ends = new Float64Array(exchanges.length);
  for (let i = 0; i < exchanges.length; ++i) {
    begins[i] = timeOfRecord(exchanges.record[i]);
    ends[i] = Math.max(begins[i], endOfExchange(i));
    if (exchanges.flags[i] & ExchangeQuiet) continue;
    const group = links[exchanges.link[i]]?.group ?? -1;
    if (!made.has(group))
      made.set(group, {
        kind: "link",
        group,
        label: model.linkLabels[group] ?? "link ?",
        bars: [],
        rowOf: [],
        depth: 1,
        free: [],
      });
    const lane = made.get(group);
    let row = lane.free.findIndex((end) => end <= begins[i]);
    if (row < 0) row = Math.min(MostStack - 1, lane.free.length);
    lane.free[row] = ends[i];
    lane.bars.push(i);
    lane.rowOf.push(row);
    lane.depth = Math.max(lane.depth, row + 1);
  }
  return [...made.values()].sort((a, b) => a.group - b.group).map((lane) => finished(lane, begins, ends));
}

/** Until its last status; else until its last answer; else as far as the log goes. */
function endOfExchange(i) {
  const { exchanges, records, answers, firstAnswer } = model;
  const record = exchanges.record[i];
  if (record < 0) return 0;
  const last = firstAnswer[i + 1] - 1;
  const answered = last >= firstAnswer[i] ? model.spread(answers.time[last], answers.line[last]) : -1;
  if (exchanges.end[i] >= 0) return Math.max(answered, records.time[record] + exchanges.end[i]);
  if (answered >= 0) return answered;
  const isOpen = ["open", "never_returned"].includes(OutcomeKeys[exchanges.outcome[i]]);
  return isOpen ? model.end : model.ends[record];
}

function finished(lane, begins, ends) {
  lane.begins = begins;
  lane.ends = ends;
  lane.longest = lane.bars.reduce((most, i) => Math.max(most, Math.min(ends[i], model.end) - begins[i]), 0);
  return lane;
}

/** The first bar of a lane that may reach into the time from `ms` on. */
function firstBar(lane, ms) {
  const from = ms - lane.longest;
  let low = 0;
  let high = lane.bars.length;
  while (low < high) {
    const middle = (low + high) >> 1;
    if (lane.begins[lane.bars[middle]] < from) low = middle + 1;
    else high = middle;
  }
  return low;
}
