// SPDX-License-Identifier: Apache-2.0
// Mouse, touch pad and fingers.

const TAP_DISTANCE = 8;
const WHEEL_STEP = 240;

const pointers = new Map();
const grip = {mode: null, startX: 0, lastX: 0, spread: 0};

const plotX = (clientX) =>
    Math.min(view.width, Math.max(0, clientX - chart.panels[0].plot.canvas.getBoundingClientRect().left));

const spreadOf = () => {
    const [one, other] = [...pointers.values()];
    return {distance: Math.max(20, Math.hypot(one.x - other.x, one.y - other.y)),
        middle: plotX((one.x + other.x) / 2)};
};

const modeOf = (event, under) => {
    if (under?.panel.className === "overview") {
        return "overview";
    }
    return event.shiftKey || measuresByDrag() ? "measure" : "pan";
};

const measuresByDrag = () =>
    document.getElementById("measure").getAttribute("aria-pressed") === "true";

const grab = (event) => {
    const under = panelUnder(event.clientX, event.clientY);
    if (event.button !== 0 || !under) {
        return;
    }
    pointers.set(event.pointerId, {x: event.clientX, y: event.clientY});
    if (pointers.size === 2) {
        Object.assign(grip, {mode: "pinch", ...spreadOf()});
        return;
    }
    Object.assign(grip, {mode: modeOf(event, under), startX: event.clientX, startY: event.clientY,
        lastX: event.clientX, hasMoved: false});
    if (grip.mode === "measure") {
        beginMeasure(timeAt(under.x));
    } else if (grip.mode === "overview") {
        under.panel.moveTo(under.x);
    }
};

const pinch = () => {
    const now = spreadOf();
    zoom(grip.distance / now.distance, grip.middle);
    pan(grip.middle - now.middle);
    Object.assign(grip, now);
};

const drag = (event) => {
    const moved = Math.hypot(event.clientX - grip.startX, event.clientY - grip.startY);
    grip.hasMoved ||= moved > (event.pointerType === "mouse" ? 3 : TAP_DISTANCE);
    if (!grip.hasMoved) {
        return;
    }
    selection.spot = null;
    hideTooltip();
    if (grip.mode === "measure") {
        measureTo(timeAt(plotX(event.clientX)));
    } else if (grip.mode === "overview") {
        chart.panels[0].moveTo(plotX(event.clientX));
    } else {
        chart.element.classList.add("moving");
        pan(grip.lastX - event.clientX);
        grip.lastX = event.clientX;
    }
};

const movePointer = (event) => {
    if (pointers.has(event.pointerId)) {
        pointers.set(event.pointerId, {x: event.clientX, y: event.clientY});
    }
    if (grip.mode === "pinch" && pointers.size === 2) {
        pinch();
    } else if (grip.mode && grip.mode !== "pinch") {
        drag(event);
    } else if (!grip.mode && event.pointerType === "mouse") {
        pointAt(event.clientX, event.clientY);
    }
};

/** A click or a tap pins the packet there, or goes to the finding. */
const choose = (event) => {
    pointAt(event.clientX, event.clientY);
    if (selection.spot?.finding) {
        chooseFinding(selection.spot.finding.number);
    } else if (selection.spot?.lane) {
        Object.assign(walk, {lane: selection.spot.lane.index, index: selection.spot.index});
        pin(selection.spot);
    }
};

const release = (event) => {
    if (!pointers.delete(event.pointerId)) {
        return;
    }
    const wasTap = event.type === "pointerup" && !grip.hasMoved && grip.mode === "pan";
    // With the second finger of a pinch, dragging ends.
    grip.mode = null;
    chart.element.classList.remove("moving");
    if (wasTap) {
        choose(event);
    }
};

const turnWheel = (event) => {
    const under = panelUnder(event.clientX, event.clientY);
    if (!under) {
        return;
    }
    const isStrip = ["overview", "axis"].includes(under.panel.className);
    const sideways = event.shiftKey ? event.deltaY || event.deltaX : event.deltaX;
    if (event.ctrlKey || event.metaKey || (isStrip && !event.shiftKey && event.deltaY !== 0)) {
        event.preventDefault();
        zoom(2 ** Math.max(-1, Math.min(1, event.deltaY / WHEEL_STEP)), under.x);
    } else if (sideways !== 0) {
        event.preventDefault();
        pan(sideways);
    }
};

const listenToPointers = () => {
    chart.element.addEventListener("pointerdown", grab);
    window.addEventListener("pointermove", movePointer);
    window.addEventListener("pointerup", release);
    window.addEventListener("pointercancel", release);
    chart.element.addEventListener("pointerleave", () => grip.mode || pointNowhere());
    chart.element.addEventListener("wheel", turnWheel, {passive: false});
};
