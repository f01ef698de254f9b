// An unfolded row: the whole call with its decoded lines and bytes, as the log has them.
"use strict";

const MostLines = 500; // of a call, until all are asked for

function drawDetail(kind, ref) {
  const detail = element("div", "detail");
  const draw = { [RowExchange]: detailOfExchange, [RowRecord]: detailOfRecord, [RowOther]: detailOfOther }[kind];
  if (lines.isReady) draw(detail, ref);
  else {
    detail.append(element("p", "waiting", "Unpacking the lines …"));
    lines.ready.then(() => {
      detail.replaceChildren();
      draw(detail, ref);
    });
  }
  return detail;
}

/** Facts as a list of names and values; those without a value are left out. */
function factList(facts) {
  const made = element("dl", "facts-of-row");
  for (const [name, value] of facts) {
    if (value === "" || value === null || value === undefined) continue;
    made.append(element("div", "", element("dt", "", name), element("dd", "", value)));
  }
  return made;
}

function absoluteTime(ms) {
  return `${dateText(model.begin + ms)} ${clockText(model.begin + ms)}`;
}

function linkTitle(link) {
  if (link < 0) return "";
  const { pins = [] } = model.links[link];
  return `${linkLabel(model.links[link]).replace(/^link /, "")}${pins.length > 0 ? `  pins ${pins.join(", ")}` : ""}`;
}

function detailOfExchange(detail, i) {
  const { exchanges, records, strings, answers, firstAnswer } = model;
  const record = exchanges.record[i];
  const flags = exchanges.flags[i];
  const latency = exchanges.latency[i];
  detail.append(
    factList([
      ["Service", [strings[exchanges.service[i]], strings[exchanges.detail[i]]].filter(Boolean).join(" · ")],
      ["Outcome", Outcomes[exchanges.outcome[i]]],
      [
        "Latency",
        latency < 0
          ? ""
          : `${latencyText(latency, flags & ExchangeByLog)} ms, ${flags & ExchangeByLog ? "log's clock, from call to fetch" : "library's clock"}`,
      ],
      ["Link", linkTitle(exchanges.link[i])],
      ["ComPrimitive", exchanges.cop[i] < 0 ? "" : `${exchanges.cop[i]}`],
      ["Begun", record < 0 ? "" : absoluteTime(records.time[record])],
      ["Sent", exchanges.sent[i] < 0 ? "" : `${grouped(exchanges.sent[i])} ms after the call`],
      ["Redacted", flags & ExchangeRedacted ? "bytes were replaced" : ""],
      ...errorFacts(record),
    ]),
  );
  detail.append(actionsOf(() => exchangeAsText(i), record));
  if (record >= 0) detail.append(linesOf(record, `Request: ${strings[records.name[record]]}`));
  for (let a = firstAnswer[i]; a < firstAnswer[i + 1]; ++a) {
    const what = ["Answer", "Refusal", "Pending", "Error"][answers.kind[a]];
    const from = answers.from[a] >= 0 ? ` from ${answers.from[a]}` : "";
    const after = answers.after[a] >= 0 ? `, after ${latencyText(answers.after[a], answers.byLog[a])} ms` : "";
    const owner = answers.line[a] >= 0 ? lines.owner[answers.line[a]] : -1;
    const title = `${what}${from}${after}: ${strings[answers.text[a]]}`;
    detail.append(owner >= 0 ? linesOf(owner, title) : element("h3", "", title));
  }
}

/** Buttons of an unfolded row: copy, and the way to the call among all calls. */
function actionsOf(text, record) {
  const made = element(
    "p",
    "row-actions",
    button("Copy as text", "", () => copyText(text(), "the call")),
  );
  if (record >= 0 && state.view === "talk") made.append(button("Show among all calls", "", () => showRecord(record)));
  return made;
}

/** Shows a record in the other view, unfolded. */
function showRecord(record) {
  clearFilters();
  state.view = "calls";
  state.at = `r${record}`;
  state.open.add(state.at);
  update();
  goTo(rowOf(state.at), { hasFocus: true, isCentered: true });
}

function detailOfRecord(detail, i) {
  const { records, strings, statuses } = model;
  const flags = records.flags[i];
  const status = statuses[records.status[i]];
  detail.append(
    factList([
      ["Status", status ? `${status.name} (0x${status.code.toString(16).toUpperCase().padStart(4, "0")})` : ""],
      ["State", statusText(i) && flags & (RecordCut | RecordInFlight | RecordNotLoaded) ? statusText(i) : ""],
      ["Begun", absoluteTime(records.time[i])],
      ["Duration", records.dur[i] < 0 || records.kind[i] > 1 ? "" : `${grouped(records.dur[i])} ms`],
      ["Thread", threadText(model.threads[records.thread[i]]?.id ?? 0)],
      ["Link", linkTitle(records.link[i])],
      ["Redacted", flags & RecordRedacted ? "bytes were replaced" : ""],
      ...errorFacts(i),
    ]),
  );
  detail.append(actionsOf(() => recordAsText(i), -1));
  detail.append(linesOf(i, strings[records.name[i]]));
}

function detailOfOther(detail, i) {
  const { line, count } = lines.others;
  detail.append(linesElement("Lines that belong to no call", rangeOf(line[i], count[i])));
}

const rangeOf = (first, count) => Array.from({ length: count }, (_, i) => first + i);

/** The lines of a record, without those of calls inside it and of other threads. */
function linesOfRecord(record) {
  const { records } = model;
  const first = records.line[record];
  const result = [];
  const end = Math.min(first + records.lines[record] + 1, model.lineCount);
  for (let line = first; line < end; ++line) if (lines.owner[line] === record) result.push(line);
  return result;
}

function linesOf(record, title) {
  return linesElement(title, linesOfRecord(record));
}

/** Lines of the log under a heading, each with its number. */
function linesElement(title, all) {
  const place =
    all.length > 0
      ? `line${all.length > 1 ? "s" : ""} ${lineText(model, all[0])}${all.length > 1 ? `–${lineText(model, all.at(-1))}` : ""}`
      : "";
  const heading = element("h3", "");
  appendMarked(heading, title, rows.found?.needles);
  heading.append(element("span", "place", place));
  const text = element("div", "lines");
  text.tabIndex = 0;
  text.role = "region";
  text.ariaLabel = `Lines of the log, ${place}`;
  const put = (from, to) => {
    for (let i = from; i < to; ++i) text.append(lineElement(all[i], i > 0 && all[i] !== all[i - 1] + 1));
  };
  put(0, Math.min(all.length, MostLines));
  const section = element("section", "", heading, text);
  if (all.length > MostLines)
    section.append(
      button(`Show all ${grouped(all.length)} lines`, "", (event) => {
        put(MostLines, all.length);
        event.target.remove();
      }),
    );
  return section;
}

/** One line. `isApart`: lines of others stand before it in the log. */
function lineElement(line, isApart) {
  const { stamp, text } = lineAt(line);
  const made = element("div", `log-line ${lineClass(text)}${isApart ? " apart" : ""}`);
  made.append(element("span", "number", lineText(model, line)));
  made.append(element("span", "stamp", stamp));
  const body = element("span", "text");
  appendMarked(body, text, rows.found?.needles);
  made.append(body, "\n");
  return made;
}

function lineClass(text) {
  if (/^[+-] /.test(text)) return text[0] === "+" ? "entry" : "exit";
  if (/^\s*(-->|>>>)/.test(text)) return "in";
  if (/^\s*(<--|<<<)/.test(text)) return "out";
  return "";
}
