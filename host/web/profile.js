// The profile: elevation and speed of one track along its distance or time, with a cursor.
'use strict';

const SVG = 'http://www.w3.org/2000/svg';
const MARGIN = { left: 46, right: 14, top: 18, between: 26, bottom: 34 };

function svgElement(name, attributes, text) {
  const element = document.createElementNS(SVG, name);
  for (const [key, value] of Object.entries(attributes)) element.setAttribute(key, value);
  if (text !== undefined) element.textContent = text;
  return element;
}

function createProfile(element, { onCursor }) {
  const profile = { element, onCursor, track: null, along: 'dist', hasTimeline: false, cursor: null, frame: null };
  const at = (event) => pointAt(profile, event.clientX - element.getBoundingClientRect().left);
  element.addEventListener('pointermove', (event) => onCursor(at(event)));
  element.addEventListener('pointerdown', (event) => onCursor(at(event)));
  element.addEventListener('pointerleave', (event) => { if (event.pointerType === 'mouse') onCursor(null); });
  element.addEventListener('keydown', (event) => onKey(profile, event));
  new ResizeObserver(() => drawProfile(profile)).observe(element);
  return profile;
}

function onKey(profile, event) {
  const count = pointCount(profile.track);
  if (!count || event.ctrlKey || event.altKey || event.metaKey) return;
  const step = event.shiftKey ? Math.max(10, Math.round(count / 50)) : Math.max(1, Math.round(count / 500));
  const now = profile.cursor;
  const moves = {
    ArrowRight: now === null ? 0 : now + step, ArrowUp: now === null ? 0 : now + step,
    ArrowLeft: now === null ? count - 1 : now - step, ArrowDown: now === null ? count - 1 : now - step,
    PageUp: (now ?? 0) + Math.round(count / 10), PageDown: (now ?? count) - Math.round(count / 10),
    Home: 0, End: count - 1, Escape: null,
  };
  if (!(event.key in moves)) return;
  event.preventDefault();
  const to = moves[event.key];
  profile.onCursor(to === null ? null : Math.min(count - 1, Math.max(0, to)));
}

const isAlongTime = (profile) => profile.along === 'time' && profile.hasTimeline;
const columnAlong = (profile) => profile.track.points[isAlongTime(profile) ? 'time' : 'dist'];

function pointAt(profile, pixel) {
  if (!profile.frame) return null;
  const column = columnAlong(profile), { x } = profile.frame;
  return indexOfNearest(column, x.low + ((pixel - x.from) / (x.to - x.from)) * (x.high - x.low));
}

// A straight scale from values to pixels.
function scale(low, high, from, to) {
  const range = high - low || 1;
  return { low, high: low + range, from, to, at: (value) => from + ((value - low) / range) * (to - from) };
}

// Ticks on round values: as many as have room.
function ticks(low, high, most) {
  const step = roundStep(Math.max(high - low, 1e-9) / most);
  return { step, values: multiples(step, low, high) };
}

function drawProfile(profile) {
  const { element, track } = profile;
  const width = element.clientWidth, height = element.clientHeight;
  if (!width || !height) return;
  const svg = svgElement('svg', { viewBox: `0 0 ${width} ${height}`, 'aria-hidden': 'true' });
  element.replaceChildren(svg);
  profile.frame = null;
  const panels = pointCount(track) > 1 ? panelsOf(track.points) : [];
  if (!panels.length) {
    const text = track && track.points ? 'This track has neither elevation nor speed' : track ? 'Reading the points\u2026' : '';
    svg.append(svgElement('text', { class: 'nothing', x: width / 2, y: height / 2 }, text));
    return;
  }
  profile.frame = { svg, panels, height, x: xScale(profile, width) };
  drawXAxis(profile, width, height);
  layOut(panels, height);
  for (const panel of panels) drawPanel(profile, panel, width);
  drawCursor(profile);
}

function panelsOf(points) {
  const panels = [];
  if (points.ele) panels.push({ name: 'Elevation', unit: 'm', kind: 'elevation', column: points.ele, share: 1.35, factor: 1 });
  if (points.speed) panels.push({ name: 'Speed', unit: 'km/h', kind: 'speed', column: points.speed, share: 1, factor: 3.6 });
  return panels;
}

function layOut(panels, height) {
  const room = height - MARGIN.top - MARGIN.bottom - MARGIN.between * (panels.length - 1);
  const shares = panels.reduce((sum, panel) => sum + panel.share, 0);
  let top = MARGIN.top;
  for (const panel of panels) {
    panel.top = top;
    panel.bottom = top + (room * panel.share) / shares;
    top = panel.bottom + MARGIN.between;
  }
}

function xScale(profile, width) {
  const column = columnAlong(profile);
  return scale(column[0], column[column.length - 1], MARGIN.left, width - MARGIN.right);
}

const TIME_STEPS = [1, 5, 10, 30, 60, 120, 300, 600, 1200, 1800, 3600, 7200, 10800, 21600, 43200, 86400, 172800, 604800];

