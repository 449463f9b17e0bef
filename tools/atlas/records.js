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

// Two numbers of nodes as one.
const pair = (a, b) => a * 2 ** 26 + b;

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
    const nodes = inner(this.unique, bit);
    const key = pair(clear, set);
    let node = nodes.get(key);
    if (node === undefined) {
      node = this.bit.push(bit) - 1;
      this.clear.push(clear);
      this.set.push(set);
      nodes.set(key, node);
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
    const done = inner(this.done, c);
    const key = pair(a, b);
    let node = done.get(key);
    if (node === undefined) {
      const top = [a, b, c].reduce((best, one) => (this.levelOf(one) < this.levelOf(best) ? one : best));
      const bit = this.bit[top];
      const at = (one, way) => (this.bit[one] === bit ? way[one] : one);
      node = this.fork(bit, this.ifThenElse(at(a, this.clear), at(b, this.clear), at(c, this.clear)),
        this.ifThenElse(at(a, this.set), at(b, this.set), at(c, this.set)));
      done.set(key, node);
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

  // The function as factors that ask for different bits and all have to hold: it is cut where every way that does not
  // fail comes through one node.
  factors(node) {
    if (node < 2) return node ? [] : [0];
    const nodes = [];
    this.rebuilt(node, (at, go) => {
      nodes.push(at);
      go(this.clear[at]);
      go(this.set[at]);
      return at;
    });
    nodes.sort((a, b) => this.levelOf(a) - this.levelOf(b));
    const factors = [];
    const downTo = (from, end) =>
      this.rebuilt(from, (at, go) => this.fork(this.bit[at], go(this.clear[at]), go(this.set[at])), new Map([[end, 1]]));
    const open = new Set([node]);
    let start = node;
    for (const at of nodes) {
      open.delete(at);
      if (open.size === 0 && at !== start) {
        factors.push(downTo(start, at));
        start = at;
      }
      for (const next of [this.clear[at], this.set[at]]) if (next !== 0) open.add(next);
    }
    return [...factors, start];
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

// Functions that have to hold together, as factors that ask for different bits: whatever is asked of some bits is asked of
// their factors alone. What a record's fields say stays apart that way, however long the record is.
class Product {
  constructor(diagrams, factors = []) {
    this.diagrams = diagrams;
    this.factors = factors; // of a node and the bits that it asks for
  }

  // False if they can not hold together.
  take(node) {
    for (const piece of this.diagrams.factors(node)) {
      const joined = { node: piece, bits: this.diagrams.dependsOn(piece) };
      const apart = [];
      for (const factor of this.factors) {
        if ([...joined.bits].some((bit) => factor.bits.has(bit))) {
          joined.node = this.diagrams.both(joined.node, factor.node);
          joined.bits = new Set([...joined.bits, ...factor.bits]);
        } else {
          apart.push(factor);
        }
      }
      if (joined.node === 0) return false;
      this.factors = [...apart, joined];
    }
    return true;
  }

  and(node) {
    const product = new Product(this.diagrams, this.factors);
    return product.take(node) ? product : null;
  }

  // Whether such bits can be chosen so that all hold.
  forSome(chosen) {
    const product = new Product(this.diagrams);
    for (const { node } of this.factors) product.take(this.diagrams.forSome(node, chosen));
    return product;
  }

  dependsOn() { return new Set(this.factors.flatMap(({ node }) => [...this.diagrams.dependsOn(node)])); }

  // What is said of these bits, and of those with which they have to do.
  about(bits) {
    return this.factors.filter((factor) => bits.some((bit) => factor.bits.has(bit)))
      .reduce((all, { node }) => this.diagrams.both(all, node), 1);
  }

  oneWay() { return new Map(this.factors.flatMap(({ node }) => [...this.diagrams.oneWay(node)])); }
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

// Functions that are kept of earlier records.
const MOST_NODES = 200_000;

for (const translator of data.translators) {
  translator.known = [];
  for (const [least, most, set] of translator.lengths) {
    let diagrams = null;
    const slugs = new Set();
    Object.assign(set, { least, most, diagrams: () => (diagrams ??= new Diagrams(set.nodes)), plans: new Map(),
      forget: () => { if (diagrams?.bit.length > MOST_NODES) { diagrams = null; set.plans.clear(); } } });
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
      to: expand(to), links, linksTo: Map.groupBy(links, (link) => link.to), combines: combines === 1, ones: expand(ones),
      from: [...new Set([...expand(from), ...links.map((link) => link.from)])],
    };
  }
  return translator.known[number];
}

// What becomes of every bit of the record that comes out.
function bitsOut(form) {
  if (form.out) return form.out;
  const { translator, set } = form;
  const out = Array.from({ length: 8 * Math.max(form.bytes, lengths(translator, outSide(translator))[1]) }, (_, bit) => ({ kind: bit < 8 * form.bytes ? "cleared" : "left_alone", links: [], from: [], field: null }));
  let functions = 0;
  for (const field of form.fields.map((number) => fieldOf(translator, number))) {
    const nodes = field.kind === "computed" ? set.functions[form.computed[functions++]] : [];
    field.to.forEach((bit, place) => {
      out[bit] = { kind: field.kind, field, links: field.linksTo.get(bit) ?? [], from: field.kind === "computed" ? field.from : [], node: nodes[place],
        value: field.kind === "constant" ? Number(BigInt(field.text) >> BigInt(place) & 1n) : Number(field.ones.includes(bit)) };
    });
  }
  return (form.out = out);
}

// What becomes of every bit of both records.
function bitsOf(form) {
  if (form.bits) return form.bits;
  const out = bitsOut(form);
  const into = Array.from({ length: 8 * lengths(form.translator, inSide(form.translator))[1] }, () => ({ to: [], computes: [], steers: false, field: null }));
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
  return bitsOut(form).slice(0, 8 * form.bytes).map((bit) => {
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
  return set.forms.map((form) => ({ form, rest: set.diagrams().where(form.condition, known) }))
    .filter(({ rest }) => rest !== 0)
    .sort((a, b) => Number(a.form.status !== 0) - Number(b.form.status !== 0))
    .map(({ form, rest }) => ({ form, bytes, rest: new Product(set.diagrams()).and(rest), in: Array.from({ length: 8 * bytes.length }, (_, bit) => bitOf(bytes, bit)), out: outOf(form, known, rest), after: afterOf(form, bytes, known, rest), fates: null }));
}

// ---- Backwards: what must have gone in

// Whether the form can have been what such bytes came from: one that rejects its record, or writes nothing, can not.
const canHaveMade = (form, bytes) => form.status === 0 && !(form.length === null && form.translator.hidesFailures)
  && (bytes.length === 0 || bitsOut(form).some(({ kind }) => kind !== "left_alone"));

// The bits of the record that went in whose values a form's condition says by itself.
function saidByCondition(form) {
  if (!form.said) {
    const diagrams = form.set.diagrams();
    form.said = new Map();
    for (const id of diagrams.dependsOn(form.condition)) {
      const values = [0, 1].filter((value) => diagrams.canHold(form.condition, id, value));
      if (spaceOf(id) === IN && values.length === 1) form.said.set(indexOf(id), values[0]);
    }
  }
  return form.said;
}

// What is to be seen of a form in the bytes that came out: bits that have one value whatever went in, bits that are moved
// from one bit, and of each field that is computed its bits and their nodes. Less may be stored than is written.
function planOf(form, bytes) {
  const plans = inner(form.set.plans, form);
  if (!plans.has(bytes.length)) plans.set(bytes.length, makePlan(form, bytes.length));
  return plans.get(bytes.length);
}

function makePlan(form, length) {
  const diagrams = form.set.diagrams();
  const said = saidByCondition(form);
  const plan = { same: [], moves: [] };
  const functions = new Map();
  const add = (field, at, node) => inner(functions, field).set(at, node);
  bitsOut(form).slice(0, 8 * length).forEach((bit, at) => {
    if (bit.kind === "left_alone") return;
    if (bit.links.length === 1) {
      const [{ from, inverted }] = bit.links;
      if (said.has(from)) plan.same.push([at, said.get(from) ^ Number(inverted)]);
      plan.moves.push([at, from, Number(inverted)]);
    } else if (bit.links.length) {
      const sources = bit.links.map((link) => { const node = diagrams.ofBit(IN << 12 | link.from); return link.inverted ? diagrams.not(node) : node; });
      add(bit.field, at, sources.reduce((a, b) => diagrams.either(a, b)));
    } else if (bit.kind === "computed") {
      add(bit.field, at, bit.node);
    } else {
      plan.same.push([at, bit.value]);
    }
  });
  plan.functions = [...functions.values()].map((nodes) => [...nodes]);
  return plan;
}

// What is said by the values that came out of a field.
function madeBy(diagrams, nodes, bytes, known) {
  return nodes.reduce((all, [at, node]) => {
    const left = diagrams.where(node, known);
    return diagrams.both(all, bitOf(bytes, at) ? left : diagrams.not(left));
  }, 1);
}

// What a form that made these bytes was given; null if it cannot have made them.
function sourceOf(form, bytes, given) {
  const diagrams = form.set.diagrams();
  const { same, moves, functions } = planOf(form, bytes);
  if (same.some(([at, value]) => bitOf(bytes, at) !== value)) return null;
  const fixed = new Map();
  for (const [at, from, inverted] of moves) {
    const wanted = bitOf(bytes, at) ^ inverted;
    if ((fixed.get(from) ?? wanted) !== wanted) return null;
    fixed.set(from, wanted);
  }
  const known = knownBy((bit) => fixed.get(bit) ?? null, given);
  const byBytes = new Product(diagrams);
  if (!functions.every((nodes) => byBytes.take(madeBy(diagrams, nodes, bytes, known)))) return null;
  // The buffer may have held anything.
  const rest = byBytes.and(diagrams.where(form.condition, known))?.forSome((id) => spaceOf(id) === OUT);
  if (!rest) return null;
  const size = 8 * form.set.most;
  const result = { form, rest, in: new Array(size).fill(0), fates: new Array(size).fill("free"), out: Array.from({ length: 8 * bytes.length }, (_, bit) => bitOf(bytes, bit)) };
  for (const [bit, value] of fixed) [result.in[bit], result.fates[bit]] = [value, "determined"];
  const way = rest.oneWay();
  for (const id of rest.dependsOn()) {
    if (spaceOf(id) !== IN) continue;
    const isSettled = (product) => [0, 1].filter((value) => diagrams.canHold(product.about([id]), id, value)).length === 1;
    result.in[indexOf(id)] = way.get(id) ?? 0;
    result.fates[indexOf(id)] = isSettled(byBytes) ? "determined" : isSettled(rest) ? "chosen" : "several";
  }
  return result;
}

// What a form would have made otherwise: bits that came out, and what it needs there.
function contradictionsOf(form, bytes, given) {
  const diagrams = form.set.diagrams();
  const { same, moves, functions } = planOf(form, bytes);
  const against = same.filter(([at, value]) => bitOf(bytes, at) !== value).map(([at, value]) => ({ bits: [at], needs: value }));
  const said = saidByCondition(form);
  const fixed = new Map(); // of a bit that went in: the value that was wanted first, and where
  for (const [at, from, inverted] of moves) {
    const value = said.get(from) ?? bitOf(bytes, at) ^ inverted;
    if (!fixed.has(from)) fixed.set(from, { value, at });
    else if (fixed.get(from).value !== value) against.push({ bits: [at], needs: "the same source as", other: fixed.get(from).at });
  }
  const known = knownBy((bit) => fixed.get(bit)?.value ?? null, given);
  let left = new Product(diagrams).and(diagrams.where(form.condition, known));
  if (!left && against.length === 0) against.push({ bits: [], needs: "a record" });
  for (const nodes of left ? functions : []) {
    const more = left.and(madeBy(diagrams, nodes, bytes, known));
    if (!more) against.push({ bits: nodes.map(([at]) => at), needs: "another value" });
    left = more ?? left;
  }
  return { form, against, bits: against.reduce((sum, { bits }) => sum + Math.max(1, bits.length), 0) };
}

// Whether the bytes show nothing in which two sources differ: what is not determined is chosen otherwise.
function areAlike(one, other) {
  const open = (source) => {
    const bits = source.fates.flatMap((fate, bit) => (fate === "several" ? [IN << 12 | bit] : []));
    return source.rest.diagrams.forSome(source.rest.about(bits), (id) => !bits.includes(id));
  };
  return one.form.set === other.form.set
    && one.fates.every((fate, bit) => ["determined", "several"].every((settled) => (fate === settled) === (other.fates[bit] === settled)))
    && one.in.every((value, bit) => one.fates[bit] !== "determined" || value === other.in[bit])
    && open(one) === open(other) && JSON.stringify(argumentValues(one)) === JSON.stringify(argumentValues(other));
}

// Every form that can have made these bytes, those with the fewest free bits first, and those together that the bytes do
// not tell apart; if there is none, the forms in the order of how many bits are against them.
function sourcesOf(translator, bytes, given) {
  // What many earlier records left behind.
  for (const set of translator.sets) set.forget();
  const forms = translator.sets.flatMap((set) => set.forms);
  const asLong = forms.filter((form) => bytes.length === (form.length ?? form.bytes) && canHaveMade(form, bytes));
  // What lies beyond what a form writes is as the caller had it.
  const all = asLong.length ? asLong : forms.filter((form) => form.bytes <= bytes.length && canHaveMade(form, bytes));
  const sources = all.map((form) => sourceOf(form, bytes, given)).filter(Boolean);
  const count = ({ fates }, isOne) => fates.filter(isOne).length;
  const free = (fate) => fate === "free";
  const open = (fate) => fate !== "determined";
  sources.sort((a, b) => count(a, free) - count(b, free) || count(a, open) - count(b, open));
  const groups = [];
  for (const one of sources) {
    const group = groups.find(([first]) => areAlike(first, one));
    if (group) group.push(one);
    else groups.push([one]);
  }
  const can = groups.flat();
  const nearest = can.length ? [] : all.map((form) => contradictionsOf(form, bytes, given)).sort((a, b) => a.bits - b.bits);
  return { can, groups, nearest };
}

// The values of the argument with which a form is taken or made such bytes; null if they do not matter.
function argumentValues({ form, rest }) {
  const first = form.translator.argument === "K" ? 56 : 0;
  const width = form.translator.argument === "K" ? 8 : 32;
  const ids = Array.from({ length: width }, (_, i) => ARGUMENT << 12 | first + i);
  const about = rest.about(ids);
  return about === 1 ? null : rest.diagrams.valuesOf(about, ids);
}

// Where several values are possible: numbers of neighbouring bits that have to do with each other, with the bits of their
// bytes that are settled, and the values that each can have (null: many).
function openFields({ form, rest, in: values, fates }) {
  const { diagrams } = rest;
  const factorOf = (bit) => rest.factors.find(({ bits }) => bits.has(IN << 12 | bit));
  const { into } = bitsOf(form);
  const fields = [];
  const isOpen = (bit) => fates[bit] === "several";
  for (let bit = 0; bit < fates.length; ++bit) {
    if (!isOpen(bit)) continue;
    const last = fields.at(-1)?.at(-1);
    if (last === bit - 1 && factorOf(last) === factorOf(bit) && (into[last].field === into[bit].field || bit % 8 !== 0)) fields.at(-1).push(bit);
    else fields.push([bit]);
  }
  const isPart = (bit, of) => fates[bit] !== "free" && !isOpen(bit) && bit >> 3 === of >> 3 && into[bit]?.field === into[of].field;
  for (const field of fields) {
    while (isPart(field[0] - 1, field[0])) field.unshift(field[0] - 1);
    while (isPart(field.at(-1) + 1, field.at(-1))) field.push(field.at(-1) + 1);
  }
  return fields.map((bits) => {
    // A physical number has its highest byte first.
    const order = (inSide(form.translator) === "P" ? [...bits].sort((a, b) => (b >> 3) - (a >> 3) || a - b) : bits).map((bit) => IN << 12 | bit);
    const settled = bits.filter((bit) => !isOpen(bit)).map((bit) => (values[bit] ? diagrams.ofBit(IN << 12 | bit) : diagrams.not(diagrams.ofBit(IN << 12 | bit))));
    return { bits, ranges: diagrams.valuesOf(settled.reduce((all, one) => diagrams.both(all, one), rest.about(order)), order) };
  });
}

// ---- The user's own names of bits of logical records

for (const translator of data.translators) {
  translator.names = (translator.names ?? []).map(([name, bits, style, words = [], when = []]) =>
    ({ name, bits: expand(bits), style, words: new Map(words.map(([word, value]) => [BigInt(value), word]).reverse()), when }));
}

// Those that a record of the form can have, or that the record of which these bits are known has.
function namesFor(form, known = null) {
  const { translator } = form;
  const pairs = (flat) => Array.from({ length: flat.length / 2 }, (_, i) => [flat[2 * i], flat[2 * i + 1]]);
  const isPossible = (all) => {
    const wanted = all.flatMap(pairs);
    if (known) return wanted.every(([bit, value]) => known[bit] === value);
    if (inSide(translator) !== "L") return true;
    const diagrams = form.set.diagrams();
    const at = ([bit, value]) => (value ? diagrams.ofBit(IN << 12 | bit) : diagrams.not(diagrams.ofBit(IN << 12 | bit)));
    return wanted.reduce((node, one) => diagrams.both(node, at(one)), form.condition) !== 0;
  };
  return translator.names.filter(({ when }) => when.length === 0 || when.some(isPossible));
}

// What names say of bits: "vqi", or "vqi[11:8]" of a part.
function namesAt(names, bits) {
  const wanted = new Set(bits);
  return names.flatMap(({ name, bits: all }) => {
    const runs = [];
    all.forEach((bit, at) => {
      if (!wanted.has(bit)) return;
      if (runs.at(-1)?.[1] === at - 1) runs.at(-1)[1] = at;
      else runs.push([at, at]);
    });
    return runs.map(([low, high]) => (high - low + 1 === all.length ? name : `${name}[${low === high ? low : `${high}:${low}`}]`));
  });
}

function ipv6Text(groups) {
  let best = [0, 1]; // the longest run of zeros of more than one group, and how long
  for (let i = 0; i < 8; ++i) {
    let end = i;
    while (groups[end] === 0) ++end;
    if (end - i > best[1]) best = [i, end - i];
  }
  const [at, count] = best;
  const hex = (list) => list.map((group) => group.toString(16)).join(":");
  if (at === 0 && (count === 6 || count === 5 && groups[5] === 0xffff)) {
    return `::${count === 5 ? "ffff:" : ""}${[groups[6] >> 8, groups[6] & 255, groups[7] >> 8, groups[7] & 255].join(".")}`;
  }
  return count > 1 ? `${hex(groups.slice(0, at))}::${hex(groups.slice(at + count))}` : hex(groups);
}

// The value of a name as its style writes it; its bits, the lowest first.
function valueOfName({ style, words }, bits) {
  const number = bits.reduceRight((sum, bit) => sum << 1n | BigInt(bit), 0n);
  // Highest first.
  const parts = (width) => Array.from({ length: bits.length / width }, (_, i) => Number(number >> BigInt(bits.length - width * (i + 1)) & (1n << BigInt(width)) - 1n));
  const octets = () => parts(8).map((octet) => octet.toString(16).padStart(2, "0"));
  switch (style) {
    case "signed": return `${BigInt.asIntN(bits.length, number)}`;
    case "hex": return `0x${number.toString(16)}`;
    case "ipv4": return parts(8).join(".");
    case "ipv6": return ipv6Text(parts(16));
    case "mac": return octets().join(":");
    case "bytes": return octets().join("");
    case "words": return words.get(number) ?? `${number}`;
    default: return `${number}`;
  }
}

// Whether any of the translator's functions asks for bits of such a space.
const asksFor = (translator, space) => translator.sets.some((set) => set.nodes.some((bit, i) => i % 3 === 0 && spaceOf(bit) === space));

for (const translator of data.translators) {
  translator.asksArgument = translator.argument !== null && asksFor(translator, ARGUMENT);
  translator.asksSetting = asksFor(translator, SETTING);
}

return { data, fieldOf, bitsOf, formsOf, sourcesOf, argumentValues, openFields, namesFor, namesAt, valueOfName, expand, inSide, outSide, lengths };
})();
