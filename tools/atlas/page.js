"use strict";
(() => {
const { data, fieldOf, bitsOf, formsOf, sourcesOf, argumentValues, openFields, namesFor, namesAt, valueOfName, expand, inSide, outSide, lengths } = records;
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
  computed: ["ƒ", "computed"], constant: ["1", "constant"],
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

// "to ← from, what happens (name)".
function happens(field) {
  return (field.kind === "constant" ? `constant ${field.text}` : field.text) + (field.combines ? ", ORed in" : "");
}

const logicalSide = (translator, field) => (inSide(translator) === "L" ? field.from : field.to);

// The user's own names of bits, behind what is said of them.
function inBrackets(names, bits) {
  const said = namesAt(names, bits);
  return said.length ? ` [${said.join(", ")}]` : "";
}

function fieldText(translator, field, names = translator.names) {
  const to = bitsName(outSide(translator), field.to);
  const name = field.name ? `${field.name}: ` : "";
  const own = inBrackets(names, logicalSide(translator, field));
  if (field.kind === "constant") return `${name}${to} = ${field.text}${own}`;
  if (field.from.length === 0) return `${name}${to}: ${field.text}${own}`;
  return `${name}${to} ← ${bitsName(inSide(translator), field.from)}, ${field.text}${own}`;
}

const address = (translator, form, position) =>
  "#" + [translator.name, ...(form || position ? [(form ?? translator.forms[0]).slug] : []), ...(position ? [position] : [])].join("/");

// ---- The page of one translator

// What is on the page: { translator, form, bits, cells: { L, P }, marked, selected, layouts, pasted, values }. `pasted` is
// { side, bytes, can: [...], at }: the forms that the record can be of, with what is known of both records; `values` is the
// one of them that is drawn, if the form shown is its form.
let shown = null;

const record = (side) => (side === inSide(shown.translator) ? shown.bits.into : shown.bits.out);

function partOf(field, kind) {
  if (!field || kind === "cleared" || kind === "left_alone") return [];
  if (field.to.length > 1 && kind !== "computed") return [`Part of ${fieldText(shown.translator, field, shown.names)}.`];
  return field.name ? [`Field: ${field.name}.`] : [];
}

// Of a bit of a record that must have gone in.
const FATES = {
  determined: "determined by the bytes", chosen: "chosen by the form", several: "one of several values", free: "free: not carried",
};

function hereIs(side, bit) {
  const value = valueOf(side, bit);
  if (value === null) return null;
  const fate = side === inSide(shown.translator) ? shown.values.fates?.[bit] : null;
  if (!fate) return `Here it is ${value}.`;
  return `Here it is ${fate === "free" ? "" : `${value}, `}${FATES[fate]}.`;
}

function sentence(side, bit) {
  const { translator } = shown;
  const name = bitName(side, bit);
  const [from, to] = [inSide(translator), outSide(translator)];
  const link = (target, at) => h("a", { href: address(translator, shown.form, bitName(target, at)) }, h("b", null, bitName(target, at)));
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
    } else if (what.kind !== "left_alone" && what.kind !== "cleared") {
      said.push(`is always ${what.value}.`);
    } else {
      said.push(what.kind === "left_alone" ? "is left as the caller had it." : "is 0: nothing is written there.");
    }
    small.push(...partOf(what.field, what.kind));
    if (what.field?.title) small.push(`Layout: ${what.field.title}.`);
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
    if (what.to.length || what.computes.length) small.push(...partOf(what.field, what.kind));
  }
  const own = side === "L" ? namesAt(shown.names, [bit]) : [];
  if (own.length) small.unshift(`Called ${own.join(", ")}.`);
  const here = hereIs(side, bit);
  if (here) small.unshift(here);
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
  if (!shown.values) return null;
  return (side === inSide(shown.translator) ? shown.values.in : shown.values.out)[bit] ?? null;
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
    const value = valueOf(side, bit);
    const fate = side === inSide(shown.translator) ? shown.values?.fates?.[bit] ?? "" : "";
    const free = fate === "free";
    cell.className = `bit k-${what.kind}${start ? " start" : ""}${steersToo(what) ? " too" : ""}${value === null ? "" : free ? " free" : value ? " one" : " zero"}${fate === "chosen" || fate === "several" ? ` ${fate}` : ""}`;
    cell.textContent = free ? "x" : value ?? (start || what.kind === "constant" && side === outSide(shown.translator) ? markOf(what) : "");
    const title = `${bitName(side, bit)} ${MARKS[what.kind][1]}${steersToo(what) ? ", steers, too" : ""}${value === null || free ? "" : `, ${value}`}${fate ? `, ${FATES[fate]}` : ""}`;
    cell.title = side === "L" ? title + inBrackets(shown.names, [bit]) : title;
    cell.setAttribute("aria-label", cell.title);
  });
  for (let byte = 0; 8 * byte < bits.length; ++byte) {
    const values = Array.from({ length: 8 }, (_, i) => valueOf(side, 8 * byte + i));
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
    ["chosen", "several", "free"].filter((fate) => shown.values?.fates?.includes(fate)).map((fate) =>
      h("li", null, h("i", { class: `bit ${fate}`, "aria-hidden": "true" }, fate === "free" ? "x" : "0"), FATES[fate])),
    shown.bits.into.some(steersToo) ? h("li", null, h("i", { class: "bit too", "aria-hidden": "true" }), "steers, too") : null);
}