function xTicks(profile, most) {
  const { x } = profile.frame;
  if (isAlongTime(profile)) {
    const step = TIME_STEPS.find((s) => (x.high - x.low) / s <= most) || TIME_STEPS[TIME_STEPS.length - 1];
    return { name: 'Time UTC', marks: multiples(step, x.low, x.high).map((t) =>
      [t, step >= 86400 ? dayText(t) : clockText(t, step < 60)]) };
  }
  const inKm = x.high >= 2000, unit = inKm ? 1000 : 1;
  const { step, values } = ticks(0, x.high / unit, most);
  const digits = step < 1 ? Math.ceil(-Math.log10(step)) : 0;
  return { name: inKm ? 'Distance km' : 'Distance m', marks: values.map((v) => [v * unit, v.toFixed(digits)]) };
}

function drawXAxis(profile, width, height) {
  const { svg, x } = profile.frame;
  const { name, marks } = xTicks(profile, Math.max(2, Math.floor(width / 90)));
  const bottom = height - MARGIN.bottom;
  for (const [value, text] of marks) {
    svg.append(svgElement('line', { class: 'rule', x1: x.at(value), x2: x.at(value), y1: MARGIN.top, y2: bottom + 4 }));
    svg.append(svgElement('text', { x: x.at(value), y: bottom + 17, 'text-anchor': 'middle' }, text));
  }
  svg.append(svgElement('text', { class: 'axis-name', x: width - MARGIN.right, y: height - 2, 'text-anchor': 'end' }, name));
}

function rangeOf(panel) {
  let low = Infinity, high = -Infinity;
  for (const value of panel.column) {
    if (value === null) continue;
    low = Math.min(low, value);
    high = Math.max(high, value);
  }
  if (panel.kind === 'speed') return [0, Math.max(high * panel.factor, 1)];
  const middle = (low + high) / 2, half = Math.max((high - low) / 2, 10); // a flat walk is drawn flat
  return [middle - half * 1.05, middle + half * 1.05];
}

function drawPanel(profile, panel, width) {
  const { svg, x } = profile.frame;
  const [low, high] = rangeOf(panel);
  const y = scale(low, high, panel.bottom, panel.top);
  panel.y = (value) => y.at(value * panel.factor);
  for (const value of ticks(low, high, Math.max(2, Math.floor((panel.bottom - panel.top) / 26))).values) {
    svg.append(svgElement('line', { class: 'rule', x1: x.from, x2: x.to, y1: y.at(value), y2: y.at(value) }));
    svg.append(svgElement('text', { x: x.from - 8, y: y.at(value) + 4, 'text-anchor': 'end' }, String(Math.round(value * 100) / 100)));
  }
  svg.append(svgElement('text', { class: 'axis-name', x: 0, y: panel.top - 7 }, `${panel.name} ${panel.unit}`));
  const lines = linesOf(profile, panel);
  if (panel.kind === 'elevation') svg.append(svgElement('path', { class: 'elevation-fill', d: filled(lines, panel.bottom) }));
  svg.append(svgElement('path', { class: panel.kind, d: lines.map((line) => `M${line.join('L')}`).join('') }));
}

// One line for each stretch with values. Along time it ends at a pause; along distance a pause has no width.
function linesOf(profile, panel) {
  const column = columnAlong(profile), points = profile.track.points;
  const pieces = column === points.time ? piecesOf(points) : [[0, column.length]];
  return pieces.flatMap(([from, end]) => thinnedLine(profile.frame.x, column, panel, from, end))
    .filter((line) => line.length > 1);
}

// Of the points that share a pixel's column only first, lowest, highest and last are drawn: the picture is the same.
function thinnedLine(x, column, panel, from, end) {
  const lines = [[]];
  let pixel = null, group = [];
  const flush = () => {
    if (!group.length) return;
    const byValue = [...group].sort((a, b) => panel.column[a] - panel.column[b]);
    const kept = new Set([group[0], byValue[0], byValue[byValue.length - 1], group[group.length - 1]]);
    for (const i of [...kept].sort((a, b) => a - b))
      lines[lines.length - 1].push(`${x.at(column[i]).toFixed(1)},${panel.y(panel.column[i]).toFixed(1)}`);
    group = [];
  };
  for (let i = from; i < end; ++i) {
    if (panel.column[i] === null) { flush(); lines.push([]); continue; }
    const now = Math.floor(x.at(column[i]));
    if (now !== pixel) { flush(); pixel = now; }
    group.push(i);
  }
  flush();
  return lines;
}

function filled(lines, bottom) {
  const xOf = (point) => point.slice(0, point.indexOf(','));
  return lines.map((line) => `M${xOf(line[0])},${bottom}L${line.join('L')}L${xOf(line[line.length - 1])},${bottom}Z`).join('');
}

function drawCursor(profile) {
  const { frame, cursor, track, element } = profile;
  if (!frame) return;
  frame.svg.querySelectorAll('.cursor, .dot').forEach((old) => old.remove());
  const last = pointCount(track) - 1;
  element.setAttribute('aria-valuemax', String(Math.max(0, last)));
  element.setAttribute('aria-valuenow', String(cursor ?? 0));
  if (cursor === null || cursor > last) return;
  const x = frame.x.at(columnAlong(profile)[cursor]);
  frame.svg.append(svgElement('line', { class: 'cursor', x1: x, x2: x, y1: MARGIN.top, y2: frame.height - MARGIN.bottom }));
  for (const panel of frame.panels) {
    const value = panel.column[cursor];
    if (value !== null)
      frame.svg.append(svgElement('circle', { class: `dot on-${panel.kind}`, cx: x, cy: panel.y(value), r: 5 }));
  }
}

function showCursorOnProfile(profile, index) {
  profile.cursor = index;
  drawCursor(profile);
}
