// The picture of the report page in README.md is that of today's page: the text that the page shows is stored in the
// picture. With MARVANE_WRITE_PICTURES set to docs/pictures the picture is made anew: look at it before you commit it.
import assert from "node:assert/strict";
import { mkdtempSync, readFileSync, rmSync, writeFileSync } from "node:fs";
import { tmpdir } from "node:os";
import { join } from "node:path";
import { test } from "node:test";
import { demo, source } from "./marvane.mjs";
import { skip, withBrowser, withPage, writeReport } from "./report_kit.mjs";

const EndOfSignature = 8;
const Key = "Description";
/** What of the page is compared. The rows of the list are not: their number depends on the fonts of a machine. */
const Parts = ["#title", "#facts", "#summary", "#latency", "#errors"];

/** The check sum of a chunk of PNG. */
function crcOf(bytes) {
  let crc = ~0;
  for (const byte of bytes) {
    crc ^= byte;
    for (let bit = 0; bit < 8; bit++) crc = (crc >>> 1) ^ (crc & 1 ? 0xedb88320 : 0);
  }
  return ~crc >>> 0;
}

/** The chunks of a picture: their kinds and their bytes, check sum and length not included. */
function chunksOf(png) {
  const chunks = [];
  for (let at = EndOfSignature; at < png.length; at += 12 + png.readUInt32BE(at))
    chunks.push({
      kind: png.toString("latin1", at + 4, at + 8),
      bytes: png.subarray(at + 8, at + 8 + png.readUInt32BE(at)),
    });
  return chunks;
}

/** The picture with a text in UTF-8 after its first chunk. */
function withText(png, text) {
  const body = Buffer.from(`iTXt${Key}\0\0\0\0\0${text}`);
  const chunk = Buffer.alloc(body.length + 8);
  chunk.writeUInt32BE(body.length - 4, 0);
  body.copy(chunk, 4);
  chunk.writeUInt32BE(crcOf(body), body.length + 4);
  const end = EndOfSignature + 12 + png.readUInt32BE(EndOfSignature);
  return Buffer.concat([png.subarray(0, end), chunk, png.subarray(end)]);
}

/** The text that a picture was given. */
function textIn(png) {
  const texts = chunksOf(png).filter(
    (chunk) => chunk.kind === "iTXt" && chunk.bytes.toString("latin1").startsWith(`${Key}\0`),
  );
  assert.equal(texts.length, 1);
  return texts[0].bytes.subarray(Key.length + 5).toString();
}

test("the picture in README.md shows what the page shows", { skip }, async () => {
  const folder = mkdtempSync(join(tmpdir(), "marvane-web-"));
  const written = process.env.MARVANE_WRITE_PICTURES;
  try {
    const report = writeReport(folder, demo);
    await withBrowser((browser) =>
      withPage(
        browser,
        report,
        async (page) => {
          const shown = await page.evaluate(
            (parts) => parts.map((part) => document.querySelector(part).innerText).join("\n"),
            Parts,
          );
          assert.match(shown, /requestOutOfRange/);
          if (written) writeFileSync(join(written, "report.png"), withText(await page.screenshot(), shown));
          assert.equal(textIn(readFileSync(join(source, "docs", "pictures", "report.png"))), shown);
        },
        { viewport: { width: 1200, height: 1000 } },
      ),
    );
  } finally {
    rmSync(folder, { recursive: true });
  }
});
