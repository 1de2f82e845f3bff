// SPDX-License-Identifier: Apache-2.0
"use strict";

const table = document.getElementById("files");
const body = table.tBodies[0];
const rows = [...body.rows];

function keyOf(row, column) {
    const cell = row.cells[column];
    return cell.dataset.sort === undefined ? cell.textContent : Number(cell.dataset.sort);
}

function sortBy(heading, column) {
    const descending = heading.getAttribute("aria-sort") === "ascending";
    for (const other of table.tHead.rows[0].cells) {
        if (other.hasAttribute("aria-sort")) {
            other.setAttribute("aria-sort", "none");
        }
    }
    heading.setAttribute("aria-sort", descending ? "descending" : "ascending");
    const keyed = rows.map((row) => [keyOf(row, column), row]);
    keyed.sort(([a], [b]) => (a < b ? -1 : a > b ? 1 : 0) * (descending ? -1 : 1));
    body.append(...keyed.map(([, row]) => row));
}

[...table.tHead.rows[0].cells].forEach((heading, column) => {
    const button = heading.querySelector("button");
    if (button) {
        button.addEventListener("click", () => sortBy(heading, column));
    }
});

const filter = document.getElementById("filter");
const texts = rows.map((row) => row.textContent.toLowerCase());
filter.addEventListener("input", () => {
    const wanted = filter.value.toLowerCase();
    let count = 0;
    rows.forEach((row, index) => {
        row.hidden = !texts[index].includes(wanted);
        count += row.hidden ? 0 : 1;
    });
    document.getElementById("shown").textContent = `${count} of ${rows.length}`;
});
