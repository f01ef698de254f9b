// --format pcapng, read by tshark.
import assert from "node:assert/strict";
import { execFileSync, spawnSync } from "node:child_process";
import { readFileSync, readdirSync, writeFileSync } from "node:fs";
import { join } from "node:path";
import { test } from "node:test";
import { demo, goldenLogs, logs, marvane, objects, source, withFolder } from "./marvane.mjs";

const skip = spawnSync("tshark", ["--version"]).error ? "tshark is not installed (Debian package tshark)" : false;

/** Exports a log and returns the path of the capture. */
function capture(folder, log, ...options) {
  const file = join(folder, "capture.pcapng");
  marvane("export", "--format", "pcapng", "--force", ...options, log, "-o", file);
  return file;
}

function tshark(file, ...words) {
  const options = { encoding: "utf8", maxBuffer: 1 << 30, stdio: ["ignore", "pipe", "ignore"] };
  return execFileSync("tshark", ["-n", "-r", file, ...words], options);
}

/** Lines of fields, separated by `|`; only the packets that a filter chooses. */
function fields(file, names, filter = "frame") {
  const words = names.flatMap((name) => ["-e", name]);
  const text = tshark(file, "-Y", filter, "-T", "fields", "-E", "separator=|", ...words);
  return text.split("\n").slice(0, -1);
}

