// The report page of the demo: what it shows, by mouse.
import assert from "node:assert/strict";
import { join } from "node:path";
import { test } from "node:test";
import { readFileSync } from "node:fs";
import { demo, source } from "./marvane.mjs";
import {
  demoTests,
  linesOf,
  partsOf,
  rowsOf,
  searchFor,
  settled,
  skip,
  textOf,
  withBrowser,
  withPage,
  writeReport,
} from "./report_kit.mjs";

const folds = join(source, "tests", "logs", "folds.LGR");
const tests = demoTests();
const { pageTest } = tests;

pageTest("the top says what the log is", async (page) => {
  assert.equal(await page.title(), "D-PDU_API_Logger_22-11-2026_00-27-36.LGR");
  assert.equal(await textOf(page, "#facts"), "22 Nov 2026 00:27:36.984 157 ms 2,496 lines 2 threads ended with PDUDestruct");
  const facts = await partsOf(page, "#summary .fact", "|");
  assert.deepEqual(facts, [
    "Library|/opt/simvci/libSimVci.so|R01.004.0002.0007 · loaded · Marvane R01.000.0000.0000",
    "Module 1|Simulated VCI|serial number 42 · SimVci D-PDU API 001.000.000",
    "Links|1 ISO_15765_3_on_ISO_15765_2pins 6, 14 · 15 requests|2 ISO15765_CAN_6_14not connected|3 ISO_14229_5_on_ISO_13400_2pins 3, 11 · 1 request",
    "Requests|12 answered 2 refused 1 silent 1 cancelled |latency: median 2.1 ms, 95 % within 22.1 ms, at most 22.2 ms",
    "Calls|356 in 29 functions, 72 callbacks|2 failed · items: 93 given out, 93 destroyed",
    "ComParams|11 set, 1 changed|CP_P2Max 50 → 5000",
    "Cut|1 payload cut by LogMaxPduBuff",
  ]);
});

pageTest("the conversation is the list", async (page) => {
  await page.evaluate(() => document.getElementById("log").scrollIntoView());
  const shown = await rowsOf(page);
  assert.deepEqual(shown.slice(0, 14), [
    "0.001|1|2|start communication|626",
    "0.001|1|3|22 F1 90|read identifier · VIN|62 F1 90 WSIMVC1E2F3000042|2.1|683",
    "0.003|1|4|22 F1 87|read identifier · vehicleManufacturerSparePartNumber|62 F1 87 7P0907401|2.1|766",
    "0.005|1|5|19 02 FF|trouble codes · reportDTCByStatusMask|59 02 FF 01 23 45 2F 9A +3|2.1|838",
    "0.007|1|6|22 FF FF|read identifier|X|7F 22 31 requestOutOfRange|2.1|918",
    "0.010|1|7|BA 00|X|no answer: RX_TIMEOUT|50.1|995",
    "0.060|1|8|10 02|programming session|50 02 00 32 01 F4|2.1|1071",
    "0.062|1|session programmingSession",
    "0.062|1|9|27 01|security seed · requestSeed|67 01 12 34 56 78|2.1|1148",
    "0.064|1|10|27 02 00 00 00 00|security key · sendKey|X|7F 27 35 invalidKey|2.1|1225",
    "0.066|1|11|27 02 B7 91 F3 DD|security key · sendKey|67 02|2.1|1302",
    "0.068|1|security level 1 unlocked",
    "0.068|1|CP_P2Max 50 -> 5000|1383",
    "0.068|1|12|31 01 FF 00|start routine · eraseMemory|·|7F 31 78 pending|2.1|71 01 FF 00 00|22.2|1388",
  ]);
  assert.equal(await textOf(page, "#count"), "24 rows of the conversation");
});

pageTest("an unfolded row has the whole call and those of its answers, line by line", async (page) => {
  const log = linesOf(demo);
  await page.click('#list .row[data-key^="e"]:has-text("22 FF FF") .head');
  await page.waitForSelector(".detail .lines");
  const sections = await page.evaluate(() =>
    [...document.querySelectorAll(".detail section")].map((section) => ({
      title: section.querySelector("h3").textContent,
      lines: [...section.querySelectorAll(".log-line")].map((line) => [...line.children].map((each) => each.textContent)),
    })),
  );
  assert.deepEqual(
    sections.map((section) => section.title),
    ["Request: PDUStartComPrimitivelines 918–939", "Refusal from 7, after 2.1 ms: 7F 22 31 requestOutOfRangelines 969–983"],
  );
  for (const { lines } of sections)
    for (const [number, stamp, text] of lines) assert.equal(stamp + text, log[Number(number) - 1]);
  assert.deepEqual(
    sections.map((section) => section.lines.length),
    [22, 15],
  );
});

