// SPDX-License-Identifier: Apache-2.0
// Fits the drawing into the window, zooms it, and tells what the mouse or the keys point at.
(() => {
    "use strict";

    const data = JSON.parse(document.getElementById("data").textContent);
    const figure = document.getElementById("figure");
    const tooltip = document.getElementById("tooltip");
    const svg = figure.querySelector("svg.timeline");
    const times = svg.querySelector(".times");
    const height = svg.viewBox.baseVal.height;

    const leastWidth = 960;
    const deepestZoom = 200;
    const tickDistance = 84;
    const typeNames = {I: "I picture", P: "P picture", B: "B picture"};

    // The part of the time axis that is shown: where it begins, and how much of the whole it is.
    const view = {from: 0, part: 1};
    let plotWidth = data.plot.width;

    const svgElement = (name, attributes, parent) => {
        const element = document.createElementNS("http://www.w3.org/2000/svg", name);
        for (const [key, value] of Object.entries(attributes)) {
            element.setAttribute(key, value);
        }
        return parent.appendChild(element);
    };
    const cursor = svgElement("path", {class: "cursor"}, svg);

    // --- Packets as groups of the same time, or bins, in the order of time

    const summed = (differences) => {
        let sum = 0;
        return differences.map((difference) => (sum += difference));
    };

    const packetSpots = (lane) => {
        const position = summed(lane.positions);
        const groups = new Map();
        summed(lane.times).forEach((timeUs, i) => {
            if (!groups.has(timeUs)) {
                groups.set(timeUs, {timeUs, members: [], height: 0});
            }
            const group = groups.get(timeUs);
            group.height += lane.sizes[i];
            group.members.push({number: i, timeUs, size: lane.sizes[i], top: group.height,
                kind: lane.kinds[i], position: position[i]});
        });
        return [...groups.values()].sort((a, b) => a.timeUs - b.timeUs);
    };

    const binSpots = (lane) => lane.bins.map(([number, packets, largest, bytes, syncs, position]) => {
        const lengthUs = data.axis.lengthUs / data.binCount;
        const timeUs = data.axis.startUs + (number + 0.5) * lengthUs;
        return {timeUs, members: [{timeUs, lengthUs, packets, largest, bytes, syncs, position}]};
    });

    const lanes = data.lanes.map((lane) => ({...lane,
        spots: lane.bins ? binSpots(lane) : packetSpots(lane)}));

    const nearestSpot = (spots, timeUs) => {
        let low = 0;
        let high = spots.length - 1;
        while (low < high) {
            const middle = (low + high) >> 1;
            if (spots[middle].timeUs < timeUs) {
                low = middle + 1;
            } else {
                high = middle;
            }
        }
        const before = spots[low - 1];
        return before && timeUs - before.timeUs < spots[low].timeUs - timeUs ? low - 1 : low;
    };

    // --- Texts

    const seconds = (timeUs) => `${(timeUs / 1e6).toFixed(6)} s`;
    const counted = (number, noun) =>
        `${number.toLocaleString("en")} ${noun}${number === 1 ? "" : "s"}`;
    const bytes = (size) => counted(size, "byte");
    const rate = (bits) => `${(bits / 1000).toFixed(1)} kbit/s`;

    const packetText = (lane, index, member) => {
        const isSync = member.kind === member.kind.toUpperCase();
        const type = typeNames[member.kind.toUpperCase()];
        const group = lane.spots[index];
        const next = lane.spots[index + 1];
        return [
            `${lane.name}, packet ${member.number}`,
            `time ${seconds(member.timeUs)}`,
            bytes(member.size) + (type ? `, ${type}` : "") + (isSync ? ", sync frame" : ""),
            `file read up to ${member.position.toLocaleString("en")}`,
            group.members.length > 1 ? `one of ${group.members.length} packets of this time` : "",
            next ? `next time ${seconds(next.timeUs - member.timeUs)} later` : "the last time",
        ].filter(Boolean).join("\n");
    };

    const binText = (lane, bin) => [
        `${lane.name}, ${counted(bin.packets, "packet")}`,
        `${seconds(bin.timeUs - bin.lengthUs / 2)} to ${seconds(bin.timeUs + bin.lengthUs / 2)}`,
        `${bytes(bin.bytes)}, the largest packet ${bytes(bin.largest)}`,
        counted(bin.syncs, "sync frame"),
        `file read up to ${bin.position.toLocaleString("en")}`,
    ].join("\n");

    const spotText = (lane, index, member) =>
        lane.bins ? binText(lane, member) : packetText(lane, index, member);

    const seekText = (seek) => [
        `Seek to ${seconds(seek.targetUs)}`,
        seek.landedUs === null ? "landed at the end"
            : `landed at ${seconds(seek.landedUs)}${seek.sync ? ", sync frame" : ""}`,
        `${counted(seek.reads, "read")}, ${bytes(seek.bytes)}`,
    ].join("\n");

    const bitrateText = (timeUs) => {
        const window = Math.floor((timeUs - data.bitrate.startUs) / data.bitrate.windowUs);
        if (!(window in data.bitrate.total)) {
            return "";
        }
        const fromUs = data.bitrate.startUs + window * data.bitrate.windowUs;
        return [`${seconds(fromUs)} to ${seconds(fromUs + data.bitrate.windowUs)}`,
            `all tracks ${rate(data.bitrate.total[window])}`,
            ...lanes.map((lane, i) => `${lane.name} ${rate(data.bitrate.lanes[i][window])}`),
        ].join("\n");
    };

    // --- Zoom

    const xOf = (timeUs) =>
        ((timeUs - data.axis.startUs) / data.axis.lengthUs - view.from) / view.part * plotWidth;
    const timeAt = (x) =>
        data.axis.startUs + (view.from + x / plotWidth * view.part) * data.axis.lengthUs;

    const tickLabel = (timeUs, stepUs) => {
        const decimals = Math.max(0, Math.ceil(6 - Math.log10(stepUs) - 1e-9));
        const total = Number((Math.abs(timeUs) / 1e6).toFixed(decimals));
        const minutes = Math.floor(total / 60);
        const hours = Math.floor(minutes / 60);
        const rest = (total - minutes * 60).toFixed(decimals)
            .padStart(decimals > 0 ? decimals + 3 : 2, "0");
        const front = hours > 0 ? `${hours}:${String(minutes % 60).padStart(2, "0")}` : minutes;
        return `${timeUs < 0 && total > 0 ? "-" : ""}${front}:${rest}`;
    };

    const stepFor = (leastUs) => {
        let step = data.axis.stepsUs.find((candidate) => candidate >= leastUs);
        for (step ??= data.axis.stepsUs.at(-1); step < leastUs;) {
            step *= 10;
        }
        return step;
    };

    const drawTimes = () => {
        const {top, bottom} = times.dataset;
        const step = stepFor(timeAt(tickDistance) - timeAt(0));
        const first = Math.ceil(timeAt(0) / step);
        times.replaceChildren();
        // Times of a broken file may be too large for a difference of one step.
        for (let i = 0; i <= plotWidth / tickDistance && (first + i) * step <= timeAt(plotWidth); ++i) {
            const x = xOf((first + i) * step);
            svgElement("path", {class: "grid", d: `M${x} ${top}V${bottom}`}, times);
            svgElement("text", {class: "label tick", x, y: Number(bottom) + 16}, times)
                .textContent = tickLabel((first + i) * step, step);
        }
    };

    const draw = () => {
        view.part = Math.min(1, Math.max(1 / deepestZoom, view.part));
        view.from = Math.min(1 - view.part, Math.max(0, view.from));
        const scale = plotWidth / data.plot.width / view.part;
        const left = -view.from * data.plot.width * scale;
        for (const group of svg.querySelectorAll(".zoom")) {
            group.setAttribute("transform", `translate(${left}) scale(${scale} 1)`);
        }
        for (const bar of svg.querySelectorAll("[data-spacing]")) {
            const width = bar.dataset.spacing * scale * 0.72;
            bar.setAttribute("stroke-width", Math.min(bar.dataset.widest, Math.max(1, width)));
        }
        drawTimes();
    };

    const fit = () => {
        const width = Math.max(leastWidth, figure.clientWidth);
        plotWidth = width - data.plot.left - data.plot.right;
        svg.setAttribute("viewBox", `0 0 ${width} ${height}`);
        svg.setAttribute("width", width);
        svg.setAttribute("height", height);
        for (const plot of svg.querySelectorAll("svg.plot")) {
            plot.setAttribute("width", plotWidth);
        }
        for (const labels of svg.querySelectorAll(".right")) {
            labels.setAttribute("transform", `translate(${data.plot.left + plotWidth})`);
        }
        draw();
    };

    const zoom = (factor, x = plotWidth / 2) => {
        const place = view.from + x / plotWidth * view.part;
        view.part = Math.min(1, Math.max(1 / deepestZoom, view.part * factor));
        view.from = place - x / plotWidth * view.part;
        hide();
        draw();
    };
    const zoomAll = () => zoom(1 / view.part);

    // --- Pointing

    const hide = () => {
        tooltip.hidden = true;
        cursor.setAttribute("d", "");
    };

    /** Shows the text beside a place in the plots, clear of the window's edges. */
    const show = (text, x, y) => {
        cursor.setAttribute("d", `M${data.plot.left + x} ${times.dataset.top}V${times.dataset.bottom}`);
        tooltip.textContent = text;
        tooltip.hidden = false;
        const frame = svg.getBoundingClientRect();
        const left = frame.left + data.plot.left + x + 14;
        const top = frame.top + y + 14;
        const overRight = left + tooltip.offsetWidth > window.innerWidth - 8;
        const overBottom = top + tooltip.offsetHeight > window.innerHeight - 8;
        tooltip.style.left = `${Math.max(8, overRight ? left - tooltip.offsetWidth - 28 : left)}px`;
        tooltip.style.top = `${Math.max(8, overBottom ? top - tooltip.offsetHeight - 28 : top)}px`;
    };

    /** Of the packets that stand on one another, the one at a height, 0 to 1. */
    const memberAt = (lane, spot, part) =>
        spot.members.find((member) => lane.bins || member.top >= part * lane.top) ||
        spot.members.at(-1);

    const pointAtLane = (panel, x, y) => {
        const lane = lanes[panel.dataset.lane];
        if (lane.spots.length === 0) {
            hide();
            return;
        }
        const index = nearestSpot(lane.spots, timeAt(x));
        const spot = lane.spots[index];
        const frame = svg.getBoundingClientRect();
        const base = panel.querySelector("path.base").getBoundingClientRect().top - frame.top;
        const topLabel = panel.querySelector("svg.plot").getBoundingClientRect().top - frame.top + 6;
        const member = memberAt(lane, spot, (base - y) / (base - topLabel));
        show(spotText(lane, index, member), xOf(spot.timeUs), y);
    };

    const pointAtPosition = (x, y) => {
        const near = (seek) => Math.abs(xOf(seek.targetUs) - x);
        const seek = data.seeks.reduce((best, other) =>
            best && near(best) <= near(other) ? best : other, null);
        const found = lanes.filter((lane) => lane.spots.length > 0).map((lane) => {
            const spot = lane.spots[nearestSpot(lane.spots, timeAt(x))];
            const last = spot.members.at(-1).position;
            return `${lane.name}: file read up to ${last.toLocaleString("en")}`;
        });
        const text = seek && near(seek) < 6 ? seekText(seek) : [seconds(timeAt(x)), ...found].join("\n");
        show(text, x, y);
    };

    const point = (event) => {
        const frame = svg.getBoundingClientRect();
        const x = event.clientX - frame.left - data.plot.left;
        const y = event.clientY - frame.top;
        const panel = event.target.closest(".panel");
        if (!panel || x < 0 || x > plotWidth) {
            hide();
        } else if (panel.classList.contains("lane")) {
            pointAtLane(panel, x, y);
        } else if (panel.classList.contains("position")) {
            pointAtPosition(x, y);
        } else {
            const text = bitrateText(timeAt(x));
            text ? show(text, x, y) : hide();
        }
    };

    // --- Keys: a walk through the packets

    const walk = {lane: 0, spot: 0, member: -1};

    const showWalk = () => {
        const lane = lanes[walk.lane];
        const spot = lane.spots[walk.spot];
        const x = xOf(spot.timeUs);
        if (x < 0 || x > plotWidth) {
            view.from += (x / plotWidth - 0.5) * view.part;
            draw();
        }
        const panel = svg.querySelectorAll(".panel.lane")[walk.lane].getBoundingClientRect();
        show(spotText(lane, walk.spot, spot.members[walk.member]), xOf(spot.timeUs),
            panel.top - svg.getBoundingClientRect().top + 30);
    };

    const step = (by) => {
        const spots = lanes[walk.lane]?.spots ?? [];
        if (spots.length === 0) {
            return;
        }
        walk.member += by;
        if (walk.member < 0 && walk.spot > 0) {
            walk.spot -= 1;
            walk.member = spots[walk.spot].members.length - 1;
        } else if (walk.member >= spots[walk.spot].members.length && walk.spot + 1 < spots.length) {
            walk.spot += 1;
            walk.member = 0;
        }
        walk.member = Math.max(0, Math.min(walk.member, spots[walk.spot].members.length - 1));
        showWalk();
    };

    const changeLane = (by) => {
        const lane = walk.lane + by;
        if (lanes[lane] && lanes[lane].spots.length > 0) {
            const timeUs = lanes[walk.lane].spots[walk.spot]?.timeUs ?? data.axis.startUs;
            Object.assign(walk, {lane, spot: nearestSpot(lanes[lane].spots, timeUs), member: 0});
            showWalk();
        }
    };

    const keys = {
        ArrowRight: () => step(1),
        ArrowLeft: () => step(-1),
        ArrowDown: () => changeLane(1),
        ArrowUp: () => changeLane(-1),
        "+": () => zoom(0.5),
        "-": () => zoom(2),
        0: zoomAll,
        Escape: hide,
    };

    figure.addEventListener("keydown", (event) => {
        if (keys[event.key] && !event.ctrlKey && !event.metaKey && !event.altKey) {
            event.preventDefault();
            keys[event.key]();
        }
    });

    // --- Mouse

    let grip = null;
    svg.addEventListener("pointerdown", (event) => {
        if (event.button === 0) {
            grip = {x: event.clientX, from: view.from};
        }
    });
    window.addEventListener("pointerup", () => {
        grip = null;
        figure.classList.remove("moving");
    });
    svg.addEventListener("pointermove", (event) => {
        if (grip && view.part < 1) {
            figure.classList.add("moving");
            view.from = grip.from - (event.clientX - grip.x) / plotWidth * view.part;
            hide();
            draw();
        } else {
            point(event);
        }
    });
    svg.addEventListener("pointerleave", hide);
    figure.addEventListener("blur", hide);
    svg.addEventListener("wheel", (event) => {
        if (event.ctrlKey || event.metaKey) {
            event.preventDefault();
            const x = event.clientX - svg.getBoundingClientRect().left - data.plot.left;
            zoom(event.deltaY < 0 ? 0.8 : 1.25, Math.min(plotWidth, Math.max(0, x)));
        }
    }, {passive: false});
    document.getElementById("zoom-in").addEventListener("click", () => zoom(0.5));
    document.getElementById("zoom-out").addEventListener("click", () => zoom(2));
    document.getElementById("zoom-all").addEventListener("click", zoomAll);

    new ResizeObserver(fit).observe(figure);
    fit();
})();