function fieldRow(translator, field, names, href) {
  return h("tr", { "data-field": field.number, onmouseenter: () => { unmark(); markField(field); } },
    h("td", null, href ? h("a", { href }, bitsName(outSide(translator), field.to)) : bitsName(outSide(translator), field.to)),
    h("td", null, field.kind === "constant" ? field.text : bitsName(inSide(translator), field.from)),
    h("td", null, h("i", { class: `bit k-${field.kind}`, "aria-hidden": "true" }, MARKS[field.kind][0]),
      field.name ? h("b", null, field.name, ": ") : "", field.kind === "constant" ? "constant" : happens(field),
      h("b", { class: "own" }, inBrackets(names, logicalSide(translator, field))),
      href && field.title ? h("small", null, ` — ${field.title}`) : ""));
}

const changeRow = (translator, [bits, text]) =>
  h("tr", null, h("td", null, ""), h("td", null, bitsName(inSide(translator), expand(bits))), h("td", null, `changed in the record that goes in: ${data.texts[text]}`));

const rowsHead = () => h("thead", null, h("tr", null, h("th", null, "To"), h("th", null, "From"), h("th", null, "What happens")));

// What a record of the form gets in the end.
function positionTable() {
  const { translator, form, bits } = shown;
  const fields = form.fields.map((number) => fieldOf(translator, number)).filter((field) => field.kind !== "cleared");
  const left = (name, kind, which, text) => {
    if (which.length === 0) return null;
    const place = bitsName(name, which);
    const outgoing = name === outSide(translator);
    return h("tr", null, h("td", null, outgoing ? place : ""), h("td", null, outgoing ? "" : place), h("td", null, h("i", { class: `bit k-${kind}`, "aria-hidden": "true" }, MARKS[kind][0]), text));
  };
  const into = (kind) => bits.into.flatMap((bit, at) => (bit.kind === kind ? [at] : []));
  return h("table", { class: "rows", onmouseleave: rest },
    h("caption", { class: "hidden" }, "Position table of the form"), rowsHead(),
    h("tbody", null, fields.map((field) => fieldRow(translator, field, shown.names, address(translator, form, bitName(outSide(translator), field.to[0])))),
      left(outSide(translator), "cleared", bits.out.flatMap((bit, at) => (bit.kind === "cleared" && at < 8 * form.bytes ? [at] : [])), "0, nothing is written there"),
      (form.changes ?? []).map((change) => changeRow(translator, change)),
      left(inSide(translator), "steers", into("steers"), "only steers, not carried"), left(inSide(translator), "dropped", into("dropped"), "not carried")));
}

// Every layout once, in the order in which they are placed, with the condition under which a record gets it.
function layoutList() {
  const { translator, form } = shown;
  const several = translator.forms.length > 1 && translator.forms.includes(form);
  return translator.sections.map(([title, when, fields, changes], i) => {
    const gets = several && form.sections.includes(i);
    return h("table", { class: `rows layout${several && !gets ? " other" : ""}`, onmouseleave: rest },
      h("caption", null, data.texts[title], data.texts[title] ? h("br", null) : "", h("small", null, data.texts[when] ? `when ${data.texts[when]}` : "every record", gets && data.texts[when] ? " — this form gets it" : "")),
      rowsHead(),
      h("tbody", null, fields.map((number) => fieldRow(translator, fieldOf(translator, number), translator.names, null)), changes.map((change) => changeRow(translator, change))));
  });
}

// The user's own names that hold, with their values in a pasted record.
function nameTable() {
  const { names, values, translator } = shown;
  const row = (name) => {
    const bits = name.bits.map((bit) => valueOf("L", bit));
    const fates = name.bits.map((bit) => (inSide(translator) === "L" ? values?.fates?.[bit] : null));
    const told = fates.includes("several") ? FATES.several : fates.includes("free") ? "free" : "";
    const at = bitsName("L", name.bits);
    return h("tr", null, h("td", null, h("a", { href: address(translator, shown.form, bitName("L", name.bits[0])) }, name.name)), h("td", null, at),
      h("td", null, bits.includes(null) ? "" : valueOfName(name, bits), told ? h("small", null, ` — ${told}`) : ""));
  };
  return h("table", { class: "rows" }, h("caption", { class: "hidden" }, "Names"),
    h("thead", null, h("tr", null, h("th", null, "Name"), h("th", null, "Position"), h("th", null, "Value"))), h("tbody", null, names.map(row)));
}

