// The bar above the list: views, search, filters; keys of the whole page.
"use strict";

/** A choice among values; `set` takes over the chosen one. */
function choice(label, options, set) {
  const made = element("select", "");
  made.ariaLabel = label;
  for (const [value, text] of options) {
    const option = element("option", "", text);
    option.value = value;
    made.append(option);
  }
  made.addEventListener("change", () => {
    set(made.value);
    update();
  });
  byId("filters").append(made);
  return made;
}

const choices = {};

function makeChoices() {
  const numbered = (labels) => labels.map((label, i) => [String(i), label]);
  choices.link = choice(
    "Link",
    [["-1", "Any link"], ...numbered(model.linkLabels)],
    (value) => (state.link = Number(value)),
  );
  const names = [...servicesOf(model)].map(([name, count]) => [name, `${name} (${grouped(count)})`]);
  choices.service = choice("Service or function", [["", "Any service"], ...names], (value) => (state.service = value));
  choices.outcome = choice("Outcome", OutcomeChoices, (value) => (state.outcome = value));
  choices.thread = choice(
    "Thread",
    [["-1", "Any thread"], ...numbered(model.threadLabels)],
    (value) => (state.thread = Number(value)),
  );
}

/** Has the controls show the state. */
function showChoices() {
  choices.link.value = String(state.link);
  choices.service.value = state.service;
  choices.outcome.value = state.outcome;
  choices.thread.value = String(state.thread);
  for (const made of Object.values(choices)) made.classList.toggle("chosen", made.selectedIndex > 0);
  for (const input of document.querySelectorAll("input[name=view]")) input.checked = input.value === state.view;
  if (byId("search").value.trim() !== state.query) byId("search").value = state.query;
  byId("clear").hidden = !isFiltered();
}

/** The state has changed: rows, list, timeline, controls and address follow. */
function update() {
  makeRows();
  showChoices();
  showCount();
  drawHeadings();
  redrawList();
  followList();
  saveAddress();
}

function showCount() {
  const shown = rows.kind.reduce(
    (sum, kind, i) =>
      sum +
      (kind === RowSession
        ? 0
        : kind === RowFold && !state.open.has(`f${rows.ref[i]}`)
          ? rows.folds.get(rows.ref[i]).length
          : kind === RowFold
            ? 0
            : 1),
    0,
  );
  const what = state.view === "talk" ? "rows of the conversation" : "calls, callbacks, reports and other lines";
  const text = isFiltered() ? `${grouped(shown)} of ${grouped(rows.total)} ${what}` : `${grouped(rows.total)} ${what}`;
  byId("count").textContent = !rows.isComplete
    ? "Unpacking the log for the search …"
    : shown === 0
      ? `Nothing matches: 0 of ${grouped(rows.total)} ${what}`
      : text;
}

function drawHeadings() {
  const talk = ["time", "link", "#", "request", "response", "ms", "line"];
  const calls = ["time", "thread", "call", "status", "ms", "line"];
  const box = byId("headings");
  box.className = `headings ${state.view}`;
  byId("list").className = state.view;
  box.replaceChildren(
    ...(state.view === "talk" ? talk : calls).map((name) => element("span", `h-${name === "#" ? "cop" : name}`, name)),
  );
}

/** Searching waits for a pause in typing if the log is long. */
function onSearch() {
  const query = byId("search").value.trim();
  if (query === state.query) return;
  state.query = query;
  clearTimeout(onSearch.timer);
  onSearch.timer = setTimeout(update, model.lineCount > 200000 ? 150 : 30);
}

function onPageKey(event) {
  const isTyping = event.target.matches?.("input[type=search], select, textarea");
  if (event.key === "Escape" && event.target === byId("search")) {
    byId("search").value = "";
    onSearch();
  }
  if (event.key === "ArrowDown" && event.target === byId("search")) {
    event.preventDefault();
    goTo(Math.max(0, rowsInSight()[0]), { hasFocus: true });
  }
  if (isTyping || event.ctrlKey || event.metaKey || event.altKey || byId("keys").open) return;
  const acts = {
    "/": () => byId("search").focus(),
    e: () => nextError(1),
    E: () => nextError(-1),
    t: () => byId("lanes").focus(),
    l: () => goTo(Math.max(0, currentRow() >= 0 ? currentRow() : rowsInSight()[0]), { hasFocus: true }),
    v: () => chooseView(state.view === "talk" ? "calls" : "talk"),
    x: showEverything,
    C: copyRows,
    "?": openHelp,
  };
  if (!(event.key in acts)) return;
  event.preventDefault();
  acts[event.key]();
}

function showEverything() {
  clearFilters();
  update();
}

/** The other view, at the same place. */
function chooseView(view) {
  if (view === state.view) return;
  const [first] = rowsInSight();
  const isAtTop = byId("list-box").scrollTop === 0 && currentRow() < 0;
  const ms = rows.kind.length > 0 ? rowTimes()[currentRow() >= 0 ? currentRow() : first] : 0;
  const exchange =
    state.at[0] === "e"
      ? Number(state.at.slice(1))
      : state.at[0] === "r"
        ? (model.exchangeOf[Number(state.at.slice(1))] ?? -1)
        : -1;
  state.view = view;
  if (exchange >= 0) state.at = view === "talk" ? `e${exchange}` : `r${model.exchanges.record[exchange]}`;
  else state.at = "";
  update();
  if (isAtTop) return;
  let row = state.at ? rowOf(state.at) : -1;
  if (row < 0) row = rowTimes().findIndex((time) => time >= ms);
  if (row > 0 || exchange >= 0) showRow(Math.max(0, row), true);
  drawList();
}

function startControls() {
  makeChoices();
  for (const input of document.querySelectorAll("input[name=view]"))
    input.addEventListener("change", () => chooseView(input.value));
  byId("search").addEventListener("input", onSearch);
  byId("clear").addEventListener("click", () => {
    showEverything();
    byId("search").focus();
  });
  byId("copy").addEventListener("click", copyRows);
  byId("help").addEventListener("click", openHelp);
  byId("skip").addEventListener("click", (event) => {
    event.preventDefault();
    byId("log").scrollIntoView();
    goTo(Math.max(0, rowsInSight()[0]), { hasFocus: true });
  });
  document.addEventListener("keydown", onPageKey);
}
