// The live page: the list and the points come from the program that serves it, fresh ones as events.
'use strict';

async function fetchJson(path) {
  const answer = await fetch(path, { cache: 'no-store' });
  if (!answer.ok) throw new Error(`${path}: ${answer.status}`);
  return answer.json();
}

const fetchList = () => fetchJson('/api/tracks');
const fetchPoints = (id) => fetchJson(`/api/tracks/${encodeURIComponent(id)}/points`);

// The browser connects again by itself, and says then which event it saw last. It gives up when it is refused, so
// that the connection is then made anew here.
function listen(handlers) {
  const source = new EventSource('/events');
  for (const [name, handle] of Object.entries(handlers))
    if (name !== 'state') source.addEventListener(name, (event) => handle(JSON.parse(event.data)));
  source.onopen = () => handlers.state(true);
  source.onerror = () => {
    handlers.state(false);
    if (source.readyState === EventSource.CLOSED) setTimeout(() => listen(handlers), 2000);
  };
}

function drawLive(status, isConnected) {
  const box = byId('live');
  const recording = isConnected && status.state === 'recording';
  box.dataset.state = recording ? 'recording' : 'idle';
  box.hidden = isConnected && status.state === 'library';
  byId('live-state').textContent = !isConnected ? 'Not connected' : recording ? 'Recording' : 'Recording ended';
  byId('live-figures').textContent = !recording || !status.point_count ? '' : [
    joined(speedFigure(status.speed)), joined(lengthFigure(status.length)), `${status.point_count} points`].join('  \u00b7  ');
}
