// SPDX-License-Identifier: Apache-2.0
// Bits per second. The bytes of a packet are spread over the time up to the next packet of its track,
// so that page boundaries are not visible.

const WINDOWS_OF_A_VIEW = 80;

const windowOf = (lengthUs) => lengthUs / WINDOWS_OF_A_VIEW;

/** The rate in a window around the time; nothing outside of the lane's time. */
const rateAt = (row, timeUs, windowUs) => {
    if (row.count === 0) {
        return 0;
    }
    const firstUs = row.begins[0];
    const lastUs = row.ends[row.count - 1];
    if (timeUs < firstUs || timeUs > lastUs) {
        return 0;
    }
    // At the beginning and the end of the lane only the part of the window within the lane.
    const fromUs = Math.max(firstUs, timeUs - windowUs / 2);
    const toUs = Math.min(lastUs, timeUs + windowUs / 2);
    return toUs > fromUs ? (row.bytesUpTo(toUs) - row.bytesUpTo(fromUs)) * 8e6 / (toUs - fromUs) : 0;
};

const SCALE_STEPS = [1, 1.2, 1.5, 2, 2.5, 3, 4, 5, 6, 8, 10];

/** A step times a power of ten, at least the value, so that scales change rarely. */
const roundedUp = (value) => {
    const power = 10 ** Math.floor(Math.log10(value || 1));
    return SCALE_STEPS.map((step) => step * power).find((step) => step >= value * 0.9999);
};
