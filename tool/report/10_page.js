// Building blocks of the page. All text goes through textContent or text nodes, so that nothing in a log can run.
"use strict";

const byId = (id) => document.getElementById(id);

/** An element with a class, and with texts or elements in it. Null children are left out. */
function element(tag, className, ...children) {
  const made = document.createElement(tag);
  if (className) made.className = className;
  for (const child of children) if (child !== null && child !== undefined) made.append(child);
  return made;
}

/** A button that does something. */
function button(text, className, act) {
  const made = element("button", className, text);
  made.type = "button";
  made.addEventListener("click", act);
  return made;
}

/** Says something to users of screen readers. */
function say(text) {
  byId("said").textContent = text;
}

/** Calls `act` once for many calls within a frame. */
function oncePerFrame(act) {
  let isAsked = false;
  return () => {
    if (isAsked) return;
    isAsked = true;
    requestAnimationFrame(() => {
      isAsked = false;
      act();
    });
  };
}

/** Puts `text` into `parent`, what matches the search in <mark>. */
function appendMarked(parent, text, needles) {
  if (!needles || needles.length === 0) {
    parent.append(text);
    return;
  }
  const lower = text.toLowerCase();
  if (lower.length !== text.length) {
    parent.append(text);
    return;
  }
  let done = 0;
  for (;;) {
    let at = -1;
    let length = 0;
    for (const needle of needles) {
      const found = lower.indexOf(needle, done);
      if (found >= 0 && (at < 0 || found < at)) [at, length] = [found, needle.length];
    }
    if (at < 0) break;
    if (at > done) parent.append(text.slice(done, at));
    parent.append(element("mark", "", text.slice(at, at + length)));
    done = at + length;
  }
  if (done < text.length) parent.append(text.slice(done));
}

/** Puts text on the clipboard; says how it went. */
async function copyText(text, what) {
  try {
    await navigator.clipboard.writeText(text);
  } catch {
    // Without the right to the clipboard, the old way: a selection in a field.
    const field = element("textarea", "unseen");
    field.value = text;
    document.body.append(field);
    const focused = document.activeElement;
    field.select();
    const isCopied = document.execCommand("copy");
    field.remove();
    focused?.focus?.();
    if (!isCopied) {
      showToast("The browser does not allow copying");
      return;
    }
  }
  showToast(`Copied ${what}`);
}

let toastTimer = 0;
/** A short message for everyone. */
function showToast(text) {
  let toast = byId("toast");
  if (!toast) {
    toast = element("p", "toast");
    toast.id = "toast";
    document.body.append(toast);
  }
  toast.textContent = text;
  toast.hidden = false;
  say(text);
  clearTimeout(toastTimer);
  toastTimer = setTimeout(() => (toast.hidden = true), 2500);
}
