"use strict";
(() => {
const data = JSON.parse(document.getElementById("data").textContent);
const byName = new Map(data.translators.map((translator) => [translator.name, translator]));
const byId = (id) => document.getElementById(id);
const main = byId("main");

const FAMILIES = {
  frame: "Generic", adjacency: "Adjacencies and next hops", oam: "OAM offload", route: "Routes and labels",
  mcast: "Multicast", l2vpn: "Layer 2 and VPN", subscriber: "Subscribers and tunnels", feature: "Features",
};
// What a bit is marked with, and what the legend calls it. A constant is marked with its value.
const MARKS = {
  copied: ["C", "copied"], reversed: ["R", "bytes reversed"], inverted: ["I", "inverted"], label: ["L", "label"],
  shifted: ["S", "shifted"], computed: ["ƒ", "computed"], constant: ["1", "constant"],
  cleared: ["·", "cleared"], left_alone: ["~", "left as it was"],
  steers: ["?", "only steers"], dropped: ["–", "not carried"],
};
// A translator of more tables than these is generic: it says little about any of them.
const MANY = 4;
const SIDES = { L: "logical", P: "physical" };

function h(tag, attributes, ...children) {
  const element = document.createElement(tag);
  for (const [name, value] of Object.entries(attributes ?? {})) {
    if (name.startsWith("on")) element.addEventListener(name.slice(2), value);
    else if (value !== null && value !== false) element.setAttribute(name, value === true ? "" : value);
  }
  element.append(...children.flat().filter((child) => child !== null && child !== ""));
  return element;
}

// A name that may go on in the next line after each underscore.
const breakable = (name) => name.split(/(?<=_)/).flatMap((part) => [part, h("wbr")]);

// ---- Positions: bits are counted from bit 0 of byte 0 upwards; P5.7 is bit 7 of physical byte 5, P8-11 four bytes.

const bitName = (side, bit) => `${side}${bit >> 3}.${bit & 7}`;

function spansOf(bits) {
  const spans = [];
  for (const bit of [...new Set(bits)].sort((a, b) => a - b)) {
    const last = spans.at(-1);
    if (last && last[0] + last[1] === bit) ++last[1];
    else spans.push([bit, 1]);
  }
  return spans;
}

function bitsName(side, bits) {
  const names = [];
  for (let [at, width] of spansOf(bits)) {
    for (const end = at + width; at < end;) {
      const byte = at >> 3;
      if (at % 8 === 0 && end - at >= 8) {
        const count = (end - at) >> 3;
        names.push(count === 1 ? `${side}${byte}` : `${side}${byte}-${byte + count - 1}`);
        at += 8 * count;
      } else {
        const stop = Math.min(end, 8 * byte + 8);
        names.push(`${side}${byte}.${stop - 1 & 7}` + (stop - at > 1 ? `-${at & 7}` : ""));
        at = stop;
      }
    }
  }
  return names.join(", ");
}

function parsePosition(text) {
  const match = /^([LP])(\d{1,3})(?:\.([0-7])(?:-([0-7]))?|-(\d{1,3}))?$/i.exec(text);
  if (!match) return null;
  const [side, byte, high, low, last] = [match[1].toUpperCase(), ...match.slice(2).map((n) => n && Number(n))];
  if (high !== undefined) return { side, first: 8 * byte + (low ?? high), width: high - (low ?? high) + 1 };
  return { side, first: 8 * byte, width: 8 * ((last ?? byte) - byte + 1) };
}

function expand(flat) {
  const bits = [];
  for (let i = 0; i < flat.length; i += 2) {
    for (let k = 0; k < flat[i + 1]; ++k) bits.push(flat[i] + k);
  }
  return bits;
}

// ---- From the data to bits

const inSide = (translator) => (translator.role === "reverse" ? "P" : "L");
const outSide = (translator) => (translator.role === "reverse" ? "L" : "P");
const lengths = (translator, side) => translator[SIDES[side]];

function fieldOf(translator, number) {
  const [kind, text, title, to = [], from = [], runs = [], combines = 0] = translator.fields[number];
  const links = [];
  for (let i = 0; i < runs.length; i += 4) {
    for (let k = 0; k < runs[i + 2]; ++k) links.push({ to: runs[i] + k, from: runs[i + 1] + k, inverted: runs[i + 3] === 1 });
  }
  return {
    number, kind: data.kinds[kind], text: data.texts[text], title: data.texts[title], to: expand(to), links, combines: combines === 1,
    from: [...new Set([...expand(from), ...links.map((link) => link.from)])],
  };
}

// What becomes of every bit of both records: by default what the sections do that every record of the variant gets;
// with sections that only some records get, all in the order in which they are placed.
function bitsOf(translator, variant, chosen) {
  const out = Array.from({ length: 8 * lengths(translator, outSide(translator))[1] }, () => ({ kind: "cleared", links: [], from: [], field: null, maybe: [] }));
  const into = Array.from({ length: 8 * lengths(translator, inSide(translator))[1] }, () => ({ to: [], computes: [], steers: false, field: null, maybe: [] }));
  const write = (number) => {
    const field = fieldOf(translator, number);
    const linksTo = Map.groupBy(field.links, (link) => link.to);
    let place = 0;
    for (const bit of field.to) {
      if (bit >= out.length) continue;
      const links = [...linksTo.get(bit) ?? []];
      const value = field.kind === "constant" ? Number(BigInt(field.text) >> BigInt(place++) & 1n) : 0;
      if (field.combines) {
        if (field.kind === "constant" && !value) continue;
        if (out[bit].kind !== "cleared" && field.kind !== "constant") {
          out[bit].links.push(...links);
          continue;
        }
      }
      out[bit] = { kind: field.kind, field, links, from: field.kind === "computed" ? field.from : [], value, maybe: [] };
    }
  };
  if (chosen.size === 0) {
    variant.fields.forEach(write);
  } else {
    // No section speaks of what is left alone.
    variant.fields.filter((number) => fieldOf(translator, number).kind === "left_alone").forEach(write);
    variant.sections.forEach(([, always, fields], i) => (always || chosen.has(i)) && fields.forEach(write));
  }
  out.forEach((bit, at) => {
    for (const link of bit.links) into[link.from]?.to.push({ bit: at, inverted: link.inverted });
    for (const from of bit.links.length ? [] : bit.from) into[from]?.computes.push(at);
    for (const from of [...bit.links.map((link) => link.from), ...bit.from]) if (into[from]) into[from].field ??= bit.field;
  });
  for (const bit of expand(variant.looks)) if (into[bit]) into[bit].steers = true;
  variant.sections.forEach(([title, always, fields], i) => {
    if (always || chosen.has(i)) return;
    for (const field of fields.map((number) => fieldOf(translator, number))) {
      const name = data.texts[title] || field.text;
      for (const bit of field.to) if (out[bit] && !out[bit].maybe.includes(name)) out[bit].maybe.push(name);
      for (const bit of field.from) if (into[bit] && !into[bit].maybe.includes(name)) into[bit].maybe.push(name);
    }
  });
  for (const bit of into) {
    bit.kind = bit.to.length ? bit.field.kind : bit.computes.length ? "computed" : bit.steers ? "steers" : "dropped";
  }
  return { out, into };
}

function fieldText(translator, field) {
  const to = bitsName(outSide(translator), field.to);
  if (field.kind === "constant") return `${to} = ${field.text}`;
  if (field.from.length === 0) return `${to}: ${field.text}`;
  return `${to} ← ${bitsName(inSide(translator), field.from)}, ${field.text}`;
}

const slug = (name) => name.toLowerCase().replace(/[^a-z0-9]+/g, "-").replace(/^-|-$/g, "");
const address = (translator, variant, position) =>
  "#" + [translator.name, ...(variant || position ? [slug((variant ?? translator.variants[0]).name)] : []), ...(position ? [position] : [])].join("/");

// ---- The page of one translator

let shown = null; // { translator, variant, chosen, bits, cells: { L, P }, marked, selected, pasted }

const record = (side) => (side === inSide(shown.translator) ? shown.bits.into : shown.bits.out);

function sentence(side, bit) {
  const { translator } = shown;
  const name = bitName(side, bit);
  const [from, to] = [inSide(translator), outSide(translator)];
  const link = (target, at) => h("a", { href: address(translator, shown.variant, bitName(target, at)) }, h("b", null, bitName(target, at)));
  const list = (target, bits) => bits.flatMap((at, i) => (i ? [i === bits.length - 1 ? " and " : ", ", link(target, at)] : [link(target, at)]));
  const said = [h("b", null, name), " "];
  const small = [];
  const what = record(side)[bit];
  if (side === to) {
    const sources = what.links.map((one) => one.from);
    const inverted = what.links.some((one) => one.inverted);
    if (what.kind === "computed") {
      said.push(`is computed: ${what.field.text}.`);
      if (sources.length || what.from.length) small.push(`Depends on ${bitsName(from, [...sources, ...what.from])}.`);
    } else if (sources.length === 1) {
      said.push(inverted ? "is the inverse of " : "is moved from ", link(from, sources[0]), ".");
    } else if (sources.length > 1) {
      said.push("is ", list(from, sources), " ORed together.");
    } else if (what.kind === "constant") {
      said.push(`is always ${what.value}.`);
    } else {
      said.push(what.kind === "left_alone" ? "is left as the caller had it." : "is 0: nothing is written there.");
    }
    if (what.field && what.field.to.length > 1 && what.kind !== "computed") small.push(`Part of ${fieldText(translator, what.field)}.`);
    if (what.field?.title) small.push(`Layout: ${what.field.title}.`);
    for (const title of what.maybe) small.push(`Some records of the variant get something else here: ${title}.`);
  } else {
    if (what.to.length) {
      said.push("goes to ", list(to, what.to.map((one) => one.bit)), what.to.some((one) => one.inverted) ? ", inverted." : ".");
    }
    if (what.computes.length) {
      said.push(`${what.to.length ? " It" : ""}counts in ${bitsName(to, what.computes)}, computed: ${shown.bits.out[what.computes[0]].field.text}.`);
    }
    if (what.steers) {
      said.push(what.to.length || what.computes.length ? " It steers, too: the code looks at it." : "only steers: the code looks at it, but it is not carried.");
    } else if (!what.to.length && !what.computes.length) {
      said.push("is not carried.");
    }
    if (what.field && what.to.length && what.field.to.length > 1) small.push(`Part of ${fieldText(translator, what.field)}.`);
    for (const title of what.maybe) small.push(`Used for some records of the variant: ${title}.`);
  }
  if (shown.pasted) {
    const value = valueOf(side, bit);
    if (value !== null) small.unshift(`Here it is ${value}.`);
  }
  return [...said, " ", h("small", null, small.join(" "))];
}

function unmark() {
  for (const cell of shown?.marked ?? []) cell.classList.remove("at", "partner", "field");
  if (shown) shown.marked = [];
}

function mark(side, bits, name) {
  for (const bit of bits) {
    const cell = shown.cells[side][bit];
    if (!cell) continue;
    cell.classList.add(name);
    shown.marked.push(cell);
  }
}

function markField(field) {
  mark(outSide(shown.translator), field.to, "field");
  mark(inSide(shown.translator), field.from, "field");
}

function point(side, bit) {
  unmark();
  const what = record(side)[bit];
  if (what.field) markField(what.field);
  mark(side, [bit], "at");
  if (side === outSide(shown.translator)) {
    mark(inSide(shown.translator), what.links.length ? what.links.map((one) => one.from) : what.from, "partner");
  } else {
    mark(outSide(shown.translator), [...what.to.map((one) => one.bit), ...what.computes], "partner");
  }
  byId("said").replaceChildren(...sentence(side, bit));
}

function rest() {
  if (shown.selected) {
    point(...shown.selected);
  } else {
    unmark();
    byId("said").replaceChildren();
  }
}

function focusBit(side, bit) {
  const cell = shown.cells[side][bit];
  if (!cell) return false;
  cell.focus({ preventScroll: true });
  cell.scrollIntoView({ block: "nearest" });
  return true;
}

// What a bit holds for the record that was pasted; null where that is not known.
function valueOf(side, bit) {
  const { side: pastedSide, bytes } = shown.pasted;
  const pasted = (at) => (at >> 3 < bytes.length ? bytes[at >> 3] >> (at & 7) & 1 : null);
  if (side === pastedSide) return pasted(bit);
  if (side === inSide(shown.translator)) return null;
  const what = shown.bits.out[bit];
  if (what.maybe.length || what.kind === "computed" || what.kind === "left_alone") return null;
  return what.links.length ? Number(what.links.some((link) => pasted(link.from) ^ link.inverted)) : what.value ?? 0;
}

function markOf(what) {
  return what.kind === "constant" && "value" in what ? String(what.value) : MARKS[what.kind][0];
}

const steersToo = (what) => what.steers === true && what.kind !== "steers";

function fillCells(side) {
  const bits = record(side);
  bits.forEach((what, bit) => {
    const cell = shown.cells[side][bit];
    const left = bit % 8 < 7 ? bits[bit + 1] : null;
    const start = !left || left.kind !== what.kind || left.field !== what.field;
    const value = shown.pasted ? valueOf(side, bit) : null;
    cell.className = `bit k-${what.kind}${start ? " start" : ""}${steersToo(what) ? " too" : ""}${value === null ? "" : value ? " one" : " zero"}`;
    cell.textContent = value ?? (start || what.kind === "constant" && side === outSide(shown.translator) ? markOf(what) : "");
    const title = `${bitName(side, bit)} ${MARKS[what.kind][1]}${steersToo(what) ? ", steers, too" : ""}${value === null ? "" : `, ${value}`}`;
    cell.title = title;
    cell.setAttribute("aria-label", title);
  });
  for (let byte = 0; 8 * byte < bits.length; ++byte) {
    const values = Array.from({ length: 8 }, (_, i) => (shown.pasted ? valueOf(side, 8 * byte + i) : null));
    const known = values.every((value) => value !== null);
    const total = values.reduce((sum, value, i) => sum + (value << i), 0);
    shown.cells[side][8 * byte].parentNode.querySelector("b").textContent = known ? `0x${total.toString(16).padStart(2, "0")}` : "";
  }
}

function lengthText([least, most]) {
  return least === most ? `${most} ${most === 1 ? "byte" : "bytes"}` : `${least} to ${most} bytes`;
}

function drawRecord(side) {
  const goesIn = side === inSide(shown.translator);
  const bits = record(side);
  shown.cells[side] = [];
  const rows = [];
  for (let byte = 0; 8 * byte < bits.length; ++byte) {
    const cells = [];
    for (let bit = 8 * byte + 7; bit >= 8 * byte; --bit) {
      const cell = h("i", { role: "gridcell", tabindex: "-1", "data-side": side, "data-bit": bit });
      shown.cells[side][bit] = cell;
      cells.push(cell);
    }
    rows.push(h("div", { class: "byte", role: "row", "aria-label": `${side}${byte}` }, h("span", { "aria-hidden": "true" }, `${side}${byte}`, h("b")), cells));
  }
  fillCells(side);
  if (shown.cells[side][7]) shown.cells[side][7].tabIndex = 0;
  const ruler = h("span", null, ...[7, 6, 5, 4, 3, 2, 1, 0].map((n) => h("i", null, String(n))));
  return h("section", { class: "record" },
    h("h2", null, `${SIDES[side][0].toUpperCase()}${SIDES[side].slice(1)} record`,
      h("span", null, `${goesIn ? "goes in" : "comes out"}, ${lengthText(lengths(shown.translator, side))}`)),
    h("div", { class: "ruler", "aria-hidden": "true" }, ...Array.from({ length: Math.min(8, Math.max(1, bits.length / 8)) }, () => ruler.cloneNode(true))),
    h("div", { class: "bytes", role: "grid", "aria-label": `${SIDES[side]} record`, "aria-readonly": "true" }, rows));
}

function legend() {
  const kinds = new Set([...shown.bits.into, ...shown.bits.out].map((bit) => bit.kind));
  return h("ul", { class: "legend", "aria-label": "Legend" }, Object.keys(MARKS).filter((kind) => kinds.has(kind)).map((kind) =>
    h("li", null, h("i", { class: `bit k-${kind}`, "aria-hidden": "true" }, MARKS[kind][0]), MARKS[kind][1])),
    shown.bits.into.some(steersToo) ? h("li", null, h("i", { class: "bit too", "aria-hidden": "true" }), "steers, too") : null);
}

function positionTable() {
  const { translator, bits } = shown;
  const [from, to] = [inSide(translator), outSide(translator)];
  const seen = new Set();
  const rows = [];
  for (const { field } of bits.out) {
    if (!field || seen.has(field)) continue;
    seen.add(field);
    rows.push(h("tr", { "data-field": field.number, onmouseenter: () => { unmark(); markField(field); } },
      h("td", null, h("a", { href: address(translator, shown.variant, bitName(to, field.to[0])) }, bitsName(to, field.to))),
      h("td", null, field.kind === "constant" ? field.text : bitsName(from, field.from)),
      h("td", null, h("i", { class: `bit k-${field.kind}`, "aria-hidden": "true" }, MARKS[field.kind][0]),
        field.kind === "constant" ? "constant" : field.text, field.title ? h("small", null, ` — ${field.title}`) : "")));
  }
  const lost = (kind, text) => {
    const which = bits.into.flatMap((bit, at) => (bit.kind === kind ? [at] : []));
    return which.length ? h("tr", null, h("td", null, ""), h("td", null, bitsName(from, which)), h("td", null, h("i", { class: `bit k-${kind}`, "aria-hidden": "true" }, MARKS[kind][0]), text)) : null;
  };
  return h("table", { class: "rows", onmouseleave: rest },
    h("caption", null, "Position table"),
    h("thead", null, h("tr", null, h("th", null, "To"), h("th", null, "From"), h("th", null, "What happens"))),
    h("tbody", null, rows, lost("steers", "only steers, not carried"), lost("dropped", "not carried")));
}

function related(translator) {
  const others = new Map();
  for (const table of translator.tables.length > MANY ? [] : translator.tables) {
    for (const other of data.translators) if (other !== translator && other.tables.includes(table)) others.set(other, table);
  }
  return h("p", { class: "related" }, [...others].map(([other, table]) =>
    h("a", { href: address(other) }, `${other.role} of table ${table}`)));
}

function tablesText(tables) {
  if (tables.length === 0) return "by name only";
  if (tables.length > MANY) return `${tables.length} tables`;
  return `table${tables.length > 1 ? "s" : ""} ${tables.join(", ")}`;
}

function variantSwitch() {
  const { translator } = shown;
  if (translator.variants.length === 1) return null;
  return h("div", { class: "variants", role: "radiogroup", "aria-label": "Variant" }, translator.variants.map((variant) => {
    const here = variant === shown.variant;
    return h("button", { type: "button", role: "radio", "aria-checked": String(here), tabindex: here ? "0" : "-1", onclick: () => { location.hash = address(translator, variant); } }, variant.name);
  }));
}

function variantFacts() {
  const { translator, variant } = shown;
  const facts = [];
  if (variant.holds) facts.push(h("p", { class: "holds" }, "Records with ", h("code", null, variant.holds.split(" ").join(", "))));
  if (translator.notes.some((note) => note.includes("fourth argument"))) facts.push(h("p", { class: "holds" }, `With the fourth argument ${variant.argument}.`));
  for (const [bits, text] of variant.changes) {
    facts.push(h("p", { class: "holds" }, `The code first changes ${bitsName(inSide(translator), expand(bits))} in the record that goes in: ${data.texts[text]}.`));
  }
  const some = variant.sections.flatMap(([title, always, fields], i) => (always ? [] : [[i, data.texts[title] || fieldText(translator, fieldOf(translator, fields[0]))]]));
  if (some.length) {
    facts.push(h("fieldset", { class: "also" }, h("legend", null, "Only some records of the variant get this; tick it to see it placed:"), some.map(([i, title]) =>
      h("label", null, h("input", { type: "checkbox", checked: shown.chosen.has(i), onchange: (event) => {
        if (event.target.checked) shown.chosen.add(i); else shown.chosen.delete(i);
        drawBits();
      } }), title))));
  }
  return facts;
}

// Everything that the choice of sections changes.
function drawBits() {
  shown.bits = bitsOf(shown.translator, shown.variant, shown.chosen);
  shown.cells = {};
  shown.marked = [];
  shown.selected = null;
  byId("said").replaceChildren();
  byId("bits").replaceChildren(legend(),
    h("div", { class: "records" }, drawRecord(inSide(shown.translator)), drawRecord(outSide(shown.translator))), positionTable());
}

// ---- Pasted records

function parseHex(text) {
  const digits = text.replace(/(^|[\s,:])0x/gi, "$1").replace(/[\s,:]/g, "");
  const bad = /[^0-9a-f]/i.exec(digits);
  if (bad) throw new Error(`“${[...digits.slice(bad.index)][0]}” is no hexadecimal digit.`);
  if (digits.length % 2) throw new Error(`${digits.length} hexadecimal digits are no whole number of bytes.`);
  return Array.from({ length: digits.length / 2 }, (_, i) => parseInt(digits.slice(2 * i, 2 * i + 2), 16));
}

// Whether a record holds what a variant holds, such as "L0.5=1 L8-11=3".
function satisfies(bytes, variant) {
  return variant.holds.split(" ").filter(Boolean).every((term) => {
    const [where, wanted] = term.split("=");
    const { first, width } = parsePosition(where);
    let value = 0n;
    for (let i = 0; i < width; ++i) value |= BigInt(bytes[first + i >> 3] >> (first + i & 7) & 1) << BigInt(i);
    return value === BigInt(wanted);
  });
}

function pasteBox() {
  const { translator, pasted } = shown;
  const sides = [inSide(translator), outSide(translator)];
  const message = h("p", { id: "paste-message", role: "status" });
  const side = h("select", { id: "paste-side", "aria-label": "Which record", onchange: () => read() }, sides.map((one) =>
    h("option", { value: one, selected: pasted?.side === one }, `${SIDES[one]} record, ${lengthText(lengths(translator, one))}`)));
  const text = h("textarea", { id: "paste", spellcheck: "false", "aria-label": "The record's bytes in hexadecimal", "aria-describedby": "paste-message", placeholder: "11 00 2a ff …", oninput: () => read() });
  const say = (words, error) => {
    message.textContent = words;
    message.className = error ? "error" : "";
    text.setAttribute("aria-invalid", String(error));
  };
  const show = (record) => {
    shown.pasted = record;
    for (const one of sides) fillCells(one);
    rest();
  };
  const read = () => {
    shown.text = text.value;
    let bytes;
    try {
      bytes = parseHex(text.value);
      const [least, most] = lengths(translator, side.value);
      if (text.value.trim() && (bytes.length < least || bytes.length > most)) {
        throw new Error(`These are ${lengthText([bytes.length, bytes.length])}; the ${SIDES[side.value]} record has ${lengthText([least, most])}.`);
      }
    } catch (error) {
      show(null);
      say(error.message, true);
      return;
    }
    if (!text.value.trim()) {
      show(null);
      say("", false);
      return;
    }
    const record = { side: side.value, bytes };
    const fitting = side.value === inSide(translator) ? translator.variants.filter((variant) => satisfies(bytes, variant)) : [shown.variant];
    if (fitting.length && !fitting.includes(shown.variant)) {
      // Drawn anew; the box keeps what was typed.
      shown.variant = fitting.reduce((best, variant) => (variant.holds.length > best.holds.length ? variant : best));
      shown.pasted = record;
      history.replaceState(null, "", address(translator, shown.variant));
      drawVariant();
    } else {
      show(record);
    }
    const several = translator.variants.length > 1 && side.value === inSide(translator);
    say(!several ? `${lengthText([bytes.length, bytes.length])}.` : fitting.length ? `${lengthText([bytes.length, bytes.length])}, a record of the variant “${shown.variant.name}”.`
      : `${lengthText([bytes.length, bytes.length])}; none of the variants has such a record.`, false);
  };
  const box = h("details", { class: "paste" }, h("summary", null, "Paste a record"),
    h("div", null, text, side, h("button", { type: "button", onclick: () => { text.value = ""; read(); text.focus(); } }, "Clear")), message);
  return box;
}

// Everything that the choice of a variant changes.
function drawVariant() {
  shown.chosen = new Set();
  byId("variant").replaceChildren(...[variantSwitch(), ...variantFacts()].filter(Boolean));
  drawBits();
}

function drawTranslator(translator) {
  document.title = `${translator.name} – npxlate atlas`;
  main.replaceChildren(
    h("h1", null, breakable(translator.name)),
    h("p", { class: "facts" }, h("b", null, translator.role), `, ${tablesText(translator.tables)}: `,
      `${SIDES[inSide(translator)]} record of ${lengthText(lengths(translator, inSide(translator)))} → ${SIDES[outSide(translator)]} record of ${lengthText(lengths(translator, outSide(translator)))}`),
    ...(translator.notes.length ? [h("ul", { class: "notes" }, translator.notes.map((note) => h("li", null, note)))] : []),
    related(translator), h("div", { id: "variant" }), pasteBox(), h("div", { id: "bits" }),
    h("p", { class: "keys" }, h("kbd", null, "/"), " search   ", h("kbd", null, "← ↑ → ↓"), " move within a record   ", h("kbd", null, "Enter"), " to the partner   ", h("kbd", null, "["), " ", h("kbd", null, "]"), " variants"));
  drawVariant();
  if (translator.notes.length === 0 && main.querySelector(".related").childElementCount === 0) main.querySelector(".related").remove();
}

function drawStart() {
  document.title = "npxlate atlas";
  const variants = data.translators.reduce((sum, translator) => sum + translator.variants.length, 0);
  const tables = [];
  for (let table = 0; table < 128; ++table) {
    const cell = (role) => {
      const one = data.translators.find((translator) => translator.role === role && translator.tables.includes(table));
      const generic = one.tables.length > MANY;
      return h("td", null, h("a", { href: address(one), class: generic && "generic" }, generic ? "generic" : breakable(one.name)));
    };
    tables.push(h("tr", null, h("td", null, String(table)), cell("key"), cell("result"), cell("reverse")));
  }
  main.replaceChildren(h("h1", { class: "plain" }, "Every record, bit by bit"),
    h("p", { class: "lead" }, `Where each bit of a forwarding-table record comes from, and what becomes of each bit that goes in: ${data.translators.length} translators with ${variants} variants. Choose a record at the left, or press `,
      h("kbd", null, "/"), " and type a table id, a part of a name, or a position such as L0.4."),
    h("table", { class: "rows tables" }, h("caption", null, "Tables"),
      h("thead", null, h("tr", null, ...["Table", "Key", "Result", "Reverse"].map((text) => h("th", null, text)))), h("tbody", null, tables)));
}

// ---- The list and the search

const entries = [];
function drawList() {
  const families = new Map();
  for (const translator of data.translators) {
    if (!families.has(translator.family)) families.set(translator.family, []);
    const link = h("a", { href: address(translator) }, h("b", null, breakable(translator.name)), h("span", null, `${translator.role}${translator.tables.length && translator.tables.length <= MANY ? " " + translator.tables.join(",") : ""}`));
    entries.push({ translator, link });
    families.get(translator.family).push(link);
  }
  byId("list").append(...[...families].map(([family, links]) =>
    h("details", { "data-family": family }, h("summary", null, FAMILIES[family] ?? family, h("span", null, String(links.length))), links)));
}

// "4", "table 4", "rx_adj", "L0.4", "rx adj L0.4": the words choose records, a position a bit of them.
function parseSearch(text) {
  const words = text.trim().toLowerCase().split(/\s+/).filter((word) => word && word !== "table");
  const position = words.map(parsePosition).find(Boolean) ?? null;
  return { words: words.filter((word) => !parsePosition(word)), position };
}

function matches(translator, words, position) {
  return words.every((word) => (/^\d+$/.test(word) ? translator.tables.includes(Number(word))
    : translator.name.includes(word) || translator.role === word || translator.variants.some((variant) => variant.name.toLowerCase().includes(word))))
    && (!position || position.first + position.width <= 8 * lengths(translator, position.side)[1]);
}

function search() {
  const text = byId("search").value;
  const { words, position } = parseSearch(text);
  let found = 0;
  for (const { translator, link } of entries) {
    link.hidden = !matches(translator, words, position);
    link.style.display = link.hidden ? "none" : "";
    link.href = address(translator, null, position && bitName(position.side, position.first));
    found += link.hidden ? 0 : 1;
  }
  for (const family of byId("list").children) {
    const any = family.querySelector("a:not([hidden])") !== null;
    family.style.display = any ? "" : "none";
    family.open = text.trim() ? any : family.querySelector("[aria-current]") !== null;
  }
  byId("found").textContent = text.trim() ? `${found} of ${entries.length} translators` : `${entries.length} translators`;
}

// Enter: a position alone means the record that is shown.
function goToFirst() {
  const { words, position } = parseSearch(byId("search").value);
  const here = shown && matches(shown.translator, words, position) && position;
  const target = here ? shown.translator : entries.find(({ link }) => !link.hidden)?.translator;
  if (!target) return;
  const to = address(target, here ? shown.variant : null, position && bitName(position.side, position.first));
  if (location.hash === to) route(); else location.hash = to;
  if (!position) main.focus();
}

// ---- Addresses: #name, #name/variant, #name/variant/position

function openSide(open) {
  byId("side").classList.toggle("open", open);
  byId("menu").setAttribute("aria-expanded", String(open));
}

function route() {
  const [name, variantName, positionName] = decodeURIComponent(location.hash.slice(1)).split("/");
  if (name === "main") return;
  const translator = byName.get(name);
  for (const { translator: one, link } of entries) {
    if (one === translator) link.setAttribute("aria-current", "page"); else link.removeAttribute("aria-current");
  }
  openSide(false);
  if (!translator) {
    shown = null;
    byId("said").replaceChildren();
    drawStart();
    search();
    return;
  }
  const variant = translator.variants.find((one) => slug(one.name) === variantName) ?? translator.variants[0];
  if (shown?.translator !== translator) {
    shown = { translator, variant, pasted: null, marked: [] };
    drawTranslator(translator);
    scrollTo(0, 0);
    if (!byId("search").value.trim()) search();
    // With the next frame's layout, instead of one of its own.
    requestAnimationFrame(() => byId("list").querySelector("[aria-current]")?.scrollIntoView({ block: "nearest" }));
  } else if (shown.variant !== variant) {
    shown.variant = variant;
    const inSwitch = document.activeElement?.closest(".variants") !== null;
    drawVariant();
    if (inSwitch) main.querySelector(".variants [aria-checked=true]")?.focus();
  }
  const position = positionName && parsePosition(positionName);
  if (position) focusBit(position.side, position.first);
}

// ---- Events

main.addEventListener("mouseover", (event) => {
  const cell = event.target.closest("[data-bit]");
  if (cell) point(cell.dataset.side, Number(cell.dataset.bit));
  else if (event.target.closest(".record") && shown) rest();
});
main.addEventListener("mouseout", (event) => {
  if (shown && event.target.closest(".record") && !event.relatedTarget?.closest?.(".record, #said")) rest();
});
main.addEventListener("focusin", (event) => {
  const cell = event.target.closest("[data-bit]");
  if (!cell) return;
  const [side, bit] = [cell.dataset.side, Number(cell.dataset.bit)];
  for (const other of shown.cells[side]) if (other.tabIndex === 0) other.tabIndex = -1;
  cell.tabIndex = 0;
  shown.selected = [side, bit];
  history.replaceState(null, "", address(shown.translator, shown.variant, bitName(side, bit)));
  point(side, bit);
});

// Bytes beside each other in the grid, as it is laid out now.
function bytesPerRow(side) {
  const bytes = shown.cells[side].filter((_, bit) => bit % 8 === 0).map((cell) => cell.parentNode);
  const second = bytes.findIndex((byte) => byte.offsetTop !== bytes[0].offsetTop);
  return second < 0 ? bytes.length : second;
}

function bitAfterKey(side, bit, key) {
  // From left to right: bit 7 of the first byte is place 0.
  const place = (bit >> 3) * 8 + 7 - (bit & 7);
  const row = 8 * bytesPerRow(side);
  const last = shown.cells[side].length - 1;
  const to = { ArrowLeft: place - 1, ArrowRight: place + 1, ArrowUp: place - row, ArrowDown: place + row,
    Home: place - place % row, End: Math.min(last, place - place % row + row - 1) }[key];
  return to === undefined || to < 0 || to > last ? null : (to >> 3) * 8 + 7 - (to & 7);
}

main.addEventListener("keydown", (event) => {
  const cell = event.target.closest("[data-bit]");
  const group = event.target.closest(".variants");
  if (event.ctrlKey || event.altKey || event.metaKey) return;
  if (cell) {
    const [side, bit] = [cell.dataset.side, Number(cell.dataset.bit)];
    if (event.key === "Enter" || event.key === " ") {
      event.preventDefault();
      const other = side === "L" ? "P" : "L";
      const partner = shown.cells[other].find((one) => one.classList.contains("partner"));
      if (partner) focusBit(other, Number(partner.dataset.bit));
    } else {
      const to = bitAfterKey(side, bit, event.key);
      if (/^(Arrow|Home|End)/.test(event.key)) event.preventDefault();
      if (to !== null) focusBit(side, to);
    }
  } else if (group && /^Arrow/.test(event.key)) {
    event.preventDefault();
    stepVariant(/Right|Down/.test(event.key) ? 1 : -1);
  }
});

function stepVariant(step) {
  const { translator, variant } = shown;
  const count = translator.variants.length;
  location.hash = address(translator, translator.variants[(translator.variants.indexOf(variant) + step + count) % count]);
}

document.addEventListener("keydown", (event) => {
  if (event.ctrlKey || event.altKey || event.metaKey) return;
  const typing = event.target.closest("input, textarea, select");
  if (event.key === "Escape") {
    openSide(false);
    if (event.target === byId("search")) main.focus();
  } else if (typing) {
    return;
  } else if (event.key === "/") {
    event.preventDefault();
    byId("search").focus();
    byId("search").select();
  } else if (shown && (event.key === "[" || event.key === "]")) {
    stepVariant(event.key === "]" ? 1 : -1);
  }
});

byId("search").addEventListener("input", () => {
  search();
  openSide(byId("search").value.trim() !== "");
});
byId("search").addEventListener("keydown", (event) => event.key === "Enter" && goToFirst());
byId("menu").addEventListener("click", () => openSide(!byId("side").classList.contains("open")));
addEventListener("hashchange", route);

// ---- Colours. A page opened from a file may not be allowed to remember the choice.

function setTheme(theme) {
  document.documentElement.dataset.theme = theme;
  byId("theme").value = theme;
}
byId("theme").addEventListener("change", () => {
  setTheme(byId("theme").value);
  try { localStorage.setItem("npxlate-atlas-theme", byId("theme").value); } catch { /* not remembered */ }
});
let theme = "auto";
try { theme = localStorage.getItem("npxlate-atlas-theme") ?? "auto"; } catch { /* not remembered */ }
setTheme(["auto", "light", "dark"].includes(theme) ? theme : "auto");

drawList();
route();
})();
