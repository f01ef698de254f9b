// The report page: timeline, address, keyboard, dark mode, print, accessibility.
import assert from "node:assert/strict";
import { readFileSync } from "node:fs";
import { createRequire } from "node:module";
import { join } from "node:path";
import { test } from "node:test";
import {
  addressOf,
  demoTests,
  rowsOf,
  searchFor,
  settled,
  skip,
  textOf,
  withBrowser,
  withPage,
} from "./report_kit.mjs";

const tests = demoTests();
const { pageTest } = tests;

/** What the timeline shows, and the time of the first row in sight, in ms. */
const times = (page) => page.evaluate(() => ({ from: state.from, to: state.to, row: rowTimes()[rowsInSight()[0]] }));

async function scrollToLog(page) {
  await page.evaluate(() => document.getElementById("log").scrollIntoView());
  return page.locator("#lanes").boundingBox();
}

pageTest("the timeline is zoomed by the wheel at the pointer, and by buttons", async (page) => {
  const box = await scrollToLog(page);
  await page.mouse.move(box.x + 168 + (box.width - 168) / 2, box.y + 30);
  await page.keyboard.down("Control");
  for (let i = 0; i < 4; ++i) await page.mouse.wheel(0, -100);
  await page.keyboard.up("Control");
  await settled(page);
  const zoomed = await times(page);
  assert.ok(zoomed.to - zoomed.from < 40, `${zoomed.from} to ${zoomed.to}`);
  assert.ok(Math.abs((zoomed.from + zoomed.to) / 2 - 79) < 2, `${zoomed.from} to ${zoomed.to}`);
  await page.click("#zoom-out");
  const wider = await times(page);
  assert.ok(Math.abs(wider.to - wider.from - 2 * (zoomed.to - zoomed.from)) < 0.001);
  await page.click("#zoom-all");
  assert.deepEqual((await times(page)).from, 0);
});

const calls = { address: "view=calls" };

const dragged = async (page) => {
  const box = await scrollToLog(page);
  await page.evaluate(() => setView(0, 8));
  const before = await times(page);
  await page.mouse.move(box.x + box.width - 10, box.y + 10);
  await page.mouse.down();
  await page.mouse.move(box.x + 300, box.y + 10, { steps: 5 });
  await page.mouse.up();
  await settled(page);
  const after = await times(page);
  const wanted = 8 * ((box.width - 310) / (box.width - 168));
  assert.ok(Math.abs(after.from - wanted) < 0.1, `${after.from}, not ${wanted}`);
  assert.ok(before.row < 2 && after.row >= after.from && after.row <= after.to, `${before.row}, ${after.row}`);
};
pageTest("a drag moves the timeline, and the list follows", dragged, calls);

const scrolled = async (page) => {
  await scrollToLog(page);
  await page.evaluate(() => setView(0, 10));
  await page.evaluate(() => (document.getElementById("list-box").scrollTop = 1e6));
  await settled(page);
  await settled(page);
  const { from, to, row } = await times(page);
  assert.ok(to - from < 10.001 && row > 150 && row >= from && row <= to, `${from} to ${to}, row at ${row}`);
};
pageTest("the list is scrolled, and the timeline follows", scrolled, calls);

pageTest("a bar of the timeline names itself and leads to its row", async (page) => {
  const box = await scrollToLog(page);
  const at = await page.evaluate(() => {
    const lane = lanes.find((each) => each.kind === "link");
    const bar = lane.bars.findIndex((i) => model.strings[model.exchanges.text[i]] === "BA 00");
    return [xOf(lane.begins[lane.bars[bar]], byId("lanes").clientWidth) + 20, lane.bar + lane.rowOf[bar] * BarHeight + 4];
  });
  await page.mouse.move(box.x + at[0], box.y + at[1]);
  assert.equal(await textOf(page, "#tip"), "0.010 s  BA 00\nno answer: RX_TIMEOUT  50.1");
  await page.mouse.down();
  await page.mouse.up();
  await settled(page);
  assert.equal(await page.evaluate(() => rowAsText(currentRow()).includes("BA 00")), true);
  assert.match((await addressOf(page)).get("at"), /^e\d+$/);
});

pageTest("calls in the time of a millisecond stand side by side, in the order of the log", async (page) => {
  const begins = await page.evaluate(() => lanes[0].bars.map((i) => model.begins[i]));
  assert.deepEqual(
    [...begins].sort((a, b) => a - b),
    begins,
  );
  assert.equal(new Set(begins).size, begins.length);
});

