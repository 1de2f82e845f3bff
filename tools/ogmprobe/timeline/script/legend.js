// SPDX-License-Identifier: Apache-2.0
// An entry for each series that the file has; they are switches.

const legendEntries = () => {
    const {lanes} = film;
    const some = (holds) => lanes.some(holds);
    const hasType = (type) => some((lane) => lane.kind === "video" &&
        lane.row.kinds.some((kind) => (kind & TYPE_BITS) === type));
    const typeName = (type) => [...new Set(lanes.filter((lane) => lane.kind === "video")
        .map((lane) => lane.typeNames[type]).filter(Boolean))].join(", ") || "type unknown";
    const types = ["type-I", "type-P", "type-B", "type-U"];
    return [
        ...types.map((key, type) => [`type${type}`, key, typeName(type), hasType(type)]),
        ["sync", "head", "sync frame", some((lane) => lane.marksSyncs)],
        ["lost", "lost", "lost", some((lane) => lane.lost.count > 0)],
        ["gaps", "gap", "gap", some((lane) => lane.gaps > 0)],
        ["shared", "repeated", "equal times", some((lane) => lane.shared.fromUs.length > 0)],
        ["backward", "backward", "backward step", some((lane) => lane.backward.length > 0)],
        ["findings", "finding", "finding", findings.length > 0],
        ["seeks", "seek", "read by a seek", outline.seeks.length > 0],
        ...lanes.map((lane) => [`track${lane.track}`, lane.colour, lane.title, lanes.length > 1]),
        ["byPages", "total", "times", some((lane) => lane.byPages.isKnown)],
        ["byVideo", "total", "audio to video", some((lane) => lane.byVideo.isKnown)],
        ["bitrate", "total", "bitrate", true],
        ["position", "total", "file position", true],
    ].filter(([, , , isThere]) => isThere);
};

const legendButtons = new Map();

const showSwitches = () => {
    for (const [name, button] of legendButtons) {
        button.setAttribute("aria-pressed", String(isShown(name)));
    }
};

const buildLegend = () => {
    const buttons = legendEntries().map(([name, key, text]) => {
        const button = make("button", {type: "button", "aria-pressed": "true"},
            make("span", {class: `key ${key}`}), text);
        button.addEventListener("click", () => switchSeries(name));
        legendButtons.set(name, button);
        return button;
    });
    document.getElementById("legend").replaceChildren(...buttons);
};
