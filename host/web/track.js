// A track as the page knows it: what the list says of it, and its points once they are there.
// Points are columns of one length: lat, lon [deg], dist [m], ele [m] or null, speed [m/s] or null, time [s] or
// null; breaks are the indexes at which a new piece begins, after a pause.
'use strict';

const LIVE_ID = '*live*'; // no file is called so

function makeTrack(info) {
  const track = { ...info, points: null, start: secondsOf(info.start), end: secondsOf(info.end) };
  if (info.points) takePoints(track, info.points);
  return track;
}

function takePoints(track, points) {
  track.points = { ...points, lon: unwrapped(points.lon) };
}

// Longitudes that run on across the 180th meridian, 179, 181, instead of jumping round the earth.
function unwrapped(longitudes, previous = null) {
  let last = previous;
  return longitudes.map((longitude) => {
    last = last === null ? longitude : last + wrapped(longitude - last);
    return last;
  });
}

function appendPoints(points, more) {
  const last = points.lon.length ? points.lon[points.lon.length - 1] : null;
  const columns = { ...more, lon: unwrapped(more.lon, last) };
  const before = points.lat.length, added = more.lat.length;
  const filled = (column, length) => column || Array(length).fill(null);
  points.breaks.push(...more.breaks.map((at) => at + before));
  for (const name of ['lat', 'lon', 'dist', 'ele', 'speed', 'time'])
    if (points[name] || columns[name]) points[name] = filled(points[name], before).concat(filled(columns[name], added));
}

// Whether the points can be laid out along their times: all known, and none goes back.
function hasTimeline(points) {
  return Boolean(points && points.time) && points.time.every((t, i) => t !== null && (i === 0 || t >= points.time[i - 1]));
}

const pointCount = (track) => (track && track.points ? track.points.lat.length : 0);

// How many degrees a track is moved, by whole turns, so that it lies beside the others.
function turnTowards(points, longitude) {
  return points.lon.length ? 360 * Math.round((longitude - points.lon[0]) / 360) : 0;
}

// [first, end) of each piece without a pause.
function piecesOf(points) {
  const ends = [...points.breaks, points.lat.length];
  return ends.map((end, i) => [i === 0 ? 0 : ends[i - 1], end]).filter(([from, end]) => from < end);
}

// Index of the value next to the one that is looked for, in an ascending column.
function indexOfNearest(column, value) {
  let low = 0, high = column.length - 1;
  while (low < high) {
    const middle = (low + high) >> 1;
    if (column[middle] < value) low = middle + 1;
    else high = middle;
  }
  return low > 0 && value - column[low - 1] < column[low] - value ? low - 1 : low;
}