test("the address holds the view: the same link shows the same", { skip }, () =>
  withBrowser(async (browser) => {
    const shown = async (page) => ({
      rows: await rowsOf(page),
      count: await textOf(page, "#count"),
      search: await page.inputValue("#search"),
      outcome: await page.inputValue('select[aria-label="Outcome"]'),
      times: await times(page),
      lines: await page.evaluate(() => document.querySelector(".detail .lines").innerText),
    });
    const [address, first] = await withPage(browser, tests.demoPage, async (page) => {
      await page.check("input[value=calls]");
      await page.selectOption('select[aria-label="Outcome"]', "failed");
      await searchFor(page, "pdu_ioctl_self_test");
      await page.click(".row .head");
      await page.waitForSelector(".detail .lines");
      await page.evaluate(() => setView(100, 157));
      return [(await addressOf(page)).toString(), await shown(page)];
    });
    assert.match(
      address,
      /^view=calls&search=pdu_ioctl_self_test&outcome=failed&from=100\.000&to=157\.000&at=r\d+&open=r\d+$/,
    );
    await withPage(browser, tests.demoPage, async (page) => assert.deepEqual(await shown(page), first), { address });
  }),
);

pageTest(
  "an address with a time shows that time, in the list too",
  async (page) => {
    const { from, to, row } = await times(page);
    assert.deepEqual([from, to], [60, 70]);
    assert.ok(row >= 60 && row <= 70, String(row));
  },
  { address: "view=calls&from=60.000&to=70.000" },
);

pageTest("a link within the page changes the view", async (page) => {
  await page.evaluate(() => (location.hash = "outcome=refused"));
  await page.waitForFunction(() => state.outcome === "refused");
  assert.equal(await textOf(page, "#count"), "2 of 24 rows of the conversation");
  await page.evaluate(() => (location.hash = ""));
  await page.waitForFunction(() => state.outcome === "");
  assert.equal(await textOf(page, "#count"), "24 rows of the conversation");
});

pageTest("a link that is followed while an older state waits to be written is not overwritten", async (page) => {
  const hash = await page.evaluate(() => {
    location.hash = "outcome=refused";
    writeAddress(); // as the timer does, before the event of the change
    return location.hash;
  });
  assert.equal(hash, "#outcome=refused");
  await page.waitForFunction(() => state.outcome === "refused");
});

pageTest(
  "an address that makes no sense does no harm",
  async (page) => {
    assert.equal(await textOf(page, "#count"), "24 rows of the conversation");
    assert.deepEqual(
      await page.evaluate(() => [
        state.view,
        state.link,
        state.thread,
        state.service,
        state.outcome,
        state.from,
        [...state.open],
      ]),
      ["talk", -1, -1, "", "", 0, ["e99999999"]],
    );
  },
  {
    address:
      "view=<b>&link=99&thread=-7&service=constructor&outcome=__proto__&from=9e99&to=-1&at=javascript:alert(1)&open=e99999999.x1.<img>",
  },
);

pageTest("everything can be done by the keyboard", async (page) => {
  await page.keyboard.press("Tab");
  assert.equal(await page.evaluate(() => document.activeElement.id), "skip");
  await page.keyboard.press("Enter");
  const focused = () => page.evaluate(() => document.activeElement.innerText?.replace(/\s+/g, " ").trim());
  assert.match(await focused(), /start communication/);
  await page.keyboard.press("ArrowDown");
  await page.keyboard.press("ArrowDown");
  assert.match(await focused(), /22 F1 87/);
  await page.keyboard.press("Enter");
  await page.waitForSelector(".detail .lines");
  assert.match(await focused(), /22 F1 87/);
  await page.keyboard.press("c");
  assert.match((await page.evaluate(() => window.copied[0])).split("\n")[0], /22 F1 87 +read identifier/);
  await page.keyboard.press("ArrowLeft");
  assert.equal(await page.locator(".detail").count(), 0);
  await page.keyboard.press("End");
  assert.match(await focused(), /stop communication/);
  await page.keyboard.press("/");
  await page.keyboard.type("invalid");
  await page.waitForFunction(() => rows.found);
  await page.keyboard.press("ArrowDown");
  assert.match(await focused(), /invalidKey/);
  await page.keyboard.press("x");
  await page.keyboard.press("t");
  await page.keyboard.press("+");
  await page.keyboard.press("ArrowLeft");
  await page.keyboard.press("End");
  const { to } = await times(page);
  assert.equal(to, await page.evaluate(() => model.end));
  await page.keyboard.press("e");
  await page.waitForFunction(() => document.activeElement.innerText?.includes("RSC_LOCKED_BY_OTHER_CLL"));
  await page.keyboard.press("?");
  assert.equal(await page.evaluate(() => document.getElementById("keys").open), true);
  await page.keyboard.press("Escape");
  assert.equal(await page.evaluate(() => document.getElementById("keys").open), false);
  await page.keyboard.press("C");
  assert.match(await page.evaluate(() => window.copied[1]), /RSC_LOCKED_BY_OTHER_CLL/);
  await page.keyboard.press("v");
  await settled(page);
  assert.match(await textOf(page, "#count"), /rows of the conversation/);
});

