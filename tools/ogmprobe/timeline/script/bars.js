// SPDX-License-Identifier: Apache-2.0
// Bars of packets: one for each packet if there is space, otherwise for the largest within some pixels.

const COLUMN = 3;
const BAR_PART = 0.72;
const WIDEST_BAR = 16;

/** In whole pixels, so that bars keep their edges. */
const barWidth = (row, i) => {
    const slot = (row.ends[i] - row.begins[i]) / view.lengthUs * view.width;
    return Math.round(Math.min(WIDEST_BAR, Math.max(1.5, slot * BAR_PART)));
};

class RowBars {
    constructor(row) {
        this.row = row;
        this.found = new Array(row.kinds ? TYPES : 1);
    }

    columnUs() {
        return view.lengthUs / view.width * COLUMN;
    }

    /** Indices of the packets in view, with one more on each side. */
    inView() {
        const [from, end] = this.row.range(view.startUs, endOfView());
        return [Math.max(0, from - 1), Math.min(this.row.count, end + 1)];
    }

    showsPackets() {
        const [from, end] = this.inView();
        const {begins, ends} = this.row;
        const coveredUs = end > from ? Math.min(view.lengthUs, ends[end - 1] - begins[from]) : 1;
        return (end - from) * COLUMN <= Math.max(coveredUs / view.lengthUs * view.width, 4 * COLUMN);
    }

    /** `bar(x, width, size, kind, isPacket)`; in a column the taller bars come first. */
    forEach(bar) {
        if (this.showsPackets()) {
            this.forEachPacket(bar);
        } else {
            this.forEachColumn(bar);
        }
    }

    forEachPacket(bar) {
        const {row} = this;
        const [from, end] = this.inView();
        for (let i = from; i < end; ++i) {
            bar(Math.round(xOf(row.begins[i])), barWidth(row, i), row.sizes[i], row.kinds ? row.kinds[i] & TYPE_BITS : 0, i);
        }
    }

    // Columns follow a grid of the time axis, so that they keep their shape while they move.
    forEachColumn(bar) {
        const {row, found} = this;
        const columnUs = this.columnUs();
        const last = Math.ceil(endOfView() / columnUs);
        let column = Math.floor(view.startUs / columnUs);
        let from = lowerBound(row.begins, column * columnUs);
        while (column <= last && from < row.count) {
            column = Math.max(column, Math.floor(row.begins[from] / columnUs));
            const end = lowerBound(row.begins, (column + 1) * columnUs);
            if (end > from) {
                found.fill(-Infinity);
                row.largest.addRange(from, end, found);
                this.barsOfColumn(Math.round(xOf(column * columnUs)), bar);
            }
            from = Math.max(end, from);
            ++column;
        }
    }

    barsOfColumn(x, bar) {
        const {found} = this;
        const kinds = [0, 1, 2, 3].slice(0, found.length).filter((kind) => found[kind] > -Infinity)
            .sort((a, b) => found[b] - found[a]);
        for (const kind of kinds) {
            bar(x, COLUMN - 1, found[kind], kind, -1);
        }
    }

    /** The packet that is drawn there, and how many others it represents. */
    at(x) {
        const {row} = this;
        if (row.count === 0) {
            return null;
        }
        if (this.showsPackets()) {
            return {index: row.near(timeAt(x)), others: 0};
        }
        const columnUs = this.columnUs();
        const column = Math.floor(timeAt(x) / columnUs);
        const [from, end] = row.range(column * columnUs, (column + 1) * columnUs);
        return end > from ? {index: row.largestOf(from, end), others: end - from - 1}
            : {index: row.near(timeAt(x)), others: 0};
    }
}
