// SPDX-License-Identifier: Apache-2.0
// How far the file had been read for each packet, and what seeks read.

const POSITION_HEIGHT = 200;
const STRIP = 30;
const ARC_FOOT = 22;
const LEAST_ARC = 8;
const MOST_ARC = 40;
const SIDE_WIDTH = 12;

class PositionPanel {
    constructor(lanes, refused) {
        this.lanes = lanes;
        this.refused = refused;
        this.title = "File position";
        this.className = "position";
        this.seriesName = "position";
        this.plot = new Plot(POSITION_HEIGHT,
            "File position that had been read for each packet, over time");
        this.side = new Plot(POSITION_HEIGHT, "What opening the file read");
        this.side.canvas.title = "read by opening";
    }

    /** Beside the plot, because it has no time: what opening the file read. */
    drawSide() {
        const {side} = this;
        side.rectangle(colours.ground, 0, 0, SIDE_WIDTH, POSITION_HEIGHT);
        this.drawParts(side, outline.opening, 0, SIDE_WIDTH);
    }

    drawParts(plot, parts, left, width) {
        for (const [begin, end] of parts) {
            const top = Math.min(this.y(end), this.y(begin) - 2);
            plot.rectangle(colours.seek, left, top, width, this.y(begin) - top);
        }
    }

    details() {
        return ["read for each packet", outline.seeks.length > 0
            ? "and by seeks; arcs go from target to landing" : ""].filter(Boolean);
    }

    y(position) {
        const part = Math.min(1, position / Math.max(1, outline.fileSize));
        return POSITION_HEIGHT - 3 - part * (POSITION_HEIGHT - STRIP - 3);
    }

    draw(lit) {
        const {plot} = this;
        plot.clear();
        this.drawSide();
        drawFindings(plot, (finding) => finding.lane === null && finding.refused === null);
        if (isShown("seeks")) {
            outline.seeks.forEach((seek) => this.drawSeek(seek));
        }
        for (const lane of this.lanes.filter((each) => isShown(`track${each.track}`))) {
            this.drawLane(lane);
        }
        if (lit) {
            const file = lit.lane.row.order[lit.index];
            plot.rectangle(colours.ink, xOf(lit.lane.row.begins[lit.index]) - 4,
                this.y(lit.lane.positions[file]) - 4, 8, 8);
        }
        plot.text(shortSize(outline.fileSize), view.width - 4, STRIP + 9, {align: "right"});
    }

    drawLane(lane) {
        const {plot} = this;
        const {row} = lane;
        const colour = trackColour(lane);
        const columnUs = view.lengthUs / view.width * 2;
        const [first, last] = row.range(view.startUs, endOfView());
        for (let from = first; from < last;) {
            const column = Math.floor(row.begins[from] / columnUs);
            const end = Math.max(from + 1, lowerBound(row.begins, (column + 1) * columnUs));
            const {least, most} = lane.position.of(from, end);
            const top = this.y(most) - 1.5;
            plot.rectangle(colour, xOf(row.begins[from]) - 1, top, 3, this.y(least) + 1.5 - top);
            from = end;
        }
    }

    drawSeek(seek) {
        const {plot} = this;
        const target = xOf(seek.targetUs);
        plot.context.globalAlpha = 0.7;
        this.drawParts(plot, seek.parts, target - 3, 6);
        plot.context.globalAlpha = 1;
        plot.rectangle(colours.seek, target - 1, ARC_FOOT - 4, 2, 8);
        if (seek.landedUs !== null) {
            this.drawWay(target, xOf(seek.landedUs));
        }
    }

    // Longer arcs are higher, so that arcs to the same place stay separate.
    drawWay(from, to) {
        const {context} = this.plot;
        const rise = Math.min(MOST_ARC, Math.max(LEAST_ARC, Math.abs(to - from) * 0.1));
        context.strokeStyle = colours.seek;
        context.lineWidth = 1.2;
        context.beginPath();
        context.moveTo(from, ARC_FOOT);
        context.quadraticCurveTo((from + to) / 2, ARC_FOOT - rise, to, ARC_FOOT);
        context.stroke();
        context.beginPath();
        context.fillStyle = colours.seek;
        context.arc(to, ARC_FOOT, 3, 0, 7);
        context.fill();
    }

    seekNear(x) {
        const near = (seek) => Math.abs(xOf(seek.targetUs) - x);
        const seek = isShown("seeks") && outline.seeks.reduce((best, other) =>
            best && near(best) <= near(other) ? best : other, null);
        return seek && near(seek) < 7 ? seek : null;
    }

    at(x) {
        const timeUs = timeAt(x);
        const seek = this.seekNear(x);
        if (seek) {
            return {timeUs: seek.targetUs, text: [`Seek to ${seconds(seek.targetUs)}`,
                seek.landedUs === null ? "landed at the end"
                    : `landed at ${seconds(seek.landedUs)}${seek.sync ? ", sync frame" : ""}`,
                `${counted(seek.reads, "read")}, ${bytesText(seek.bytes)}`].join("\n")};
        }
        const found = this.lanes.filter((lane) => lane.row.count > 0).map((lane) => {
            const position = lane.positions[lane.row.order[lane.row.near(timeUs)]];
            return `${lane.name}: file read up to ${position.toLocaleString("en")}`;
        });
        return {timeUs, text: [seconds(timeUs), ...found, findingTexts(x, null, null)]
            .filter(Boolean).join("\n")};
    }
}
