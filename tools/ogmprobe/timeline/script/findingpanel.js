// SPDX-License-Identifier: Apache-2.0
// Findings in the picture: a strip with all that have a time, shades in their lanes, and badges
// beside the lanes for findings about the whole time.

const FINDING_ROW = 18;
const MOST_FINDING_ROWS = 6;
const LEAST_FINDING_WIDTH = 18;
// A finding that covers more than this part of the time would shade everything.
const WIDEST_SHADE = 0.5;
const MOST_SENTENCES = 3;

const findings = outline.findings.map((finding, i) => ({...finding, number: i + 1}));
const timedFindings = findings.filter((finding) => finding.fromUs !== null);
const findingChoice = {number: 0};

const findingColour = (finding) => finding.usual ? colours.usual : colours.finding;

const isWide = (finding) => finding.toUs - finding.fromUs > outline.axis.lengthUs * WIDEST_SHADE;

const drawFindings = (plot, isWanted) => {
    if (!isShown("findings")) {
        return;
    }
    for (const finding of timedFindings.filter(isWanted)) {
        const left = xOf(finding.fromUs);
        const width = Math.max(3, xOf(finding.toUs) - left);
        if (left > view.width || left + width < 0) {
            continue;
        }
        const isChosen = finding.number === findingChoice.number;
        if (isWide(finding) && !isChosen) {
            plot.rectangle(findingColour(finding), left, 0, width, 2);
        } else {
            plot.hatch(findingColour(finding), left, 0, width, plot.height);
        }
    }
};

/** The sentences of the findings that are shaded there. */
const findingTexts = (x, lane, refused) => timedFindings
    .filter((finding) => finding.lane === lane && finding.refused === refused &&
        isShown("findings") && xOf(finding.fromUs) <= x + 3 &&
        Math.max(xOf(finding.toUs), xOf(finding.fromUs) + 3) >= x - 3)
    .slice(0, MOST_SENTENCES).map((finding) => `${finding.number}: ${finding.text}`).join("\n");

/** In rows, so that findings of about the same time are below one another. */
const rowsOfFindings = () => {
    const ends = [];
    const leastUs = LEAST_FINDING_WIDTH / view.width * view.lengthUs;
    return [...timedFindings].sort((a, b) => a.fromUs - b.fromUs).map((finding) => {
        const free = ends.findIndex((endUs) => endUs <= finding.fromUs);
        const row = free >= 0 ? free : Math.min(ends.length, MOST_FINDING_ROWS - 1);
        ends[row] = Math.max(ends[row] ?? -Infinity, finding.toUs, finding.fromUs + leastUs);
        return {finding, row};
    });
};

class FindingPanel {
    constructor() {
        this.title = "Findings";
        this.className = "findings";
        this.seriesName = "findings";
        // Zooming in only increases their distance.
        const rows = rowsOfFindings().reduce((most, {row}) => Math.max(most, row + 1), 1);
        this.plot = new Plot(rows * FINDING_ROW + 4,
            `${counted(findings.length, "finding")}, which the list shows`);
    }

    details() {
        return [counted(findings.length, "finding")];
    }

    /** Place and size of a finding in the strip. */
    box({finding, row}) {
        const begin = xOf(finding.fromUs);
        const width = Math.max(LEAST_FINDING_WIDTH, xOf(finding.toUs) - begin);
        // At the right edge short ones stay complete.
        const left = begin <= view.width ? Math.min(begin, Math.max(0, view.width - width)) : begin;
        return {left, top: 2 + row * FINDING_ROW, width, height: FINDING_ROW - 3};
    }

    draw() {
        const {plot} = this;
        plot.clear();
        for (const placed of rowsOfFindings()) {
            const {left, top, width, height} = this.box(placed);
            if (left > view.width || left + width < 0) {
                continue;
            }
            const {finding} = placed;
            plot.rectangle(findingColour(finding), left, top, width, height);
            if (finding.number === findingChoice.number) {
                plot.context.strokeStyle = colours.ink;
                plot.context.lineWidth = 2;
                plot.context.strokeRect(left, top, width, height);
            }
            plot.context.font = "600 11px system-ui, sans-serif";
            plot.context.fillStyle = colours.paper;
            plot.context.fillText(String(finding.number), Math.max(left, 0) + 4, top + height - 4);
        }
    }

    at(x, y) {
        const found = rowsOfFindings().find((placed) => {
            const {left, top, width, height} = this.box(placed);
            return x >= left && x <= left + width && y >= top && y <= top + height;
        })?.finding;
        return {timeUs: timeAt(x), finding: found,
            text: found ? `${found.number}: ${found.text}` : seconds(timeAt(x))};
    }
}
