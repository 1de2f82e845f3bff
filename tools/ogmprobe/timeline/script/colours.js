// SPDX-License-Identifier: Apache-2.0
// Colours are those of the style sheet, for light and dark.

const colours = {};

const COLOUR_NAMES = ["paper", "ground", "ink", "muted", "grid", "type-i", "type-p", "type-b",
    "unknown", "video0", "video1", "video2", "video3", "audio0", "audio1", "audio2", "audio3", "gap",
    "repeated", "backward", "seek", "area", "lost", "finding", "usual", "measure"];

const readColours = () => {
    const style = getComputedStyle(document.documentElement);
    for (const name of COLOUR_NAMES) {
        colours[name] = style.getPropertyValue(`--${name}`).trim();
    }
};

const trackColour = (lane) => colours[lane.colour] ?? colours.unknown;

const typeColours = (lane) => lane.kind === "video"
    ? [colours["type-i"], colours["type-p"], colours["type-b"], colours.unknown]
    : Array(TYPES).fill(trackColour(lane));
