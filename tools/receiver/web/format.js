// How numbers, times and sizes read. Times of day are the viewer's.

/** "1:02:03", "4:05"; with `fraction` also tenths. `seconds` below zero count as zero. */
export function clockTime(seconds, fraction = false) {
    const tenths = Math.floor(Math.max(0, seconds) * 10 + 1e-6);
    const whole = Math.floor(tenths / 10);
    const parts = [Math.floor(whole / 3600), Math.floor(whole / 60) % 60, whole % 60];
    const shown = parts[0] > 0 ? parts : parts.slice(1);
    const text = shown.map((part, index) => (index === 0 ? String(part) : String(part).padStart(2, '0'))).join(':');
    return fraction ? `${text}.${tenths % 10}` : text;
}

/** "2 minutes 5 seconds", for those who listen. */
export function spokenTime(seconds) {
    const whole = Math.round(Math.max(0, seconds));
    const parts = [
        [Math.floor(whole / 3600), 'hour'],
        [Math.floor(whole / 60) % 60, 'minute'],
        [whole % 60, 'second'],
    ].filter(([count]) => count > 0);
    return parts.length === 0 ? '0 seconds' : parts.map(([count, unit]) => counted(count, unit)).join(' ');
}

/** "1 session", "2 sessions", "1,204 sessions". */
export function counted(count, thing, things = `${thing}s`) {
    return `${number(count)} ${count === 1 ? thing : things}`;
}

export function number(value) {
    return value.toLocaleString('en');
}

/** "14.2 kB" */
export function bytes(count) {
    const units = ['B', 'kB', 'MB', 'GB', 'TB'];
    let value = count;
    let unit = 0;
    while (value >= 999.5 && unit < units.length - 1) {
        value /= 1000;
        ++unit;
    }
    return `${unit === 0 || value >= 100 ? Math.round(value) : value.toFixed(1)} ${units[unit]}`;
}

/** "14:03" today, "Yesterday 14:03", "21 Nov 14:03", and with the year when it is another one. */
export function when(millis, now = Date.now()) {
    const date = new Date(millis);
    const time = date.toLocaleTimeString('en-GB', { hour: '2-digit', minute: '2-digit' });
    const midnight = new Date(now).setHours(0, 0, 0, 0);
    const days = Math.round((midnight - new Date(millis).setHours(0, 0, 0, 0)) / 86400000);
    if (days === 0 || days === 1) {
        return `${days === 0 ? 'Today' : 'Yesterday'} ${time}`;
    }
    const year = date.getFullYear() === new Date(now).getFullYear() ? undefined : 'numeric';
    return `${date.toLocaleDateString('en-GB', { day: 'numeric', month: 'short', year })} ${time}`;
}

/** "Fri, 21 Nov 2025, 14:03:22" */
export function fullDate(millis) {
    const date = new Date(millis);
    const day = date.toLocaleDateString('en-GB', { weekday: 'short', day: 'numeric', month: 'short', year: 'numeric' });
    return `${day}, ${date.toLocaleTimeString('en-GB')}`;
}
