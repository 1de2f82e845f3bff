// SPDX-License-Identifier: Apache-2.0
// The part of the time axis that is shown.

const view = {
    startUs: outline.axis.startUs,
    lengthUs: outline.axis.lengthUs,
    /** Of all plots, in pixels of the page. */
    width: 1000,
    /** Called after each change. */
    changed: () => {},
};

const SHORTEST_VIEW_US = 100;

const setView = (startUs, lengthUs) => {
    const whole = outline.axis;
    view.lengthUs = Math.min(whole.lengthUs, Math.max(SHORTEST_VIEW_US, lengthUs));
    const lastUs = whole.startUs + whole.lengthUs - view.lengthUs;
    view.startUs = Math.min(lastUs, Math.max(whole.startUs, startUs));
    view.changed();
};

const xOf = (timeUs) => (timeUs - view.startUs) / view.lengthUs * view.width;
const timeAt = (x) => view.startUs + x / view.width * view.lengthUs;
const endOfView = () => view.startUs + view.lengthUs;

/** The time at x stays where it is. */
const zoom = (factor, x = view.width / 2) => {
    const timeUs = timeAt(x);
    const lengthUs = Math.min(outline.axis.lengthUs, view.lengthUs * factor);
    setView(timeUs - x / view.width * lengthUs, lengthUs);
};

const pan = (byPixels) => setView(view.startUs + byPixels / view.width * view.lengthUs, view.lengthUs);

const zoomAll = () => glide(outline.axis.startUs, outline.axis.lengthUs);

const wantsNoMotion = matchMedia("(prefers-reduced-motion: reduce)");
const GLIDE_MS = 180;

/** Moves the view there, animated unless the reader prefers reduced motion. */
const glide = (startUs, lengthUs) => {
    cancelAnimationFrame(glide.frame);
    if (wantsNoMotion.matches) {
        setView(startUs, lengthUs);
        return;
    }
    const from = {startUs: view.startUs, lengthUs: view.lengthUs};
    const begin = performance.now();
    const step = (now) => {
        const part = Math.min(1, Math.max(0, (now - begin) / GLIDE_MS));
        const eased = part * (2 - part);
        setView(from.startUs + (startUs - from.startUs) * eased,
            from.lengthUs + (lengthUs - from.lengthUs) * eased);
        if (part < 1) {
            glide.frame = requestAnimationFrame(step);
        }
    };
    glide.frame = requestAnimationFrame(step);
};

/** Shows the span between the two times, with a margin. */
const glideToSpan = (fromUs, toUs, leastUs) => {
    const lengthUs = Math.max((toUs - fromUs) * 1.5, leastUs);
    glide((fromUs + toUs - lengthUs) / 2, lengthUs);
};

const reveal = (timeUs) => {
    const x = xOf(timeUs);
    if (x < 0 || x > view.width) {
        setView(timeUs - view.lengthUs / 2, view.lengthUs);
    }
};
