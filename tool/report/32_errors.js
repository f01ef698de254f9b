// Errors as chips that jump to their place. Equal ones share a chip, which goes from one to the next.
"use strict";

const MostChips = 24;
const ErrorWords = {
  failed_call: "Failed call",
  refused: "Refused",
  silent: "No answer",
  late: "Late answer",
  data_lost: "Data lost",
  in_flight: "Never returned",
  cut: "Cut",
  damaged: "Damaged line",
  not_loaded: "No library",
  item_leak: "Items not destroyed",
};

let errorGroups = [];
let lastError = -1;

/** Groups of errors that say the same; damaged lines are one group, whatever their text. */
function groupErrors() {
  const groups = new Map();
  model.errors.forEach((error, i) => {
    const text =
      error.what === "damaged" ? "" : error.text.replace(/,? after [\d.,~]+ ms$|,? [\d.,~]+ ms after sending$/, "");
    const key = `${error.what}\n${text}`;
    if (!groups.has(key)) groups.set(key, { what: error.what, text, members: [] });
    groups.get(key).members.push(i);
  });
  return [...groups.values()];
}

function drawErrors() {
  errorGroups = groupErrors();
  const box = byId("errors");
  box.replaceChildren();
  if (errorGroups.length === 0) {
    box.append(element("p", "fine", "None. Every call succeeded, every request was answered."));
    return;
  }
  byId("errors-head").append(" ", element("span", "number-of", grouped(model.errors.length)));
  drawChips(box, 0);
}

/** The chips from one on, so many at a time: a log can have thousands of different errors. */
function drawChips(box, first) {
  const end = Math.min(first + MostChips, errorGroups.length);
  for (let i = first; i < end; ++i) box.append(drawChip(errorGroups[i]));
  const rest = errorGroups.length - end;
  if (rest === 0) return;
  const more = button(`${grouped(rest)} more`, "plain", () => {
    more.remove();
    drawChips(box, end);
    box.children[end].focus();
  });
  box.append(more);
}

function drawChip(group) {
  const first = model.errors[group.members[0]];
  const chip = button("", `chip error-${group.what}`, () => {
    const next = group.members.find((i) => i > lastError) ?? group.members[0];
    jumpToError(next);
  });
  chip.append(element("b", "", ErrorWords[group.what] ?? group.what), " ", element("span", "chip-text", group.text));
  const isOne = group.members.length === 1;
  chip.append(
    " ",
    isOne
      ? element("span", "chip-place", first.subject)
      : element("span", "chip-count", `×${grouped(group.members.length)}`),
  );
  chip.title = [first.subject, first.text, ...(first.why ?? [])].join("\n");
  return chip;
}

/** What was found about a call, and why where that is known: as facts of its row. */
function errorFacts(record) {
  if (record < 0) return [];
  const { kind, seq } = model.records;
  const found = kind[record] === 0 ? model.errors.filter((error) => error.seq === seq[record]) : [];
  return found.map((error) => [ErrorWords[error.what] ?? error.what, [error.text, ...(error.why ?? [])].join("; ")]);
}

/** The next error after the last one, or the one before it. */
function nextError(step) {
  if (model.errors.length === 0) return;
  const count = model.errors.length;
  jumpToError(lastError < 0 ? (step > 0 ? 0 : count - 1) : (lastError + step + count) % count);
}

/** Shows the row of an error; where it is, if the view has no row of it, among all calls. */
async function jumpToError(i) {
  lastError = i;
  const error = model.errors[i];
  await lines.ready;
  const record = error.seq ? (model.recordOfCall[error.seq] ?? -1) : error.at >= 0 ? lines.owner[error.at] : -1;
  const exchange = record >= 0 ? model.exchangeOf[record] : -1;
  const isRequest = exchange >= 0 && error.what !== "failed_call";
  const key = isRequest ? `e${exchange}` : record >= 0 ? `r${record}` : error.at >= 0 ? `o${otherOf(error.at)}` : "";
  if (key === "") return;
  if (isFiltered()) clearFilters();
  state.view = isRequest ? "talk" : "calls";
  state.open.add(key);
  unfoldAround(key);
  update();
  byId("log").scrollIntoView({ block: "start" });
  if (rowOf(key) < 0 && record >= 0) showRecord(record);
  else goTo(rowOf(key), { hasFocus: true, isCentered: true });
  say([ErrorWords[error.what] ?? "", error.subject, error.text, ...(error.why ?? [])].join(", "));
}

/** Opens the fold that hides an exchange, if one does. */
function unfoldAround(key) {
  if (key[0] !== "e") return;
  makeRows();
  const exchange = Number(key.slice(1));
  for (const [first, members] of rows.folds) if (members.includes(exchange)) state.open.add(`f${first}`);
}
