// SPDX-License-Identifier: Apache-2.0
// Tracks and streams with their packets in the order of time.

const SYNC_BIT = 4;
const TYPE_BITS = 3;
const TYPES = 4;

/** Packets in the order of time, each with its slot. Values of the file's order get `at(i)`. */
class PacketRow {
    constructor(times, sizes, {usualUs = 0, limits = new Map(), longestUs = Infinity, kinds = null}) {
        this.order = orderOf(times);
        this.times = times;
        this.usualUs = usualUs || usualLength(times, this.order);
        const longest = longestUs || this.usualUs || 1e4;
        Object.assign(this, slotsOf(times, this.order, this.usualUs, limits, longest));
        this.sizes = this.sorted(sizes);
        this.kinds = kinds ? Uint8Array.from(this.order, (i) => kinds[i]) : null;
        this.largest = new Pyramid(this.sizes, kinds ? TYPES : 1,
            kinds ? (i) => this.kinds[i] & TYPE_BITS : () => 0);
        this.bytesBefore = this.summed();
    }

    get count() {
        return this.order.length;
    }

    sorted(values) {
        const result = new Float64Array(this.order.length);
        for (let i = 0; i < result.length; ++i) {
            result[i] = values[this.order[i]];
        }
        return result;
    }

    summed() {
        const sums = new Float64Array(this.count + 1);
        for (let i = 0; i < this.count; ++i) {
            sums[i + 1] = sums[i] + this.sizes[i];
        }
        return sums;
    }

    /** Indices, in the order of time, of the packets whose slots begin within the time. */
    range(fromUs, toUs) {
        return [lowerBound(this.begins, fromUs), lowerBound(this.begins, toUs)];
    }

    /** The packet whose slot contains the time, or the nearest packet. */
    near(timeUs) {
        const next = Math.min(upperBound(this.begins, timeUs), this.count - 1);
        const before = Math.max(0, upperBound(this.begins, timeUs) - 1);
        const isNextNearer = timeUs - this.ends[before] > this.begins[next] - timeUs;
        return this.count === 0 ? -1 : isNextNearer ? next : before;
    }

    largestOf(from, end) {
        let found = from;
        for (let i = from + 1; i < end; ++i) {
            found = this.sizes[i] > this.sizes[found] ? i : found;
        }
        return found;
    }

    /** Bytes up to the time; the bytes of a packet are spread over its slot. */
    bytesUpTo(timeUs) {
        const i = upperBound(this.begins, timeUs) - 1;
        if (i < 0) {
            return 0;
        }
        const length = this.ends[i] - this.begins[i];
        const part = length > 0 ? Math.min(1, (timeUs - this.begins[i]) / length) : 1;
        return this.bytesBefore[i] + part * this.sizes[i];
    }
}

const timesWhere = (row, holds) => {
    const times = [];
    for (let i = 0; i < row.count; ++i) {
        if (holds(i)) {
            times.push(row.begins[i]);
        }
    }
    return Float64Array.from(times);
};

/** Times at which a packet is shown earlier than the one stored before it. */
const backwardTimes = (times) => {
    const found = [];
    for (let i = 1; i < times.length; ++i) {
        if (times[i] < times[i - 1]) {
            found.push(times[i]);
        }
    }
    return Float64Array.from(found).sort();
};

class PageList {
    constructor(reader, count) {
        this.offsets = reader.differences(count);
        this.sizes = reader.numbers(count);
        const streams = reader.numbers(count);
        let end = 0;
        for (let i = 0; i < count; ++i) {
            this.offsets[i] += end;
            end = this.offsets[i] + this.sizes[i];
        }
        // Numbers and times are stored stream by stream.
        const order = orderOf(streams);
        const sequences = reader.steady(count);
        const known = reader.raw();
        const times = reader.steady(count);
        this.sequences = new Float64Array(count);
        this.hasTime = new Uint8Array(count);
        this.times = new Float64Array(count);
        order.forEach((page, i) => {
            this.sequences[page] = sequences[i];
            this.hasTime[page] = known[i];
            this.times[page] = times[i];
        });
        this.lines = new Map();
    }

