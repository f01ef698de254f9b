// What the page shows, and how the address says so: a link to the page shows the same view.
"use strict";

/** What the user chose. */
const state = {
  view: "talk", // or "calls"
  query: "",
  link: -1, // index into model.linkLabels
  thread: -1, // likewise
  service: "", // name of a service or of a function
  outcome: "", // key of OutcomeChoices
  open: new Set(), // keys of unfolded rows
  at: "", // key of the current row
  from: 0, // ms since the beginning: what the timeline shows
  to: 1,
};

let model = null;

// Keys of rows: a letter and a number. e exchange, r record, m remark, f first exchange of a fold, s session, o other lines.
const KeyPattern = /^[ermfso]\d{1,9}$/;

function isFiltered() {
  return state.query !== "" || state.link >= 0 || state.thread >= 0 || state.service !== "" || state.outcome !== "";
}

function clearFilters() {
  Object.assign(state, { query: "", link: -1, thread: -1, service: "", outcome: "" });
}

function isWholeTime() {
  return state.from <= 0 && state.to >= model.end;
}

/** The state as the part of the address after '#'. */
function addressOf() {
  const values = new URLSearchParams();
  if (state.view !== "talk") values.set("view", state.view);
  if (state.query) values.set("search", state.query);
  if (state.link >= 0) values.set("link", String(state.link));
  if (state.thread >= 0) values.set("thread", String(state.thread));
  if (state.service) values.set("service", state.service);
  if (state.outcome) values.set("outcome", state.outcome);
  if (!isWholeTime()) {
    values.set("from", state.from.toFixed(3));
    values.set("to", state.to.toFixed(3));
  }
  if (state.at) values.set("at", state.at);
  if (state.open.size > 0) values.set("open", [...state.open].slice(0, 50).join("."));
  return values.toString();
}

/** Takes over the state of an address. Anything may stand there, so nothing in it is trusted. */
function takeAddress(address) {
  const values = new URLSearchParams(address);
  const number = (name, below) => {
    const value = Number(values.get(name) ?? "-1");
    return Number.isInteger(value) && value >= 0 && value < below ? value : -1;
  };
  clearFilters();
  state.view = values.get("view") === "calls" ? "calls" : "talk";
  state.query = (values.get("search") ?? "").slice(0, 200);
  state.link = number("link", model.linkLabels.length);
  state.thread = number("thread", model.threadLabels.length);
  const service = values.get("service") ?? "";
  state.service = servicesOf(model).has(service) ? service : "";
  const outcome = values.get("outcome") ?? "";
  state.outcome = OutcomeChoices.some(([key]) => key === outcome) ? outcome : "";
  const from = Number(values.get("from") ?? "NaN");
  const to = Number(values.get("to") ?? "NaN");
  const hasRange = from >= 0 && to > from && to <= model.end;
  [state.from, state.to] = hasRange ? [from, to] : [0, model.end];
  const isKey = (key) => KeyPattern.test(key);
  state.at = isKey(values.get("at") ?? "") ? values.get("at") : "";
  state.open = new Set((values.get("open") ?? "").split(".").filter(isKey).slice(0, 50));
}

/** The part of the address after '#' that the state was taken from or written to last. */
let knownHash = "";

/** Writes the state into the address. */
function writeAddress() {
  const address = addressOf();
  // A link within the page has changed the address, and its event, which takes it over, is still to come.
  if (location.hash !== knownHash || address === location.hash.slice(1)) return;
  try {
    history.replaceState(null, "", address ? `#${address}` : location.pathname + location.search);
    knownHash = location.hash;
  } catch {
    // Browsers refuse many changes within a short time; the next one will do.
  }
}

let addressTimer = 0;
/** Writes the state into the address, a moment after the last change. */
function saveAddress() {
  clearTimeout(addressTimer);
  addressTimer = setTimeout(writeAddress, 200);
}
