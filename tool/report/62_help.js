// The table of keys, marks and colors.
"use strict";

function openHelp() {
  const dialog = byId("keys");
  if (dialog.childElementCount === 0) fillHelp(dialog);
  dialog.showModal();
}

function fillHelp(dialog) {
  const table = (entries) => {
    const made = element("dl", "help");
    for (const [key, text] of entries)
      made.append(
        element(
          "div",
          "",
          element("dt", "", ...key.split(" ").map((each) => element("kbd", "", each))),
          element("dd", "", text),
        ),
      );
    return made;
  };
  const marks = element("dl", "help");
  for (const [className, glyph, text] of [
    ["mark-bad", "X", "went wrong: refused, no answer, not started or never returned"],
    ["mark-note", "!", "remarkable: late answer, sent late, an error beside a good answer"],
    ["mark-way", "·", "by the way: pending, cancelled, no answer wanted"],
    ["mark-open", "?", "the log does not show how it ended"],
    ["", "~", "by the log's clock, from call to fetch; without it the library's clock, from sending"],
    ["", "+4", "so many bytes are not shown here, or are not in the log"],
  ])
    marks.append(element("div", "", element("dt", `mark ${className}`, glyph), element("dd", "", text)));
  const colors = element("dl", "help");
  for (const [name, text] of [
    ["good", "answered"],
    ["bad", "refused, no answer, not started, failed"],
    ["warn", "cancelled, or open"],
    ["idle", "no answer wanted"],
    ["call", "call"],
    ["callback", "callback"],
    ["report", "report of the library about its traffic"],
  ])
    colors.append(element("div", "", element("dt", "", element("span", `swatch swatch-${name}`)), element("dd", "", text)));
  const close = button("Close", "", () => dialog.close());
  const head = element("h2", "", "Keys and marks");
  head.id = "keys-head";
  head.tabIndex = -1;
  head.autofocus = true;
  const part = (title, content) => element("section", "", element("h3", "", title), content);
  const parts = element(
    "div",
    "help-parts",
    part(
      "Everywhere",
      table([
        ["/", "search"],
        ["e E", "next, previous error"],
        ["l", "to the list"],
        ["t", "to the timeline"],
        ["v", "the other view"],
        ["x", "clear the filters"],
        ["C", "copy the rows"],
        ["?", "this page"],
      ]),
    ),
    part(
      "List",
      table([
        ["↑ ↓", "row"],
        ["PgUp PgDn", "page"],
        ["Home End", "first, last row"],
        ["→ ←", "unfold, fold"],
        ["Enter", "unfold or fold"],
        ["c", "copy the row"],
      ]),
    ),
    part(
      "Timeline",
      table([
        ["← →", "move"],
        ["+ −", "zoom"],
        ["0", "the whole log"],
        ["↑ ↓", "row"],
        ["Enter", "unfold the row"],
        ["Ctrl+wheel", "zoom at the pointer"],
        ["Shift+wheel", "move"],
      ]),
    ),
    part("Marks", marks),
    part("Colors of the timeline", colors),
  );
  dialog.append(head, parts, close);
}
