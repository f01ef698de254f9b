// Starts the page: the model first, so that something is seen soon; then the lines.
"use strict";

function takeState() {
  knownHash = location.hash;
  takeAddress(knownHash.slice(1));
  timeline.isLeading = true; // the address says what it shows, not the list
  if (state.at) unfoldAround(state.at);
  update();
  const row = state.at ? rowOf(state.at) : -1;
  if (row < 0) {
    followTimeline(true);
    return;
  }
  const before = byId("list-box").scrollTop;
  showRow(row, true);
  timeline.isLeading = byId("list-box").scrollTop !== before;
  drawList();
  byId("log").scrollIntoView();
}

function onScroll() {
  drawList();
  followList();
}

function onResize() {
  if (list.isPrinted) return;
  timeline.height = placeLanes();
  list.measured.clear();
  redrawList();
  followList();
}

async function start() {
  model = await readModel();
  byId("main").hidden = false;
  drawTop();
  drawErrors();
  drawLatency();
  startControls();
  startTimeline();
  startPrint();
  startRaw();
  const box = byId("list-box");
  box.addEventListener("scroll", oncePerFrame(onScroll), { passive: true });
  box.addEventListener("keydown", onListKey);
  new ResizeObserver(oncePerFrame(onResize)).observe(box);
  matchMedia("(prefers-color-scheme: dark)").addEventListener("change", () => {
    readColors();
    timelineChanged();
  });
  addEventListener("hashchange", takeState); // by the user: the page's own changes do not raise it
  lines.ready = new Promise((done) => setTimeout(done)).then(() => readLines(model)); // after the page is drawn
  takeState();
  document.documentElement.dataset.ready = "model";
  performance.mark("model ready");
  await lines.ready;
  // Rows that show lines, or were waiting for the search, can be drawn now.
  if (state.view === "calls" || state.query !== "") takeState();
  document.documentElement.dataset.ready = "all";
  performance.mark("lines ready");
}

start().catch((error) => {
  const notice = byId("notice");
  notice.hidden = false;
  notice.classList.add("broken");
  notice.textContent =
    typeof DecompressionStream === "undefined"
      ? "This browser is too old to unpack the report: it has no DecompressionStream."
      : `This report can't be read: ${error.message}`;
  document.documentElement.dataset.ready = "failed";
});
