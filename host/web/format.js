// Numbers, times and places as people read them. Unknown values are null and read as a dash.
'use strict';

const DASH = '\u2013';

const decimals = (value, digits) => value.toFixed(digits);

// A figure with its unit apart, so that the page can set the unit smaller.
function lengthFigure(metres) {
  if (metres == null) return [DASH, ''];
  return metres < 1000 ? [decimals(metres, 0), 'm'] : [decimals(metres / 1000, metres < 100000 ? 2 : 1), 'km'];
}

function speedFigure(metresPerSecond) {
  return metresPerSecond == null ? [DASH, ''] : [decimals(metresPerSecond * 3.6, 1), 'km/h'];
}

function heightFigure(metres) {
  return metres == null ? [DASH, ''] : [decimals(metres, 0), 'm'];
}

function durationFigure(seconds) {
  if (seconds == null) return [DASH, ''];
  const whole = Math.round(seconds), two = (n) => String(n).padStart(2, '0');
  const hours = Math.floor(whole / 3600), minutes = Math.floor(whole / 60) % 60;
  return hours > 0 ? [`${hours}:${two(minutes)}`, 'h'] : [`${minutes}:${two(whole % 60)}`, 'min'];
}

const joined = ([value, unit]) => (unit ? `${value}\u00a0${unit}` : value);

// Times are seconds since 1970 and shown in UTC, as the program shows them everywhere.
const isoOf = (seconds) => new Date(seconds * 1000).toISOString();
const dayText = (seconds) => isoOf(seconds).slice(0, 10);
const clockText = (seconds, withSeconds = true) => isoOf(seconds).slice(11, withSeconds ? 19 : 16);

function spanText(start, end) {
  if (!start) return 'No times recorded';
  if (!end || end === start) return `${dayText(start)}, ${clockText(start, false)} UTC`;
  const last = dayText(end) === dayText(start) ? '' : `${dayText(end)}, `;
  return `${dayText(start)}, ${clockText(start, false)} ${DASH} ${last}${clockText(end, false)} UTC`;
}

const secondsOf = (text) => (text == null ? null : Math.round(Date.parse(text) / 1000));

// Degrees with as many digits as the step between two labels needs.
function degreesText(degrees, step, positive, negative) {
  const digits = Math.max(0, Math.ceil(-Math.log10(step) - 1e-9));
  const side = Math.abs(degrees) < step / 2 ? '' : degrees < 0 ? negative : positive;
  return `${Math.abs(degrees).toFixed(digits)}\u00b0${side}`;
}

const wrapped = (longitude) => longitude - 360 * Math.floor((longitude + 180) / 360);

// The round number (1, 2 or 5 times a power of ten) that is next above.
function roundStep(atLeast) {
  const power = 10 ** Math.floor(Math.log10(atLeast));
  return [1, 2, 5, 10].map((n) => n * power).find((step) => step >= atLeast * 0.999);
}
