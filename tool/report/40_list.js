// The list: only the rows in sight are in the document.
"use strict";

const LineHeight = 20;
const RowPadding = 9; // with the line below it
const Overscan = 12; // rows drawn above and below the sight

const list = {
  tops: new Float64Array(1), // by row: its top; then the whole height
  drawn: new Map(), // key: the element of the row
  measured: new Map(), // key of an unfolded row: its height
  isPrinted: false,
  isNarrow: false, // as isNarrow.matches, which is slow to ask for each row
};

const isNarrow = matchMedia("(max-width: 719px)");

/** How high a folded row is. Each of its parts is one line. */
function heightOf(row) {
  const { firstResponse, strings } = model;
  const ref = rows.ref[row];
  let count = list.isNarrow ? 2 : 1;
  if (rows.kind[row] === RowExchange) {
    const first = firstResponse[ref];
    const responses = firstResponse[ref + 1] - first;
    const isEmpty = responses === 1 && strings[model.responses.text[first]] === "";
    count = list.isNarrow ? 1 + (isEmpty ? 0 : responses) : Math.max(1, responses);
  } else if (rows.kind[row] === RowRemark || rows.kind[row] === RowSession || rows.kind[row] === RowOther) count = 1;
  return count * LineHeight + RowPadding;
}

function isOpen(row) {
  return rows.kind[row] !== RowFold && state.open.has(keyOf(row));
}

/** Computes where each row is. */
function placeRows() {
  list.isNarrow = isNarrow.matches;
  const count = rows.kind.length;
  const tops = new Float64Array(count + 1);
  const hasOpen = state.open.size > 0;
  for (let i = 0; i < count; ++i) {
    const isTall = hasOpen && isOpen(i);
    tops[i + 1] = tops[i] + (isTall ? (list.measured.get(keyOf(i)) ?? heightOf(i) + 300) : heightOf(i));
  }
  list.tops = tops;
  byId("list").style.height = `${tops[count]}px`;
}

/** The row at a height. */
function rowAt(top) {
  let low = 0;
  let high = rows.kind.length - 1;
  while (low < high) {
    const middle = (low + high + 1) >> 1;
    if (list.tops[middle] <= top) low = middle;
    else high = middle - 1;
  }
  return low;
}

/** The first row and the one after the last that are in sight. */
function rowsInSight() {
  const box = byId("list-box");
  if (rows.kind.length === 0) return [0, 0];
  return [rowAt(box.scrollTop), rowAt(box.scrollTop + box.clientHeight - 1) + 1];
}

/** Draws what is in sight, and the current row, which holds the focus. */
function drawList() {
  if (list.isPrinted) return;
  const [first, last] = rowsInSight();
  const wanted = [];
  for (let i = Math.max(0, first - Overscan); i < Math.min(rows.kind.length, last + Overscan); ++i) wanted.push(i);
  const current = currentRow();
  if (current >= 0 && !wanted.includes(current)) {
    if (current < (wanted[0] ?? 0)) wanted.unshift(current);
    else wanted.push(current);
  }
  putRows(wanted);
}

/** Has the document hold exactly these rows, in their order. */
function putRows(wanted) {
  const parent = byId("list");
  const keys = new Set(wanted.map(keyOf));
  for (const [key, drawn] of list.drawn) {
    if (keys.has(key)) continue;
    sizes.unobserve(drawn);
    drawn.remove();
    list.drawn.delete(key);
  }
  let next = parent.firstChild;
  for (const row of wanted) {
    const key = keyOf(row);
    let drawn = list.drawn.get(key);
    if (!drawn) {
      drawn = drawRow(row);
      list.drawn.set(key, drawn);
      if (isOpen(row)) sizes.observe(drawn);
    }
    drawn.ariaPosInSet = String(row + 1);
    drawn.ariaSetSize = String(rows.kind.length);
    drawn.style.transform = list.isPrinted ? "" : `translateY(${list.tops[row]}px)`;
    if (drawn === next) next = next.nextSibling;
    else parent.insertBefore(drawn, next);
  }
  markCurrent();
}

