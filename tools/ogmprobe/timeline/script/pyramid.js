// SPDX-License-Identifier: Apache-2.0
// Levels of detail: the maxima of blocks of 16 values, of 16 such blocks, and so on. With these the
// maximum of any range is found in a few steps.

const BLOCK_BITS = 4;
const BLOCK = 1 << BLOCK_BITS;

/** The maximum for each of several kinds. */
class Pyramid {
    /** `kindOf(i)` is a number below `kinds`; if it is negative, the value is ignored. */
    constructor(values, kinds, kindOf) {
        Object.assign(this, {values, kinds, kindOf, levels: []});
        let above = this.firstLevel();
        this.levels.push(above);
        while (above.length > kinds * BLOCK) {
            above = this.nextLevel(above);
            this.levels.push(above);
        }
    }

    firstLevel() {
        const {values, kinds, kindOf} = this;
        const level = new Float64Array(Math.ceil(values.length / BLOCK) * kinds).fill(-Infinity);
        for (let i = 0; i < values.length; ++i) {
            const kind = kindOf(i);
            const at = (i >> BLOCK_BITS) * kinds + kind;
            if (kind >= 0 && values[i] > level[at]) {
                level[at] = values[i];
            }
        }
        return level;
    }

    nextLevel(below) {
        const {kinds} = this;
        const count = below.length / kinds;
        const level = new Float64Array(Math.ceil(count / BLOCK) * kinds).fill(-Infinity);
        for (let i = 0; i < count; ++i) {
            const at = (i >> BLOCK_BITS) * kinds;
            for (let kind = 0; kind < kinds; ++kind) {
                level[at + kind] = Math.max(level[at + kind], below[i * kinds + kind]);
            }
        }
        return level;
    }

    /** Raises `result`, an array with a number for each kind, to the maxima from `from` on. */
    addRange(from, end, result) {
        const {values, kindOf} = this;
        let i = from;
        while (i < end) {
            if (i % BLOCK === 0 && i + BLOCK <= end) {
                i = this.addBlocks(i >> BLOCK_BITS, end >> BLOCK_BITS, result) << BLOCK_BITS;
            } else {
                const kind = kindOf(i);
                if (kind >= 0 && values[i] > result[kind]) {
                    result[kind] = values[i];
                }
                ++i;
            }
        }
    }

    /** The largest block that begins there and ends within the range; the index after the block. */
    addBlocks(first, end, result) {
        const {kinds, levels} = this;
        let level = 0;
        let block = first;
        let length = 1;
        while (level + 1 < levels.length && block % BLOCK === 0 && first + length * BLOCK <= end) {
            block /= BLOCK;
            length *= BLOCK;
            ++level;
        }
        for (let kind = 0; kind < kinds; ++kind) {
            result[kind] = Math.max(result[kind], levels[level][block * kinds + kind]);
        }
        return first + length;
    }
}

/** The minimum and the maximum of a range. */
class Extent {
    constructor(values) {
        this.most = new Pyramid(values, 1, () => 0);
        this.least = new Pyramid(values.map((value) => -value), 1, () => 0);
        this.found = [0];
    }

    of(from, end) {
        const ask = (pyramid) => {
            this.found[0] = -Infinity;
            pyramid.addRange(from, end, this.found);
            return this.found[0];
        };
        return {least: -ask(this.least), most: ask(this.most)};
    }
}