function tables() {
  const views = [["This form", "form"], ["Layouts", "layouts"], ...(shown.translator.names.length ? [["Names", "names"]] : [])];
  const tab = ([name, view]) => h("button", { type: "button", role: "tab", id: `tab-${view}`, "aria-controls": "rows", "aria-selected": String(shown.view === view),
    tabindex: shown.view === view ? "0" : "-1", onclick: () => { shown.view = view; byId("tables").replaceChildren(...tables()); byId(`tab-${view}`).focus(); } }, name);
  return [
    h("div", { class: "tabs", role: "tablist", "aria-label": "Position table" }, views.map(tab)),
    h("div", { id: "rows", role: "tabpanel", "aria-labelledby": `tab-${shown.view}` },
      shown.view === "names" ? nameTable() : shown.view === "layouts" ? [h("p", { class: "holds" }, "Each layout once, in the order in which they are placed; a later one overwrites an earlier one."), ...layoutList()] : positionTable()),
  ];
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

// A radio group of forms: the arrow keys go from one to the next.
function choice(name, items, here, choose, describe) {
  return h("div", { class: `forms${items.length > 8 ? " many" : ""}`, role: "radiogroup", "aria-label": name }, items.map((item, i) => {
    const [title, ...more] = describe(item);
    return h("button", { type: "button", role: "radio", "aria-checked": String(i === here), tabindex: i === Math.max(here, 0) ? "0" : "-1", onclick: () => choose(item, i) },
      h("span", null, title), more.filter(Boolean).map((text) => h("small", null, text)));
  }));
}

function formSwitch() {
  const { translator, form } = shown;
  const { forms } = form.set;
  if (forms.length === 1) return null;
  return choice("Form", forms, forms.indexOf(form), (one) => { location.hash = address(translator, one); },
    // The condition tells apart those that have the same title.
    (one) => [one.title, forms.some((other) => other !== one && other.title === one.title) ? one.when : ""]);
}

function statusText(form) {
  const [name, words] = data.statuses[form.status];
  if (form.status !== 0) return `Returns ${name}: ${words}. `;
  if (form.length !== null) return `${name}, length ${form.length}. `;
  return form.translator.hidesFailures ? `${name}, but no length is stored: the record is rejected. ` : `${name}. `;
}

function formFacts() {
  const { translator, form } = shown;
  const facts = [h("p", { class: "holds", id: "when" }, statusText(form), form.when ? `Records with ${form.when}.` : "All records.")];
  if (translator.asksArgument) facts.push(h("p", { class: "holds" }, `The record does not say its form by itself: ${ARGUMENTS[translator.argument]} counts, too.`));
  for (const [bits, text] of form.changes ?? []) {
    facts.push(h("p", { class: "holds" }, `The code first changes ${bitsName(inSide(translator), expand(bits))} in the record that goes in: ${data.texts[text]}.`));
  }
  return facts;
}

// What the fourth argument is, for those that take one.
const ARGUMENTS = { T: "the entry type, the fourth argument,", K: "byte 7 of the logical key, the fourth argument," };
const ARGUMENT_LABELS = { T: "Entry type", K: "Key byte 7" };

function drawBits() {
  shown.bits = bitsOf(shown.form);
  const known = shown.values && (inSide(shown.translator) === "L" ? shown.values.in : shown.values.out);
  shown.names = namesFor(shown.form, known);
  shown.cells = {};
  shown.marked = [];
  shown.selected = null;
  byId("said").replaceChildren();
  byId("bits").replaceChildren(legend(),
    h("div", { class: "records" }, drawRecord(inSide(shown.translator)), drawRecord(outSide(shown.translator))),
    h("div", { id: "tables" }, tables()));
}

// ---- Pasted records

function parseHex(text) {
  const digits = text.replace(/(^|[\s,:])0x/gi, "$1").replace(/[\s,:]/g, "");
  const bad = /[^0-9a-f]/i.exec(digits);
  if (bad) throw new Error(`“${[...digits.slice(bad.index)][0]}” is no hexadecimal digit.`);
  if (digits.length % 2) throw new Error(`${digits.length} hexadecimal digits are no whole number of bytes.`);
  return Array.from({ length: digits.length / 2 }, (_, i) => parseInt(digits.slice(2 * i, 2 * i + 2), 16));
}

const hexOf = (bits) => Array.from({ length: Math.ceil(bits.length / 8) }, (_, byte) =>
  Array.from({ length: 8 }, (_, i) => (bits[8 * byte + i] ?? 0) << i).reduce((a, b) => a | b).toString(16).padStart(2, "0")).join("");

// Of a number of so many bits: "is 1 or above 64", "above 3", "is not 0".
function rangesText(ranges, width) {
  if (ranges === null) return "has one of many values";
  const last = 2 ** width - 1;
  const plain = (list) => list.flatMap(([from, to]) => (from === to ? [`${from}`] : to === last && from > 1 ? [`above ${from - 1}`] : from + 1 === to ? [`${from}`, `${to}`] : [`${from} to ${to}`]))
    .join(", ").replace(/, ([^,]*)$/, " or $1");
  const others = [];
  let next = 0;
  for (const [from, to] of [...ranges, [last + 1, last + 1]]) {
    if (from > next) others.push([next, from - 1]);
    next = to + 1;
  }
  const count = (list) => list.reduce((sum, [from, to]) => sum + (from === to ? 1 : 2), 0);
  if (ranges.length === 1 && ranges[0][1] === last && ranges[0][0] > 1 && ranges[0][0] !== last) return plain(ranges);
  return others.length && count(others) < count(ranges) ? `is not ${plain(others)}` : `is ${plain(ranges)}`;
}

// What stands there: whole bytes in hexadecimal, in their order; fewer bits from the highest down.
function valueText(bits, valueAt) {
  return spansOf(bits).map(([first, width]) => {
    const values = Array.from({ length: width }, (_, k) => valueAt(first + k));
    return first % 8 === 0 && width % 8 === 0 ? hexOf(values) : `${width > 1 ? "0b" : ""}${values.reverse().join("")}`;
  }).join(" ");
}

function parseNumber(text, most, what) {
  if (text.trim() === "") return null;
  const value = /^(0x[0-9a-f]+|\d+)$/i.test(text.trim()) ? Number(text) : NaN;
  if (!(value <= most)) throw new Error(`${what} is a number from 0 to ${most}, decimal or hexadecimal after 0x.`);
  return value;
}

// The argument that a form asks for or was given, if that matters.
function argumentText(candidate) {
  const { argument } = candidate.form.translator;
  const values = argumentValues(candidate);
  return values && `${ARGUMENT_LABELS[argument].toLowerCase()} ${rangesText(values, argument === "K" ? 8 : 32).replace(/^is /, "")}`;
}

// What the form that was picked says of the pasted record, in words and as bytes to copy.
function pastedFacts() {
  const { translator, pasted, values } = shown;
  if (!pasted || !values) return [];
  const line = (name, text) => h("p", null, h("b", null, `${name} `), h("code", null, text));
  const facts = [];
  const argument = pasted.can.length === 1 && argumentText(values);
  if (argument) facts.push(h("p", null, `With ${argument}.`));
  if (pasted.side === inSide(translator)) {
    const unknown = values.out.flatMap((value, at) => (value === null && shown.bits.out[at].kind !== "left_alone" ? [at] : []));
    const left = values.out.flatMap((_, at) => (shown.bits.out[at].kind === "left_alone" ? [at] : []));
    if (values.out.length > left.length) facts.push(line("Comes out:", hexOf(values.out)));
    if (unknown.length) facts.push(h("p", null, `Not known without ${ARGUMENTS[translator.argument] ?? "the buffer's bits"} here 0: ${bitsName(outSide(translator), unknown)}.`));
    if (left.length) facts.push(h("p", null, `Left as the caller had it${left.length < values.out.length ? ", here 0" : ""}: ${bitsName(outSide(translator), left)}.`));
    if (values.after && values.after.some((byte, i) => byte !== values.bytes[i])) {
      facts.push(line("The record that went in becomes:", values.after.map((byte) => byte.toString(16).padStart(2, "0")).join("")));
    }
  } else {
    facts.push(line("What goes in:", hexOf(values.in)));
    const side = inSide(translator);
    const bitsWith = (fate) => values.fates.flatMap((one, at) => (one === fate ? [at] : []));
    const [determined, chosen, free] = ["determined", "chosen", "free"].map(bitsWith);
    facts.push(h("p", null, `${determined.length} bits are determined by the bytes, ${chosen.length} chosen by the form, ${free.length} free: not carried (x, 0 in the bytes).`));
    if (chosen.length) facts.push(h("p", null, `Chosen: ${spansOf(chosen).map(([first, width]) => Array.from({ length: width }, (_, k) => first + k)).map((bits) => `${bitsName(side, bits)} = ${valueText(bits, (bit) => values.in[bit])}`).join(", ")}.`));
    const group = pasted.groups.find((one) => one.includes(values));
    if (group.length > 1) {
      facts.push(h("p", null, "These bytes do not tell the form from ", group.filter((one) => one !== values).flatMap(({ form }, i) => [i ? ", or " : "", h("a", { href: address(translator, form) }, `“${form.title}”`)]), "."));
    }
    const open = openFields(values);
    if (open.length) facts.push(h("p", null, `One of several values, each by itself: ${open.map(({ bits, ranges }) => `${bitsName(side, bits)} ${rangesText(ranges, bits.length)}`).join("; ")}.`));
  }
  return facts;
}

// What a form would have made otherwise of bytes that it cannot have made.
function contradiction({ form, against }) {
  const side = outSide(shown.translator);
  const needs = against.map(({ bits, needs, other }) => {
    const at = bitsName(side, bits);
    if (bits.length === 0) return `a record for which ${form.when}`;
    if (other !== undefined) return `${at} ${needs} ${bitName(side, other)}`;
    return typeof needs === "number" ? `${at} = ${needs}` : `${at} ${needs}: no record gives this one`;
  });
  return `“${form.title}” needs ${needs.join(", ")}`;
}

// Of forms that the bytes do not tell apart.
const namesOf = (group) => group.map(({ form }) => form.title).join("; or ");

// Picks the form, and draws what is known.
function takeCandidate(at) {
  const { translator, pasted } = shown;
  pasted.at = at;
  const { form } = pasted.can[at];
  if (form !== shown.form) {
    shown.form = form;
    history.replaceState(null, "", address(translator, form));
  }
  drawForm();
}

function drawCandidates() {
  const { translator, pasted } = shown;
  const box = byId("candidates");
  if (!pasted || pasted.can.length < 2) {
    box.replaceChildren();
    return;
  }
  const here = pasted.groups.findIndex((group) => group.includes(pasted.can[pasted.at]));
  box.replaceChildren(choice("Forms that fit", pasted.groups, here, ([first]) => { takeCandidate(pasted.can.indexOf(first)); byId("candidates").querySelector("[aria-checked=true]")?.focus(); },
    (group) => {
      const [{ form }] = group;
      return [namesOf(group) + (translator.sets.length > 1 ? `, ${lengthText([form.set.least, form.set.most])}` : ""),
        [argumentText(group[0]), group.length === 1 && form.when && `when ${form.when}`].filter(Boolean).join("; ")];
    }));
}

function describePasted() {
  const { translator, pasted } = shown;
  const size = lengthText([pasted.bytes.length, pasted.bytes.length]);
  const [first] = pasted.can;
  const goesIn = pasted.side === inSide(translator);
  if (!first) {
    const nearest = pasted.nearest.slice(0, 3).map(contradiction).join("; ");
    return `${size}; no form makes such a record.${nearest ? ` Nearest: ${nearest}.` : ""}`;
  }
  if (pasted.can.length > 1) {
    return goesIn ? `${size}. Give ${ARGUMENTS[translator.argument].replace(/,$/, "")}: by these bytes alone the record can take ${pasted.can.length} forms.`
      : `${size}; ${pasted.can.length} forms can have made them${pasted.groups.length < pasted.can.length ? "; those together that these bytes do not tell apart" : ""}:`;
  }
  if (first.form.set.forms.length === 1) return goesIn ? `${size}.` : `${size}; a record of this kind can have made them.`;
  return goesIn ? `${size}, a record of the form “${first.form.title}”.` : `${size}; only the form “${first.form.title}” can have made them.`;
}

function pasteBox() {
  const { translator } = shown;
  const sides = [inSide(translator), outSide(translator)];
  const message = h("p", { id: "paste-message", role: "status" });
  const side = h("select", { id: "paste-side", "aria-label": "Which record", onchange: () => read() }, sides.map((one, i) =>
    h("option", { value: one }, `${SIDES[one]} record, ${i ? "came out" : "goes in"}, ${lengthText(lengths(translator, one))}`)));
  const text = h("textarea", { id: "paste", spellcheck: "false", "aria-label": "The record's bytes in hexadecimal", "aria-describedby": "paste-message", placeholder: "11 00 2a ff …", oninput: () => read() });
  const number = (id, label, value, title) => h("label", { title }, `${label} `, h("input", { id, size: "8", value, autocomplete: "off", oninput: () => read() }));
  const argument = translator.asksArgument && number("argument", ARGUMENT_LABELS[translator.argument], "", "The fourth argument: no record holds it");
  const setting = translator.asksSetting && number("setting", "TX_ADJ_KEY_MAX", String(data.txAdjKeyMax), "The library's setting, which programs may change");
  const say = (words, error) => {
    message.textContent = words;
    message.className = error ? "error" : "";
    text.setAttribute("aria-invalid", String(error));
  };
  const read = () => {
    shown.pasted = null;
    try {
      const given = {
        argument: argument ? parseNumber(argument.lastChild.value, translator.argument === "K" ? 0xff : 0xffffffff, ARGUMENT_LABELS[translator.argument]) : null,
        txAdjKeyMax: (setting ? parseNumber(setting.lastChild.value, 0xffff, "TX_ADJ_KEY_MAX") : null) ?? data.txAdjKeyMax,
      };
      const bytes = parseHex(text.value);
      const [least, most] = lengths(translator, side.value);
      if (text.value.trim() && (bytes.length < least || bytes.length > most)) {
        throw new Error(`These are ${lengthText([bytes.length, bytes.length])}; the ${SIDES[side.value]} record has ${lengthText([least, most])}.`);
      }
      if (text.value.trim()) {
        const goesIn = side.value === inSide(translator);
        const forms = goesIn ? formsOf(translator, bytes, given) : [];
        const found = goesIn ? { can: forms, groups: forms.map((one) => [one]), nearest: [] } : sourcesOf(translator, bytes, given);
        shown.pasted = { side: side.value, bytes, ...found, at: 0 };
      }
      say(shown.pasted ? describePasted() : "", false);
    } catch (error) {
      say(error.message, true);
    }
    if (shown.pasted?.can.length) takeCandidate(Math.max(0, shown.pasted.can.findIndex(({ form }) => form === shown.form)));
    else drawForm();
  };
  return h("details", { class: "paste", open: true }, h("summary", null, "Paste a record"),
    h("div", null, text, h("span", null, side, argument || "", setting || "", h("button", { type: "button", onclick: () => { text.value = ""; read(); text.focus(); } }, "Clear"))),
    message, h("div", { id: "candidates" }), h("div", { id: "pasted" }));
}

// Everything that the choice of a form changes.
function drawForm() {
  const { pasted, form } = shown;
  const at = pasted ? pasted.can.findIndex((one) => one.form === form) : -1;
  if (at >= 0) pasted.at = pasted.can[pasted.at].form === form ? pasted.at : at;
  shown.values = at >= 0 ? pasted.can[pasted.at] : null;
  byId("form").replaceChildren(...[formSwitch(), ...formFacts()].filter(Boolean));
  const list = byId("form").querySelector(".many");
  const current = list?.querySelector("[aria-checked=true]");
  if (current) list.scrollTop = current.offsetTop - list.offsetTop - list.clientHeight / 3;
  drawBits();
  drawCandidates();
  byId("pasted").replaceChildren(...(pasted?.can.length && at < 0
    ? [h("p", null, "The form shown is not that of the pasted record. ", h("a", { href: address(shown.translator, pasted.can[0].form) }, `Back to “${pasted.can[0].form.title}”`))]
    : pastedFacts()));
}

function drawTranslator(translator) {
  document.title = `${translator.name} – npxlate atlas`;
  main.replaceChildren(
    h("h1", null, breakable(translator.name)),
    h("p", { class: "facts" }, h("b", null, `${translator.title}, ${translator.role}`), `, ${tablesText(translator.tables)}: `,
      `${SIDES[inSide(translator)]} record of ${lengthText(lengths(translator, inSide(translator)))} → ${SIDES[outSide(translator)]} record of ${lengthText(lengths(translator, outSide(translator)))}`),
    ...(translator.notes.length ? [h("p", { class: "notes" }, `This translator ${translator.notes.join("; it ")}.`)] : []),
    related(translator), h("div", { id: "form" }), pasteBox(), h("div", { id: "bits" }),
    h("p", { class: "keys" }, h("kbd", null, "/"), " search   ", h("kbd", null, "← ↑ → ↓"), " move within a record   ", h("kbd", null, "Enter"), " to the partner   ", h("kbd", null, "["), " ", h("kbd", null, "]"), " forms"));
  drawForm();
  if (translator.notes.length === 0 && main.querySelector(".related").childElementCount === 0) main.querySelector(".related").remove();
}

function drawStart() {
  document.title = "npxlate atlas";
  const forms = data.translators.reduce((sum, translator) => sum + translator.forms.length, 0);
  const tables = [];
  for (let table = 0; table < 128; ++table) {
    const cell = (role) => {
      const one = data.translators.find((translator) => translator.role === role && translator.tables.includes(table));
      const generic = one.tables.length > MANY;
      return h("td", null, h("a", { href: address(one), class: generic && "generic" }, generic ? "generic" : breakable(one.name)));
    };
    tables.push(h("tr", null, h("td", null, String(table)), h("td", { class: "words" }, data.titles[table]), cell("key"), cell("result"), cell("reverse")));
  }
  main.replaceChildren(h("h1", { class: "plain" }, "Every record, bit by bit"),
    h("p", { class: "lead" }, `Where each bit of a forwarding-table record comes from, and what becomes of each bit that goes in: ${data.translators.length} translators with ${forms} forms. Choose a record at the left, or press `,
      h("kbd", null, "/"), " and type what you look for: a table id (4), words (queue index, mirroring), a constant (0x91), a position (L12-15), or several of them."),
    h("table", { class: "rows tables" }, h("caption", null, "Tables"),
      h("thead", null, h("tr", null, ...["Table", "What it is", "Key", "Result", "Reverse"].map((text) => h("th", null, text)))), h("tbody", null, tables)));
}

// ---- The list and the search

const entries = [];
function drawList() {
  const families = new Map();
  for (const translator of data.translators) {
    if (!families.has(translator.family)) families.set(translator.family, []);
    const hit = h("small", null);
    const link = h("a", { href: address(translator) }, h("b", null, breakable(translator.name)), h("span", null, `${translator.role}${translator.tables.length && translator.tables.length <= MANY ? " " + translator.tables.join(",") : ""}`),
      h("em", null, translator.title), hit);
    entries.push({ translator, link, hit });
    families.get(translator.family).push(link);
  }
  byId("list").append(...[...families].map(([family, links]) =>
    h("details", { "data-family": family }, h("summary", null, FAMILIES[family] ?? family, h("span", null, String(links.length))), links)));
}

// Words of a question that say nothing about a record.
const FILLERS = new Set(["table", "tables", "which", "what", "carry", "carries", "carrying", "where", "is", "the", "a", "an", "of", "with", "that", "do", "does", "have", "has"]);

// "4", "table 4", "rx_adj", "queue index", "0x91", "L0.4", "rx adj L0.4", "which tables carry L12-15".
function parseSearch(text) {
  const words = text.trim().toLowerCase().replace(/[?“”"]/g, "").split(/[\s,]+/).filter((word) => word && !FILLERS.has(word));
  const position = words.map(parsePosition).find(Boolean) ?? null;
  return { words: words.filter((word) => !parsePosition(word)), position };
}

// What can be found of a translator beside its name: fields that its forms have, and sentences.
function indexOf(translator) {
  if (translator.index) return translator.index;
  const fields = [...new Set(translator.forms.flatMap((form) => form.fields))].map((number) => fieldOf(translator, number));
  const items = [
    ...fields.filter((field) => !["cleared", "left_alone"].includes(field.kind))
      .map((field) => ({ text: `${field.name} ${field.title} ${happens(field)} ${namesAt(translator.names, logicalSide(translator, field)).join(" ")}`.toLowerCase(), said: fieldText(translator, field), field })),
    ...translator.names.map(({ name, bits }) => ({ text: name.toLowerCase(), said: `${name}: ${bitsName("L", bits)}` })),
    ...[...new Set([...translator.sections.flatMap(([title, when]) => [data.texts[title], data.texts[when]]), ...translator.forms.flatMap((form) => [form.title, form.when]),
      ...translator.forms.flatMap((form) => (form.changes ?? []).map(([, change]) => data.texts[change])), ...translator.notes])]
      .filter(Boolean).map((text) => ({ text: text.toLowerCase(), said: text })),
  ];
  const carried = { L: new Set(), P: new Set() };
  for (const { field } of items) {
    for (const bit of field?.to ?? []) carried[outSide(translator)].add(bit);
    for (const bit of field?.from ?? []) carried[inSide(translator)].add(bit);
  }
  return (translator.index = { head: `${translator.name} ${translator.title} ${translator.role} ${FAMILIES[translator.family] ?? ""}`.toLowerCase(), items, carried });
}

const ROLES = new Set(["key", "result", "reverse"]);
const valueOfText = (text) => (/^(0x[0-9a-f]+|\d+)$/i.test(text) ? BigInt(text) : null);

// What matches: null, or what of the translator it was, in words ("" if its name is enough).
function match(translator, words, position) {
  const { head, items, carried } = indexOf(translator);
  const wanted = position && Array.from({ length: position.width }, (_, k) => position.first + k);
  if (wanted && !wanted.every((bit) => carried[position.side].has(bit))) return null;
  if (words.some((word) => ROLES.has(word) && word !== translator.role)) return null;
  const left = words.filter((word) => !ROLES.has(word)).filter((word) => !(head.includes(word) && !/^\d+$/.test(word)) && !(/^\d+$/.test(word) && translator.tables.includes(Number(word))));
  if (left.length) {
    const phrase = left.join(" ");
    const holds = (item) => left.every((word) => (/^0x/.test(word) && item.field?.kind === "constant" ? valueOfText(item.field.text) === valueOfText(word) || item.text.includes(word) : item.text.includes(word)));
    // A number by itself is a table's.
    if (left.every((word) => /^\d+$/.test(word))) return null;
    return (items.find((item) => item.text.includes(phrase) && holds(item)) ?? items.find(holds))?.said ?? null;
  }
  if (!wanted) return "";
  const places = (field) => (position.side === outSide(translator) ? field.to : field.from);
  const fields = items.filter(({ field }) => field && places(field).includes(position.first));
  return (fields.find(({ field }) => places(field).length === position.width) ?? fields[0]).said;
}

// The first form that carries the bit.
const carrying = (translator, { side, first }) => translator.forms.find((form) => form.fields.some((number) => {
  const field = fieldOf(translator, number);
  return !["cleared", "left_alone"].includes(field.kind) && (side === outSide(translator) ? field.to : field.from).includes(first);
}));

// A name leads to its first bit.
function found(translator, words, position) {
  const named = !position && words.length && translator.names.find(({ name }) => words.some((word) => name.toLowerCase().includes(word)));
  const at = named ? { side: "L", first: named.bits[0] } : position;
  return address(translator, at && carrying(translator, at), at && bitName(at.side, at.first));
}

function search() {
  const text = byId("search").value;
  const { words, position } = parseSearch(text);
  let count = 0;
  for (const { translator, link, hit } of entries) {
    const said = text.trim() ? match(translator, words, position) : "";
    link.hidden = said === null;
    link.style.display = link.hidden ? "none" : "";
    link.href = link.hidden ? address(translator) : found(translator, words, position);
    hit.textContent = said ?? "";
    count += link.hidden ? 0 : 1;
  }
  for (const family of byId("list").children) {
    const any = family.querySelector("a:not([hidden])") !== null;
    family.style.display = any ? "" : "none";
    family.open = text.trim() ? any : family.querySelector("[aria-current]") !== null;
  }
  byId("found").textContent = text.trim() ? `${count} of ${entries.length} translators` : `${entries.length} translators`;
}

// Enter: a position alone means the record that is shown.
function goToFirst() {
  const { words, position } = parseSearch(byId("search").value);
  const here = shown && position && words.length === 0 && position.first + position.width <= 8 * lengths(shown.translator, position.side)[1];
  const first = entries.find(({ link }) => !link.hidden);
  if (!here && !first) return;
  const to = here ? address(shown.translator, shown.form, bitName(position.side, position.first)) : found(first.translator, words, position);
  if (location.hash === to) route(); else location.hash = to;
  if (!position) main.focus();
}

// ---- Addresses: #name, #name/form, #name/form/position

function openSide(open) {
  byId("side").classList.toggle("open", open);
  byId("menu").setAttribute("aria-expanded", String(open));
}

function route() {
  const [name, formName, positionName] = decodeURIComponent(location.hash.slice(1)).split("/");
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
  // The forms of shorter records have the same names.
  const forms = shown?.translator === translator ? shown.form.set.forms : translator.forms;
  const form = forms.find((one) => one.slug === formName) ?? forms[0];
  if (shown?.translator !== translator) {
    shown = { translator, form, pasted: null, values: null, marked: [], view: "form" };
    drawTranslator(translator);
    scrollTo(0, 0);
    if (!byId("search").value.trim()) search();
    // With the next frame's layout, instead of one of its own.
    requestAnimationFrame(() => byId("list").querySelector("[aria-current]")?.scrollIntoView({ block: "nearest" }));
  } else if (shown.form !== form) {
    shown.form = form;
    const inSwitch = document.activeElement?.closest("#form .forms") !== null;
    drawForm();
    if (inSwitch) byId("form").querySelector(".forms [aria-checked=true]")?.focus({ preventScroll: true });
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
  history.replaceState(null, "", address(shown.translator, shown.form, bitName(side, bit)));
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
  const group = event.target.closest(".forms");
  const tab = event.target.closest("[role=tab]");
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
    const buttons = [...group.querySelectorAll("button")];
    buttons[(buttons.indexOf(document.activeElement) + (/Right|Down/.test(event.key) ? 1 : -1) + buttons.length) % buttons.length].click();
  } else if (tab && /^Arrow(Left|Right)/.test(event.key)) {
    event.preventDefault();
    const tabs = [...tab.parentNode.children];
    tabs[(tabs.indexOf(tab) + (event.key === "ArrowRight" ? 1 : -1) + tabs.length) % tabs.length].click();
  }
});

function stepForm(step) {
  const { translator, form } = shown;
  const { forms } = form.set;
  location.hash = address(translator, forms[(forms.indexOf(form) + step + forms.length) % forms.length]);
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
    stepForm(event.key === "]" ? 1 : -1);
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
