// SPDX-License-Identifier: Apache-2.0
// Bits per second. The bytes of a packet are spread over the time up to the next one of its track,
// so that no window shows where the times of pages happen to fall.

const WINDOWS_OF_A_VIEW = 80;

const windowOf = (lengthUs) => lengthUs / WINDOWS_OF_A_VIEW;

/** In a window around the time; nothing outside of what the lane covers. */
const rateAt = (row, timeUs, windowUs) => {
    if (row.count === 0) {
        return 0;
    }
    const firstUs = row.begins[0];
    const lastUs = row.ends[row.count - 1];
    if (timeUs < firstUs || timeUs > lastUs) {
        return 0;
    }
    // Where the lane begins and ends, the part of the window that lies in it.
    const fromUs = Math.max(firstUs, timeUs - windowUs / 2);
    const toUs = Math.min(lastUs, timeUs + windowUs / 2);
    return toUs > fromUs ? (row.bytesUpTo(toUs) - row.bytesUpTo(fromUs)) * 8e6 / (toUs - fromUs) : 0;
};

const SCALE_STEPS = [1, 1.2, 1.5, 2, 2.5, 3, 4, 5, 6, 8, 10];

/** A step times a power of ten, not below the value: scales keep still while values change little. */
const roundedUp = (value) => {
    const power = 10 ** Math.floor(Math.log10(value || 1));
    return SCALE_STEPS.map((step) => step * power).find((step) => step >= value * 0.9999);
};
