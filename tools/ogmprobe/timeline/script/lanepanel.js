// SPDX-License-Identifier: Apache-2.0
// A lane: the packets of a track as bars, their marks, and what is missing.

const VIDEO_HEIGHT = 104;
const AUDIO_HEIGHT = 60;
const REFUSED_HEIGHT = 44;
// Above the bars, for sync frames; below them, for the marks of times.
const HEAD = 7;
const FOOT = 14;

/** The top of a scale for the visible part of the rows. */
const topOf = (rows) => {
    const found = [0, 0, 0, 0];
    for (const row of rows) {
        row.largest.addRange(...row.range(view.startUs, endOfView()), found);
    }
    return roundedUp(Math.max(1, ...found));
};

class LanePanel {
    constructor(lane) {
        this.lane = lane;
        this.bars = new RowBars(lane.row);
        this.lost = new RowBars(lane.lost);
        this.barHeight = lane.kind === "video" ? VIDEO_HEIGHT : AUDIO_HEIGHT;
        this.base = HEAD + this.barHeight;
        this.top = 1;
        this.title = lane.title;
        this.className = "lane";
        this.seriesName = `track${lane.track}`;
        this.plot = new Plot(this.base + FOOT, this.label());
    }

    label() {
        const {lane} = this;
        return [`${lane.title}, ${lane.codec}: ${counted(lane.packets, "packet")}`,
            lane.lost.count > 0 ? `${counted(lane.lost.count, lane.noun)} lost` : "",
            lane.gaps > 0 ? counted(lane.gaps, "gap") : ""].filter(Boolean).join(", ");
    }

    details() {
        const {lane} = this;
        return [lane.codec, counted(lane.packets, "packet"),
            lane.lost.count > 0 ? `${counted(lane.lost.count, lane.noun)} lost` : ""].filter(Boolean);
    }

    barTop(size) {
        return this.base - size / this.top * this.barHeight;
    }

    draw(lit) {
        const {plot, lane} = this;
        plot.clear();
        this.top = topOf(isShown("lost") ? [lane.row, lane.lost] : [lane.row]);
        drawFindings(plot, (finding) => finding.lane === lane.index);
        if (isShown("gaps")) {
            this.drawGaps();
        }
        if (isShown("sync") && lane.marksSyncs) {
            this.drawSyncs();
        }
        this.drawBars();
        if (isShown("lost")) {
            this.drawLost();
        }
        plot.rectangle(colours.muted, 0, this.base, view.width, 1);
        this.drawTimeMarks();
        if (lit) {
            this.drawLit(lit.index);
        }
        plot.text(shortSize(this.top), view.width - 4, HEAD + 8, {align: "right"});
    }

    drawBars() {
        const own = typeColours(this.lane);
        const isVideo = this.lane.kind === "video";
        this.bars.forEach((x, width, size, kind) => {
            if (!isVideo || isShown(`type${kind}`)) {
                const height = Math.max(1, Math.round(this.base - this.barTop(size)));
                this.plot.rectangle(own[kind], x, this.base - height, width, height);
            }
        });
    }

    /** Hollow: they are in the file and are not returned. */
    drawLost() {
        const {plot} = this;
        this.lost.forEach((x, width, size, kind, index) => {
            const height = Math.max(4, Math.round(this.base - this.barTop(size)));
            const wide = Math.max(3, width);
            plot.rectangle(colours.lost, x, this.base - height, wide, height);
            if (index >= 0 && wide > 4) {
                plot.rectangle(colours.paper, x + 1, this.base - height + 1, wide - 2, height - 2);
            }
        });
    }

    drawGaps() {
        const {lane, plot} = this;
        for (let i = lowerBound(lane.gapTo, view.startUs); i < lane.gapFrom.length; ++i) {
            if (lane.gapFrom[i] > endOfView()) {
                break;
            }
            const x = xOf(lane.gapFrom[i]);
            const width = Math.max(3, xOf(lane.gapTo[i]) - x);
            plot.hatch(colours.gap, x, HEAD, width, this.barHeight);
            plot.rectangle(colours.gap, x, HEAD, 1.5, this.barHeight);
            plot.rectangle(colours.gap, x + width - 1.5, HEAD, 1.5, this.barHeight);
        }
    }

