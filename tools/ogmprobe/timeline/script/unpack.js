// SPDX-License-Identifier: Apache-2.0
// The data of the page: an outline in JSON, and packed columns of numbers (Packing.h).
"use strict";

const outline = JSON.parse(document.getElementById("outline").textContent);

const unpacked = async () => {
    const letters = atob(document.getElementById("columns").textContent.trim());
    const packed = new Uint8Array(letters.length);
    for (let i = 0; i < packed.length; ++i) {
        packed[i] = letters.charCodeAt(i);
    }
    const stream = new Blob([packed]).stream().pipeThrough(new DecompressionStream("deflate"));
    return new Uint8Array(await new Response(stream).arrayBuffer());
};

/** Takes the columns in the order in which they were packed. */
class ColumnReader {
    constructor(bytes, sizes) {
        this.bytes = bytes;
        this.sizes = sizes;
        this.column = 0;
        this.offset = 0;
    }

    raw() {
        const begin = this.offset;
        this.offset += this.sizes[this.column++];
        return this.bytes.subarray(begin, this.offset);
    }

    /** Seven bits per byte, the lowest first. Multiplies, because shifts have only 32 bits. */
    numbers(count) {
        const bytes = this.raw();
        const result = new Float64Array(count);
        for (let i = 0, at = 0; i < count; ++i) {
            let value = 0;
            let scale = 1;
            while (bytes[at] > 127) {
                value += (bytes[at++] - 128) * scale;
                scale *= 128;
            }
            result[i] = value + bytes[at++] * scale;
        }
        return result;
    }

    /** Even numbers are positive, odd ones negative. */
    differences(count) {
        const result = this.numbers(count);
        for (let i = 0; i < count; ++i) {
            const number = result[i];
            result[i] = number % 2 === 1 ? -(number + 1) / 2 : number / 2;
        }
        return result;
    }

    /** Each is the change of a distance. */
    steady(count) {
        const result = this.differences(count);
        let distance = 0;
        let last = 0;
        for (let i = 0; i < count; ++i) {
            distance += result[i];
            last += distance;
            result[i] = last;
        }
        return result;
    }

    text() {
        return new TextDecoder().decode(this.raw());
    }
}
