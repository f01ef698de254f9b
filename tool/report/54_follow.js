// What the timeline shows: it follows the list, and the list follows it.
"use strict";

const ShortestView = 0.02; // ms

const timelineChanged = oncePerFrame(() => drawTimeline());

/** Shows a part of the time. `hasMoved`: the list follows to its beginning; else only if it shows none of it. */
function setView(from, to, { hasMoved = false, isByList = false } = {}) {
  const span = Math.max(ShortestView, Math.min(model.end, to - from));
  state.from = Math.max(0, Math.min(model.end - span, from));
  state.to = state.from + span;
  timelineChanged();
  saveAddress();
  if (!isByList) followTimeline(hasMoved);
}

function zoomBy(factor, center = (state.from + state.to) / 2) {
  setView(center - (center - state.from) * factor, center + (state.to - center) * factor);
}

function moveView(share) {
  const ms = (state.to - state.from) * share;
  setView(state.from + ms, state.to + ms, { hasMoved: true });
  say(`${secondsText(state.from)} to ${secondsText(state.to)} seconds`);
}

/** By row: its time. */
function rowTimes() {
  if (timeline.timesOf !== rows.kind) {
    timeline.timesOf = rows.kind;
    timeline.times = Float64Array.from(rows.kind, (_, row) => timeOfRow(row));
    for (let i = timeline.times.length - 1; i >= 0; --i)
      if (Number.isNaN(timeline.times[i])) timeline.times[i] = timeline.times[i + 1] ?? model.end;
  }
  return timeline.times;
}

/** Scrolls the list to the time that the timeline shows. */
function followTimeline(hasMoved) {
  const times = rowTimes();
  const [first, last] = rowsInSight();
  const isInView = last > first && times[first] <= state.to && times[last - 1] >= state.from;
  if (times.length === 0 || isWholeTime() || (isInView && !hasMoved)) return;
  let low = 0;
  let high = times.length - 1;
  while (low < high) {
    const middle = (low + high) >> 1;
    if (times[middle] < state.from) low = middle + 1;
    else high = middle;
  }
  const box = byId("list-box");
  const before = box.scrollTop;
  box.scrollTop = list.tops[low];
  if (box.scrollTop !== before) timeline.isLeading = true;
  drawList();
}

/** The list was scrolled: the band moves, and the timeline with it. */
function followList() {
  const times = rowTimes();
  const [first, last] = rowsInSight();
  if (last <= first) timeline.sight = [0, -1];
  else timeline.sight = [times[first], Math.max(times[first], times[last - 1])];
  const [from, to] = timeline.sight;
  const span = state.to - state.from;
  const isOutside = to < state.from || from > state.to;
  if (!timeline.isLeading && isOutside && !isWholeTime()) {
    const middle = (from + Math.min(to, from + span)) / 2;
    setView(middle - span / 2, middle + span / 2, { isByList: true });
  }
  timeline.isLeading = false;
  timelineChanged();
}
