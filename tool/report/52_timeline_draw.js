// The timeline on its canvas.
"use strict";

const timeline = { colors: null, height: 0, sight: [0, 0], gutter: 0 };

/** The colors of the style sheet. Read again when light turns dark. */
function readColors() {
  const style = getComputedStyle(document.documentElement);
  const names = [
    "text",
    "muted",
    "line",
    "surface",
    "accent",
    "band",
    "call",
    "callback",
    "report",
    "good",
    "bad",
    "warn",
    "idle",
    "pending",
  ];
  timeline.colors = Object.fromEntries(names.map((name) => [name, style.getPropertyValue(`--${name}`).trim()]));
  timeline.font = style.getPropertyValue("--small-font").trim();
}

/** The room for the names of lanes, at the left; none where there is little room. */
const gutter = () => timeline.gutter;

function xOf(ms, width) {
  return gutter() + ((ms - state.from) / (state.to - state.from)) * (width - gutter());
}

function timeAt(x, width) {
  return state.from + ((x - gutter()) / (width - gutter())) * (state.to - state.from);
}

/** Sizes a canvas to its place; returns what to draw with. */
function contextOf(canvas, height) {
  const width = canvas.parentElement.clientWidth;
  const scale = window.devicePixelRatio || 1;
  if (canvas.width !== Math.round(width * scale) || canvas.height !== Math.round(height * scale)) {
    canvas.width = Math.round(width * scale);
    canvas.height = Math.round(height * scale);
    canvas.style.width = `${width}px`;
    canvas.style.height = `${height}px`;
  }
  const context = canvas.getContext("2d");
  context.setTransform(scale, 0, 0, scale, 0, 0);
  context.clearRect(0, 0, width, height);
  context.font = timeline.font;
  context.textBaseline = "middle";
  return { context, width };
}

function drawTimeline() {
  if (!timeline.colors) readColors();
  timeline.gutter = isNarrow.matches ? 0 : 168;
  const { context, width } = contextOf(byId("lanes"), timeline.height);
  drawSight(context, width);
  const wanted = wantedBars();
  for (const lane of lanes) drawLane(context, width, lane, wanted[lane.kind]);
  drawCurrent(context, width);
  drawRuler();
  const [from, to] = [state.from, state.to].map((ms) => secondsText(ms));
  byId("lanes").ariaLabel = `Timeline of ${counted(lanes.length, "lane")}, ${from} to ${to} seconds`;
}

/** What filters and search leave over; null: all. */
function wantedBars() {
  if (!isFiltered()) return { thread: null, link: null };
  const { found } = rows;
  const exchange = exchangeFilter();
  const record = recordFilter();
  return {
    thread: (i) => record(i) && (!found || isRecordFound(found, i)),
    link: (i) => exchange(i) && (!found || isExchangeFound(found, i)),
  };
}

/** The time of the rows in sight, as a band. */
function drawSight(context, width) {
  const [from, to] = timeline.sight;
  if (!(to >= from)) return;
  const left = Math.max(gutter(), xOf(from, width));
  const right = Math.min(width, Math.max(xOf(to, width), left + 2));
  if (right < gutter() || left > width) return;
  context.fillStyle = timeline.colors.band;
  context.fillRect(left, 0, right - left, timeline.height);
}

function drawLane(context, width, lane, wants) {
  const { colors } = timeline;
  context.save();
  context.beginPath();
  context.rect(gutter(), lane.top, width - gutter(), lane.height);
  context.clip();
  drawBars(context, width, lane, wants);
  context.restore();
  context.fillStyle = colors.line;
  context.fillRect(0, lane.top + lane.height - 1, width, 1);
  context.fillStyle = colors.muted;
  if (gutter() === 0) context.fillText(shortened(context, lane.label, width), 0, lane.top + LabelHeight / 2 + 2);
  else context.fillText(shortened(context, lane.label, gutter() - 12), 0, lane.top + lane.height / 2);
}

function shortened(context, text, room) {
  if (context.measureText(text).width <= room) return text;
  let end = text.length;
  while (end > 1 && context.measureText(`${text.slice(0, end)}…`).width > room) --end;
  return `${text.slice(0, end)}…`;
}

/**
 * Bars that fall into the pixels of the one before are not drawn. Those that went wrong are drawn last, over the
 * others: where they are too short to be seen, as a mark of half the height.
 */
