// The timeline by mouse, touch and keyboard.
"use strict";

/** What is under the pointer: a lane and a bar of it, the one that is nearest within a few pixels. */
function barAt(event) {
  const canvas = byId("lanes");
  const place = canvas.getBoundingClientRect();
  const [x, y] = [event.clientX - place.left, event.clientY - place.top];
  const lane = lanes.find((each) => y >= each.top && y < each.top + each.height);
  if (!lane || x < gutter()) return null;
  const row = Math.floor((y - lane.bar) / BarHeight);
  const width = canvas.clientWidth;
  let best = null;
  for (let b = firstBar(lane, state.from); b < lane.bars.length; ++b) {
    const i = lane.bars[b];
    if (lane.begins[i] > state.to) break;
    if (lane.rowOf[b] !== row) continue;
    const [left, right] = [xOf(lane.begins[i], width), xOf(Math.min(lane.ends[i], model.end), width)];
    const distance = x < left ? left - x : x > right ? x - right : 0;
    if (distance <= 4 && (best === null || distance <= best.distance)) best = { lane, i, distance };
  }
  return best;
}

function showTip(event) {
  const tip = byId("tip");
  const bar = barAt(event);
  tip.hidden = bar === null;
  if (bar === null) return;
  tip.textContent = tipText(bar);
  const place = tip.parentElement.getBoundingClientRect();
  tip.style.left = `${Math.max(0, Math.min(place.width - tip.offsetWidth, event.clientX - place.left + 12))}px`;
  tip.style.top = `${event.clientY - place.top + 18}px`;
}

function tipText({ lane, i }) {
  const { exchanges, records, responses, strings, firstResponse } = model;
  if (lane.kind === "link") {
    const answers = [];
    for (let r = firstResponse[i]; r < firstResponse[i + 1]; ++r)
      answers.push(`${strings[responses.text[r]]}  ${latencyText(responses.after[r], responses.byLog[r])}`.trim());
    const request = [`${secondsText(lane.begins[i])} s`, strings[exchanges.text[i]], wordsOf(i)].filter(Boolean).join("  ");
    return `${request}\n${answers.filter(Boolean).join("\n") || Outcomes[exchanges.outcome[i]]}`;
  }
  const duration = records.dur[i] >= 0 && records.kind[i] < 2 ? `, ${grouped(records.dur[i])} ms` : "";
  return `${secondsText(lane.begins[i])} s  ${strings[records.name[i]]}${duration}\n${statusText(i) || "good"}, line ${lineText(model, records.line[i])}`;
}

/** Goes to the row of a bar; where the view has no such row, among all calls. */
function chooseBar({ lane, i }) {
  const row = lane.kind === "link" ? rowOfExchange(i) : rowOf(`r${i}`);
  if (row >= 0) goTo(row, { isCentered: true });
  else if (lane.kind === "thread") showRecord(i);
  else {
    clearFilters();
    state.view = "talk";
    state.at = `e${i}`;
    unfoldAround(state.at);
    update();
    goTo(rowOf(state.at), { isCentered: true });
  }
}

/** The row of an exchange, or that of its call among all calls. */
function rowOfExchange(i) {
  return state.view === "talk" ? rowOf(`e${i}`) : rowOf(`r${model.exchanges.record[i]}`);
}

/** Pointers that are down on the canvas: one drags, two zoom. */
const pointers = new Map();
let drag = null;

function onPointerDown(event) {
  if (event.button !== 0) return;
  byId("lanes").setPointerCapture(event.pointerId);
  pointers.set(event.pointerId, event.clientX);
  drag = { x: event.clientX, from: state.from, to: state.to, isMoved: drag !== null, pinch: pinchOf() };
  byId("tip").hidden = true;
}

function pinchOf() {
  if (pointers.size !== 2) return null;
  const [a, b] = [...pointers.values()];
  return { distance: Math.max(8, Math.abs(a - b)), middle: (a + b) / 2 };
}

