// Search: plain text, upper and lower case alike, through every line of the log and the words of the conversation.
"use strict";

/** What a query looks for: itself; bytes without blanks also as the log writes them, "22f190" as "22 f1 90". */
function needlesOf(query) {
  const needle = query.trim().toLowerCase();
  if (needle === "") return [];
  const isHex = /^([0-9a-f]{2}){2,}$/.test(needle);
  return isHex ? [needle, needle.replace(/(..)(?=.)/g, "$1 ")] : [needle];
}

/** What a search found: marks by record, by run of other lines, and by string of the model. */
function search(query) {
  const needles = needlesOf(query);
  if (needles.length === 0) return null;
  const found = {
    needles,
    records: new Uint8Array(model.records.length),
    others: new Uint8Array(lines.others.line.length),
    strings: new Uint8Array(model.strings.length),
  };
  model.lowerStrings ??= model.strings.map((text) => text.toLowerCase());
  for (const needle of needles) {
    model.lowerStrings.forEach((text, i) => text.includes(needle) && (found.strings[i] = 1));
    const skipped = rareIn(needle);
    for (const block of lines.blocks) searchBlock(block, needle, skipped, found);
  }
  return found;
}

const MostSought = 6;

/**
 * Where in a needle the character is that is rarest in the log. Browsers look for a text of a few characters by
 * its first one, as fast as memory can be read if that is rare: two to five times as fast as for the whole.
 */
function rareIn(needle) {
  if (lines.blocks.length === 0) return 0;
  search.counts ??= countCharacters(lines.blocks[lines.blocks.length >> 1].lower.slice(0, 100000));
  let best = 0;
  for (let i = 1; i < needle.length; ++i)
    if ((search.counts.get(needle[i]) ?? 0) < (search.counts.get(needle[best]) ?? 0)) best = i;
  return best;
}

function countCharacters(text) {
  const counts = new Map();
  for (const character of text) counts.set(character, (counts.get(character) ?? 0) + 1);
  return counts;
}

/** Where a needle is in a text, from an offset on; -1 if it is not. */
function indexOfNeedle(text, needle, skipped, from) {
  const rest = needle.slice(skipped, skipped + MostSought);
  for (let at = text.indexOf(rest, from + skipped); at >= 0; at = text.indexOf(rest, at + 1))
    if (text.startsWith(needle, at - skipped)) return at - skipped;
  return -1;
}

/** A record is found once: the rest of its lines is passed over. */
function searchBlock(block, needle, skipped, found) {
  const { starts, owner } = lines;
  const following = lines.blocks[lines.blocks.indexOf(block) + 1];
  const end = following ? following.first : starts.length;
  let line = block.first;
  for (let at = indexOfNeedle(block.lower, needle, skipped, 0); at >= 0;) {
    line = lineOfOffset(at, line, end);
    const whose = owner[line];
    if (whose >= 0) found.records[whose] = 1;
    else found.others[otherOf(line)] = 1;
    while (line < end && owner[line] === whose) ++line;
    if (line >= end) return;
    at = indexOfNeedle(block.lower, needle, skipped, starts[line]);
  }
}

/** The line from `line` on that holds the offset: steps that grow, then bisection. */
function lineOfOffset(offset, line, end) {
  const { starts } = lines;
  let low = line;
  let step = 1;
  while (low + step < end && starts[low + step] <= offset) {
    low += step;
    step *= 2;
  }
  let high = Math.min(end, low + step);
  while (high - low > 1) {
    const middle = (low + high) >> 1;
    if (starts[middle] <= offset) low = middle;
    else high = middle;
  }
  return low;
}

/** The run of other lines that a line is in. */
function otherOf(line) {
  const { line: firsts } = lines.others;
  let low = 0;
  let high = firsts.length - 1;
  while (low < high) {
    const middle = (low + high + 1) >> 1;
    if (firsts[middle] <= line) low = middle;
    else high = middle - 1;
  }
  return low;
}

/** Whether a record was found: by its lines, or by the words of the exchange that it begins. */
function isRecordFound(found, i) {
  return found.records[i] === 1 || (model.exchangeOf[i] >= 0 && hasFoundWords(found, model.exchangeOf[i]));
}

function hasFoundWords({ strings }, i) {
  const { exchanges, responses, firstResponse } = model;
  if (
    strings[exchanges.text[i]] ||
    strings[exchanges.words[i]] ||
    strings[exchanges.detail[i]] ||
    strings[exchanges.service[i]] ||
    strings[exchanges.request[i]]
  )
    return true;
  for (let r = firstResponse[i]; r < firstResponse[i + 1]; ++r) if (strings[responses.text[r]]) return true;
  return false;
}

/** Whether the words or the lines of an exchange, those of its answers too, were found. */
function isExchangeFound(found, i) {
  const { exchanges, answers, firstAnswer } = model;
  const { strings, records } = found;
  if (hasFoundWords(found, i)) return true;
  if (exchanges.record[i] >= 0 && records[exchanges.record[i]]) return true;
  for (let a = firstAnswer[i]; a < firstAnswer[i + 1]; ++a) {
    const whose = answers.line[a] >= 0 ? lines.owner[answers.line[a]] : -1;
    if (strings[answers.text[a]] || (whose >= 0 && records[whose])) return true;
  }
  return false;
}
