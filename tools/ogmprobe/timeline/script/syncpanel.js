// SPDX-License-Identifier: Apache-2.0
// Times against those of the file's pages: each track's, and the audio's against the video's.

const SYNC_HEIGHT = 84;
const SYNC_MIDDLE = SYNC_HEIGHT / 2;
const SYNC_COLUMN = 2;

/** How late packets are, from one row to the other, in the order of time. */
class Lateness {
    constructor(least, most, known) {
        Object.assign(this, {least, most, known});
        const kindOf = (i) => known[i] - 1;
        this.latest = new Pyramid(most, 1, kindOf);
        this.earliest = new Pyramid(least.map((value) => -value), 1, kindOf);
        this.isKnown = known.includes(1);
    }

    /** Of the packets from one index to the other; nothing where none is known. */
    of(from, end) {
        const latest = [-Infinity];
        const earliest = [-Infinity];
        this.latest.addRange(from, end, latest);
        this.earliest.addRange(from, end, earliest);
        return latest[0] === -Infinity ? null : {least: -earliest[0], most: latest[0]};
    }
}

/** "0.522449 s early". */
const lateText = (least, most) => {
    const one = (us) => us === 0 ? "0 s"
        : `${(Math.abs(us) / 1e6).toFixed(6)} s ${us < 0 ? "early" : "late"}`;
    return least === most ? one(least) : `${one(least)} to ${one(most)}`;
};

class SyncPanel {
    /** `lateness`: which member of a lane is drawn. */
    constructor(lanes, lateness, title, about) {
        Object.assign(this, {lateness, title, about, className: `sync ${lateness}`,
            seriesName: lateness});
        this.lanes = lanes.filter((lane) => lane[lateness].isKnown);
        this.plot = new Plot(SYNC_HEIGHT, `${title}: ${about.join(", ")}`);
        this.top = 1;
    }

    details() {
        return this.about;
    }

    shownLanes() {
        return this.lanes.filter((lane) => isShown(`track${lane.track}`));
    }

    y(lateUs) {
        return SYNC_MIDDLE - lateUs / this.top * (SYNC_MIDDLE - 4);
    }

    /** Of all lanes in view. */
    extent() {
        return this.shownLanes().reduce((most, lane) => {
            const found = lane[this.lateness].of(...lane.row.range(view.startUs, endOfView()));
            return found ? Math.max(most, Math.abs(found.least), Math.abs(found.most)) : most;
        }, 0);
    }

    draw(lit) {
        const {plot} = this;
        plot.clear();
        // A finer scale would only show rounding.
        this.top = roundedUp(Math.max(1000, this.extent()));
        plot.rectangle(colours.muted, 0, SYNC_MIDDLE, view.width, 1);
        this.shownLanes().forEach((lane) => this.drawLane(lane));
        if (lit?.lane[this.lateness].known[lit.index]) {
            const {least, most} = lit.lane[this.lateness].of(lit.index, lit.index + 1);
            plot.rectangle(colours.ink, xOf(lit.lane.row.begins[lit.index]) - 4,
                this.y((least + most) / 2) - 4, 8, 8);
        }
        plot.text(`${lengthText(this.top)} late`, view.width - 4, 12, {align: "right"});
        plot.text(`${lengthText(this.top)} early`, view.width - 4, SYNC_HEIGHT - 4, {align: "right"});
    }

    drawLane(lane) {
        const {plot} = this;
        const {row} = lane;
        const columnUs = view.lengthUs / view.width * SYNC_COLUMN;
        const [first, last] = row.range(view.startUs - columnUs, endOfView());
        for (let from = first; from < last;) {
            const column = Math.floor(row.begins[from] / columnUs);
            const end = Math.max(from + 1, lowerBound(row.begins, (column + 1) * columnUs));
            const found = lane[this.lateness].of(from, end);
            if (found) {
                const top = this.y(found.most) - 1;
                const x = xOf(row.begins[from]);
                const slot = end - from === 1 ? xOf(row.ends[from]) - x : 0;
                const width = Math.min(WIDEST_BAR, Math.max(SYNC_COLUMN, slot));
                plot.rectangle(trackColour(lane), x, top, width,
                    Math.max(2, this.y(found.least) + 1 - top));
            }
            from = end;
        }
    }

    at(x) {
        const timeUs = timeAt(x);
        const lines = this.shownLanes().map((lane) => {
            const index = lane.row.near(timeUs);
            const found = index < 0 ? null : lane[this.lateness].of(index, index + 1);
            return `${lane.name}: ${found ? lateText(found.least, found.most) : "not known"}`;
        });
        return {timeUs, text: [seconds(timeUs), ...lines].join("\n")};
    }
}

const syncPanels = (lanes) => [
    new SyncPanel(lanes, "byPages", "Times", ["the plug-in's less those of the file's pages"]),
    new SyncPanel(lanes, "byVideo", "Audio to video", ["how much later the audio is than the video"]),
].filter((panel) => panel.lanes.length > 0);
