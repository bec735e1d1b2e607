// The map: tracks as lines with their start and end, the cursor, the place of a recording that runs.
'use strict';

function createMap(element, { tiles, onHover, onChoose }) {
  const map = L.map(element, {
    zoomControl: false, attributionControl: Boolean(tiles), zoomSnap: 0.25, zoomDelta: 1, wheelPxPerZoomLevel: 100,
    maxZoom: 20, minZoom: 1,
  });
  L.control.zoom({ position: 'topright' }).addTo(map);
  L.control.scale({ imperial: false, maxWidth: 140, position: 'bottomleft' }).addTo(map);
  if (tiles) addTiles(map, tiles);
  map.setView([20, 0], 2);
  const view = {
    map, onHover, onChoose, drawn: new Map(), selected: null, referenceLongitude: null, moved: false,
    redrawGraticule: addGraticule(map), cursor: makeCursor(map), here: null,
  };
  view.redrawGraticule();
  map.on('dragstart', () => { view.moved = true; });
  map.getContainer().addEventListener('wheel', () => { view.moved = true; }, { passive: true });
  new ResizeObserver(() => map.invalidateSize({ pan: false })).observe(element);
  return view;
}

function addTiles(map, tiles) {
  map.attributionControl.setPrefix(false);
  const text = document.createElement('span'); // the attribution is text, whatever it holds
  text.textContent = tiles.attribution || '';
  L.tileLayer(tiles.url, { maxZoom: 20, maxNativeZoom: 19, attribution: text.innerHTML, className: 'tiles' })
    .addTo(map);
}

function makeCursor(map) {
  return L.circleMarker([0, 0], { radius: 7, weight: 3, fillOpacity: 1, className: 'cursor-ring', interactive: false })
    .bindTooltip('', { direction: 'top', className: 'track-name', offset: [0, -8] });
}

function positionsOf(points, turn, from = 0, end = points.lat.length) {
  const positions = [];
  for (let i = from; i < end; ++i) positions.push([points.lat[i], points.lon[i] + turn]);
  return positions;
}

function endpointIcon(kind, aside) {
  const letter = kind === 'start' ? 'A' : 'B';
  return L.divIcon({ className: `endpoint ${kind}`, html: letter, iconSize: [20, 20], iconAnchor: [aside ? -13 : 10, 10] });
}

// A way that ends where it began shows both ends, one beside the other.
function isRound(view, line, first, last) {
  const bounds = line.getBounds();
  return view.map.distance(first, last) < 0.02 * view.map.distance(bounds.getSouthWest(), bounds.getNorthEast());
}

// Tracks that cross the 180th meridian lie beside each other when all keep to the first one's side.
function turnOf(view, track) {
  if (view.referenceLongitude === null && pointCount(track)) view.referenceLongitude = track.points.lon[0];
  return turnTowards(track.points, view.referenceLongitude ?? 0);
}

function drawTrack(view, track) {
  removeTrack(view, track.id);
  if (!track.shown || !pointCount(track)) return;
  const turn = turnOf(view, track);
  const lines = piecesOf(track.points).map(([from, end]) => positionsOf(track.points, turn, from, end));
  const shared = { lineCap: 'round', lineJoin: 'round', smoothFactor: 1, interactive: false };
  const halo = L.polyline(lines, { ...shared, className: 'track-halo' });
  const line = L.polyline(lines, { ...shared, className: track.id === LIVE_ID ? 'track-line live-line' : 'track-line' });
  const touch = L.polyline(lines, { weight: 22, opacity: 0, className: 'track-touch' });
  const layers = [halo, line, touch];
  const drawn = { track, turn, halo, line, touch, group: L.featureGroup(layers), ends: [] };
  touch.on('mousemove', (event) => hover(view, drawn, event.latlng));
  touch.on('click', (event) => { view.onChoose(track.id); hover(view, drawn, event.latlng); });
  view.drawn.set(track.id, drawn);
  drawn.group.addTo(view.map);
  addEnds(view, drawn, lines);
  styleTrack(view, drawn);
}

