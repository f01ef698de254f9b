// How a folded row looks.
"use strict";

/** The element of a row: its head, a button, and if it is unfolded its details. */
function drawRow(row) {
  const kind = rows.kind[row];
  const key = keyOf(row);
  const item = element("div", "row");
  item.role = "listitem";
  item.dataset.key = key;
  if (kind === RowSession) {
    const heading = element("div", "session", sessionText(rows.ref[row]));
    heading.tabIndex = -1;
    item.append(heading);
    return item;
  }
  const head = button("", "head", () => toggleRow(rowOf(key)));
  const draw = [drawExchange, drawRemark, drawFold, null, drawRecord, drawOther][kind];
  draw(head, rows.ref[row]);
  item.append(head);
  if (kind === RowRemark) return item;
  const isUnfolded = state.open.has(key);
  head.ariaExpanded = String(isUnfolded);
  item.classList.toggle("open", isUnfolded);
  if (isUnfolded && kind !== RowFold) item.append(drawDetail(kind, rows.ref[row]));
  return item;
}

const cell = (className, ...children) => element("span", className, ...children);

function marked(className, text) {
  const made = cell(className);
  appendMarked(made, text, rows.found?.needles);
  return made;
}

/** A mark as a glyph, and in words for those who do not see it. */
function markCell(mark) {
  const made = cell(`mark mark-${["none", "bad", "note", "way", "open"][mark]}`);
  if (Marks[mark]) {
    const glyph = cell("", mark === 3 ? "·" : Marks[mark]);
    glyph.ariaHidden = "true";
    made.append(glyph);
    if (MarkWords[mark]) made.append(cell("unseen", MarkWords[mark]));
  }
  return made;
}

function timeCell(ms) {
  return cell("time", secondsText(ms));
}

function lineCell(line) {
  return line < 0 ? cell("line") : cell("line", cell("unseen", "line "), lineText(model, line));
}

/** A link as a chip with its number. */
function linkCell(link) {
  if (link < 0) return cell("link");
  const chip = cell(`chip-link hue-${groupOfLink(link) % 6}`, cell("unseen", "link "), linkNumber(link));
  return cell("link", chip);
}

function linkNumber(link) {
  const { hcll } = model.links[link];
  return hcll === undefined || hcll === null ? "–" : String(hcll);
}

function drawExchange(head, i) {
  const { exchanges, records, responses, strings, firstResponse } = model;
  const record = exchanges.record[i];
  head.classList.add("exchange", `outcome-${OutcomeKeys[exchanges.outcome[i]]}`);
  const request = cell("request", marked("bytes", strings[exchanges.text[i]]), marked("words", wordsOf(i)));
  const answers = cell("responses");
  for (let r = firstResponse[i]; r < firstResponse[i + 1]; ++r) {
    const response = cell("response", markCell(responses.mark[r]), marked("bytes", strings[responses.text[r]]));
    response.append(
      cell("ms", latencyText(responses.after[r], responses.byLog[r]), cell("unseen", responses.after[r] < 0 ? "" : " ms")),
    );
    answers.append(response);
  }
  head.append(
    timeCell(record < 0 ? 0 : records.time[record]),
    linkCell(exchanges.link[i]),
    cell("cop", exchanges.cop[i] < 0 ? "" : String(exchanges.cop[i])),
    request,
    answers,
    lineCell(lineOfExchange(i)),
  );
}

/** "read identifier · VIN"; a detail that says the same is left out. */
function wordsOf(i) {
  const { exchanges, strings } = model;
  const words = strings[exchanges.words[i]];
  const detail = strings[exchanges.detail[i]];
  const isSame = words.replaceAll(" ", "").toLowerCase() === detail.toLowerCase();
  return detail && !isSame ? `${words} · ${detail}` : words;
}

function drawRemark(head, i) {
  const { remarks, strings } = model;
  head.classList.add("remark");
  head.append(
    timeCell(remarks.time[i]),
    linkCell(remarks.link[i]),
    cell("cop"),
    cell("remark-text", markCell(remarks.mark[i]), marked("", strings[remarks.text[i]])),
  );
  head.append(lineCell(remarks.kind[i] === 1 ? -1 : remarks.line[i]));
}

