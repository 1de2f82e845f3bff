// SPDX-License-Identifier: Apache-2.0
// A measured span of time: its length and its contents.

const measured = {fromUs: null, toUs: null};
const measureRow = document.getElementById("measured");

const measureTexts = (fromUs, toUs) => film.lanes
    .filter((lane) => isShown(`track${lane.track}`)).map((lane) => {
        const [from, end] = lane.row.range(fromUs, toUs);
        const bytes = lane.row.bytesBefore[end] - lane.row.bytesBefore[from];
        const bits = (lane.row.bytesUpTo(toUs) - lane.row.bytesUpTo(fromUs)) * 8e6 / (toUs - fromUs);
        return `${lane.name}: ${counted(end - from, "packet")}, ${bytesText(bytes)}, ${shortRate(bits)}`;
    });

const showMeasure = () => {
    const isMeasured = measured.toUs !== null && measured.toUs !== measured.fromUs;
    measureRow.hidden = !isMeasured;
    if (isMeasured) {
        const [fromUs, toUs] = [measured.fromUs, measured.toUs].sort((a, b) => a - b);
        const lines = [`${lengthText(toUs - fromUs)}, from ${seconds(fromUs)} to ${seconds(toUs)}`,
            ...measureTexts(fromUs, toUs)];
        measureRow.querySelector("ul").replaceChildren(...lines.map((line) => make("li", {}, line)));
    }
    requestDraw();
};

const beginMeasure = (timeUs) => {
    Object.assign(measured, {fromUs: timeUs, toUs: null});
    showMeasure();
};

const measureTo = (timeUs) => {
    measured.toUs = timeUs;
    showMeasure();
};

const endMeasure = () => beginMeasure(null);

const drawMeasure = (plot) => {
    if (measured.toUs === null) {
        return;
    }
    const [left, right] = [xOf(measured.fromUs), xOf(measured.toUs)].sort((a, b) => a - b);
    plot.context.globalAlpha = 0.18;
    plot.rectangle(colours.measure, left, 0, right - left, plot.height);
    plot.context.globalAlpha = 1;
    plot.rectangle(colours.measure, left - 0.5, 0, 1, plot.height);
    plot.rectangle(colours.measure, right - 0.5, 0, 1, plot.height);
};