pageTest("the focus goes through the page in the order of its parts", async (page) => {
  const places = [];
  for (let i = 0; i < 60; ++i) {
    await page.keyboard.press("Tab");
    const place = await page.evaluate(
      () =>
        document.activeElement.closest("#summary, #latency, #errors, .bar, .timeline, #list")?.id ||
        document.activeElement.closest(".bar, .timeline")?.className ||
        document.activeElement.id,
    );
    if (place && places.at(-1) !== place) places.push(place);
    if (place === "list") break;
  }
  assert.deepEqual(places, ["skip", "summary", "latency", "errors", "bar", "timeline", "list"]);
});

test("dark mode has dark ground and its own colors on the timeline", { skip }, () =>
  withBrowser(async (browser) => {
    const look = (colorScheme) =>
      withPage(
        browser,
        tests.demoPage,
        (page) => page.evaluate(() => [getComputedStyle(document.documentElement).backgroundColor, timeline.colors.good]),
        { colorScheme },
      );
    const [light, dark] = [await look("light"), await look("dark")];
    const brightness = ([ground]) =>
      ground
        .match(/\d+/g)
        .map(Number)
        .reduce((sum, part) => sum + part);
    assert.ok(brightness(light) > 600 && brightness(dark) < 150, `${light}, ${dark}`);
    assert.notEqual(light[1], dark[1]);
  }),
);

pageTest("on paper all rows stand one after the other", async (page) => {
  await page.click('#list .row:has-text("BA 00") .head');
  await page.waitForSelector(".detail .lines");
  await page.emulateMedia({ media: "print" });
  await page.waitForFunction(() => document.querySelectorAll("#list > .row").length === 24);
  const tops = await page.evaluate(() =>
    [...document.querySelectorAll("#list > .row")]
      .map((row) => row.getBoundingClientRect())
      .map(({ top, bottom }) => [top, bottom]),
  );
  tops.slice(1).forEach(([top], i) => assert.ok(top >= tops[i][1] - 1, `row ${i + 1} lies over the one before`));
  assert.equal(await page.isVisible(".bar"), false);
  assert.ok((await page.pdf({ format: "A4" })).length > 20000);
  await page.emulateMedia({ media: "screen" });
  await settled(page);
  assert.equal(await page.isVisible(".bar"), true);
});

for (const width of [400, 1280])
  test(`at ${width} pixels nothing is wider than the window`, { skip }, () =>
    withBrowser((browser) =>
      withPage(
        browser,
        tests.demoPage,
        async (page) => {
          const isTooWide = () => page.evaluate(() => document.documentElement.scrollWidth > innerWidth);
          assert.equal(await isTooWide(), false);
          await page.click('#list .row:has-text("BA 00") .head');
          await page.waitForSelector(".detail .lines");
          assert.equal(await isTooWide(), false);
          await page.check("input[value=calls]");
          await searchFor(page, "pdu");
          assert.equal(await isTooWide(), false);
          await page.click("#help");
          assert.equal(await isTooWide(), false);
        },
        { viewport: { width, height: 800 } },
      ),
    ),
  );

test("axe finds nothing to complain about", { skip }, () =>
  withBrowser(async (browser) => {
    const axe = readFileSync(createRequire(import.meta.url).resolve("axe-core/axe.min.js"), "utf8");
    // The page's policy forbids scripts of others, and what axe would load: it comes through the debugger.
    const check = async (page, what) => {
      await page.evaluate(axe);
      const { violations } = await page.evaluate(() => window.axe.run(document, { preload: false }));
      assert.deepEqual(
        violations.map(
          ({ id, nodes }) => `${what}: ${id}: ${nodes.map((node) => `${node.target} ${node.failureSummary}`).join("; ")}`,
        ),
        [],
      );
    };
    for (const colorScheme of ["light", "dark"])
      for (const width of [1280, 400])
        await withPage(
          browser,
          tests.demoPage,
          async (page) => {
            await page.click('#list .row:has-text("22 FF FF") .head');
            await page.waitForSelector(".detail .lines");
            await searchFor(page, "22");
            await check(page, `${colorScheme} ${width}, unfolded`);
            await page.check("input[value=calls]");
            await searchFor(page, "");
            await page.click("#help");
            await check(page, `${colorScheme} ${width}, all calls and keys`);
          },
          { colorScheme, viewport: { width, height: 800 } },
        );
  }),
);

test("without DecompressionStream the page says what is missing", { skip }, () =>
  withBrowser(async (browser) => {
    const page = await browser.newPage();
    await page.addInitScript(() => delete window.DecompressionStream);
    await page.goto(`file://${tests.demoPage}`);
    await page.waitForFunction(() => document.documentElement.dataset.ready === "failed");
    assert.equal(
      await textOf(page, "#notice"),
      "This browser is too old to unpack the report: it has no DecompressionStream.",
    );
    await page.close();
  }),
);
