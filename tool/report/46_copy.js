// Rows and calls as text for the clipboard.
"use strict";

const MostCopied = 5000;

/** A row as a line of text, with the columns of the list. */
function rowAsText(row) {
  const ref = rows.ref[row];
  const { exchanges, records, remarks, responses, strings, firstResponse } = model;
  const time = (ms) => secondsText(ms).padStart(9);
  const columns = (left, right, ms, line) => `${left.padEnd(62)}${right.padEnd(44)}${ms.padStart(8)}  ${line}`.trimEnd();
  switch (rows.kind[row]) {
    case RowExchange: {
      const record = exchanges.record[ref];
      const cop = exchanges.cop[ref] < 0 ? "" : String(exchanges.cop[ref]);
      const left = `${time(records.time[record] ?? 0)}  ${linkText(exchanges.link[ref])}  ${cop.padStart(5)}  ${strings[exchanges.text[ref]].padEnd(18)} ${wordsOf(ref)}`;
      const texts = [];
      for (let r = firstResponse[ref]; r < firstResponse[ref + 1]; ++r)
        texts.push(
          columns(
            r === firstResponse[ref] ? left : "",
            `${Marks[responses.mark[r]] || " "} ${strings[responses.text[r]]}`,
            latencyText(responses.after[r], responses.byLog[r]),
            r === firstResponse[ref] ? lineText(model, lineOfExchange(ref)) : "",
          ),
        );
      return texts.length > 0 ? texts.join("\n") : left;
    }
    case RowRemark:
      return `${time(remarks.time[ref])}  ${linkText(remarks.link[ref])}         ${Marks[remarks.mark[ref]]} ${strings[remarks.text[ref]]}`;
    case RowFold: {
      const fold = foldText(ref);
      return columns(
        `${time(records.time[exchanges.record[ref]])}  ${linkText(exchanges.link[ref])}         ${fold.request.padEnd(18)} ${fold.words}`,
        `  ${fold.answer}`,
        `~${grouped(fold.span)}`,
        lineText(model, lineOfExchange(ref)),
      );
    }
    case RowSession:
      return `== ${sessionText(ref)}`;
    case RowRecord: {
      const thread = threadText(model.threads[records.thread[ref]]?.id ?? 0);
      const status = statusText(ref);
      return `${time(records.time[ref])}  ${thread}  ${"  ".repeat(records.depth[ref])}${strings[records.name[ref]]}${argumentsOf(ref)}${status ? `  ${status}` : ""}  ${lineText(model, records.line[ref])}`;
    }
    default:
      return lines.isReady ? lineAt(lines.others.line[ref]).text : "";
  }
}

const linkText = (link) => (link < 0 ? "      " : `link ${linkNumber(link)}`);

/** Lines of the log to the byte, timestamps included. */
function linesAsText(all) {
  return all
    .map((line) => {
      const { stamp, text } = lineAt(line);
      return stamp + text;
    })
    .join("\n");
}

function recordAsText(record) {
  return linesAsText(linesOfRecord(record));
}

/** The row of an exchange, then the lines of its calls. */
function exchangeAsText(i) {
  const { exchanges, answers, firstAnswer } = model;
  const parts = [];
  const row = rowOf(`e${i}`);
  if (row >= 0) parts.push(rowAsText(row));
  if (exchanges.record[i] >= 0) parts.push(recordAsText(exchanges.record[i]));
  for (let a = firstAnswer[i]; a < firstAnswer[i + 1]; ++a) {
    const owner = answers.line[a] >= 0 ? lines.owner[answers.line[a]] : -1;
    if (owner >= 0) parts.push(recordAsText(owner));
  }
  return parts.join("\n\n") + "\n";
}

/** Copies a row; if it is unfolded, the lines too. */
async function copyRow(row) {
  const kind = rows.kind[row];
  const isWhole = state.open.has(keyOf(row));
  if (isWhole) await lines.ready;
  if (isWhole && kind === RowExchange) return copyText(exchangeAsText(rows.ref[row]), "the call");
  if (isWhole && kind === RowRecord) return copyText(recordAsText(rows.ref[row]) + "\n", "the call");
  return copyText(rowAsText(row) + "\n", "the row");
}

/** Copies all rows of the view. */
function copyRows() {
  const count = Math.min(rows.kind.length, MostCopied);
  const texts = [`${model.files.map((file) => file.name).join(", ")}`];
  for (let row = 0; row < count; ++row) texts.push(rowAsText(row));
  if (count < rows.kind.length) texts.push(`... and ${grouped(rows.kind.length - count)} more rows`);
  return copyText(
    texts.join("\n") + "\n",
    count < rows.kind.length ? `the first ${counted(count, "row")}` : counted(count, "row"),
  );
}
