// SPDX-License-Identifier: Apache-2.0
// Starts everything after the numbers are unpacked.

const goTo = (text) => {
    const [from, to] = text.split(/\s+(?:to|-)\s+|\s*\.\.\s*/).map(parsedTime);
    const isSpan = to > from;
    document.getElementById("goto").setAttribute("aria-invalid", String(Number.isNaN(from)));
    if (Number.isNaN(from)) {
        say("That is no time");
    } else if (isSpan) {
        glide(from, to - from);
    } else {
        const lengthUs = Math.min(view.lengthUs, Math.max(outline.axis.lengthUs / 50, 1e6));
        glide(from - lengthUs / 2, lengthUs);
    }
};

const listenToButtons = () => {
    const onClick = (id, action) => document.getElementById(id).addEventListener("click", action);
    onClick("zoom-in", () => zoom(0.5));
    onClick("zoom-out", () => zoom(2));
    onClick("zoom-all", zoomAll);
    onClick("back", () => pan(-view.width / 2));
    onClick("forward", () => pan(view.width / 2));
    onClick("unpin", () => pin(null));
    onClick("unmeasure", endMeasure);
    onClick("leave-finding", leaveFinding);
    onClick("measure", ({currentTarget}) =>
        currentTarget.setAttribute("aria-pressed", String(!measuresByDrag())));
    document.getElementById("goto-form").addEventListener("submit", (event) => {
        event.preventDefault();
        goTo(document.getElementById("goto").value);
    });
};

const begin = async () => {
    fillFilm(await unpacked());
    readColours();
    buildChart();
    buildLegend();
    listFindings();
    view.changed = () => {
        showSwitches();
        writeLinkSoon();
        requestDraw();
    };
    listenToButtons();
    listenToKeys();
    listenToPointers();
    followLink();
    window.addEventListener("hashchange", () => location.hash === link.written || followLink());
    matchMedia("(prefers-color-scheme: dark)").addEventListener("change", () => {
        readColours();
        requestDraw();
    });
    window.addEventListener("beforeprint", drawForPrinting);
    new ResizeObserver(fitChart).observe(chart.element);
    fitChart();
    document.body.dataset.ready = "yes";
};

begin().catch((error) => {
    chart.element.textContent = "This browser cannot show the timeline: it has to know " +
        `DecompressionStream, as those made since 2023 do. (${error})`;
});
