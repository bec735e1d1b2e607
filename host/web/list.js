// The list of tracks with their toggles, and the figures of the selected one. Text is set as text, never as markup.
'use strict';

const byId = (id) => document.getElementById(id);

function element(name, className, text) {
  const node = document.createElement(name);
  if (className) node.className = className;
  if (text !== undefined) node.textContent = text;
  return node;
}

function drawList(tracks, selected, { onChoose, onToggle }) {
  const focused = document.activeElement && document.activeElement.dataset ? document.activeElement.dataset.key : null;
  byId('list').replaceChildren(...tracks.map((track) => listItem(track, track.id === selected, { onChoose, onToggle })));
  byId('empty').hidden = tracks.length > 0;
  if (!focused) return;
  for (const node of byId('list').querySelectorAll('[data-key]')) if (node.dataset.key === focused) node.focus();
}

function listItem(track, isSelected, { onChoose, onToggle }) {
  const item = element('li', track.id === LIVE_ID ? 'item is-live' : 'item');
  item.setAttribute('aria-current', String(isSelected));
  item.style.setProperty('--swatch', shownColor(track.color));
  item.append(toggleOf(track, onToggle), chooseOf(track, onChoose));
  return item;
}

function toggleOf(track, onToggle) {
  const label = element('label', 'toggle'), box = element('input');
  box.type = 'checkbox';
  box.checked = track.shown;
  box.dataset.key = `toggle ${track.id}`;
  box.setAttribute('aria-label', `Show ${track.name}`);
  box.addEventListener('change', () => onToggle(track.id, box.checked));
  label.append(box, element('span', 'swatch'));
  return label;
}

function chooseOf(track, onChoose) {
  const button = element('button', 'choose');
  button.type = 'button';
  button.dataset.key = `choose ${track.id}`;
  button.addEventListener('click', () => onChoose(track.id));
  const when = track.start ? `${dayText(track.start)} ${clockText(track.start, false)}` : 'no times';
  button.append(element('strong', '', track.name), element('span', '', `${joined(lengthFigure(track.length))} \u00b7 ${when}`));
  return button;
}

// What is known of a track; figures that are not known are left out.
function figuresOf(track) {
  const s = track.statistics || {};
  return [
    ['Length', lengthFigure(s.length ?? track.length)],
    ['Duration', durationFigure(s.duration ?? (track.start && track.end ? track.end - track.start : null))],
    ['Moving', durationFigure(s.moving_time)],
    ['Average, moving', speedFigure(s.moving_speed)],
    ['Greatest speed', speedFigure(s.greatest_speed)],
    ['Ascent', heightFigure(s.ascent)],
    ['Descent', heightFigure(s.descent)],
    ['Points', [String(s.points ?? track.point_count ?? pointCount(track)), '']],
  ].filter(([, [value]]) => value !== DASH);
}

function drawDetail(track) {
  byId('detail-name').textContent = track ? track.name : 'No track selected';
  byId('detail-when').textContent = track ? spanText(track.start, track.end) : '';
  byId('figures').replaceChildren(...(track ? figuresOf(track) : []).map(([name, [value, unit]]) => {
    const pair = element('div'), figure = element('dd', '', value);
    if (unit) figure.append(element('small', '', unit));
    pair.append(element('dt', '', name), figure);
    return pair;
  }));
}

// What the cursor points at, in words.
function readoutOf(track, index) {
  const { points } = track;
  const parts = [['', joined(lengthFigure(points.dist[index]))]];
  if (points.time && points.time[index]) parts.push(['', `${clockText(points.time[index])} UTC`]);
  if (points.ele && points.ele[index] !== null) parts.push(['', joined(heightFigure(points.ele[index]))]);
  if (points.speed && points.speed[index] !== null) parts.push(['', joined(speedFigure(points.speed[index]))]);
  return parts.map(([, text]) => text);
}

function drawReadout(track, index) {
  const out = byId('readout'), profile = byId('profile');
  if (!track || index === null) {
    out.textContent = pointCount(track) > 1 ? 'Point at the profile or the line to read it' : '';
    profile.removeAttribute('aria-valuetext');
    return;
  }
  const parts = readoutOf(track, index);
  out.replaceChildren(...parts.flatMap((text, i) => [i ? '  \u00b7  ' : '', element('b', '', text)]));
  profile.setAttribute('aria-valuetext', parts.join(', '));
}
