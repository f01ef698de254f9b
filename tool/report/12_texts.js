// Numbers, times and bytes as text.
"use strict";

const Outcomes = ["answered", "refused", "silent", "cancelled", "no answer wanted", "open", "not started", "never returned"];
const Marks = ["", "X", "!", ".", "?"];
const MarkWords = ["", "went wrong: ", "remarkable: ", "", "not in the log: "];

const Months = ["Jan", "Feb", "Mar", "Apr", "May", "Jun", "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"];

/** 1,234,567 */
function grouped(number) {
  return String(Math.round(number)).replace(/\B(?=(\d{3})+$)/g, ",");
}

/** "1 call", "3 calls" */
function counted(number, word) {
  return `${grouped(number)} ${word}${number === 1 ? "" : word.endsWith("s") ? "es" : "s"}`;
}

/** "22 Nov 2026" of a time in ms since 1970, the local time of the log taken as UTC. */
function dateText(ms) {
  const date = new Date(ms);
  return `${date.getUTCDate()} ${Months[date.getUTCMonth()]} ${date.getUTCFullYear()}`;
}

/** "10:00:00.123" */
function clockText(ms) {
  return Number.isFinite(ms) ? new Date(Math.floor(ms)).toISOString().slice(11, 23) : "";
}

/** Milliseconds as seconds: "0.003" */
function secondsText(ms) {
  return (Math.floor(ms) / 1000).toFixed(3);
}

/** Microseconds as milliseconds, as fine as is useful: "2.1", "50.1", "1,204"; by the log's clock "~2". */
function latencyText(us, isByLog) {
  if (us < 0) return "";
  const ms = us / 1000;
  if (isByLog) return "~" + grouped(ms);
  return ms >= 1000 ? grouped(ms) : ms.toFixed(1);
}

/** "850 µs", "1.2 ms", "3.4 s", "5 min 3 s", "2 h 10 min" */
function spanText(ms) {
  if (ms < 1) return `${grouped(ms * 1000)} µs`;
  if (ms < 10) return `${ms.toFixed(1)} ms`;
  if (ms < 1000) return `${Math.round(ms)} ms`;
  if (ms < 60000) return `${(ms / 1000).toFixed(ms < 10000 ? 2 : 1)} s`;
  const minutes = Math.floor(ms / 60000);
  if (minutes < 60) return `${minutes} min ${Math.round((ms % 60000) / 1000)} s`;
  return `${grouped(Math.floor(minutes / 60))} h ${minutes % 60} min`;
}

/** "1.5 kB" */
function sizeText(bytes) {
  if (bytes < 1000) return counted(bytes, "byte");
  return bytes < 1e6 ? `${(bytes / 1000).toFixed(1)} kB` : `${(bytes / 1e6).toFixed(1)} MB`;
}

/** A thread as the log prints it. */
function threadText(id) {
  return id.toString(16).toUpperCase().padStart(8, "0");
}

/** A number as shares of a sorted array: the value below which `share` of them are. */
function percentile(sorted, share) {
  return sorted[Math.min(sorted.length - 1, Math.floor((sorted.length * share) / 100))];
}
