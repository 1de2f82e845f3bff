// SPDX-License-Identifier: Apache-2.0
// What is drawn; the entries of the legend switch it.

const hiddenSeries = new Set();
const isShown = (name) => !hiddenSeries.has(name);

const switchSeries = (name) => {
    if (!hiddenSeries.delete(name)) {
        hiddenSeries.add(name);
    }
    view.changed();
};
