// Which exchanges and records are wanted.
"use strict";

const OutcomeChoices = [
  ["", "Any outcome"],
  ["trouble", "Not good"],
  ["answered", "Answered"],
  ["refused", "Refused"],
  ["silent", "Silent"],
  ["cancelled", "Cancelled"],
  ["sent", "No answer wanted"],
  ["open", "Open"],
  ["not_started", "Not started"],
  ["never_returned", "Never returned"],
  ["failed", "Failed calls"],
  ["flight", "In flight or cut"],
];
const OutcomeKeys = ["answered", "refused", "silent", "cancelled", "sent", "open", "not_started", "never_returned"];
const TroubledOutcomes = ["refused", "silent", "not_started", "never_returned"];

const RecordFailed = 1;
const RecordCut = 2;
const RecordInFlight = 4;
const RecordNotLoaded = 8;
const RecordRedacted = 16;
const RecordSent = 32;

const ExchangeByLog = 1;
const ExchangeQuiet = 2;
const ExchangeRedacted = 8;
const ExchangeRequest = 16;

/** Names that can be filtered by: services, then functions. By name: how many there are of it. */
function servicesOf(model) {
  if (model.services) return model.services;
  const counts = new Map();
  const count = (column) => column.forEach((name) => counts.set(name, (counts.get(name) ?? 0) + 1));
  count(model.exchanges.service);
  model.countServices = counts.size;
  count(model.records.name.filter((_, i) => model.records.kind[i] < 2));
  model.services = new Map([...counts].map(([name, many]) => [model.strings[name], many]));
  return model.services;
}

function isTroubled(exchange) {
  return TroubledOutcomes.includes(OutcomeKeys[model.exchanges.outcome[exchange]]);
}

const groupOfLink = (link) => model.links[link]?.group ?? -1;
const groupOfThread = (thread) => model.threads[thread]?.group ?? -1;

/** A function that tells whether an exchange is wanted, but for the search. */
function exchangeFilter() {
  const { exchanges, records, strings } = model;
  const service = state.service ? strings.indexOf(state.service) : -1;
  const outcome = OutcomeKeys.indexOf(state.outcome);
  return (i) => {
    if (state.link >= 0 && groupOfLink(exchanges.link[i]) !== state.link) return false;
    const record = exchanges.record[i];
    if (state.thread >= 0 && (record < 0 || groupOfThread(records.thread[record]) !== state.thread)) return false;
    if (service >= 0 && exchanges.service[i] !== service && (record < 0 || records.name[record] !== service)) return false;
    if (state.outcome === "") return true;
    if (state.outcome === "trouble") return isTroubled(i) || hasRecordTrouble(record);
    if (state.outcome === "failed") return record >= 0 && (records.flags[record] & RecordFailed) !== 0;
    if (state.outcome === "flight") return record >= 0 && (records.flags[record] & (RecordInFlight | RecordCut)) !== 0;
    return exchanges.outcome[i] === outcome;
  };
}

function hasRecordTrouble(record) {
  return record >= 0 && (model.records.flags[record] & (RecordFailed | RecordCut | RecordInFlight | RecordNotLoaded)) !== 0;
}

/** Likewise for a record. */
function recordFilter() {
  const { exchanges, records, strings, exchangeOf } = model;
  const service = state.service ? strings.indexOf(state.service) : -1;
  const outcome = OutcomeKeys.indexOf(state.outcome);
  return (i) => {
    const exchange = exchangeOf[i];
    if (
      state.link >= 0 &&
      groupOfLink(records.link[i]) !== state.link &&
      !(exchange >= 0 && groupOfLink(exchanges.link[exchange]) === state.link)
    )
      return false;
    if (state.thread >= 0 && groupOfThread(records.thread[i]) !== state.thread) return false;
    if (service >= 0 && records.name[i] !== service && !(exchange >= 0 && exchanges.service[exchange] === service))
      return false;
    if (state.outcome === "") return true;
    if (state.outcome === "trouble") return hasRecordTrouble(i) || (exchange >= 0 && isTroubled(exchange));
    if (state.outcome === "failed") return (records.flags[i] & RecordFailed) !== 0;
    if (state.outcome === "flight") return (records.flags[i] & (RecordInFlight | RecordCut)) !== 0;
    return exchange >= 0 && exchanges.outcome[exchange] === outcome;
  };
}

/** A remark, or lines without a record, is wanted only if no filter asks for what it has not. */
function remarkFilter() {
  return (i) =>
    (state.link < 0 || groupOfLink(model.remarks.link[i]) === state.link) &&
    state.thread < 0 &&
    state.service === "" &&
    state.outcome === "";
}