    drawSyncs() {
        const {plot, lane} = this;
        // Adjacent marks would only look like a shade.
        if (isCrowded(lane.syncTimes)) {
            plot.rectangle(colours.muted, 0, 1, view.width, 2);
            return;
        }
        forEachMark(lane.syncTimes, (x) => {
            plot.rectangle(colours.ink, Math.round(x) - 1, 0, 3, HEAD - 2);
            plot.context.globalAlpha = 0.3;
            plot.rectangle(colours.ink, Math.round(x), 0, 1, this.base);
            plot.context.globalAlpha = 1;
        });
    }

    drawTimeMarks() {
        const {plot, lane} = this;
        if (isShown("shared")) {
            const {fromUs, toUs} = lane.shared;
            this.drawMarks(fromUs, colours.repeated, this.base + 2, (x, i) =>
                plot.rectangle(colours.repeated, x, this.base + 3, xOf(toUs[i]) - x, 1));
        }
        if (isShown("backward")) {
            this.drawMarks(lane.backward, colours.backward, this.base + 8);
        }
    }

    drawMarks(times, colour, top, beside = () => {}) {
        const {plot} = this;
        if (isCrowded(times)) {
            plot.rectangle(colour, 0, top + 2, view.width, 1);
            return;
        }
        forEachMark(times, (x, i) => {
            plot.rectangle(colour, Math.round(x), top, 2, 5);
            beside(x, i);
        });
    }

    drawLit(index) {
        const {plot, lane} = this;
        const row = lane.row;
        const top = Math.round(this.barTop(row.sizes[index]));
        plot.context.strokeStyle = colours.ink;
        plot.context.lineWidth = 2;
        plot.context.strokeRect(Math.round(xOf(row.begins[index])) - 1, top - 1,
            barWidth(row, index) + 2, this.base - top + 2);
    }

    at(x, y) {
        const found = this.bars.at(x);
        if (!found) {
            return null;
        }
        const missing = this.lostAt(x);
        const lines = [packetLines(this.lane, found), missing, findingTexts(x, this.lane.index, null)];
        return {timeUs: this.lane.row.begins[found.index], lane: this.lane, index: found.index,
            text: lines.filter(Boolean).join("\n")};
    }

    lostAt(x) {
        const {lane} = this;
        const index = isShown("lost") && lane.lost.count > 0 ? lane.lost.near(timeAt(x)) : -1;
        if (index < 0 || Math.abs(xOf(lane.lost.begins[index]) - x) > 6) {
            return "";
        }
        const [from, end] = lane.lost.range(timeAt(x - 3), timeAt(x + 3));
        const many = Math.max(1, end - from);
        const reason = outline.reasons[lane.lost.reasons[lane.lost.order[index]]];
        return `lost here: ${counted(many, lane.noun)}, ${reason}`;
    }
}

/** A stream without a track, as the file's pages show it. */
class RefusedPanel {
    constructor(stream) {
        this.stream = stream;
        this.bars = new RowBars(stream.row);
        this.base = HEAD + REFUSED_HEIGHT;
        this.title = "No track";
        this.className = "refused";
        this.plot = new Plot(this.base + 2,
            `${stream.name}: ${counted(stream.packets, "packet")}, ${stream.reason}`);
    }

    details() {
        return [this.stream.name, this.stream.reason, counted(this.stream.packets, "packet")];
    }

    draw() {
        const {plot, stream} = this;
        plot.clear();
        drawFindings(plot, (finding) => finding.refused === stream.index);
        const top = topOf([stream.row]);
        this.bars.forEach((x, width, size) => {
            const height = Math.max(1, Math.round(size / top * REFUSED_HEIGHT));
            plot.rectangle(colours.unknown, x, this.base - height, width, height);
        });
        plot.rectangle(colours.muted, 0, this.base, view.width, 1);
        plot.text(shortSize(top), view.width - 4, HEAD + 8, {align: "right"});
    }

    at(x) {
        const found = this.bars.at(x);
        if (!found) {
            return null;
        }
        const {row, pages, reason, name} = this.stream;
        const page = row.pages[row.order[found.index]] - 1;
        return {timeUs: row.begins[found.index], text: [
            `${name}: ${reason}`,
            `page time ${seconds(row.times[row.order[found.index]])}`,
            bytesText(row.sizes[found.index]),
            pageText(page),
            findingTexts(x, null, this.stream.index),
        ].filter(Boolean).join("\n")};
    }
}