/** What a run of transfers or tester presents amounts to. */
function foldText(first) {
  const members = rows.folds.get(first);
  const { exchanges, records, strings } = model;
  const begin = records.time[exchanges.record[first]];
  const last = members.at(-1);
  const span = records.time[exchanges.record[last]] + Math.max(0, exchanges.end[last]) - begin;
  const sid = exchanges.sid[first].toString(16).toUpperCase().padStart(2, "0");
  const words = strings[exchanges.words[first]];
  if (foldKind(first) === 2)
    return {
      request: `${sid}  ${grouped(members.length)} times`,
      words,
      answer:
        exchanges.outcome[first] === 4 ? "no answer wanted" : strings[model.responses.text[model.firstResponse[first]]],
      span,
    };
  const bytes = members.reduce((sum, i) => sum + Math.max(0, exchanges.size[i] - 2), 0);
  const rate = span > 0 ? `, ${sizeText((bytes * 1000) / span)}/s` : "";
  return { request: `${sid}  ${grouped(members.length)} blocks`, words, answer: `${sizeText(bytes)}${rate}`, span };
}

function drawFold(head, first) {
  const { exchanges, records } = model;
  const text = foldText(first);
  head.classList.add("exchange", "fold");
  const span = cell("ms", `~${grouped(text.span)}`, cell("unseen", " ms"));
  head.append(
    timeCell(records.time[exchanges.record[first]]),
    linkCell(exchanges.link[first]),
    cell("cop", cell("fold-sign")),
    cell("request", marked("bytes", text.request), marked("words", text.words)),
    cell("responses", cell("response", markCell(0), marked("bytes", text.answer), span)),
    lineCell(lineOfExchange(first)),
  );
}

function drawRecord(head, i) {
  const { records, strings } = model;
  const flags = records.flags[i];
  const isReport = records.kind[i] === 2;
  head.classList.add("record", ["call", "callback", "report", "mark-line"][records.kind[i]]);
  if (flags & (RecordFailed | RecordCut | RecordInFlight | RecordNotLoaded)) head.classList.add("failed");
  const name = cell(
    "name",
    isReport ? cell("way", flags & RecordSent ? "→ " : "← ") : null,
    marked("function", strings[records.name[i]]),
    marked("arguments", argumentsOf(i)),
  );
  name.style.paddingInlineStart = `${Math.min(6, records.depth[i]) * 14}px`;
  head.append(
    timeCell(records.time[i]),
    cell("thread", cell("unseen", "thread "), threadText(model.threads[records.thread[i]]?.id ?? 0)),
    name,
    marked("status", statusText(i)),
    cell(
      "ms",
      records.dur[i] > 0 ? grouped(records.dur[i]) : records.dur[i] === 0 ? "0" : "",
      cell("unseen", records.dur[i] >= 0 ? " ms" : ""),
    ),
    lineCell(records.line[i]),
  );
}

/** What the entry line says after the name: "(hMod=0x00000001)". */
function argumentsOf(i) {
  const { records } = model;
  if (!lines.isReady) return "";
  const { text } = lineAt(records.line[i]);
  if (records.kind[i] === 2)
    return records.lines[i] > 0 ? "  " + lineAt(records.line[i] + records.lines[i]).text.trim() : "";
  const at = text.indexOf("(");
  return records.kind[i] < 2 && at >= 0 ? text.slice(at) : "";
}

/** "NOERROR" is no news; other statuses without the prefix that they all have. */
function statusText(i) {
  const { records, statuses } = model;
  const flags = records.flags[i];
  if (flags & RecordInFlight) return "never returned";
  if (flags & RecordNotLoaded) return "no library loaded";
  if (flags & RecordCut && records.status[i] < 0) return "exit line cut";
  const status = statuses[records.status[i]];
  if (!status || status.code === 0) return records.kind[i] === 2 ? (flags & RecordSent ? "sent" : "received") : "";
  return status.name.replace(/^PDU_(ERR_)?/, "");
}

function drawOther(head, i) {
  const line = lines.others.line[i];
  const count = lines.others.count[i];
  head.classList.add("record", "other");
  head.append(
    cell("time"),
    cell("thread"),
    cell("name", marked("arguments", lineAt(line).text.trim() || "(empty line)")),
    cell("status", counted(count, "line")),
    cell("ms"),
    lineCell(line),
  );
}

function sessionText(number) {
  const session = model.summary.sessions.find((each) => each.number === number);
  return `Session ${number}${session ? `   ${session.begin.replace("T", "  ")}` : ""}`;
}
