'use strict';

const data = JSON.parse(document.getElementById('data').textContent);
const main = document.getElementById('main');
main.className = 'audit';

function make(tag, properties = {}, ...children) {
  const element = Object.assign(document.createElement(tag), properties);
  element.append(...children);
  return element;
}

const number = (value) => value.toLocaleString('en-US');

const theme = document.getElementById('theme');
theme.addEventListener('change', () => { document.documentElement.dataset.theme = theme.value; });

// "P0.3", "P0.7-4", "P12", "P12-15": the numbers of their bits, bit 0 of byte 0 first.
function bitsOf(positions) {
  const bits = new Set();
  for (const position of positions) {
    const [, byte, last, high, low] = /^P(\d+)(?:-(\d+))?(?:\.(\d)(?:-(\d))?)?$/.exec(position);
    const from = 8 * byte + (high === undefined ? 0 : Number(low ?? high));
    const to = high === undefined ? 8 * Number(last ?? byte) + 7 : 8 * byte + Number(high);
    for (let bit = from; bit <= to; ++bit) bits.add(bit);
  }
  return bits;
}

function drawRecord(title, hex, different, originOf) {
  const bytes = make('div', { className: 'bytes' });
  for (let byte = 0; 2 * byte < hex.length; ++byte) {
    const text = hex.slice(2 * byte, 2 * byte + 2);
    const drawn = make('div', { className: 'byte' },
      make('span', {}, make('span', { textContent: `P${byte}` }), make('span', { textContent: text })));
    for (let bit = 7; bit >= 0; --bit) {
      const one = parseInt(text, 16) >> bit & 1;
      const differs = different.has(8 * byte + bit);
      const origin = originOf(8 * byte + bit);
      const place = `P${byte}.${bit}`;
      drawn.append(make('i', {
        className: `bit ${one ? 'one' : 'zero'}${differs ? ' differs' : ''}`,
        textContent: one,
        title: `${place} is ${one}${differs ? ', differs' : ''}${origin ? `: ${origin}` : ''}`,
      }));
    }
    bytes.append(drawn);
  }
  return make('section', { className: 'record' },
    make('h2', {}, title, make('span', { textContent: `${hex.length / 2} bytes` })), bytes);
}

const originText = (field) => [field.from.join(' '), field.text].filter(Boolean).join(', ')
  + (field.name ? ` (${field.name})` : '')
  + (field.names?.length ? ` [${field.names.map((one) => one.name ?? one).join(', ')}]` : '');

// What stands there, as a number of the logical record and by the names that there are.
const valueText = (field, side) => [field[side] + (field[`${side}_value`] ? `: ${field[`${side}_value`]}` : ''),
  ...(field.names ?? []).filter((one) => one[side] !== null).map((one) => `${one.name} = ${one[side]}`)].join('; ');

function drawFinding(finding) {
  const different = bitsOf(finding.differs_at ?? []);
  const fields = finding.fields ?? [];
  const origins = new Map();
  for (const field of fields) for (const bit of bitsOf(field.at)) origins.set(bit, originText(field));
  const parts = [];
  const records = make('div', { className: 'records' });
  for (const side of ['programmed', 'held']) {
    if (finding[side]) records.append(drawRecord(side, finding[side], different, (bit) => origins.get(bit)));
  }
  if (records.children.length > 0) parts.push(records);
  if (fields.length > 0) {
    const body = make('tbody');
    for (const field of fields) {
      body.append(make('tr', {}, ...[field.at.join(' '), valueText(field, 'programmed'), valueText(field, 'held'), originText(field)]
        .map((textContent) => make('td', { textContent }))));
    }
    const head = make('tr', {}, ...['Position', 'Programmed', 'Held', 'From']
      .map((textContent) => make('th', { textContent, scope: 'col' })));
    parts.push(make('div', { className: 'scroll' },
      make('table', { className: 'rows' }, make('thead', {}, head), body)));
  }
  if (finding.explained) parts.push(make('p', { className: 'more', textContent: finding.explained }));
  return parts;
}

function place(finding) {
  const parts = [];
  if (finding.physical_key !== undefined) parts.push(`key ${finding.physical_key}`);
  if (finding.programmed_line !== undefined) parts.push(`programmed line ${number(finding.programmed_line)}`);
  for (const unit of ['line', 'record']) {
    if (finding[`held_${unit}`] !== undefined) parts.push(`${unit} ${number(finding[`held_${unit}`])} of ${finding.held_file}`);
    if (finding[unit] !== undefined) parts.push(`${unit} ${number(finding[unit])} of ${finding.file}`);
  }
  if (finding.first !== undefined) {
    parts.push(`repeats ${number(finding.first)} with ${finding.same_record ? 'the same' : 'another'} record`);
  }
  if (finding.reason !== undefined) parts.push(finding.reason);
  return parts.join(', ');
}

// Drawn when it is opened: a page of many findings stays quick.
function lazily(details, draw) {
  details.addEventListener('toggle', () => {
    if (details.open && !details.dataset.drawn) {
      details.dataset.drawn = 'yes';
      details.append(...draw());
    }
  });
  return details;
}

function drawPattern(pattern) {
  const summary = make('summary', { textContent: pattern.text });
  if (pattern.remark) summary.append(make('small', { textContent: pattern.remark }));
  return lazily(make('details', { className: 'pattern' }, summary), () => {
    const inside = make('div');
    if (pattern.fields?.length > 0) {
      inside.append(make('ul', { className: 'fields' }, ...pattern.fields.map((field) =>
        make('li', { textContent: `${field.at.join(' ')}: ${originText(field)}` }))));
    }
    for (const finding of pattern.findings) {
      const line = make('summary', { textContent: place(finding) });
      inside.append(finding.programmed || finding.held
        ? lazily(make('details', { className: 'finding' }, line), () => drawFinding(finding))
        : make('div', { className: 'finding', textContent: place(finding) }));
    }
    if (pattern.findings.length < pattern.count) {
      inside.append(make('p', {
        className: 'more',
        textContent: `${number(pattern.findings.length)} of ${number(pattern.count)} are on this page.`,
      }));
    }
    return [inside];
  });
}

function drawCounts() {
  const columns = ['table', 'programmed', 'held', 'same', 'different', 'missing', 'unexpected', 'refused', 'duplicate', 'moving'];
  const row = (name, counts) => make('tr', {}, ...columns.map((column) => make('td', {
    textContent: column === 'table' ? name : number(
      column === 'duplicate' ? counts.duplicate_programmed + counts.duplicate_held : counts[column]),
  })));
  const head = make('tr', {}, ...columns.map((textContent) => make('th', { textContent, scope: 'col' })));
  return make('div', { className: 'scroll' }, make('table', { className: 'rows counts' }, make('thead', {}, head),
    make('tbody', {}, ...data.tables.map((counts) => row(counts.table, counts)), row('all', data.all))));
}

main.append(make('h1', { className: 'plain', textContent: 'What the card holds' }));
main.append(make('p', {
  className: 'lead',
  textContent: data.clean
    ? `${number(data.all.same)} entries are held as they were programmed.`
    : `${number(data.all.same)} of ${number(data.all.programmed)} programmed entries are held as they were programmed. `
      + 'What is not, by what is alike, the most frequent first:',
}));
main.append(...data.patterns.map(drawPattern));
main.append(make('h2', { textContent: 'By table' }), drawCounts());
main.append(make('h2', { textContent: 'How the numbers add up' }),
  make('ul', { className: 'sums' }, ...data.sums.map((textContent) => make('li', { textContent }))));
