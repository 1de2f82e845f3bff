// SPDX-License-Identifier: Apache-2.0
// The panels one below the other, drawn together at most once a frame.

const chart = {
    panels: [],
    element: document.getElementById("chart"),
    isWaiting: false,
    /** How long each of the last drawings took, in ms. */
    drawTimes: [],
};

const panelElement = (panel) => {
    panel.details_ = make("div", {class: "details"});
    panel.names = make("div", {class: "names"},
        make("div", {class: "title"}, panel.title), panel.details_, ...badgesOf(panel));
    if (panel.lane) {
        panel.names.firstChild.prepend(make("span", {class: `key ${panel.lane.colour}`}));
    }
    if (panel.side) {
        panel.names.append(make("div", {class: "side"}, panel.side.canvas));
    }
    panel.frame = make("div", {class: "plot"}, panel.plot.canvas);
    panel.element = make("div", {class: `panel ${panel.className}`}, panel.names, panel.frame);
    return panel.element;
};

const buildChart = () => {
    const {lanes, refused} = film;
    chart.panels = [
        new OverviewPanel(lanes),
        new AxisPanel(),
        ...(findings.length > 0 ? [new FindingPanel()] : []),
        ...lanes.map((lane) => new LanePanel(lane)),
        ...refused.map((stream) => new RefusedPanel(stream)),
        ...syncPanels(lanes),
        new RatePanel(lanes),
        new PositionPanel(lanes, refused),
    ];
    chart.element.replaceChildren(...chart.panels.map(panelElement));
    chart.panels.forEach((panel) => {
        panel.isInWindow = true;
        windowWatch.observe(panel.element);
    });
};

/** Panels outside of the window are drawn when they come into it. */
const windowWatch = new IntersectionObserver((changes) => {
    for (const {target, isIntersecting} of changes) {
        chart.panels.find((panel) => panel.element === target).isInWindow = isIntersecting;
    }
    requestDraw();
}, {rootMargin: "50px"});

const drawForPrinting = () => {
    chart.panels.forEach((panel) => {
        panel.isInWindow = true;
    });
    drawAll();
};

const isVisible = (panel) => !panel.seriesName || isShown(panel.seriesName);

const drawPanel = (panel) => {
    panel.element.hidden = !isVisible(panel);
    if (panel.element.hidden || !panel.isInWindow) {
        return;
    }
    const text = panel.details().join("\n");
    if (panel.details_.textContent !== text) {
        panel.details_.textContent = text;
    }
    panel.draw(litIn(panel));
    if (panel.className !== "overview") {
        drawMeasure(panel.plot);
        drawCursor(panel.plot);
    }
};

const drawAll = () => {
    const begin = performance.now();
    chart.isWaiting = false;
    chart.panels.forEach(drawPanel);
    chart.drawTimes.push(performance.now() - begin);
    chart.drawTimes.splice(0, chart.drawTimes.length - 1000);
};

const requestDraw = () => {
    if (!chart.isWaiting) {
        chart.isWaiting = true;
        requestAnimationFrame(drawAll);
    }
};

const fitChart = () => {
    const shown = chart.panels.find((panel) => !panel.element.hidden);
    view.width = Math.max(100, shown.frame.clientWidth);
    for (const panel of chart.panels) {
        panel.plot.fit(view.width);
        panel.side?.fit(SIDE_WIDTH);
    }
    drawAll();
};

/** The panel under a point of the window, and the position in its plot. */
const panelUnder = (clientX, clientY) => {
    for (const panel of chart.panels.filter((each) => !each.element.hidden)) {
        const box = panel.plot.canvas.getBoundingClientRect();
        if (clientY >= box.top && clientY < box.bottom && clientX >= box.left - 1 &&
            clientX <= box.right + 1) {
            return {panel, x: clientX - box.left, y: clientY - box.top};
        }
    }
    return null;
};