function addEnds(view, drawn, lines) {
  const first = lines[0][0], last = lines[lines.length - 1].slice(-1)[0];
  const aside = isRound(view, drawn.line, first, last);
  const mark = (kind, position, text) => {
    const marker = L.marker(position, { icon: endpointIcon(kind, aside && kind === 'end'), keyboard: false, alt: text });
    marker.bindTooltip(() => nameNode(text, drawn.track), { direction: 'top', className: 'track-name', offset: [0, -10] });
    marker.on('click', () => view.onChoose(drawn.track.id));
    drawn.ends.push(marker);
    drawn.group.addLayer(marker);
  };
  if (drawn.track.id !== LIVE_ID) mark('end', last, 'End');
  mark('start', first, 'Start');
}

// As a node, never as markup: names come from files of strangers.
function nameNode(text, track) {
  const node = document.createElement('span');
  node.textContent = `${text} of ${track.name}`;
  return node;
}

function removeTrack(view, id) {
  const drawn = view.drawn.get(id);
  if (!drawn) return;
  drawn.group.remove();
  view.drawn.delete(id);
}

function styleTrack(view, drawn) {
  const isSelected = drawn.track.id === view.selected;
  const isFaint = view.selected !== null && !isSelected;
  drawn.line.setStyle({ color: shownColor(drawn.track.color), weight: isSelected ? 4.5 : 3, opacity: isFaint ? 0.75 : 1 });
  drawn.halo.setStyle({ weight: isSelected ? 9 : 5.5, opacity: isSelected ? 0.95 : 0.7 });
  for (const marker of drawn.ends) marker.setOpacity(isFaint ? 0.6 : 1).setZIndexOffset(isSelected ? 1000 : 0);
  if (isSelected) drawn.group.eachLayer((layer) => layer.bringToFront && layer.bringToFront());
}

function restyle(view) {
  for (const drawn of view.drawn.values()) styleTrack(view, drawn);
  const selected = view.drawn.get(view.selected);
  if (selected) styleTrack(view, selected); // once more, so that it ends up on top
}

function selectOnMap(view, id) {
  view.selected = id;
  restyle(view);
}

// The point of the line that is nearest to the pointer, measured on the screen.
function hover(view, drawn, latlng) {
  if (drawn.track.id !== view.selected) return;
  const { lat, lon } = drawn.track.points;
  const stretch = Math.cos((latlng.lat * Math.PI) / 180);
  let best = -1, least = Infinity;
  for (let i = 0; i < lat.length; ++i) {
    const x = (lon[i] + drawn.turn - latlng.lng) * stretch, y = lat[i] - latlng.lat;
    if (x * x + y * y < least) { least = x * x + y * y; best = i; }
  }
  view.onHover(best);
}

function showCursorOnMap(view, track, index) {
  const drawn = track && view.drawn.get(track.id);
  if (!drawn || index === null) return void view.cursor.remove();
  view.cursor.setLatLng([track.points.lat[index], track.points.lon[index] + drawn.turn]).addTo(view.map).bringToFront();
}

function fitTracks(view, ids) {
  const bounds = L.latLngBounds([]);
  for (const id of ids) if (view.drawn.has(id)) bounds.extend(view.drawn.get(id).line.getBounds());
  if (!bounds.isValid()) return false;
  view.map.fitBounds(bounds, { padding: [44, 44], maxZoom: 17, animate: false });
  return true;
}

// Adds the newest points of a recording; the view follows until the user moves the map.
function extendTrack(view, track) {
  const drawn = view.drawn.get(track.id);
  if (!drawn || !pointCount(track)) { drawTrack(view, track); return; }
  const lines = piecesOf(track.points).map(([from, end]) => positionsOf(track.points, drawn.turn, from, end));
  for (const layer of [drawn.halo, drawn.line, drawn.touch]) layer.setLatLngs(lines);
}

function showHere(view, track) {
  const drawn = track && view.drawn.get(track.id);
  if (!drawn) { if (view.here) view.here.remove(); return; }
  const last = pointCount(track) - 1;
  const position = [track.points.lat[last], track.points.lon[last] + drawn.turn];
  view.here = view.here || L.marker(position, {
    icon: L.divIcon({ className: 'here', iconSize: [16, 16] }), interactive: false, keyboard: false, zIndexOffset: 2000,
  });
  view.here.setLatLng(position).addTo(view.map);
  if (!view.moved && !view.map.getBounds().pad(-0.08).contains(position)) fitTracks(view, [track.id]);
}
