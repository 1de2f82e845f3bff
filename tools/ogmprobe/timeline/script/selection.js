// SPDX-License-Identifier: Apache-2.0
// What the pointer is over, with the packets of the same time in all lanes, and the details of a
// pinned packet.

const selection = {spot: null, pinned: null};

const tooltip = document.getElementById("tooltip");
const pinnedRow = document.getElementById("pinned");

/** For screen readers: the results of keys and buttons. */
const say = (text) => {
    document.getElementById("said").textContent = text;
};

const typeText = (lane, kind) => lane.typeNames[kind & TYPE_BITS];

const packetLines = (lane, {index, others}) => {
    const {row} = lane;
    const file = row.order[index];
    const type = typeText(lane, row.kinds[index]);
    const same = upperBound(lane.shared.fromUs, row.times[file]) - 1;
    const isShared = same >= 0 && lane.shared.fromUs[same] === row.times[file];
    return [
        `${lane.name}, packet ${file}`,
        `time ${seconds(row.times[file])}${isShared ? ", which others have too" : ""}`,
        bytesText(row.sizes[index]) + (type ? `, ${type}` : "") +
            (row.kinds[index] & SYNC_BIT ? ", sync frame" : ""),
        `file read up to ${lane.positions[file].toLocaleString("en")}`,
        others > 0 ? `the largest here; zoom in for ${counted(others, "other")}` : "",
    ].filter(Boolean).join("\n");
};

const pageText = (page) => {
    if (!(page >= 0)) {
        return "";
    }
    const {pages} = film;
    const time = pages.hasTime[page] ? `, time ${seconds(pages.times[page])}` : "";
    return `page ${pages.sequences[page]} at offset ${pages.offsets[page].toLocaleString("en")}${time}`;
};

const digestText = (lane, file) => {
    const count = outline.digestBytes;
    const bytes = lane.digests.subarray(file * count, (file + 1) * count);
    const text = Array.from(bytes, (byte) => byte.toString(16).padStart(2, "0")).join("");
    return count < 8 ? `${text}\u2026` : text;
};

/** The packet to highlight in the panel: the one under the pointer; in other lanes that of its time. */
const litIn = (panel) => {
    const spot = selection.spot ?? selection.pinned;
    if (!spot || spot.timeUs === null) {
        return null;
    }
    const isOwn = !panel.lane || panel.lane === spot.lane;
    if (isOwn) {
        return spot.lane ? {lane: spot.lane, index: spot.index} : null;
    }
    const index = panel.lane.row.near(spot.timeUs);
    return index < 0 ? null : {lane: panel.lane, index};
};

const drawCursor = (plot) => {
    const spot = selection.spot ?? selection.pinned;
    if (spot && spot.timeUs !== null) {
        plot.context.globalAlpha = 0.5;
        plot.rectangle(colours.ink, xOf(spot.timeUs), 0, 1, plot.height);
        plot.context.globalAlpha = 1;
    }
};

const hideTooltip = () => {
    tooltip.hidden = true;
};

/** Beside the place, within the window. */
const showTooltip = (text, clientX, clientY) => {
    tooltip.textContent = text;
    tooltip.hidden = false;
    const left = clientX + 14;
    const top = clientY + 14;
    const overRight = left + tooltip.offsetWidth > window.innerWidth - 8;
    const overBottom = top + tooltip.offsetHeight > window.innerHeight - 8;
    tooltip.style.left = `${Math.max(8, overRight ? left - tooltip.offsetWidth - 28 : left)}px`;
    tooltip.style.top = `${Math.max(8, overBottom ? top - tooltip.offsetHeight - 28 : top)}px`;
};

const pointAt = (clientX, clientY) => {
    const under = panelUnder(clientX, clientY);
    selection.spot = under?.panel.at(under.x, under.y) ?? null;
    if (selection.spot?.text) {
        showTooltip(selection.spot.text, clientX, clientY);
    } else {
        hideTooltip();
    }
    requestDraw();
};

const pointNowhere = () => {
    selection.spot = null;
    hideTooltip();
    requestDraw();
};

const linesOfPage = (page) => film.pages.lines.get(page) ?? [];

/** The time by the pages, and the difference to the plug-in's time. */
const timeRows = (lane, index, file) => {
    if (!lane.pageTimes.known[file]) {
        return [];
    }
    const {least, most} = lane.pageTimes;
    const late = lane.byPages.of(index, index + 1);
    const audio = lane.byVideo.known[index] ? lane.byVideo.of(index, index + 1) : null;
    return [
        ["Time by the pages", least[file] === most[file] ? seconds(least[file])
            : `${seconds(least[file])} to ${seconds(most[file])}`],
        ["Against the pages", lateText(late.least, late.most)],
        ...(audio ? [["Against the video", lateText(audio.least, audio.most)]] : []),
    ];
};

const rowOf = ({lane, index}) => {
    const {row} = lane;
    const file = row.order[index];
    const page = lane.pages[file] - 1;
    const next = index + 1 < row.count ? row.times[row.order[index + 1]] - row.times[file] : null;
    return [
        ["Packet", `${file} of ${lane.name}`],
        ["Time", seconds(row.times[file])],
        ["Place in time", `${index}`],
        ...timeRows(lane, index, file),
        ["Until the next", next === null ? "the last" : seconds(next)],
        ["Size", bytesText(row.sizes[index])],
        ["Type", typeText(lane, row.kinds[index]) || "-"],
        ["Sync frame", row.kinds[index] & SYNC_BIT ? "yes" : "no"],
        ["Digest", digestText(lane, file)],
        ["Page", pageText(page) || "unknown"],
        ["File read up to", lane.positions[file].toLocaleString("en")],
        ...linesOfPage(page).map((line) => ["Log at its page", line]),
    ];
};

const pin = (spot) => {
    selection.pinned = spot?.lane ? {lane: spot.lane, index: spot.index, timeUs: spot.timeUs} : null;
    pinnedRow.hidden = !selection.pinned;
    if (selection.pinned) {
        const rows = rowOf(selection.pinned).map(([name, value]) =>
            make("div", {}, make("dt", {}, name), make("dd", {}, value)));
        pinnedRow.querySelector("dl").replaceChildren(...rows);
    }
    view.changed();
};