pageTest("all calls: every call, callback, report and every other line of the log has a row", async (page) => {
  await page.check("input[value=calls]");
  await settled(page);
  const rows = await rowsOf(page);
  assert.deepEqual(rows.slice(0, 3), [
    "########## INITIALISE ##########|62 lines|1",
    '0.000|00004251|PDUConstruct|(OptionStr= "", pAPITag= 0x7ffc04c81ff0)|1|63',
    "0.001|00004251|PDURegisterEventCallback|(hMod=<PDU_HANDLE_UNDEF>, hCLL=<PDU_HANDLE_UNDEF>, EventCallbackFunction=0x55ee8d1d97d0)|0|66",
  ]);
  // Together the rows have each line of the log once.
  const numbers = await page.evaluate(() =>
    rows.kind.flatMap((kind, row) =>
      kind === RowRecord
        ? linesOfRecord(rows.ref[row])
        : rangeOf(lines.others.line[rows.ref[row]], lines.others.count[rows.ref[row]]),
    ),
  );
  assert.deepEqual(
    numbers.sort((a, b) => a - b),
    linesOf(demo).map((_, i) => i),
  );
});

pageTest("a search finds words, bytes and every line of the log, in upper and lower case", async (page) => {
  const results = {};
  for (const query of [
    "22f190",
    "7F 22 31",
    "REQUESTOUTOFRANGE",
    "tester present",
    "CP_P2Max",
    "HwSerialNumber",
    "nothing of this kind",
  ]) {
    await searchFor(page, query);
    results[query] = await textOf(page, "#count");
  }
  assert.deepEqual(results, {
    "22f190": "2 of 24 rows of the conversation",
    "7F 22 31": "1 of 24 rows of the conversation",
    REQUESTOUTOFRANGE: "1 of 24 rows of the conversation",
    "tester present": "2 of 24 rows of the conversation",
    CP_P2Max: "1 of 24 rows of the conversation",
    HwSerialNumber: "Nothing matches: 0 of 24 rows of the conversation",
    "nothing of this kind": "Nothing matches: 0 of 24 rows of the conversation",
  });
  await page.check("input[value=calls]");
  await searchFor(page, "invalidkey");
  assert.match((await rowsOf(page)).join("\n"), /^0\.064\|00004251\|PDUStartComPrimitive\|[^\n]*\|1225$/);
  await searchFor(page, "hwserialnumber");
  assert.deepEqual(
    (await rowsOf(page)).map((row) => row.split("|")[2]),
    ["PDUGetVersion"],
  );
  await page.click(".row .head");
  assert.equal(await textOf(page, ".detail .lines mark"), "HwSerialNumber");
});

pageTest("filters by link, service, outcome and thread", async (page) => {
  const choose = async (label, text) => {
    await page.selectOption(`select[aria-label="${label}"]`, { label: text });
    await settled(page);
    return textOf(page, "#count");
  };
  assert.equal(await choose("Link", "link 3 ISO_14229_5_on_ISO_13400_2"), "3 of 24 rows of the conversation");
  assert.equal(await choose("Link", "Any link"), "24 rows of the conversation");
  assert.equal(await choose("Service or function", "SecurityAccess (3)"), "3 of 24 rows of the conversation");
  assert.equal(await choose("Outcome", "Refused"), "1 of 24 rows of the conversation");
  await page.click("text=Clear filters");
  assert.equal(await choose("Outcome", "Not good"), "3 of 24 rows of the conversation");
  await page.check("input[value=calls]");
  assert.equal(await choose("Outcome", "Failed calls"), "2 of 468 calls, callbacks, reports and other lines");
  await page.click("text=Clear filters");
  assert.equal(await choose("Thread", "thread 00004252"), "104 of 468 calls, callbacks, reports and other lines");
});

pageTest("an error's chip jumps to its row", async (page) => {
  const chips = await page.evaluate(() =>
    [...document.querySelectorAll(".chip")].map((chip) => chip.innerText.replace(/\s+/g, " ")),
  );
  assert.deepEqual(chips, [
    "Failed call RSC_LOCKED_BY_OTHER_CLL (0x00A1) PDULockResource, link 2",
    "Refused 7F 22 31 requestOutOfRange 22 FF FF, link 1",
    "No answer EVT_RX_TIMEOUT (0x0103) BA 00, link 1",
    "Refused 7F 27 35 invalidKey 27 02 00 00 00 00, link 1",
    "Failed call ID_NOT_SUPPORTED (0x0062) PDUGetObjectId",
  ]);
  for (const [i, line] of [
    ["3", "1225"],
    ["4", "2168"],
  ]) {
    await page.click(`.chip >> nth=${i}`);
    await settled(page);
    const focused = () => page.evaluate(() => document.activeElement.querySelector(".line").lastChild.textContent);
    assert.equal(await focused(), line);
    assert.equal(await page.evaluate(() => document.activeElement.ariaExpanded), "true");
  }
});

