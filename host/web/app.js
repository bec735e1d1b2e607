// The page as a whole: which tracks there are, which is selected, where the cursor stands; and who is told.
'use strict';

const data = JSON.parse(byId('data').textContent);
const state = { tracks: [], live: null, selected: null, cursor: null, status: { state: 'library' } };

const view = createMap(byId('map'), { tiles: data.tiles, onHover: setCursor, onChoose: (id) => choose(id) });
const profile = createProfile(byId('profile'), { onCursor: setCursor });

const allTracks = () => (state.live ? [state.live, ...state.tracks] : state.tracks);
const trackOf = (id) => allTracks().find((track) => track.id === id) || null;
const selectedTrack = () => trackOf(state.selected);

function setCursor(index) {
  state.cursor = index;
  const track = selectedTrack();
  showCursorOnProfile(profile, index);
  showCursorOnMap(view, track, index);
  drawReadout(track, index);
}

function drawSelected() {
  const track = selectedTrack();
  profile.track = track;
  offerTimeline(track);
  drawDetail(track);
  drawProfile(profile);
  setCursor(null);
}

function offerTimeline(track) {
  const canShow = Boolean(track) && hasTimeline(track.points);
  profile.hasTimeline = canShow;
  byId('along-time').disabled = !canShow;
}

function choose(id) {
  if (state.selected === id) return;
  state.selected = id;
  const track = selectedTrack();
  if (track && !track.shown) toggle(id, true);
  selectOnMap(view, id);
  drawSelected();
  drawTracks();
}

function toggle(id, shown) {
  const track = trackOf(id);
  if (!track) return;
  track.shown = shown;
  track.touched = true;
  loadPoints(track).then(() => { drawTrack(view, track); restyle(view); drawTracks(); });
}

function drawTracks() {
  drawList(allTracks(), state.selected, { onChoose: chooseFromList, onToggle: toggle });
  const total = state.tracks.reduce((sum, track) => sum + (track.length || 0), 0);
  const count = state.tracks.length;
  byId('subtitle').textContent = count === 0 ? 'The library is empty'
    : `${count} ${count === 1 ? 'track' : 'tracks'}, ${joined(lengthFigure(total))}`;
}

function chooseFromList(id) {
  choose(id);
  const track = trackOf(id);
  loadPoints(track).then(() => fitTracks(view, [id]));
}

// Points of the live page are fetched when a track is shown first.
async function loadPoints(track) {
  if (track.points || !data.live || track.id === LIVE_ID) return;
  try {
    const answer = await fetchPoints(track.id);
    track.statistics = answer.statistics;
    takePoints(track, answer.points);
    drawTrack(view, track);
    if (track.id === state.selected) drawSelected();
  } catch (problem) {
    track.points = null; // gone meanwhile: the next list says so
  }
}

function fitAll() {
  fitTracks(view, allTracks().filter((track) => track.shown).map((track) => track.id));
}

// --- The static page: everything is in it ---

function showStatic() {
  state.tracks = data.tracks.map(makeTrack);
  for (const track of state.tracks) track.shown = true; // they were asked for
  for (const track of state.tracks) drawTrack(view, track);
  if (state.tracks.length) choose(state.tracks[0].id);
  drawTracks();
  fitAll();
}

// --- The live page ---

// Answers may overtake each other: one to an earlier question than the list on the page is out of date.
let listsAsked = 0, listTaken = 0;
async function takeList() {
  const question = ++listsAsked, list = (await fetchList()).tracks;
  if (question < listTaken) return;
  listTaken = question;
  await showTracks(list);
}

// A track stays as it is on the page as long as its file does; one whose file changed is read anew.
async function showTracks(list) {
  const before = new Map(state.tracks.map((track) => [track.id, track]));
  state.tracks = list.map((info) => {
    const known = before.get(info.id);
    if (known && known.revision === info.revision) return known;
    return { ...makeTrack(info), shown: known && known.touched ? known.shown : info.shown };
  });
  for (const id of before.keys()) if (!trackOf(id)?.shown) removeTrack(view, id);
  if (!selectedTrack()) state.selected = null;
  drawTracks();
  await Promise.all(state.tracks.filter((track) => track.shown).map(loadPoints));
  restyle(view);
  if (state.selected === null && state.tracks.length) choose(state.live ? LIVE_ID : state.tracks[0].id);
  else drawSelectedIfChanged();
  if (!view.moved && !state.live) fitAll();
}

function drawSelectedIfChanged() {
  if (profile.track !== selectedTrack()) drawSelected();
}

function takeLiveTrack({ points, color }) {
  const isFirst = state.live === null;
  state.live = { id: LIVE_ID, name: 'This recording', color, shown: state.live ? state.live.shown : true, points: null };
  takePoints(state.live, points);
  describeLive();
  drawTrack(view, state.live);
  if (isFirst) { state.selected = null; choose(LIVE_ID); }
  afterLivePoints();
  drawSelectedIfChanged();
}

function takeLivePoints({ points }) {
  if (!state.live) return;
  appendPoints(state.live.points, points);
  describeLive();
  if (state.live.shown) extendTrack(view, state.live);
  afterLivePoints();
}

function describeLive() {
  const { time, dist } = state.live.points, last = dist.length - 1;
  state.live.length = last < 0 ? 0 : dist[last];
  state.live.start = time && last >= 0 ? time[0] : null;
  state.live.end = time && last >= 0 ? time[last] : null;
}

// The map goes to the recording as soon as there is something of it.
function goToLiveTrack() {
  if (view.wentToLive || view.moved) return;
  view.wentToLive = fitTracks(view, [LIVE_ID]);
}

let redrawAt = 0;
function afterLivePoints() {
  goToLiveTrack();
  showHere(view, state.live.shown && state.status.state === 'recording' ? state.live : null);
  if (redrawAt) return; // four times a second is enough for the eye
  redrawAt = setTimeout(() => {
    redrawAt = 0;
    drawTracks();
    if (state.selected !== LIVE_ID) return;
    offerTimeline(state.live);
    drawDetail(state.live);
    drawProfile(profile);
  }, 250);
}

function takeStatus(status) {
  state.status = status;
  drawLive(status, true);
  if (!state.live) return;
  if (status.state === 'library') { removeTrack(view, LIVE_ID); state.live = null; }
  else state.live.statistics = { ...state.live.statistics, points: status.point_count };
  if (status.state !== 'recording') showHere(view, null);
}

function showLive() {
  drawTracks();
  takeList().catch(() => {});
  listen({
    track: takeLiveTrack, points: takeLivePoints, status: takeStatus,
    library: () => takeList().catch(() => {}),
    state: (isConnected) => drawLive(state.status, isConnected),
  });
}

// --- The page's own controls ---

function setAlong(along) {
  profile.along = along;
  byId('along-distance').setAttribute('aria-pressed', String(along === 'dist'));
  byId('along-time').setAttribute('aria-pressed', String(along === 'time'));
  drawProfile(profile);
}

function redrawAll() {
  restyle(view);
  drawTracks();
  drawProfile(profile);
}

byId('along-distance').addEventListener('click', () => setAlong('dist'));
byId('along-time').addEventListener('click', () => setAlong('time'));
byId('fit-all').addEventListener('click', fitAll);
darkMode.addEventListener('change', redrawAll);
window.addEventListener('beforeprint', () => { view.map.invalidateSize({ pan: false }); fitAll(); redrawAll(); });
window.addEventListener('afterprint', redrawAll);

byId('title').textContent = data.title;
if (data.live) showLive();
else showStatic();
