// How long the requests took, by service, as histograms on one logarithmic scale.
"use strict";

const MostServices = 8;
const BucketsPerDecade = 5;
const LowestUs = 100;

/** By service: sorted latencies in us, of requests that were answered. Those that are asked for most come first. */
function latenciesByService() {
  const { exchanges, strings } = model;
  const byService = new Map();
  for (let i = 0; i < exchanges.length; ++i) {
    if (exchanges.latency[i] < 0) continue;
    const service = exchanges.service[i];
    if (!byService.has(service)) byService.set(service, []);
    byService.get(service).push(exchanges.latency[i]);
  }
  const result = [...byService].map(([service, values]) => ({
    name: strings[service],
    values: Float64Array.from(values).sort(),
  }));
  return result.sort((a, b) => b.values.length - a.values.length);
}

const bucketOf = (us) => Math.max(0, Math.floor(Math.log10(Math.max(us, 1) / LowestUs) * BucketsPerDecade));
const bucketBegin = (bucket) => LowestUs * 10 ** (bucket / BucketsPerDecade);

function drawLatency() {
  const services = latenciesByService();
  byId("latency-section").hidden = services.length === 0;
  if (services.length === 0) return;
  const highest = services.reduce((most, each) => Math.max(most, each.values.at(-1)), 1000);
  const lowest = services.reduce((least, each) => Math.min(least, each.values[0]), highest);
  const first = Math.floor(bucketOf(lowest) / BucketsPerDecade) * BucketsPerDecade;
  const count = Math.ceil((bucketOf(highest) + 1) / BucketsPerDecade) * BucketsPerDecade - first;
  const table = element("table", "");
  const axis = element("th", "scale", element("span", "unseen", "distribution"), scaleElement(first, count));
  axis.scope = "col";
  table.append(
    element(
      "thead",
      "",
      element(
        "tr",
        "",
        headCell("service"),
        headCell("count", "number"),
        axis,
        headCell("median", "number"),
        headCell("95 %", "number wide"),
        headCell("max", "number"),
      ),
    ),
  );
  const body = element("tbody", "");
  services.forEach((service, i) => {
    const row = latencyRow(service, first, count);
    row.hidden = i >= MostServices;
    body.append(row);
  });
  table.append(body);
  const box = byId("latency");
  box.replaceChildren(table);
  if (services.length > MostServices)
    box.append(
      button(`${grouped(services.length - MostServices)} more`, "plain", (event) => {
        for (const row of body.children) row.hidden = false;
        event.target.remove();
      }),
    );
}

function headCell(text, className) {
  const made = element("th", className, text);
  made.scope = "col";
  return made;
}

/** The decades of the scale. */
function scaleElement(first, count) {
  const made = element("span", "decades");
  made.ariaHidden = "true";
  for (let bucket = 0; bucket < count; bucket += BucketsPerDecade) {
    const ms = bucketBegin(first + bucket) / 1000;
    made.append(element("span", "", ms >= 1000 ? `${ms / 1000} s` : `${ms} ms`));
  }
  return made;
}

function latencyRow({ name, values }, first, count) {
  const buckets = new Array(count).fill(0);
  for (const value of values) ++buckets[Math.min(count - 1, bucketOf(value) - first)];
  const filter = button(name, "plain service", () => {
    clearFilters();
    state.view = "talk";
    state.service = name;
    update();
    byId("log").scrollIntoView();
  });
  filter.title = `Show the requests of ${name}`;
  const title = element("th", "", filter);
  title.scope = "row";
  const ms = (us) => (us >= 1e6 ? grouped(us / 1000) : (us / 1000).toFixed(1));
  return element(
    "tr",
    "",
    title,
    element("td", "number", grouped(values.length)),
    element("td", "bars", histogram(buckets, values)),
    element("td", "number", ms(percentile(values, 50))),
    element("td", "number wide", ms(percentile(values, 95))),
    element("td", "number", ms(values.at(-1))),
  );
}

/** Bars as SVG; their heights by the root, so that single slow ones are seen beside thousands. */
function histogram(buckets, values) {
  const namespace = "http://www.w3.org/2000/svg";
  const image = document.createElementNS(namespace, "svg");
  image.setAttribute("viewBox", `0 0 ${buckets.length * 10} 20`);
  image.setAttribute("preserveAspectRatio", "none");
  image.setAttribute("role", "img");
  image.setAttribute("aria-label", `from ${latencyText(values[0])} to ${latencyText(values.at(-1))} ms`);
  const most = Math.max(...buckets);
  buckets.forEach((many, i) => {
    if (many === 0) return;
    const height = Math.max(2, 20 * Math.sqrt(many / most));
    const bar = document.createElementNS(namespace, "rect");
    for (const [name, value] of Object.entries({ x: i * 10 + 1, y: 20 - height, width: 8, height }))
      bar.setAttribute(name, String(value));
    image.append(bar);
  });
  return image;
}
