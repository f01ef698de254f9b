// The raw log, if the page has it: its files can be saved.
"use strict";

function startRaw() {
  if (!byId("raw")) return;
  const box = element("p", "raw", "The page contains the log to the byte:");
  for (const file of model.files)
    box.append(
      " ",
      button(`Save ${file.name}`, "", () => saveFile(file)),
    );
  byId("main").append(box);
}

let rawBytes = null;

async function saveFile(file) {
  rawBytes ??= new Response(streamOf("raw")).arrayBuffer();
  const all = await rawBytes;
  let begin = 0;
  for (const each of model.files) {
    if (each === file) break;
    begin += each.bytes;
  }
  const link = element("a", "");
  link.href = URL.createObjectURL(new Blob([all.slice(begin, begin + file.bytes)], { type: "application/octet-stream" }));
  link.download = file.name;
  link.click();
  setTimeout(() => URL.revokeObjectURL(link.href), 10000);
}