function onPointerMove(event) {
  if (!pointers.has(event.pointerId) || !drag) {
    showTip(event);
    return;
  }
  pointers.set(event.pointerId, event.clientX);
  const canvas = byId("lanes");
  const perPixel = (drag.to - drag.from) / (canvas.clientWidth - gutter());
  const pinch = pinchOf();
  if (pinch && drag.pinch) {
    const factor = drag.pinch.distance / pinch.distance;
    const left = canvas.getBoundingClientRect().left + gutter();
    const center = drag.from + (drag.pinch.middle - left) * perPixel;
    drag.isMoved = true;
    setView(center - (center - drag.from) * factor, center + (drag.to - center) * factor);
    return;
  }
  const distance = event.clientX - drag.x;
  if (!drag.isMoved && Math.abs(distance) < 4) return;
  drag.isMoved = true;
  setView(drag.from - distance * perPixel, drag.to - distance * perPixel, { hasMoved: true });
}

function onPointerUp(event) {
  const isClick = drag !== null && !drag.isMoved && pointers.size === 1 && event.type === "pointerup";
  pointers.delete(event.pointerId);
  if (pointers.size === 0) drag = null;
  const bar = isClick ? barAt(event) : null;
  if (bar) chooseBar(bar);
}

function onWheel(event) {
  const isZoom = event.ctrlKey || event.metaKey;
  const isMove = event.shiftKey || Math.abs(event.deltaX) > Math.abs(event.deltaY);
  if (!isZoom && !isMove) return;
  event.preventDefault();
  const canvas = byId("lanes");
  if (isZoom)
    zoomBy(
      Math.exp(Math.max(-1, Math.min(1, event.deltaY / 200))),
      timeAt(event.clientX - canvas.getBoundingClientRect().left, canvas.clientWidth),
    );
  else moveView((event.deltaX || event.deltaY) / canvas.clientWidth);
}

function onTimelineKey(event) {
  if (event.ctrlKey || event.metaKey || event.altKey) return;
  const acts = {
    ArrowLeft: () => moveView(-0.2),
    ArrowRight: () => moveView(0.2),
    PageUp: () => moveView(-0.9),
    PageDown: () => moveView(0.9),
    Home: () => setView(0, state.to - state.from, { hasMoved: true }),
    End: () => setView(model.end - (state.to - state.from), model.end, { hasMoved: true }),
    "+": () => zoomBy(0.5, zoomCenter()),
    "=": () => zoomBy(0.5, zoomCenter()),
    "-": () => zoomBy(2, zoomCenter()),
    0: () => setView(0, model.end),
    ArrowDown: () => stepRow(1),
    ArrowUp: () => stepRow(-1),
    Enter: () => currentRow() >= 0 && toggleRow(currentRow()),
  };
  if (!(event.key in acts)) return;
  event.preventDefault();
  acts[event.key]();
}

/** The current row, if it is in view; else the middle. */
function zoomCenter() {
  const row = currentRow();
  const ms = row >= 0 ? timeOfRow(row) : NaN;
  return ms >= state.from && ms <= state.to ? ms : (state.from + state.to) / 2;
}

/** From row to row, as the list does it. */
function stepRow(by) {
  const current = currentRow() >= 0 ? currentRow() + by : rowsInSight()[0];
  goTo(Math.max(0, Math.min(rows.kind.length - 1, current)));
  const drawn = list.drawn.get(state.at);
  if (drawn) say(drawn.innerText);
}

function startTimeline() {
  timeline.height = makeLanes();
  const canvas = byId("lanes");
  canvas.addEventListener("pointerdown", onPointerDown);
  canvas.addEventListener("pointermove", onPointerMove);
  canvas.addEventListener("pointerup", onPointerUp);
  canvas.addEventListener("pointercancel", onPointerUp);
  canvas.addEventListener("pointerleave", () => (byId("tip").hidden = true));
  canvas.addEventListener("wheel", onWheel, { passive: false });
  canvas.addEventListener("dblclick", (event) => zoomBy(0.5, timeAt(event.offsetX, canvas.clientWidth)));
  canvas.addEventListener("keydown", onTimelineKey);
  byId("zoom-in").addEventListener("click", () => zoomBy(0.5, zoomCenter()));
  byId("zoom-out").addEventListener("click", () => zoomBy(2, zoomCenter()));
  byId("zoom-all").addEventListener("click", () => setView(0, model.end));
}
