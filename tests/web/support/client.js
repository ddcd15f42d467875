// A client made by hand: what no phone would send, a test can.
import assert from 'node:assert/strict';

const project = { brandId: 'brand', projectId: 'project' };

async function answered(response) {
    const body = await response.json();
    assert.equal(body.status, 'SUCCESS', JSON.stringify(body));
    return body;
}

/** The id of a new session. */
export async function createSession(origin, of = project) {
    const body = JSON.stringify({ ...of, brandDc: 'US_WEST', isTestSession: false });
    const response = await fetch(`${origin}/mobile-sr-ingestion/v1/sessions/create`, { method: 'POST', body, headers: { 'Content-Type': 'application/json' } });
    return (await answered(response)).sessionInfo.sessionId;
}

/** Uploads `events`, which need no chunk number of their own, with a video. */
export async function uploadChunk(origin, sessionId, number, events, video, of = project) {
    const info = {
        brandId: of.brandId, brandDc: 'US_WEST', projectId: of.projectId, sessionId, chunkNumber: number, playbackDataVersion: 1, chunkTimestamp: 1_700_000_010_000,
    };
    const form = new FormData();
    form.append('chunk[timeline]', JSON.stringify(events.map((event) => ({ ...event, chunkNumber: number }))));
    form.append('chunk[info]', JSON.stringify(info));
    form.append('chunk[playback]', new Blob([video], { type: 'video/mp4' }), `${sessionId}-${number}.mp4`);
    await answered(await fetch(`${origin}/mobile-sr-ingestion/v1/sessions/record-playback`, { method: 'PUT', body: form }));
}

export async function closeSession(origin, sessionId, of = project) {
    await answered(await fetch(`${origin}/mobile-sr-ingestion/v1/sessions/${sessionId}/close-session`, {
        method: 'POST', body: JSON.stringify(of), headers: { 'Content-Type': 'application/json' },
    }));
}

export async function postLog(origin, sessionId, fields, of = project) {
    const message = encodeURIComponent(JSON.stringify({ sessionId, ...fields }));
    const query = new URLSearchParams({ action: 'ClientLog', M_ZoneID: of.projectId, M_BID: of.brandId });
    const response = await fetch(`${origin}/WRTarrowEngine/Ajax.php?${query.toString().replaceAll('+', '%20')}`, {
        method: 'POST', body: `Message=${message}&LevelName=error`, headers: { 'Content-Type': 'application/x-www-form-urlencoded' },
    });
    assert.equal((await response.json()).status, 'Success');
}

/** The video of a chunk that the receiver has. */
export async function videoOf(origin, sessionId, number) {
    const response = await fetch(`${origin}/api/sessions/${sessionId}/chunks/${number}.mp4`);
    assert.equal(response.status, 200);
    return response.arrayBuffer();
}