function drawBars(context, width, lane, wants) {
  const lastX = new Array(lane.depth).fill(-1);
  const lastColor = new Array(lane.depth).fill("");
  const wrong = [];
  for (let b = firstBar(lane, state.from); b < lane.bars.length; ++b) {
    const i = lane.bars[b];
    if (lane.begins[i] > state.to) break;
    if (lane.ends[i] < state.from) continue;
    const row = lane.rowOf[b];
    const x = xOf(lane.begins[i], width);
    const right = Math.max(x + 1.5, xOf(Math.min(lane.ends[i], model.end), width));
    const isDim = wants !== null && !wants(i);
    const isWrong = isWrongBar(lane, i);
    const isShort = right - x < 3;
    const color = colorOfBar(lane, i, isWrong && !isShort);
    const look = isDim ? `${color}.` : color;
    if (isWrong && !isDim) wrong.push([i, row, x, right]);
    if (isWrong && !isDim && !isShort) continue;
    if (right > lastX[row] + 0.5 || look !== lastColor[row]) {
      context.globalAlpha = isDim ? 0.22 : 1;
      drawBar(context, lane, i, row, Math.max(x, gutter() - 2), Math.min(right, width + 2), color);
      lastX[row] = right;
      lastColor[row] = look;
    }
  }
  context.globalAlpha = 1;
  let drawn = -1;
  for (const [i, row, x, right] of wrong) {
    if (right - x >= 3)
      drawBar(context, lane, i, row, Math.max(x, gutter() - 2), Math.min(right, width + 2), timeline.colors.bad);
    else if (x >= drawn) {
      context.fillStyle = timeline.colors.bad;
      context.fillRect(x, lane.bar + row * BarHeight, 2, BarHeight / 2);
      drawn = x + 2;
    }
  }
}

function isWrongBar(lane, i) {
  return lane.kind === "link" ? isTroubled(i) : hasRecordTrouble(i);
}

function colorOfBar(lane, i, isWrong) {
  const { colors } = timeline;
  if (isWrong) return colors.bad;
  if (lane.kind === "thread") return [colors.call, colors.callback, colors.report][model.records.kind[i]];
  const colorOf = { answered: colors.good, cancelled: colors.warn, open: colors.warn };
  return colorOf[OutcomeKeys[model.exchanges.outcome[i]]] ?? colors.idle;
}

function drawBar(context, lane, i, row, x, right, color) {
  const top = lane.bar + row * BarHeight;
  const isReport = lane.kind === "thread" && model.records.kind[i] === 2;
  context.fillStyle = color;
  context.fillRect(
    x,
    isReport ? top + BarHeight - 4 : top,
    Math.max(1.5, right - x - (right - x > 4 ? 1 : 0)),
    isReport ? 3 : BarHeight - 2,
  );
  const room = right - x;
  if (lane.kind === "link" && room > 7) drawAnswers(context, lane, i, top);
  if (room < 46 || isReport) return;
  context.fillStyle = timeline.colors.surface;
  context.fillText(shortened(context, textOfBar(lane, i), room - 8), x + 4, top + (BarHeight - 1) / 2);
}

function textOfBar(lane, i) {
  const { strings, exchanges, records } = model;
  return lane.kind === "link"
    ? `${strings[exchanges.text[i]]} ${strings[exchanges.words[i]]}`.trim()
    : strings[records.name[i]].replace(/^PDU/, "");
}

/** Answers as ticks, pending ones as dots. */
function drawAnswers(context, lane, i, top) {
  const { answers, firstAnswer, spread } = model;
  const { colors } = timeline;
  const width = byId("lanes").clientWidth;
  for (let a = firstAnswer[i]; a < firstAnswer[i + 1]; ++a) {
    const x = xOf(spread(answers.time[a], answers.line[a]), width);
    context.fillStyle = colors.surface;
    if (answers.kind[a] === 2) {
      context.beginPath();
      context.arc(x, top + (BarHeight - 2) / 2, 2.5, 0, 2 * Math.PI);
      context.fillStyle = colors.pending;
      context.fill();
    } else context.fillRect(x - 1, top, 1.5, BarHeight - 2);
  }
}

/** The current row: a line through all lanes. */
function drawCurrent(context, width) {
  const row = currentRow();
  const ms = row >= 0 ? timeOfRow(row) : NaN;
  if (!(ms >= state.from && ms <= state.to)) return;
  context.fillStyle = timeline.colors.accent;
  context.fillRect(Math.round(xOf(ms, width)) - 0.5, 0, 1.5, timeline.height);
}

/** Steps of a scale: 1, 2 or 5 times a power of ten. */
function niceStep(least) {
  const power = 10 ** Math.floor(Math.log10(least));
  return power * [1, 2, 5, 10].find((step) => step * power >= least);
}

function drawRuler() {
  const { context, width } = contextOf(byId("ruler"), 20);
  const { colors } = timeline;
  const step = niceStep(((state.to - state.from) * 84) / Math.max(84, width - gutter()));
  context.fillStyle = colors.muted;
  for (let ms = Math.ceil(state.from / step) * step; ms <= state.to; ms += step) {
    const x = xOf(ms, width);
    context.fillStyle = colors.line;
    context.fillRect(x, 14, 1, 6);
    const text = rulerText(ms, step);
    if (x + context.measureText(text).width > width) continue;
    context.fillStyle = colors.muted;
    context.fillText(text, x + (gutter() === 0 && x < 2 ? 1 : 3), 9);
  }
}

/** Seconds, as fine as the steps are. */
function rulerText(ms, step) {
  const digits = Math.max(0, Math.min(6, 3 - Math.floor(Math.log10(step) + 1e-9)));
  return `${(ms / 1000).toFixed(digits)} s`;
}
