// Tracks keep their own colours; where one would not show on the map's ground, its lightness is moved.
'use strict';

const darkMode = window.matchMedia('screen and (prefers-color-scheme: dark)');

function toHsl(color) {
  const [r, g, b] = [1, 3, 5].map((at) => parseInt(color.slice(at, at + 2), 16) / 255);
  const high = Math.max(r, g, b), low = Math.min(r, g, b), range = high - low;
  const lightness = (high + low) / 2;
  if (range === 0) return [0, 0, lightness];
  const hue = high === r ? ((g - b) / range + 6) % 6 : high === g ? (b - r) / range + 2 : (r - g) / range + 4;
  return [hue * 60, range / (1 - Math.abs(2 * lightness - 1)), lightness];
}

// Blue looks darker and yellow lighter than their lightness says, hence the two limits that depend on the hue.
function shownColor(color) {
  const [hue, saturation, lightness] = toHsl(/^#[0-9a-f]{6}$/i.test(color) ? color : '#3060c0');
  const isBright = hue > 40 && hue < 190;
  const shown = darkMode.matches
    ? Math.max(lightness, hue > 200 && hue < 300 ? 0.68 : isBright ? 0.48 : 0.6)
    : Math.min(lightness, isBright ? 0.36 : 0.56);
  const strength = darkMode.matches ? Math.min(saturation, 0.9) : Math.min(saturation, 0.88);
  return `hsl(${hue.toFixed(0)}, ${(strength * 100).toFixed(0)}%, ${(shown * 100).toFixed(0)}%)`;
}
