// SPDX-License-Identifier: Apache-2.0
// The list of findings, which jumps to their places.

const findingButtons = new Map();

const placeText = (finding) => {
    const place = finding.lane !== null ? film.lanes[finding.lane].title
        : finding.refused !== null ? film.refused[finding.refused].name : "the file";
    const span = finding.fromUs === null ? ""
        : finding.toUs > finding.fromUs
            ? `, ${clockText(finding.fromUs, 1e3)} to ${clockText(finding.toUs, 1e3)}`
            : `, at ${clockText(finding.fromUs, 1e3)}`;
    return place + span + (finding.offset === null ? "" : `, offset ${finding.offset}`);
};

const chosenRow = document.getElementById("chosen");
const sideList = matchMedia("(min-width: 1400px)");

/** In the list if that is beside the picture; otherwise below the picture. */
const showChosen = (finding) => {
    if (sideList.matches) {
        findingButtons.get(finding.number).scrollIntoView({block: "nearest"});
        return;
    }
    chosenRow.hidden = false;
    chosenRow.querySelector("p").textContent =
        `${finding.number}, ${placeText(finding)}: ${finding.text}`;
};

const leaveFinding = () => {
    findingChoice.number = 0;
    chosenRow.hidden = true;
    findingButtons.forEach((button) => button.setAttribute("aria-current", "false"));
    view.changed();
};

const chooseFinding = (number) => {
    const finding = findings[number - 1];
    findingChoice.number = number;
    for (const [other, button] of findingButtons) {
        button.setAttribute("aria-current", String(other === number));
    }
    if (finding.fromUs === null) {
        zoomAll();
    } else {
        glideToSpan(finding.fromUs, finding.toUs, Math.min(outline.axis.lengthUs, 4e6));
    }
    showChosen(finding);
    say(`Finding ${number}: ${finding.text}`);
    view.changed();
};

const chooseNextFinding = (by) => {
    if (findings.length > 0) {
        const next = (findingChoice.number - 1 + by + findings.length) % findings.length;
        chooseFinding(findingChoice.number === 0 ? 1 : next + 1);
    }
};

const findingEntry = (finding) => {
    const button = make("button", {type: "button", "aria-current": "false"},
        make("span", {class: "number"}, String(finding.number)),
        make("span", {class: "place"}, placeText(finding)),
        make("span", {class: "sentence"}, finding.text));
    if (finding.line) {
        button.append(make("code", {}, finding.line));
    }
    button.addEventListener("click", () => {
        chooseFinding(finding.number);
        chart.element.scrollIntoView({block: "nearest"});
    });
    findingButtons.set(finding.number, button);
    return make("li", {class: finding.usual ? "usual" : "unusual"}, button);
};

const listFindings = () => {
    const list = document.getElementById("findings");
    list.append(...findings.map(findingEntry));
    if (findings.length === 0) {
        list.replaceWith(make("p", {}, "Nothing was found."));
    }
};

/** Numbers of findings without a time, beside the panel that they are about. */
const badgesOf = (panel) => findings
    .filter((finding) => finding.fromUs === null)
    .filter((finding) => finding.lane !== null ? panel.lane?.index === finding.lane
        : finding.refused !== null ? panel.stream?.index === finding.refused
            : panel.className === "findings")
    .map((finding) => {
        const badge = make("button", {type: "button", title: finding.text,
            class: finding.usual ? "badge usual" : "badge unusual",
            "aria-label": `Finding ${finding.number}: ${finding.text}`}, String(finding.number));
        badge.addEventListener("click", () => chooseFinding(finding.number));
        return badge;
    });