pageTest("an unfolded row says why the call failed", async (page) => {
  await page.click(".chip >> nth=0");
  await page.waitForSelector(".detail .lines");
  const facts = await partsOf(page, ".facts-of-row > div", ": ");
  assert.deepEqual(facts, [
    "Status: PDU_ERR_RSC_LOCKED_BY_OTHER_CLL (0x00A1)",
    "Begun: 22 Nov 2026 00:27:36.985",
    "Duration: 0 ms",
    "Thread: 00004251",
    "Link: 2 ISO15765_CAN_6_14",
    "Failed call: RSC_LOCKED_BY_OTHER_CLL (0x00A1); link 1 holds the lock since line 510",
  ]);
});

pageTest("the latency of each service is a histogram that filters", async (page) => {
  const services = await page.evaluate(() =>
    [...document.querySelectorAll("#latency tbody tr")].map((row) =>
      [...row.children].map((each) => each.textContent || each.firstChild.getAttribute("aria-label")).join("|"),
    ),
  );
  assert.deepEqual(services.slice(0, 2), [
    "ReadDataByIdentifier|4|from 2.1 to 2.2 ms|2.1|2.2|2.2",
    "SecurityAccess|3|from 2.1 to 2.1 ms|2.1|2.1|2.1",
  ]);
  await page.click("text=ReadDataByIdentifier >> nth=0");
  await settled(page);
  assert.equal(await textOf(page, "#count"), "4 of 24 rows of the conversation");
});

pageTest("rows, a call and its lines are copied as text", async (page) => {
  await page.click('#list .row:has-text("10 02") .head');
  await page.click("text=Copy as text");
  await page.click("#copy");
  const [call, rows] = await page.evaluate(() => window.copied);
  const log = linesOf(demo);
  const [row, request, answer] = call.split("\n\n");
  assert.match(row, /^ +0\.060 {2}link 1 +8 {2}10 02 +programming session +50 02 00 32 01 F4 +2\.1 {2}1071$/);
  const own = log.slice(1070, 1100).filter((line) => !line.includes(" - 00004252} ")); // reports of the other thread stand between
  assert.equal(request, own.slice(0, request.split("\n").length).join("\n"));
  assert.equal(answer.split("\n")[0], log[log.indexOf(answer.split("\n")[0])]);
  assert.match(rows, /^D-PDU_API_Logger_22-11-2026_00-27-36\.LGR\n +0\.001 {2}link 1/);
  assert.equal(rows.split("\n").length, 27); // a heading, 24 rows, one of them in two lines, and the end
});

test("long transfers are one row, which unfolds", { skip }, () =>
  withBrowser((browser) =>
    withPage(browser, writeReport(tests.folder, folds), async (page) => {
      assert.equal(await textOf(page, "#count"), "21 rows of the conversation");
      assert.match((await rowsOf(page))[1], /^0\.003\|1\|36 {2}8 blocks\|transfer data\|384 bytes, 12\.0 kB\/s\|~3\d\|71$/);
      await page.click('.row[data-key^="f"] .head >> nth=0');
      await settled(page);
      assert.deepEqual(
        (await rowsOf(page)).slice(2, 10).map((row) => row.split("|")[2]),
        ["2", "3", "4", "5", "6", "7", "8", "9"],
      );
    }),
  ),
);

test("the raw log can be saved from a page that has it", { skip }, () =>
  withBrowser((browser) =>
    withPage(browser, writeReport(tests.folder, folds, "--raw"), async (page) => {
      const [download] = await Promise.all([page.waitForEvent("download"), page.click("text=Save folds.LGR")]);
      assert.equal(download.suggestedFilename(), "folds.LGR");
      assert.deepEqual(readFileSync(await download.path()), readFileSync(folds));
    }),
  ),
);

test("a redacted page says so", { skip }, () =>
  withBrowser((browser) =>
    withPage(browser, writeReport(tests.folder, join(source, "tests", "logs", "secrets.LGR"), "--redact"), async (page) => {
      assert.match(await textOf(page, "#notice"), /^Redacted: .*vin/i);
      assert.doesNotMatch(
        await page.evaluate(() => lines.blocks.map((block) => block.text).join("") + JSON.stringify(model.strings)),
        /WVWZZZ1JZ3W386752/,
      );
    }),
  ),
);
