# SPDX-License-Identifier: Apache-2.0
"""Writes OGM files of any length: MPEG-4 pictures of chance sizes beside MPEG audio of one rate.

Usage: LongFile.py FILE SECONDS [HOLE_FROM HOLE_TO]

The pages that begin within the hole, in seconds, are left out.
"""

import heapq
import pathlib
import random
import struct
import sys
import zlib

VIDEO, AUDIO = 0, 1
PICTURES_A_SECOND = 25
SAMPLES_A_SECOND = 44100
SAMPLES_A_FRAME = 1152
# MPEG-1 layer III, 32 kbit/s, one channel: small frames make small files.
FRAME_HEADER = bytes((0xFF, 0xFB, 0x10, 0xC0))
FRAME_BITS_A_SECOND = 32000
PAGE_BODY = 4000
MOST_SEGMENTS = 255
GROUP = 125
SYNC = 0x08

# Sequence, object and layer headers of a picture of 176 by 144, as a writer puts them in front.
MPEG4_HEADERS = bytes.fromhex(
    "000001b0f1000001b5a913000001000000012008d48d0800cd05841214103f000001b3001007")

_REVERSED = bytes(int(f"{byte:08b}"[::-1], 2) for byte in range(256))


def ogg_checksum(page):
    """The CRC of RFC 3533 by that of zlib, which takes the bits of each byte in reverse."""
    reflected = zlib.crc32(page.translate(_REVERSED), 0xFFFFFFFF) ^ 0xFFFFFFFF
    return int(f"{reflected:032b}"[::-1], 2)


def page_bytes(flags, granule, serial, number, segments, body):
    page = (b"OggS" + struct.pack("<BBQIIIB", 0, flags, granule, serial, number, 0, len(segments)) +
            segments + body)
    return page[:22] + struct.pack("<I", ogg_checksum(page)) + page[26:]


def stream_header(kind, codec, unit, samples_per_unit, size, ending):
    return (b"\x01" + kind.ljust(8, b"\0") + codec +
            struct.pack("<iqqiihH", size, unit, samples_per_unit, 1, 4096, 16, 0) + ending)


class Stream:
    """Packs packets into pages; a page says when its last packet begins."""

    def __init__(self, serial, header):
        self.serial = serial
        self.number = 0
        self.header = self._page(2, 0, bytes((len(header),)), header)

    def _page(self, flags, granule, segments, body):
        page = page_bytes(flags, granule, self.serial, self.number, segments, body)
        self.number += 1
        return page

    def pages(self, packets, seconds_of):
        """Pages with the time at which each begins, from packets with their granule positions."""
        segments, body, begins = b"", [], None
        size = last = 0
        for granule, packet in packets:
            lacing = b"\xff" * (len(packet) // 255) + bytes((len(packet) % 255,))
            if body and (size + len(packet) > PAGE_BODY or
                         len(segments) + len(lacing) > MOST_SEGMENTS):
                yield begins, self._page(0, last, segments, b"".join(body))
                segments, body, size, begins = b"", [], 0, None
            begins = seconds_of(granule) if begins is None else begins
            segments += lacing
            body.append(packet)
            size += len(packet)
            last = granule
        yield begins, self._page(4, last, segments, b"".join(body))


def pictures(count, chance):
    """The first of each group is whole, of the others every third is predicted forward alone."""
    for index in range(count):
        place = index % GROUP
        kind = 0 if place == 0 else 1 if place % 3 == 1 else 2
        size = int((6000, 900, 300)[kind] * chance.lognormvariate(0, 0.35))
        start = MPEG4_HEADERS if kind == 0 else b""
        picture = start + b"\0\0\1\xb6" + bytes((kind << 6 | 0x10,)) + chance.randbytes(size)
        yield index, bytes((SYNC if kind == 0 else 0,)) + picture


def frames(count, chance):
    """With a padding byte as often as the rate needs it."""
    owed = 0
    whole, rest = divmod(144 * FRAME_BITS_A_SECOND, SAMPLES_A_SECOND)
    for index in range(count):
        owed += rest
        padding = owed >= SAMPLES_A_SECOND
        owed -= SAMPLES_A_SECOND if padding else 0
        header = FRAME_HEADER[:2] + bytes((FRAME_HEADER[2] | padding << 1,)) + FRAME_HEADER[3:]
        frame = header + chance.randbytes(whole + padding - len(header))
        yield index * SAMPLES_A_FRAME, b"\x88" + struct.pack("<H", SAMPLES_A_FRAME) + frame


def write(path, seconds, hole=None, seed=1):
    chance = random.Random(seed)
    video = Stream(VIDEO, stream_header(b"video", b"FMP4", 10_000_000 // PICTURES_A_SECOND, 1, 56,
                                        struct.pack("<ii", 176, 144)))
    audio = Stream(AUDIO, stream_header(b"audio", b"0055", 10_000_000, SAMPLES_A_SECOND, 56,
                                        struct.pack("<hhi", 1, 1, FRAME_BITS_A_SECOND // 8)))
    with open(path, "wb") as file:
        file.write(video.header + audio.header)
        streams = (
            video.pages(pictures(int(seconds * PICTURES_A_SECOND), chance),
                        lambda granule: granule / PICTURES_A_SECOND),
            audio.pages(frames(int(seconds * SAMPLES_A_SECOND / SAMPLES_A_FRAME), chance),
                        lambda granule: granule / SAMPLES_A_SECOND))
        for begins, page in heapq.merge(*streams, key=lambda entry: entry[0]):
            if hole is None or not hole[0] <= begins < hole[1]:
                file.write(page)


if __name__ == "__main__":
    numbers = [float(argument) for argument in sys.argv[2:]]
    write(pathlib.Path(sys.argv[1]), numbers[0], tuple(numbers[1:]) or None)
