// The rows of both views, in the order of the log.
"use strict";

const RowExchange = 0;
const RowRemark = 1;
const RowFold = 2; // several exchanges of a kind as one row
const RowSession = 3;
const RowRecord = 4;
const RowOther = 5;
const RowLetters = "emfsro";

const FoldFrom = 4; // so many transfers or tester presents in a row are folded

/** The rows that are shown. `found` is what the search found, null without a search. */
const rows = { kind: [], ref: [], inFold: null, folds: new Map(), found: null, total: 0, isComplete: true };

const keyOf = (row) => RowLetters[rows.kind[row]] + rows.ref[row];

/** The number of a row, -1 if it is not shown. */
function rowOf(key) {
  const kind = RowLetters.indexOf(key[0]);
  const ref = Number(key.slice(1));
  for (let i = 0; i < rows.kind.length; ++i) if (rows.kind[i] === kind && rows.ref[i] === ref) return i;
  return -1;
}

/** Makes the rows anew from the state. */
function makeRows() {
  rows.found = lines.isReady ? search(state.query) : null;
  rows.isComplete = lines.isReady || state.query === "";
  rows.folds = new Map();
  const made = state.view === "talk" ? talkRows() : callRows();
  rows.kind = made.kind;
  rows.ref = made.ref;
  rows.total = made.total;
}

/** Adds a row to rows that are being made. */
function putRow(made, kind, ref) {
  made.kind.push(kind);
  made.ref.push(ref);
}

function talkRows() {
  const made = { kind: [], ref: [], total: 0 };
  const wants = exchangeFilter();
  const wantsRemark = remarkFilter();
  const { exchanges, remarks } = model;
  const { found } = rows;
  const following = remarksAfter();
  const sessions = sessionHeadings();
  const putRemark = (i) => {
    ++made.total;
    if (wantsRemark(i) && (!found || found.strings[remarks.text[i]])) putRow(made, RowRemark, i);
  };
  let remark = 0;
  for (let i = 0; i < exchanges.length; ++i) {
    const line = lineOfExchange(i);
    for (; remark < following.free.length && remarks.line[following.free[remark]] < line; ++remark)
      putRemark(following.free[remark]);
    const isQuiet = (exchanges.flags[i] & ExchangeQuiet) !== 0;
    if (!isQuiet) {
      ++made.total;
      if (wants(i) && (!found || isExchangeFound(found, i))) {
        const session = sessions(exchanges.record[i]);
        if (session >= 0) putRow(made, RowSession, session);
        putRow(made, RowExchange, i);
      }
    }
    following.bound.get(i)?.forEach(putRemark);
  }
  for (; remark < following.free.length; ++remark) putRemark(following.free[remark]);
  return fold(made);
}

function lineOfExchange(i) {
  const record = model.exchanges.record[i];
  return record >= 0 ? model.records.line[record] : 0;
}

/** Remarks that follow their exchange, and those that have a line of their own. */
function remarksAfter() {
  const bound = new Map();
  const free = [];
  const { remarks } = model;
  for (let i = 0; i < remarks.length; ++i) {
    if (remarks.kind[i] !== 1 || remarks.exchange[i] < 0) free.push(i);
    else if (bound.has(remarks.exchange[i])) bound.get(remarks.exchange[i]).push(i);
    else bound.set(remarks.exchange[i], [i]);
  }
  return { bound, free };
}

/** A function that returns the session that begins with a record, for a heading; -1 if none does. */
function sessionHeadings() {
  const { records, threads, summary } = model;
  let last = -1;
  return (record) => {
    if (summary.sessions.length < 2 || record < 0) return -1;
    const session = threads[records.thread[record]]?.session ?? -1;
    if (session === last) return -1;
    last = session;
    return session;
  };
}

/** 1: a transfer, 2: a tester present, of good outcome; 0: no part of a fold. */
function foldKind(i) {
  const { exchanges } = model;
  const outcome = exchanges.outcome[i];
  if (outcome !== 0 && outcome !== 4) return 0;
  return exchanges.sid[i] === 0x36 ? 1 : exchanges.sid[i] === 0x3e ? 2 : 0;
}

/** Whether an exchange goes into the fold of another one: what the row of the fold says is true of both. */
function isFoldedWith(first, i) {
  const { exchanges } = model;
  const kind = foldKind(first);
  const isSame =
    foldKind(i) === kind && exchanges.link[i] === exchanges.link[first] && exchanges.outcome[i] === exchanges.outcome[first];
  return isSame && (kind === 1 || exchanges.text[i] === exchanges.text[first]);
}

/** Long runs of transfers and tester presents on one link become one row; an unfolded one is followed by its rows. */
function fold(made) {
  const result = { kind: [], ref: [], total: made.total };
  for (let i = 0; i < made.kind.length;) {
    const kind = made.kind[i] === RowExchange ? foldKind(made.ref[i]) : 0;
    let end = i + 1;
    if (kind > 0)
      while (end < made.kind.length && made.kind[end] === RowExchange && isFoldedWith(made.ref[i], made.ref[end])) ++end;
    const isFold = end - i >= FoldFrom;
    if (isFold) {
      const members = made.ref.slice(i, end);
      rows.folds.set(made.ref[i], members);
      putRow(result, RowFold, made.ref[i]);
      if (!state.open.has(`f${made.ref[i]}`)) i = end;
    }
    for (; i < end; ++i) putRow(result, made.kind[i], made.ref[i]);
  }
  return result;
}

function callRows() {
  const made = { kind: [], ref: [], total: 0 };
  const { records } = model;
  const { found } = rows;
  const wants = recordFilter();
  const wantsOthers = state.link < 0 && state.thread < 0 && state.service === "" && state.outcome === "";
  const sessions = sessionHeadings();
  const { line: others } = lines.others;
  let other = 0;
  const putOthers = (line) => {
    for (; other < others.length && others[other] < line; ++other)
      if (wantsOthers && (!found || found.others[other])) putRow(made, RowOther, other);
  };
  for (let i = 0; i < records.length; ++i) {
    putOthers(records.line[i]);
    if (!wants(i) || (found && !isRecordFound(found, i))) continue;
    const session = sessions(i);
    if (session >= 0) putRow(made, RowSession, session);
    putRow(made, RowRecord, i);
  }
  putOthers(Infinity);
  made.total = records.length + others.length;
  return made;
}

/** Where a row is in time, ms since the beginning; NaN for a heading. */
function timeOfRow(row) {
  const ref = rows.ref[row];
  const { records, exchanges, remarks, spread } = model;
  switch (rows.kind[row]) {
    case RowExchange:
    case RowFold:
      return timeOfRecord(exchanges.record[ref]);
    case RowRecord:
      return timeOfRecord(ref);
    case RowRemark:
      return spread(remarks.time[ref], remarks.line[ref]);
    case RowOther:
      return records.length > 0 ? timeOfRecord(recordBefore(lines.others.line[ref])) : 0;
    default:
      return NaN;
  }
}

function timeOfRecord(record) {
  return record < 0 ? 0 : model.begins[record];
}

/** The last record that begins at or before a line; the first one if there is none. */
function recordBefore(line) {
  const column = model.records.line;
  let low = 0;
  let high = column.length - 1;
  while (low < high) {
    const middle = (low + high + 1) >> 1;
    if (column[middle] <= line) low = middle;
    else high = middle - 1;
  }
  return low;
}
