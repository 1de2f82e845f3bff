// SPDX-License-Identifier: Apache-2.0
// The whole time in a narrow strip: the bitrate, findings, and a frame around the view.

const OVERVIEW_HEIGHT = 36;

class OverviewPanel {
    constructor(lanes) {
        this.lanes = lanes;
        this.title = "Overview";
        this.className = "overview";
        this.plot = new Plot(OVERVIEW_HEIGHT, "The whole time, with a frame around the part shown");
        this.picture = new Plot(OVERVIEW_HEIGHT, "");
    }

    details() {
        return [];
    }

    timeAt(x) {
        return outline.axis.startUs + x / view.width * outline.axis.lengthUs;
    }

    x(timeUs) {
        return (timeUs - outline.axis.startUs) / outline.axis.lengthUs * view.width;
    }

    /** The sums of all tracks' rates; they only change with the width. */
    rates() {
        if (this.ratesWidth !== view.width) {
            const windowUs = windowOf(outline.axis.lengthUs);
            this.ratesWidth = view.width;
            this.known = [];
            for (let x = 0; x <= view.width; x += 2) {
                this.known.push(this.lanes.reduce((sum, lane) =>
                    sum + rateAt(lane.row, this.timeAt(x), windowUs), 0));
            }
        }
        return this.known;
    }

    /** Everything except the frame, which is the only part that changes with the view. */
    drawPicture() {
        const {picture} = this;
        picture.fit(view.width);
        const rates = this.rates();
        const top = Math.max(1, ...rates);
        picture.rectangle(colours.ground, 0, 0, view.width, OVERVIEW_HEIGHT);
        rates.forEach((rate, i) => {
            const height = rate / top * (OVERVIEW_HEIGHT - 6);
            picture.rectangle(colours.muted, i * 2, OVERVIEW_HEIGHT - height, 2, height);
        });
        for (const finding of timedFindings.filter((each) => !isWide(each) && isShown("findings"))) {
            const left = this.x(finding.fromUs);
            picture.rectangle(findingColour(finding), left - 1, 0,
                Math.max(3, this.x(finding.toUs) - left), OVERVIEW_HEIGHT);
        }
    }

    draw() {
        const shows = [view.width, window.devicePixelRatio, colours.ground, isShown("findings")].join();
        if (this.shows !== shows) {
            this.shows = shows;
            this.drawPicture();
        }
        this.plot.context.drawImage(this.picture.canvas, 0, 0, view.width, OVERVIEW_HEIGHT);
        this.drawFrame();
    }

    drawFrame() {
        const {plot} = this;
        const left = this.x(view.startUs);
        const width = Math.max(4, this.x(endOfView()) - left);
        plot.context.globalAlpha = 0.6;
        plot.rectangle(colours.paper, 0, 0, left, OVERVIEW_HEIGHT);
        plot.rectangle(colours.paper, left + width, 0, view.width, OVERVIEW_HEIGHT);
        plot.context.globalAlpha = 1;
        plot.context.strokeStyle = colours.ink;
        plot.context.lineWidth = 2;
        plot.context.strokeRect(left + 1, 1, Math.max(2, width - 2), OVERVIEW_HEIGHT - 2);
    }

    /** Moves this place to the middle of the view. */
    moveTo(x) {
        setView(this.timeAt(x) - view.lengthUs / 2, view.lengthUs);
    }

    at(x) {
        return {timeUs: null, text: seconds(this.timeAt(x))};
    }
}
