// SPDX-License-Identifier: Apache-2.0
// Numbers and times as text.

const seconds = (timeUs) => `${(timeUs / 1e6).toFixed(6)} s`;

const counted = (number, noun) =>
    `${number.toLocaleString("en")} ${noun}${number === 1 ? "" : "s"}`;

const bytesText = (size) => counted(size, "byte");

const scaled = (number, units, digits = 3) => {
    const unit = Math.min(units.length - 1, Math.max(0, Math.floor(Math.log10(number || 1) / 3)));
    return `${Number((number / 1000 ** unit).toPrecision(digits))} ${units[unit]}`;
};

const shortSize = (size) => scaled(size, ["B", "kB", "MB", "GB"]);
const shortRate = (bits) => scaled(bits, ["bit/s", "kbit/s", "Mbit/s", "Gbit/s"]);

/** "1:02:03.5" with as many decimals as steps of that length need. */
const clockText = (timeUs, stepUs) => {
    const decimals = Math.min(6, Math.max(0, Math.ceil(6 - Math.log10(stepUs) - 1e-9)));
    const total = Number((Math.abs(timeUs) / 1e6).toFixed(decimals));
    const minutes = Math.floor(total / 60);
    const hours = Math.floor(minutes / 60);
    const rest = (total - minutes * 60).toFixed(decimals)
        .padStart(decimals > 0 ? decimals + 3 : 2, "0");
    const front = hours > 0 ? `${hours}:${String(minutes % 60).padStart(2, "0")}` : minutes;
    return `${timeUs < 0 && total > 0 ? "-" : ""}${front}:${rest}`;
};

/** A length of time by its largest unit. */
const lengthText = (lengthUs) => {
    const size = Math.abs(lengthUs);
    if (size >= 60e6) {
        return clockText(lengthUs, 1e5);
    }
    const [unit, name] = size >= 1e6 ? [1e6, "s"] : size >= 1e3 ? [1e3, "ms"] : [1, "\u00b5s"];
    return `${Number((lengthUs / unit).toPrecision(4))} ${name}`;
};

/** Reads "1:02:03.5", "2:03" or "62.5" as a time in microseconds; NaN for other texts. */
const parsedTime = (text) => {
    const match = /^(-?)(?:(?:(\d+):)?(\d+):)?(\d+(?:\.\d*)?|\.\d+) ?s?$/.exec(text.trim());
    if (!match) {
        return NaN;
    }
    const [, sign, hours = 0, minutes = 0, rest] = match;
    return (sign ? -1 : 1) * (Number(hours) * 3600 + Number(minutes) * 60 + Number(rest)) * 1e6;
};
