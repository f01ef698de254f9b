// Print: the list on paper has its rows one after the other, those that the view shows.
"use strict";

const MostPrinted = 2000;

function beginPrint() {
  if (list.isPrinted || !model) return;
  list.isPrinted = true;
  document.documentElement.classList.add("printed");
  readColors();
  drawTimeline();
  const count = Math.min(rows.kind.length, MostPrinted);
  putRows(Array.from({ length: count }, (_, i) => i));
  list.countText = byId("count").textContent;
  if (count < rows.kind.length)
    byId("count").textContent = `The first ${grouped(count)} of ${grouped(rows.kind.length)} rows. Filter to print others.`;
}

function endPrint() {
  if (!list.isPrinted) return;
  list.isPrinted = false;
  document.documentElement.classList.remove("printed");
  readColors();
  drawTimeline();
  byId("count").textContent = list.countText;
  redrawList();
}

function startPrint() {
  addEventListener("beforeprint", beginPrint);
  addEventListener("afterprint", endPrint);
  matchMedia("print").addEventListener("change", ({ matches }) => (matches ? beginPrint() : endPrint()));
}