    addLines({texts, places}) {
        for (let i = 0; i < places.length; i += 2) {
            const lines = this.lines.get(places[i]) ?? [];
            lines.push(texts[places[i + 1]]);
            this.lines.set(places[i], lines);
        }
    }
}

const lostRow = (reader, count, usualUs) => {
    const times = reader.steady(count);
    const sizes = reader.numbers(count);
    const pages = reader.steady(count);
    const reasons = reader.numbers(count);
    const row = new PacketRow(times, sizes, {usualUs, longestUs: usualUs});
    return Object.assign(row, {pages, reasons});
};

/** The sizes of packets `lead` places later were subtracted. */
const positionsFrom = (reader, sizes, lead) => {
    const positions = reader.differences(sizes.length);
    let last = 0;
    for (let i = 0; i < positions.length; ++i) {
        last += positions[i] + (sizes[i + lead] ?? 0);
        positions[i] = last;
    }
    return positions;
};

/** Ranges in the order of the file. */
const rangesFrom = (reader, count) => {
    const known = reader.raw();
    const least = reader.steady(count);
    const most = reader.numbers(count).map((width, i) => least[i] + width);
    return {known, least, most};
};

/** How late packets are, in the order of time, from a function of their index in the file. */
const latenessOf = (row, known, leastOf, mostOf) => new Lateness(
    Float64Array.from(row.order, leastOf), Float64Array.from(row.order, mostOf),
    Uint8Array.from(row.order, (file) => known[file]));

const laneFrom = (reader, info, index) => {
    const times = reader.steady(info.packets);
    const sizes = reader.numbers(info.packets);
    const kinds = reader.raw();
    const positions = positionsFrom(reader, sizes, info.lead);
    const pages = reader.steady(info.packets);
    const digests = reader.raw();
    const pageTimes = rangesFrom(reader, info.packets);
    const lateByVideo = rangesFrom(reader, info.packets);
    const lost = lostRow(reader, info.lost, info.usualUs);
    const gapFrom = reader.steady(info.gaps);
    const gapTo = reader.steady(info.gaps);
    const limits = new Map(Array.from(gapTo, (toUs, i) => [toUs, gapFrom[i]]));
    const row = new PacketRow(times, sizes, {usualUs: info.usualUs, limits, kinds});
    return {...info, index, row, lost, pages, positions, digests, gapFrom, gapTo,
        title: `Track ${info.track}, ${info.kind}`,
        name: `Track ${info.track} (${info.codec})`,
        syncTimes: timesWhere(row, (i) => (row.kinds[i] & SYNC_BIT) !== 0),
        pageTimes,
        byPages: latenessOf(row, pageTimes.known, (file) => times[file] - pageTimes.most[file],
            (file) => times[file] - pageTimes.least[file]),
        byVideo: latenessOf(row, lateByVideo.known, (file) => lateByVideo.least[file],
            (file) => lateByVideo.most[file]),
        shared: sharedTimesOf(times, row.order, row.begins),
        backward: backwardTimes(times),
        position: new Extent(row.sorted(positions))};
};

const refusedFrom = (reader, info, index) => {
    const row = lostRow(reader, info.packets, 0);
    return {...info, index, row, name: `Without a track: ${info.name}`};
};

/** All data of the page, after unpacking. */
const film = {pages: null, lanes: [], refused: []};

const fillFilm = (bytes) => {
    const reader = new ColumnReader(bytes, outline.columns);
    film.pages = new PageList(reader, outline.pages);
    film.lanes = outline.lanes.map((info, i) => laneFrom(reader, info, i));
    film.refused = outline.refused.map((info, i) => refusedFrom(reader, info, i));
    film.pages.addLines(JSON.parse(reader.text()));
};