/** The packets as tshark takes them apart: interface, protocols, direction, payload in hexadecimal. */
function packets(file) {
  const text = tshark(file, "-T", "json", "-x");
  assert.ok(!/"_ws\.malformed|"_ws\.expert\.severity": "8388608"/.test(text), file);
  return JSON.parse(text).map(({ _source: { layers } }) => ({
    name: layers.frame["frame.interface_id_tree"]["frame.interface_name"],
    dissectors: layers.frame["frame.protocols"],
    time: Number(layers.frame["frame.time_epoch"]),
    way: layers.frame["frame.p2p_dir"],
    payload: layers.frame_raw[0].slice(layers.exported_pdu_raw[0].length),
  }));
}

const isText = ({ dissectors }) => dissectors.endsWith(":syslog");
const isReport = ({ name }) => name === "reports";

/** Bytes on links, as "sent 22f190", sorted. */
const payloads = (all) =>
  all
    .filter((packet) => !isText(packet) && !isReport(packet))
    .map(({ way, payload }) => `${way === "0" ? "sent" : "received"} ${payload}`)
    .sort();

/** The same from the JSON Lines of the log: requests that were started, results that were fetched. */
const expected = (records) =>
  records
    .filter(({ kind, request, item, data }) => (kind === "exchange" && request) || (item === "result" && data))
    .map(({ kind, request, data }) => (kind === "exchange" ? `sent ${request}` : `received ${data}`))
    .sort();

function check(folder, log) {
  const file = capture(folder, log);
  const all = packets(file);
  const records = objects(marvane("export", "--format", "jsonl", log));
  assert.deepEqual(payloads(all), expected(records), log);
  const reports = records.filter(({ kind }) => kind === "comms");
  assert.equal(all.filter(isReport).length, reports.length, log);
  const times = all.map(({ time }) => time);
  assert.deepEqual(times, [...times].sort((a, b) => a - b), log);
  for (const { state, call, level } of records)
    if (call && (state !== "returned" || level === "error"))
      assert.ok(all.some((packet) => isText(packet) && Buffer.from(packet.payload, "hex").includes(call)), `${log}: ${call}`);
}

test("every request and every answer is a packet, and none is malformed", { skip }, () =>
  withFolder((folder) => {
    for (const log of [...logs(), ...goldenLogs(folder)]) check(folder, log);
  }));

test("the demo's conversation", { skip }, () =>
  withFolder((folder) => {
    const file = capture(folder, demo, "--zone", "+01:00");
    assert.equal(tshark(file, "-Y", "_ws.malformed || _ws.expert.severity >= 6291456"), "");
    execFileSync("capinfos", [file], { stdio: ["ignore", "ignore", "inherit"] });
    const names = ["frame.time_epoch", "frame.interface_name", "frame.p2p_dir", "uds.sid", "uds.err.code", "frame.comment"];
    assert.deepEqual(fields(file, names, "uds && frame.number < 33"), [
      "1795303656.985001000|hMod 1 hCLL 1|0|0x22||read identifier, hCoP 3, line 683",
      "1795303656.987001000|hMod 1 hCLL 1|0|0x22||read identifier, hCoP 4, line 766",
      "1795303656.987077000|hMod 1 hCLL 1|1|0x22||answer to packet 12 after 2.1 ms, response identifier 7, line 738",
      "1795303656.989001000|hMod 1 hCLL 1|0|0x19||trouble codes, hCoP 5, line 838",
      "1795303656.989090000|hMod 1 hCLL 1|1|0x22||answer to packet 15 after 2.1 ms, response identifier 7, line 814",
      "1795303656.991001000|hMod 1 hCLL 1|0|0x22||read identifier, hCoP 6, line 918",
      "1795303656.991089000|hMod 1 hCLL 1|1|0x19||answer to packet 19 after 2.1 ms, response identifier 7, line 894",
      "1795303656.993089000|hMod 1 hCLL 1|1|0x3f|0x31|answer to packet 23 after 2.1 ms, requestOutOfRange, response identifier 7, line 971",
      "1795303656.994000000|hMod 1 hCLL 1|0|0xba||hCoP 7, line 995",
      "1795303657.044001000|hMod 1 hCLL 1|0|0x10||programming session, hCoP 8, line 1071",
    ]);
    const description = fields(file, ["frame.interface_description"], "frame.interface_name == \"hMod 1 hCLL 3\"");
    assert.equal(description[0], "ISO_14229_5_on_ISO_13400_2, IEEE_802_3, pins 3/11");
  }));

/** A row of a listing of at most 16 bytes, from the end of its label on. */
function row(hex) {
  const bytes = hex.split(" ").map((byte) => parseInt(byte, 16));
  const text = bytes.map((byte) => (byte >= 0x20 && byte < 0x7f ? String.fromCharCode(byte) : ".")).join("");
  return `|00000000 ${`<${hex}>`.padEnd(51)}${text.padEnd(16)}|`;
}

test("both addresses of whole DoIP messages in reports", { skip }, () =>
  withFolder((folder) => {
    const log = join(folder, "doip.LGR");
    const report = /(\[DoIP\] ->  Diagnostic message\n.*\n.* Message        )\|.*/;
    const message = row("02 FD 80 01 00 00 00 07 0E 80 10 10 22 F1 90");
    const text = readFileSync(join(demo, readdirSync(demo)[0]), "latin1");
    writeFileSync(log, text.replace(report, (_, before) => before + message), "latin1");
    const names = ["frame.interface_name", "frame.p2p_dir", "doip.source_address", "doip.target_address", "uds.sid"];
    assert.deepEqual(fields(capture(folder, log), names, "doip"), ["reports|0|0x0e80|0x1010|0x22"]);
  }));

test("a payload that the log cut has its real size", { skip }, () =>
  withFolder((folder) => {
    const file = capture(folder, join(demo, "..", "cut_payload.LGR"));
    const rows = fields(file, ["frame.p2p_dir", "frame.cap_len", "frame.len", "uds.sid"], "uds");
    assert.deepEqual(rows, ["0|36|148|0x36", "1|36|60|0x36"]);
  }));

test("errors are texts with a severity", { skip }, () =>
  withFolder((folder) => {
    const file = capture(folder, demo);
    assert.deepEqual(fields(file, ["frame.interface_name", "syslog.msg"], "syslog.level <= 3"), [
      "hMod 1 hCLL 2|PDULockResource: PDU_ERR_RSC_LOCKED_BY_OTHER_CLL (0x00A1)",
      "hMod 1 hCLL 1|PDU_ERR_EVT_RX_TIMEOUT (0x0103)",
      "API|PDUGetObjectId: PDU_ERR_ID_NOT_SUPPORTED (0x0062)",
    ]);
  }));

test("an export without packets is a capture", { skip }, () =>
  withFolder((folder) => {
    const file = capture(folder, demo, "--since", "2030-01-01 00:00");
    assert.equal(tshark(file), "");
    execFileSync("capinfos", [file], { stdio: ["ignore", "ignore", "inherit"] });
  }));

test("the filters of the documentation are filters", { skip }, () =>
  withFolder((folder) => {
    const page = readFileSync(join(source, "docs", "pcapng.md"), "utf8");
    const rows = [...page.slice(page.indexOf("## Filters")).matchAll(/^\| `(.+?)` \|/gm)];
    assert.equal(rows.length, 12);
    const file = capture(folder, demo);
    tshark(file, "-Y", rows.map(([, filter]) => `(${filter})`).join(" || "));
  }));
