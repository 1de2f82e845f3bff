// SPDX-License-Identifier: Apache-2.0
// The address contains the view after "#", so that a link shows the same view.

const LINK_DELAY_MS = 250;

const link = {timer: 0, written: ""};

const linkOfView = () => {
    const parts = [];
    if (view.lengthUs < outline.axis.lengthUs) {
        parts.push(`from=${(view.startUs / 1e6).toFixed(6)}`, `to=${(endOfView() / 1e6).toFixed(6)}`);
    }
    if (hiddenSeries.size > 0) {
        parts.push(`off=${[...hiddenSeries].sort().join(",")}`);
    }
    if (selection.pinned) {
        const {lane, index} = selection.pinned;
        parts.push(`packet=${lane.track}.${lane.row.order[index]}`);
    }
    return parts.length > 0 ? `#${parts.join("&")}` : "";
};

const writeLink = () => {
    link.written = linkOfView();
    history.replaceState(null, "", link.written || location.pathname + location.search);
};

/** Not for each step of a movement, because browsers limit the number of changes. */
const writeLinkSoon = () => {
    clearTimeout(link.timer);
    link.timer = setTimeout(writeLink, LINK_DELAY_MS);
};

const packetOfLink = (text) => {
    const [track, file] = (text ?? "").split(".").map(Number);
    const lane = film.lanes.find((each) => each.track === track);
    const index = lane ? lane.row.order.indexOf(file) : -1;
    return index < 0 ? null : {lane, index, timeUs: lane.row.begins[index]};
};

const followLink = () => {
    const values = new URLSearchParams(location.hash.slice(1));
    hiddenSeries.clear();
    (values.get("off") ?? "").split(",").filter(Boolean).forEach((name) => hiddenSeries.add(name));
    const [fromUs, toUs] = ["from", "to"].map((name) => Number(values.get(name) ?? NaN) * 1e6);
    if (toUs > fromUs) {
        setView(fromUs, toUs - fromUs);
    } else {
        setView(outline.axis.startUs, outline.axis.lengthUs);
    }
    pin(packetOfLink(values.get("packet")));
};
