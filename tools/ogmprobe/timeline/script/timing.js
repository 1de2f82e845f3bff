// SPDX-License-Identifier: Apache-2.0
// Where packets are on the time axis. A container may give all packets of a page the same time: these
// share the time up to the next packets, each with its own slot.

/** Returns the first index from which `isReached` is true for all; it is true for none before. */
const firstIndex = (count, isReached) => {
    let low = 0;
    let high = count;
    while (low < high) {
        const middle = (low + high) >> 1;
        if (isReached(middle)) {
            high = middle;
        } else {
            low = middle + 1;
        }
    }
    return low;
};

const lowerBound = (values, value) => firstIndex(values.length, (i) => values[i] >= value);
const upperBound = (values, value) => firstIndex(values.length, (i) => values[i] > value);

/** Indices by time; those of the same time stay in the order of the file. */
const orderOf = (times) => {
    const order = Uint32Array.from(times, (_, i) => i);
    let isSorted = true;
    for (let i = 1; i < times.length && isSorted; ++i) {
        isSorted = times[i] >= times[i - 1];
    }
    return isSorted ? order : order.sort((a, b) => times[a] - times[b] || a - b);
};

/** Calls with the first index, the index after the last, and the time of these packets. */
const forEachGroup = (times, order, visit) => {
    for (let from = 0; from < order.length;) {
        const timeUs = times[order[from]];
        let end = from + 1;
        while (end < order.length && times[order[end]] === timeUs) {
            ++end;
        }
        visit(from, end, timeUs);
        from = end;
    }
};

/** How long a packet usually lasts, estimated from a sample of groups. */
const usualLength = (times, order) => {
    const lengths = [];
    const stride = Math.ceil(order.length / 20000);
    let last = null;
    let groups = 0;
    forEachGroup(times, order, (from, end, timeUs) => {
        if (last && groups++ % stride === 0) {
            lengths.push((timeUs - last.timeUs) / last.count);
        }
        last = {timeUs, count: end - from};
    });
    return Float64Array.from(lengths).sort()[lengths.length >> 1] || 0;
};

/** `limits`: where the slots of a group end early because a gap follows, by the next time. */
const slotsOf = (times, order, usualUs, limits, longestUs) => {
    const begins = new Float64Array(order.length);
    const ends = new Float64Array(order.length);
    forEachGroup(times, order, (from, end, timeUs) => {
        const count = end - from;
        const nextUs = end < order.length ? times[order[end]] : timeUs + (usualUs || 1e4) * count;
        const untilUs = Math.min(limits.get(nextUs) ?? nextUs, timeUs + longestUs * count);
        const slotUs = Math.max(0, untilUs - timeUs) / count;
        for (let i = from; i < end; ++i) {
            begins[i] = timeUs + (i - from) * slotUs;
            ends[i] = begins[i] + slotUs;
        }
    });
    return {begins, ends};
};

/** Times that more than one packet has, and from where to where their slots begin. */
const sharedTimesOf = (times, order, begins) => {
    const shared = {fromUs: [], toUs: []};
    forEachGroup(times, order, (from, end, timeUs) => {
        if (end - from > 1) {
            shared.fromUs.push(timeUs);
            shared.toUs.push(begins[end - 1]);
        }
    });
    return {fromUs: Float64Array.from(shared.fromUs), toUs: Float64Array.from(shared.toUs)};
};
