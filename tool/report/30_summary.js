// The top of the page: what the log is, and what it amounts to.
"use strict";

const MostShown = 8; // links

function drawTop() {
  const { summary, files } = model;
  byId("title").textContent = files.map((file) => file.name).join(", ");
  const session = summary.sessions[0];
  const facts = [];
  facts.push(dateText(model.begin), `${clockText(model.begin)}`, spanText(model.end - 1));
  facts.push(counted(model.lineCount, "line"), counted(summary.threads, "thread"));
  const processes = new Set(summary.sessions.map((each) => each.process)).size;
  if (processes > 1) facts.push(counted(processes, "process"));
  if (summary.sessions.length > 1) facts.push(counted(summary.sessions.at(-1).number, "session"));
  else if (session) facts.push(session.ended ? "ended with PDUDestruct" : "no PDUDestruct in the log");
  const top = byId("facts");
  top.replaceChildren();
  for (const fact of facts) top.append(element("span", "", fact), " ");
  drawNotice();
  drawSummary();
}

/** What restricts the report: a part of the log, replaced bytes, settings that hide. */
function drawNotice() {
  const notices = [];
  const { part, redacted } = model;
  if (part) {
    const since = part.since === null || part.since === undefined ? "" : ` from ${absoluteTime(part.since)}`;
    const until = part.until === null || part.until === undefined ? "" : ` until ${absoluteTime(part.until)}`;
    notices.push(`A part of the log:${since}${until}.`);
  }
  if (redacted)
    notices.push(
      `Redacted: ${redacted.kinds.join(", ")}. Secrets were replaced by other bytes of the same length; equal ones stay equal.`,
    );
  const notice = byId("notice");
  notice.textContent = notices.join(" ");
  notice.hidden = notices.length === 0;
}

/** One fact of the summary; the value is a text or an element. */
function putFact(name, ...values) {
  const fact = element("div", "fact", element("dt", "", name));
  for (const value of values) if (value) fact.append(element("dd", "", value));
  byId("summary").append(fact);
}

function drawSummary() {
  const { summary } = model;
  byId("summary").replaceChildren();
  const libraries = [...new Set(summary.sessions.map((each) => each.target ?? ""))].filter(Boolean);
  for (const target of libraries.slice(0, 3)) {
    const session = summary.sessions.findLast((each) => each.target === target);
    const loaded = session.loaded ? "loaded" : "not loaded";
    putFact(
      "Library",
      element("span", "path", target),
      [session.target_version, loaded, session.marvane ? `Marvane ${session.marvane}` : ""].filter(Boolean).join(" · "),
    );
  }
  drawModules(summary.modules);
  const links = groupedLinks();
  const shown = links.slice(0, MostShown).map(summaryOfLink);
  if (links.length > 0)
    putFact(
      links.length > 1 ? "Links" : "Link",
      ...shown,
      links.length > MostShown ? `and ${counted(links.length - MostShown, "more link")}` : "",
    );
  const { requests } = summary;
  if (requests.requests > 0) putFact("Requests", outcomeBar(requests), latencyFact(requests));
  const failed = summary.functions.reduce((sum, each) => sum + each.failed, 0);
  putFact(
    "Calls",
    `${grouped(summary.calls)} in ${counted(summary.functions.filter((each) => each.call !== "PDUCallbackTrap").length, "function")}, ${counted(summary.events, "callback")}`,
    [
      failed > 0 ? `${grouped(failed)} failed` : "none failed",
      `items: ${grouped(summary.items.given)} given out, ${grouped(summary.items.destroyed)} destroyed`,
    ].join(" · "),
  );
  const { params } = summary;
  const changed = [
    ...new Set(params.changed.map((each) => `${each.name} ${each.before ? `${each.before} → ` : "= "}${each.after}`)),
  ];
  if (params.set > 0)
    putFact(
      "ComParams",
      `${grouped(params.set)} set, ${grouped(params.changed.length)} changed`,
      changed.slice(0, 3).join(", ") + (changed.length > 3 ? " …" : ""),
    );
  if (summary.cut_payloads > 0) putFact("Cut", `${counted(summary.cut_payloads, "payload")} cut by LogMaxPduBuff`);
  for (const hint of summary.hints ?? []) putFact("Hint", hint);
}

/** Modules, those that several sessions have in common once. */
function drawModules(modules) {
  const different = new Map(modules.map((each) => [[each.hmod, each.name, each.serial, each.software].join("\n"), each]));
  for (const module of [...different.values()].slice(0, 4))
    putFact(
      `Module ${module.hmod}`,
      module.name,
      [module.serial ? `serial number ${module.serial}` : "", module.software].filter(Boolean).join(" · "),
    );
}

/** The links of the log, those of the same name in several sessions as one, with the number of their requests. */
function groupedLinks() {
  const { exchanges, links, linkLabels } = model;
  const groups = linkLabels.map((_, group) => ({ ...links.find((link) => link.group === group), requests: 0 }));
  for (const link of links) groups[link.group].connected ??= link.connected;
  for (let i = 0; i < exchanges.length; ++i)
    if (exchanges.flags[i] & ExchangeRequest && exchanges.link[i] >= 0) ++groups[groupOfLink(exchanges.link[i])].requests;
  return groups.filter((group) => group.hcll !== undefined);
}

function summaryOfLink(link) {
  const made = element("span", "link-fact");
  made.append(
    element("span", `chip-link hue-${link.group % 6}`, String(link.hcll ?? "–")),
    " ",
    element("span", "path", link.protocol || link.resource || "unnamed"),
  );
  const pins = link.pins?.length > 0 ? `pins ${link.pins.join(", ")}` : "";
  const use =
    link.requests > 0
      ? counted(link.requests, "request")
      : link.connected === null || link.connected === undefined
        ? "not connected"
        : "no requests";
  made.append(element("small", "", [pins, use].filter(Boolean).join(" · ")));
  return made;
}

/** Outcomes of all requests: a bar in proportion, and each in words, to be filtered by. */
function outcomeBar(requests) {
  const made = element("span", "outcomes");
  const bar = element("span", "outcome-bar");
  bar.ariaHidden = "true";
  const words = element("span", "outcome-words");
  OutcomeKeys.forEach((key, i) => {
    const count = requests[key];
    if (!count) return;
    const part = element("span", `bar-${key}`);
    part.style.flexGrow = String(count);
    bar.append(part);
    words.append(
      button(`${grouped(count)} ${Outcomes[i]}`, `plain word-${key}`, () => {
        clearFilters();
        state.view = "talk";
        state.outcome = key;
        update();
        byId("log").scrollIntoView();
      }),
      " ",
    );
  });
  made.append(bar, words);
  return made;
}

function latencyFact(requests) {
  if (!(requests.max_us > 0)) return "";
  return `latency: median ${latencyText(requests.p50_us)} ms, 95 % within ${latencyText(requests.p95_us)} ms, at most ${latencyText(requests.max_us)} ms`;
}
