// SPDX-License-Identifier: Apache-2.0
// Round times along the axis.

const TICK_DISTANCE = 84;

const stepFor = (leastUs) => {
    const steps = outline.axis.stepsUs;
    let step = steps.find((candidate) => candidate >= leastUs) ?? steps.at(-1);
    while (step < leastUs) {
        step *= 10;
    }
    // Steps in the list are those of people; below them, of ten.
    while (step === steps[0] && step / 10 >= leastUs) {
        return 10 ** Math.ceil(Math.log10(leastUs));
    }
    return step;
};

const axisStep = () => stepFor(view.lengthUs / view.width * TICK_DISTANCE);

const axisTimes = () => {
    const step = axisStep();
    const first = Math.ceil(view.startUs / step);
    const times = [];
    // Times of a broken file may be too large for a difference of one step.
    for (let i = 0; i <= view.width / TICK_DISTANCE + 1 && (first + i) * step <= endOfView(); ++i) {
        times.push((first + i) * step);
    }
    return times;
};

class AxisPanel {
    constructor() {
        this.title = "Time";
        this.plot = new Plot(24, "Times of the part shown");
        this.className = "axis";
    }

    details() {
        return [];
    }

    draw() {
        const {plot} = this;
        plot.clear();
        const step = axisStep();
        this.labels = axisTimes().map((timeUs) => clockText(timeUs, step));
        plot.context.font = "11px system-ui, sans-serif";
        axisTimes().forEach((timeUs, i) => {
            const half = plot.context.measureText(this.labels[i]).width / 2;
            const x = Math.min(view.width - half - 2, Math.max(half + 2, xOf(timeUs)));
            plot.text(this.labels[i], x, 16, {align: "center"});
        });
    }

    at(x) {
        return {timeUs: timeAt(x), text: seconds(timeAt(x))};
    }
}
