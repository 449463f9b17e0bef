"use strict";
// What becomes of the bits of records, from the data of the page. Nothing here draws.
//
// Bits of a record are counted from bit 0 of byte 0 upwards. The bits that functions ask for have names as numbers: which
// of the spaces below, times 4096, and the bit in it.
const records = (() => {
const data = JSON.parse(document.getElementById("data").textContent);
const IN = 0, OUT = 1, ARGUMENT = 2, SETTING = 3;
const spaceOf = (id) => id >> 12;
const indexOf = (id) => id & 0xfff;

function inner(map, key) {
  if (!map.has(key)) map.set(key, new Map());
  return map.get(key);
}

// Functions of bits, as nodes that ask for one bit and go on to one of two nodes; 0 is false and 1 is true. Equal
// functions are the same node.
class Diagrams {
  constructor(flat) {
    this.bit = [null, null];
    this.clear = [0, 1];
    this.set = [0, 1];
    this.unique = new Map();
    this.done = new Map();
    for (let i = 0; i < flat.length; i += 3) this.add(flat[i], flat[i + 1], flat[i + 2]);
    this.level = this.levels();
  }

  add(bit, clear, set) {
    const nodes = inner(inner(this.unique, bit), clear);
    let node = nodes.get(set);
    if (node === undefined) {
      node = this.bit.push(bit) - 1;
      this.clear.push(clear);
      this.set.push(set);
      nodes.set(set, node);
    }
    return node;
  }

  // Bits are asked for in the order in which the nodes given ask for them.
  levels() {
    const depth = new Map(this.bit.slice(2).map((bit) => [bit, 0]));
    for (let again = true; again;) {
      again = false;
      for (let node = this.bit.length - 1; node > 1; --node) {
        for (const next of [this.clear[node], this.set[node]]) {
          if (next > 1 && depth.get(this.bit[next]) <= depth.get(this.bit[node])) {
            depth.set(this.bit[next], depth.get(this.bit[node]) + 1);
            again = true;
          }
        }
      }
    }
    return new Map([...depth].sort(([a, one], [b, other]) => one - other || a - b).map(([bit], level) => [bit, level]));
  }

  levelOf(node) {
    return node < 2 ? Infinity : this.level.get(this.bit[node]);
  }

  ofBit(bit) {
    if (!this.level.has(bit)) this.level.set(bit, this.level.size);
    return this.add(bit, 0, 1);
  }

  fork(bit, clear, set) {
    return clear === set ? clear : this.add(bit, clear, set);
  }

  ifThenElse(a, b, c) {
    if (a < 2) return a ? b : c;
    if (b === c) return b;
    if (b === 1 && c === 0) return a;
    const done = inner(inner(this.done, c), b);
    let node = done.get(a);
    if (node === undefined) {
      const top = [a, b, c].reduce((best, one) => (this.levelOf(one) < this.levelOf(best) ? one : best));
      const bit = this.bit[top];
      const at = (one, way) => (this.bit[one] === bit ? way[one] : one);
      node = this.fork(bit, this.ifThenElse(at(a, this.clear), at(b, this.clear), at(c, this.clear)),
        this.ifThenElse(at(a, this.set), at(b, this.set), at(c, this.set)));
      done.set(a, node);
    }
    return node;
  }

  both(a, b) { return this.ifThenElse(a, b, 0); }
  either(a, b) { return this.ifThenElse(a, 1, b); }
  not(a) { return this.ifThenElse(a, 0, 1); }

  rebuilt(node, change, memo = new Map()) {
    if (node < 2) return node;
    if (!memo.has(node)) memo.set(node, change(node, (next) => this.rebuilt(next, change, memo)));
    return memo.get(node);
  }

  // The function where the bits have the values that `known` gives them: 0 or 1, or null for those it does not know. What
  // was found stands in `known.done`, if it has one.
  where(node, known) {
    return this.rebuilt(node, (at, go) => {
      const value = known(this.bit[at]);
      return value === null ? this.fork(this.bit[at], go(this.clear[at]), go(this.set[at])) : go(value ? this.set[at] : this.clear[at]);
    }, known.done);
  }

  // Whether such bits can be chosen so that the function holds.
  forSome(node, chosen) {
    return this.rebuilt(node, (at, go) => {
      const [clear, set] = [go(this.clear[at]), go(this.set[at])];
      return chosen(this.bit[at]) ? this.either(clear, set) : this.fork(this.bit[at], clear, set);
    });
  }

  // Whether the function can hold where the bit has this value.
  canHold(node, bit, value) {
    const done = new Map();
    const go = (at) => {
      if (at < 2 || this.levelOf(at) > this.level.get(bit)) return at !== 0;
      if (!done.has(at)) done.set(at, this.bit[at] === bit ? (value ? this.set : this.clear)[at] !== 0 : go(this.clear[at]) || go(this.set[at]));
      return done.get(at);
    };
    return go(node);
  }

  dependsOn(node) {
    const bits = new Set();
    this.rebuilt(node, (at, go) => {
      bits.add(this.bit[at]);
      go(this.clear[at]);
      go(this.set[at]);
      return at;
    });
    return bits;
  }

  // Some way to make the function true, with as many bits clear as it can have from the top.
  oneWay(node) {
    const values = new Map();
    while (node > 1) {
      const value = this.clear[node] === 0 ? 1 : 0;
      values.set(this.bit[node], value);
      node = value ? this.set[node] : this.clear[node];
    }
    return values;
  }

  // The values of a number, its lowest bit first, with which the function can hold: ranges, or null if there are too many.
  valuesOf(node, bits) {
    const ranges = [];
    const only = this.forSome(node, (bit) => !bits.includes(bit));
    const go = (rest, high, value) => {
      if (rest === 0) return;
      if (rest === 1 || high < 0) {
        const [least, most] = [value * 2 ** (high + 1), (value + 1) * 2 ** (high + 1) - 1];
        if (ranges.length && ranges.at(-1)[1] === least - 1) ranges.at(-1)[1] = most;
        else ranges.push([least, most]);
        return;
      }
      for (let way = 0; way < 2 && ranges.length < 20; ++way) {
        go(this.where(rest, (bit) => (bit === bits[high] ? way : null)), high - 1, 2 * value + way);
      }
    };
    go(only, bits.length - 1, 0);
    return ranges.length < 20 ? ranges : null;
  }
}

function expand(flat) {
  const bits = [];
  for (let i = 0; i < flat.length; i += 2) {
    for (let k = 0; k < flat[i + 1]; ++k) bits.push(flat[i] + k);
  }
  return bits;
}

const inSide = (translator) => (translator.role === "reverse" ? "P" : "L");
const outSide = (translator) => (translator.role === "reverse" ? "L" : "P");
const lengths = (translator, side) => (side === "L" ? translator.logical : translator.physical);

const slug = (name) => name.toLowerCase().replace(/[^a-z0-9]+/g, "-").replace(/^-|-$/g, "");

for (const translator of data.translators) {
  translator.known = [];
  for (const [least, most, set] of translator.lengths) {
    let diagrams = null;
    const slugs = new Set();
    Object.assign(set, { least, most, diagrams: () => (diagrams ??= new Diagrams(set.nodes)), forget: () => { diagrams = null; } });
    for (const form of set.forms) {
      const when = form.when === undefined ? "" : data.texts[form.when];
      // The condition by itself stands beside the title wherever it is shown.
      const title = form.name.endsWith(`: ${when}`) ? form.name.slice(0, -when.length - 2) : form.name;
      const start = slug(title).slice(0, 60);
      let address = start;
      for (let i = 2; slugs.has(address); ++i) address = `${start}-${i}`;
      slugs.add(address);
      Object.assign(form, { translator, set, when, title, slug: address, status: form.status ?? 0, length: form.length ?? null });
    }
  }
  translator.sets = translator.lengths.map(([, , set]) => set);
  // Those of the longest record.
  translator.forms = translator.sets.at(-1).forms;
}

function fieldOf(translator, number) {
  if (!translator.known[number]) {
    const [kind, text, title, name, to = [], from = [], runs = [], combines = 0, ones = []] = translator.fields[number];
    const links = [];
    for (let i = 0; i < runs.length; i += 4) {
      for (let k = 0; k < runs[i + 2]; ++k) links.push({ to: runs[i] + k, from: runs[i + 1] + k, inverted: runs[i + 3] === 1 });
    }
    translator.known[number] = {
      number, kind: data.kinds[kind], text: data.texts[text], title: data.texts[title], name: data.texts[name],
      to: expand(to), links, combines: combines === 1, ones: expand(ones),
      from: [...new Set([...expand(from), ...links.map((link) => link.from)])],
    };
  }
  return translator.known[number];
}

// What becomes of every bit of both records.
function bitsOf(form) {
  if (form.bits) return form.bits;
  const { translator, set } = form;
  const out = Array.from({ length: 8 * Math.max(form.bytes, lengths(translator, outSide(translator))[1]) }, (_, bit) => ({ kind: bit < 8 * form.bytes ? "cleared" : "left_alone", links: [], from: [], field: null }));
  const into = Array.from({ length: 8 * lengths(translator, inSide(translator))[1] }, () => ({ to: [], computes: [], steers: false, field: null }));
  let functions = 0;
  for (const field of form.fields.map((number) => fieldOf(translator, number))) {
    const linksTo = Map.groupBy(field.links, (link) => link.to);
    const nodes = field.kind === "computed" ? set.functions[form.computed[functions++]] : [];
    field.to.forEach((bit, place) => {
      out[bit] = { kind: field.kind, field, links: linksTo.get(bit) ?? [], from: field.kind === "computed" ? field.from : [], node: nodes[place],
        value: field.kind === "constant" ? Number(BigInt(field.text) >> BigInt(place) & 1n) : Number(field.ones.includes(bit)) };
    });
  }
  out.forEach((bit, at) => {
    for (const link of bit.links) into[link.from]?.to.push({ bit: at, inverted: link.inverted });
    for (const from of bit.links.length ? [] : bit.from) into[from]?.computes.push(at);
    for (const from of [...bit.links.map((link) => link.from), ...bit.from]) if (into[from]) into[from].field ??= bit.field;
  });
  for (const bit of expand(form.looks ?? [])) if (into[bit]) into[bit].steers = true;
  for (const bit of into) {
    bit.kind = bit.to.length ? bit.field.kind : bit.computes.length ? "computed" : bit.steers ? "steers" : "dropped";
  }
  return (form.bits = { out, into });
}

// ---- One record

// The value of a named bit, null where it is not known: `inBit` says it of the record that goes in; the argument may be
// null.
const knownBy = (inBit, { argument, txAdjKeyMax }) => Object.assign((id) => {
  const index = indexOf(id);
  switch (spaceOf(id)) {
    case IN: return inBit(index);
    // A key is given by byte 7, the one that is looked at.
    case ARGUMENT: return argument === null ? null : argument >>> (index < 56 ? index : index - 56) & 1;
    case SETTING: return txAdjKeyMax >> index & 1;
    default: return null;
  }
}, { done: new Map() });

const bitOf = (bytes, bit) => (bit >> 3 < bytes.length ? bytes[bit >> 3] >> (bit & 7) & 1 : null);

// A function's value: 0, 1, or null where what is known, and that `rest` holds, leave it open.
function valueOf(diagrams, node, known, rest) {
  const left = diagrams.where(node, known);
  return left < 2 ? left : diagrams.both(rest, left) === 0 ? 0 : diagrams.both(rest, diagrams.not(left)) === 0 ? 1 : null;
}

// What a form makes of a record for which `rest` holds: 0, 1, or null where that is not known or the buffer is left as it was.
function outOf(form, known, rest) {
  const diagrams = form.set.diagrams();
  return bitsOf(form).out.slice(0, 8 * form.bytes).map((bit) => {
    if (bit.kind === "left_alone") return null;
    if (bit.links.length) {
      const sources = bit.links.map((link) => { const value = known(IN << 12 | link.from); return value === null ? null : value ^ Number(link.inverted); });
      return sources.includes(1) ? 1 : sources.includes(null) ? null : 0;
    }
    return bit.kind === "computed" ? valueOf(diagrams, bit.node, known, rest) : bit.value;
  });
}

// What the record that goes in has become after the call.
function afterOf(form, bytes, known, rest) {
  const after = [...bytes];
  for (let i = 0; i < (form.after ?? []).length; i += 2) {
    const [bit, value] = [form.after[i], valueOf(form.set.diagrams(), form.after[i + 1], known, rest)];
    if (value === null) return null;
    after[bit >> 3] = after[bit >> 3] & ~(1 << (bit & 7)) | value << (bit & 7);
  }
  return after;
}

// The forms that a record that goes in can take: one, or several if they ask for an argument that is not given.
function formsOf(translator, bytes, given) {
  const set = translator.sets.find(({ least, most }) => least <= bytes.length && bytes.length <= most);
  const known = knownBy((bit) => bitOf(bytes, bit) ?? 0, given);
  return set.forms.map((form) => ({ form, diagrams: set.diagrams(), bytes, rest: set.diagrams().where(form.condition, known) }))
    .filter(({ rest }) => rest !== 0)
    .sort((a, b) => Number(a.form.status !== 0) - Number(b.form.status !== 0))
    .map((one) => ({ ...one, in: Array.from({ length: 8 * bytes.length }, (_, bit) => bitOf(bytes, bit)), out: outOf(one.form, known, one.rest), after: afterOf(one.form, bytes, known, one.rest), fates: null }));
}

// ---- Backwards: what must have gone in

// Whether the form can have been what such bytes came from: one that rejects its record, or writes nothing, can not.
const canHaveMade = (form, bytes) => form.status === 0 && !(form.length === null && form.translator.hidesFailures)
  && (bytes.length === 0 || bitsOf(form).out.some(({ kind }) => kind !== "left_alone"));

// What a form that made these bytes was given; `against` if it cannot have made them: the bits that it would make otherwise.
function sourceOf(form, bytes, given) {
  const diagrams = form.set.diagrams();
  const fixed = new Map();
  const against = [];
  const functions = new Map(); // of each field: pairs of a node and the value that came out
  const holds = (field, node, value) => functions.set(field, [...functions.get(field) ?? [], [node, value]]);
  bitsOf(form).out.slice(0, 8 * bytes.length).forEach((bit, at) => {
    const value = bitOf(bytes, at);
    if (bit.kind === "left_alone") return;
    if (bit.links.length === 1) {
      const [{ from, inverted }] = bit.links;
      const wanted = value ^ Number(inverted);
      if (!fixed.has(from)) fixed.set(from, wanted);
      else if (fixed.get(from) !== wanted) against.push(at);
    } else if (bit.links.length) {
      const sources = bit.links.map((link) => { const node = diagrams.ofBit(IN << 12 | link.from); return link.inverted ? diagrams.not(node) : node; });
      holds(bit.field, sources.reduce((a, b) => diagrams.either(a, b)), value);
    } else if (bit.kind === "computed") {
      holds(bit.field, bit.node, value);
    } else if (bit.value !== value) {
      against.push(at);
    }
  });
  if (against.length) return { form, against };
  const known = knownBy((bit) => fixed.get(bit) ?? null, given);
  const condition = diagrams.where(form.condition, known);
  if (condition === 0) return { form, against, condition: true };
  let carried = 1;
  for (const [field, nodes] of functions) {
    let makes = 1;
    for (const [node, value] of nodes) {
      const left = diagrams.where(node, known);
      makes = diagrams.both(makes, value ? left : diagrams.not(left));
    }
    carried = diagrams.both(carried, makes);
    if (diagrams.both(carried, condition) === 0) return { form, against: field.to };
  }
  // The buffer may have held anything.
  const rest = diagrams.forSome(diagrams.both(carried, condition), (id) => spaceOf(id) === OUT);
  const asked = diagrams.dependsOn(rest);
  const way = diagrams.oneWay(rest);
  const size = 8 * form.set.most;
  const result = { form, diagrams, rest, in: new Array(size).fill(0), fates: new Array(size).fill("free"), out: Array.from({ length: 8 * bytes.length }, (_, bit) => bitOf(bytes, bit)) };
  for (const [bit, value] of fixed) [result.in[bit], result.fates[bit]] = [value, "determined"];
  for (const id of asked) {
    if (spaceOf(id) !== IN) continue;
    const can = (node) => [0, 1].filter((value) => diagrams.canHold(node, id, value));
    const values = can(rest);
    result.in[indexOf(id)] = values.length === 1 ? values[0] : way.get(id) ?? 0;
    result.fates[indexOf(id)] = can(carried).length === 1 ? "determined" : "chosen";
  }
  result.open = result.fates.filter((fate) => fate !== "determined").length;
  return result;
}

// Every form that can have made these bytes, those with the fewest open bits first; if there is none, those that come
// nearest.
function sourcesOf(translator, bytes, given) {
  // What earlier records left behind.
  for (const set of translator.sets) set.forget();
  const forms = translator.sets.flatMap((set) => set.forms).filter((form) => canHaveMade(form, bytes));
  const asLong = forms.filter((form) => bytes.length === form.bytes || bytes.length === form.length);
  // What lies beyond what a form writes is as the caller had it.
  const all = (asLong.length ? asLong : forms.filter((form) => form.bytes <= bytes.length))
    .map((form) => sourceOf(form, bytes, given));
  const can = all.filter((one) => !one.against).sort((a, b) => a.open - b.open);
  const distance = (one) => one.against.length + (one.condition ? 1 : 0);
  const least = Math.min(...all.filter((one) => one.against).map(distance));
  return { can, nearest: can.length ? [] : all.filter((one) => distance(one) === least) };
}

// The values of the argument with which a form is taken or made such bytes; null if they do not matter.
function argumentValues({ form, diagrams, rest }) {
  const ids = [...diagrams.dependsOn(rest)].filter((id) => spaceOf(id) === ARGUMENT);
  if (ids.length === 0) return null;
  const first = form.translator.argument === "K" ? 56 : 0;
  const width = form.translator.argument === "K" ? 8 : 32;
  return diagrams.valuesOf(rest, Array.from({ length: width }, (_, i) => ARGUMENT << 12 | first + i));
}

// Of a form that asks for bits that were chosen: the values that a number of such bits can have, its lowest bit first.
const chosenValues = ({ diagrams, rest }, bits) => diagrams.valuesOf(rest, bits.map((bit) => IN << 12 | bit));

// Whether any of the translator's functions asks for bits of such a space.
const asksFor = (translator, space) => translator.sets.some((set) => set.nodes.some((bit, i) => i % 3 === 0 && spaceOf(bit) === space));

for (const translator of data.translators) {
  translator.asksArgument = translator.argument !== null && asksFor(translator, ARGUMENT);
  translator.asksSetting = asksFor(translator, SETTING);
}

return { data, fieldOf, bitsOf, formsOf, sourcesOf, argumentValues, chosenValues, expand, inSide, outSide, lengths };
})();
