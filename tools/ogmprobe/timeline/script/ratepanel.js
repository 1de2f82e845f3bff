// SPDX-License-Identifier: Apache-2.0
// Bits per second: all tracks as an area, each as a line.

const RATE_HEIGHT = 96;
const RATE_TOP = 8;
const RATE_STEP = 2;

class RatePanel {
    constructor(lanes) {
        this.lanes = lanes;
        this.title = "Bitrate";
        this.className = "bitrate";
        this.seriesName = "bitrate";
        this.plot = new Plot(RATE_HEIGHT, "Bitrate over time");
        this.top = 1;
    }

    details() {
        return ["all tracks: area", `over ${lengthText(windowOf(view.lengthUs))} around each time`];
    }

    shownLanes() {
        return this.lanes.filter((lane) => isShown(`track${lane.track}`));
    }

    /** For each lane the rates at the same places, and for all of them the sums. */
    rates() {
        const windowUs = windowOf(view.lengthUs);
        const places = [];
        for (let x = 0; x <= view.width; x += RATE_STEP) {
            places.push(x);
        }
        const lines = this.shownLanes().map((lane) => ({lane,
            rates: places.map((x) => rateAt(lane.row, timeAt(x), windowUs))}));
        const total = places.map((_, i) => lines.reduce((sum, line) => sum + line.rates[i], 0));
        return {places, lines, total};
    }

    y(rate) {
        return RATE_HEIGHT - 2 - rate / this.top * (RATE_HEIGHT - 2 - RATE_TOP);
    }

    draw() {
        const {plot} = this;
        const {places, lines, total} = this.drawn = this.rates();
        this.top = roundedUp(Math.max(1, ...total));
        plot.clear();
        this.area(places, total);
        plot.line(colours.muted, 1, places.map((x, i) => [x, this.y(total[i])]));
        for (const {lane, rates} of lines) {
            plot.line(trackColour(lane), 1.5, places.map((x, i) => [x, this.y(rates[i])]));
        }
        plot.rectangle(colours.muted, 0, RATE_HEIGHT - 1, view.width, 1);
        plot.text(shortRate(this.top), view.width - 4, RATE_TOP + 6, {align: "right"});
    }

    area(places, total) {
        const {context} = this.plot;
        context.fillStyle = colours.area;
        context.beginPath();
        context.moveTo(0, RATE_HEIGHT);
        places.forEach((x, i) => context.lineTo(x, this.y(total[i])));
        context.lineTo(view.width, RATE_HEIGHT);
        context.fill();
    }

    at(x) {
        const timeUs = timeAt(x);
        const windowUs = windowOf(view.lengthUs);
        const lines = this.shownLanes().map((lane) => ({lane, rate: rateAt(lane.row, timeUs, windowUs)}));
        const total = lines.reduce((sum, line) => sum + line.rate, 0);
        return {timeUs, text: [`${seconds(timeUs)}, over ${lengthText(windowUs)}`,
            `all tracks ${shortRate(total)}`,
            ...lines.map(({lane, rate}) => `${lane.name} ${shortRate(rate)}`)].join("\n")};
    }
}
