// SPDX-License-Identifier: Apache-2.0
// Elements and canvases.

const make = (name, attributes = {}, ...children) => {
    const element = document.createElement(name);
    for (const [key, value] of Object.entries(attributes)) {
        element.setAttribute(key, value);
    }
    element.append(...children);
    return element;
};

/** A canvas whose coordinates are pixels of the page, whatever the screen's resolution is. */
class Plot {
    constructor(height, label) {
        this.height = height;
        this.width = 0;
        this.canvas = make("canvas", {role: "img", "aria-label": label});
        this.canvas.style.height = `${height}px`;
        this.context = this.canvas.getContext("2d");
    }

    fit(width) {
        const scale = window.devicePixelRatio || 1;
        this.width = width;
        this.canvas.width = Math.round(width * scale);
        this.canvas.height = Math.round(this.height * scale);
        this.context.setTransform(scale, 0, 0, scale, 0, 0);
    }

    /** An empty background with the lines of the time axis. */
    clear() {
        const {context, width, height} = this;
        context.globalAlpha = 1;
        context.fillStyle = colours.ground;
        context.fillRect(0, 0, width, height);
        context.fillStyle = colours.grid;
        for (const timeUs of axisTimes()) {
            context.fillRect(Math.round(xOf(timeUs)), 0, 1, height);
        }
    }

    rectangle(colour, left, top, width, height) {
        this.context.fillStyle = colour;
        this.context.fillRect(left, top, width, height);
    }

    /** A small text on its own background. */
    text(text, x, y, {colour = colours.muted, align = "left"} = {}) {
        const {context} = this;
        context.font = "11px system-ui, sans-serif";
        const width = context.measureText(text).width;
        const left = align === "right" ? x - width : align === "center" ? x - width / 2 : x;
        context.globalAlpha = 0.85;
        this.rectangle(colours.ground, left - 2, y - 11, width + 4, 14);
        context.globalAlpha = 1;
        context.fillStyle = colour;
        context.fillText(text, left, y);
    }

    /** Transparent slanted lines over an area. */
    hatch(colour, left, top, width, height) {
        const {context} = this;
        const right = Math.min(this.width, left + width);
        const from = Math.max(0, left);
        if (right <= from) {
            return;
        }
        context.save();
        context.globalAlpha = 0.16;
        this.rectangle(colour, from, top, right - from, height);
        context.globalAlpha = 0.75;
        context.beginPath();
        context.rect(from, top, right - from, height);
        context.clip();
        context.strokeStyle = colour;
        context.lineWidth = 1;
        context.beginPath();
        // On a grid that moves with the area.
        const step = 8;
        for (let x = left + Math.floor((from - left - height) / step) * step; x < right; x += step) {
            context.moveTo(x, top + height);
            context.lineTo(x + height, top);
        }
        context.stroke();
        context.restore();
    }

    line(colour, width, points) {
        const {context} = this;
        context.strokeStyle = colour;
        context.lineWidth = width;
        context.lineJoin = "round";
        context.beginPath();
        points.forEach(([x, y], i) => i === 0 ? context.moveTo(x, y) : context.lineTo(x, y));
        context.stroke();
    }
}

const CROWDED = 4;

/** Whether marks at the rising times would touch each other. */
const isCrowded = (times) => {
    const count = upperBound(times, endOfView()) - lowerBound(times, view.startUs);
    return count * CROWDED > view.width;
};

/** Calls with the place of each visible time; the times must rise. For marks that are not crowded. */
const forEachMark = (times, draw) => {
    const end = upperBound(times, timeAt(view.width + 4));
    for (let i = lowerBound(times, timeAt(-4)); i < end; ++i) {
        draw(xOf(times[i]), i);
    }
};