const sizes = new ResizeObserver((entries) => {
  let isChanged = false;
  for (const { target } of entries) {
    const height = target.offsetHeight;
    if (height === 0 || list.measured.get(target.dataset.key) === height) continue;
    list.measured.set(target.dataset.key, height);
    isChanged = true;
  }
  if (!isChanged || list.isPrinted) return;
  placeRows();
  drawList();
});

/** The rows are others: draws anew. */
function redrawList() {
  for (const drawn of list.drawn.values()) drawn.remove();
  sizes.disconnect();
  list.drawn.clear();
  placeRows();
  drawList();
}

/** The current row: the one with the focus, or that was chosen last; else the first one. */
function currentRow() {
  if (rows.kind.length === 0) return -1;
  if (list.currentKey !== state.at || list.currentOf !== rows.kind) {
    list.currentKey = state.at;
    list.currentOf = rows.kind;
    list.current = state.at ? rowOf(state.at) : -1;
  }
  return list.current;
}

/** One row can be reached with the tab key; the arrow keys lead on from there. */
function markCurrent() {
  const current = currentRow();
  let stop = current >= 0 ? keyOf(current) : "";
  if (!stop && rows.kind.length > 0) stop = keyOf(rowsInSight()[0]);
  for (const [key, drawn] of list.drawn) {
    drawn.firstChild.tabIndex = key === stop ? 0 : -1;
    drawn.classList.toggle("current", current >= 0 && key === stop);
  }
}

/** Makes a row the current one, in sight, with the focus if wanted. */
function goTo(row, { hasFocus = false, isCentered = false } = {}) {
  if (row < 0 || row >= rows.kind.length) return;
  state.at = keyOf(row);
  showRow(row, isCentered);
  drawList();
  if (hasFocus) list.drawn.get(state.at)?.firstChild.focus({ preventScroll: true });
  saveAddress();
  timelineChanged();
}

function showRow(row, isCentered) {
  const box = byId("list-box");
  const top = list.tops[row];
  const height = Math.min(list.tops[row + 1] - top, box.clientHeight);
  if (isCentered && (top < box.scrollTop || top + height > box.scrollTop + box.clientHeight))
    box.scrollTop = top - Math.max(0, (box.clientHeight - height) / 3);
  else if (top < box.scrollTop) box.scrollTop = top;
  else if (top + height > box.scrollTop + box.clientHeight) box.scrollTop = top + height - box.clientHeight;
}

/** Unfolds or folds a row. */
async function toggleRow(row) {
  const key = keyOf(row);
  const isFold = rows.kind[row] === RowFold;
  if (!state.open.delete(key)) state.open.add(key);
  state.at = key;
  list.measured.delete(key);
  if (isFold) makeRows();
  else await lines.ready;
  const drawn = list.drawn.get(key);
  const hadFocus = drawn?.contains(document.activeElement);
  if (drawn) sizes.unobserve(drawn);
  drawn?.remove();
  list.drawn.delete(key);
  placeRows();
  drawList();
  if (hadFocus) list.drawn.get(key)?.firstChild.focus({ preventScroll: true });
  saveAddress();
  timelineChanged();
}

/** Keys on a row. */
function onListKey(event) {
  if (event.target.tagName !== "BUTTON" || !event.target.classList.contains("head")) return;
  if (event.ctrlKey || event.metaKey || event.altKey) return;
  const row = rowOf(event.target.parentElement.dataset.key);
  const page = Math.max(1, rowsInSight()[1] - rowsInSight()[0] - 1);
  const steps = {
    ArrowDown: row + 1,
    ArrowUp: row - 1,
    PageDown: row + page,
    PageUp: row - page,
    Home: 0,
    End: rows.kind.length - 1,
  };
  const isUnfolded = state.open.has(keyOf(row));
  if (event.key in steps) goTo(Math.max(0, Math.min(rows.kind.length - 1, steps[event.key])), { hasFocus: true });
  else if ((event.key === "ArrowRight" && !isUnfolded) || (event.key === "ArrowLeft" && isUnfolded)) {
    if (event.target.ariaExpanded) toggleRow(row);
  } else if (event.key === "c") copyRow(row);
  else return;
  event.preventDefault();
}
