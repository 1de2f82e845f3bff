// SPDX-License-Identifier: Apache-2.0
// Keys while the chart has the focus: going from packet to packet, and moving.

const walk = {lane: 0, index: -1};

const showWalk = () => {
    const lane = film.lanes[walk.lane];
    const {row} = lane;
    reveal(row.begins[walk.index]);
    const spot = {timeUs: row.begins[walk.index], lane, index: walk.index,
        text: packetLines(lane, {index: walk.index, others: 0})};
    selection.spot = spot;
    const panel = chart.panels.find((each) => each.lane === lane);
    const box = panel.plot.canvas.getBoundingClientRect();
    showTooltip(spot.text, box.left + xOf(spot.timeUs), box.top + 30);
    say(spot.text);
    requestDraw();
};

const step = (by) => {
    const count = film.lanes[walk.lane]?.row.count ?? 0;
    if (count > 0) {
        const from = walk.index < 0 && by < 0 ? 1 : walk.index;
        walk.index = Math.min(count - 1, Math.max(0, from + by));
        showWalk();
    }
};

const changeLane = (by) => {
    const lane = film.lanes[walk.lane + by];
    if (lane && lane.row.count > 0) {
        const row = film.lanes[walk.lane].row;
        const timeUs = row.begins[Math.max(0, walk.index)] ?? view.startUs;
        Object.assign(walk, {lane: walk.lane + by, index: lane.row.near(timeUs)});
        showWalk();
    }
};

const measureHere = () => {
    const timeUs = selection.spot?.timeUs ?? timeAt(view.width / 2);
    if (measured.fromUs === null || measured.toUs !== null) {
        beginMeasure(timeUs);
        say(`Measuring from ${seconds(timeUs)}`);
    } else {
        measureTo(timeUs);
        say(measureRow.textContent);
    }
};

const leave = () => {
    pointNowhere();
    endMeasure();
    leaveFinding();
    pin(null);
};

const PAGE_PART = 0.8;

const keyActions = {
    ArrowRight: () => step(1),
    ArrowLeft: () => step(-1),
    ArrowDown: () => changeLane(1),
    ArrowUp: () => changeLane(-1),
    PageDown: () => pan(view.width * PAGE_PART),
    PageUp: () => pan(-view.width * PAGE_PART),
    Home: () => setView(outline.axis.startUs, view.lengthUs),
    End: () => setView(Infinity, view.lengthUs),
    "+": () => zoom(0.5),
    "=": () => zoom(0.5),
    "-": () => zoom(2),
    0: () => zoomAll(),
    Enter: () => pin(selection.spot),
    m: measureHere,
    f: () => chooseNextFinding(1),
    F: () => chooseNextFinding(-1),
    g: () => document.getElementById("goto").focus(),
    Escape: leave,
};

const listenToKeys = () => {
    chart.element.addEventListener("keydown", (event) => {
        const isPlain = !event.ctrlKey && !event.metaKey && !event.altKey;
        if (event.target === chart.element && isPlain && keyActions[event.key]) {
            event.preventDefault();
            keyActions[event.key]();
        }
    });
    chart.element.addEventListener("blur", pointNowhere);
};
