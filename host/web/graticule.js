// Lines of longitude and latitude under the tracks, with their degrees at the map's edges.
'use strict';

const STEPS = [30, 10, 5, 2, 1, 0.5, 0.2, 0.1, 0.05, 0.02, 0.01, 0.005, 0.002, 0.001, 0.0005, 0.0002, 0.0001];
const PIXELS_BETWEEN = 110;

function addGraticule(map) {
  map.createPane('graticule').style.zIndex = 250;
  const lines = L.layerGroup().addTo(map);
  const renderer = L.svg({ pane: 'graticule', padding: 0.5 });
  const labels = map.getContainer().appendChild(document.createElement('div'));
  labels.className = 'grid-labels';
  labels.setAttribute('aria-hidden', 'true');

  const draw = () => drawLines(map, lines, renderer);
  const write = () => writeLabels(map, labels);
  map.on('moveend viewreset resize', draw);
  map.on('move zoomend resize', write);
  return () => { draw(); write(); };
}

function stepOf(map) {
  const size = map.getSize(), bounds = map.getBounds();
  const degreesApart = ((bounds.getEast() - bounds.getWest()) / Math.max(size.x, 1)) * PIXELS_BETWEEN;
  return [...STEPS].reverse().find((step) => step >= degreesApart) || STEPS[0];
}

// Whole multiples of the step from `low` to `high`.
function multiples(step, low, high) {
  const first = Math.ceil(low / step - 1e-9), last = Math.floor(high / step + 1e-9);
  return Array.from({ length: Math.max(0, Math.min(last - first + 1, 400)) }, (_, i) => (first + i) * step);
}

function drawLines(map, lines, renderer) {
  const step = stepOf(map), bounds = map.getBounds().pad(0.5);
  const south = Math.max(bounds.getSouth(), -85), north = Math.min(bounds.getNorth(), 85);
  const options = { renderer, pane: 'graticule', className: 'graticule', interactive: false, smoothFactor: 0 };
  const add = (from, to) => lines.addLayer(L.polyline([from, to], options));
  lines.clearLayers();
  for (const at of multiples(step, bounds.getWest(), bounds.getEast())) add([south, at], [north, at]);
  for (const at of multiples(step, south, north)) add([at, bounds.getWest()], [at, bounds.getEast()]);
}

function writeLabels(map, labels) {
  const step = stepOf(map), bounds = map.getBounds(), size = map.getSize();
  const spans = [];
  const add = (kind, side, at, edge, text) => {
    if (at < 44 || at > edge - 34) return; // room for the corner and the controls
    const span = document.createElement('span');
    span.className = kind;
    span.style[side] = `${Math.round(at)}px`;
    span.textContent = text;
    spans.push(span);
  };
  for (const at of multiples(step, bounds.getWest(), bounds.getEast()))
    add('meridian', 'left', map.latLngToContainerPoint([0, at]).x, size.x - 40,
        degreesText(wrapped(at), step, 'E', 'W'));
  for (const at of multiples(step, Math.max(bounds.getSouth(), -85), Math.min(bounds.getNorth(), 85)))
    add('parallel', 'top', map.latLngToContainerPoint([at, bounds.getWest()]).y, size.y - 20,
        degreesText(at, step, 'N', 'S'));
  labels.replaceChildren(...spans);
}
