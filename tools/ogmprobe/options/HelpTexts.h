// SPDX-License-Identifier: Apache-2.0
#pragma once

/** The help texts below the options. */
namespace ogmprobe {

inline constexpr const char* kExitCodes =
        "Exit codes: 0 done, 1 wrong usage (and with --strict: found something), 2 a file cannot "
        "be opened, read or written,\n"
        "3 the plug-in does not take the file, 4 the extractor died or got stuck, 5 what was\n"
        "compared differs, 6 what was checked plays with faults, 7 it does not play. With several\n"
        "files all are tried and the largest code applies. Data goes to standard output, "
        "everything\n"
        "else to standard error. \"-\" as FILE is standard input, which is copied to a temporary "
        "file.";

inline constexpr const char* kInfoExamples =
        "Examples:\n"
        "  ogmprobe info film.ogm\n"
        "  ogmprobe film.ogm\n"
        "  ogmprobe info --format film.ogm\n"
        "  ogmprobe info ~/films\n"
        "  ogmprobe info --json *.ogm | jq '.files[].tracks[].codec'";

inline constexpr const char* kPacketsExamples =
        "A line has the track, the time in seconds, the time until the track's next buffer (less\n"
        "than 0 where pictures are stored in another order than shown), the size in bytes, K for\n"
        "a sync frame, and the bytes' 64-bit FNV-1a digest.\n"
        "\n"
        "Examples:\n"
        "  ogmprobe packets film.ogm\n"
        "  ogmprobe packets film.ogm --track 0 --count 10\n"
        "  ogmprobe packets film.ogm --seek 30 --seek 0:01:02.5 --count 1\n"
        "  ogmprobe packets film.ogm --from 1:00 --to 1:10 --sync-only --csv";

inline constexpr const char* kSeekTestExamples =
        "Examples:\n"
        "  ogmprobe seektest film.ogm\n"
        "  ogmprobe seektest film.ogm --steps 100 --json";

inline constexpr const char* kExtractExamples =
        "Files are named after FILE and the track: film.ogm gives film.track0.m4v and so on,\n"
        "standard input stdin.track0.m4v. Until a file is whole, \".part\" is added to its name.\n"
        "Streams are as the plug-in returns them, without an Ogg comment header at first; PCM "
        "and\n"
        "MS ADPCM get a WAV header, VP8 an IVF header, DivX 3 and WMV go into AVI (at the track's\n"
        "frame rate), and MPEG-4 gets its configuration if the stream does not begin with it.\n"
        "Codecs without a file format are written bare, with a message.\n"
        "\n"
        "Examples:\n"
        "  ogmprobe extract film.ogm -o streams\n"
        "  ogmprobe extract ~/films -o streams\n"
        "  ogmprobe extract film.ogm -o streams --track 1 --force\n"
        "  ogmprobe extract film.ogm -o - --track 1 | aplay";

inline constexpr const char* kTimelineExamples =
        "Draws each track's packets over presentation time, their sizes, types and sync frames,\n"
        "gaps, equal times and backward steps, what is lost, streams without a track and what\n"
        "explain finds, the bitrate, and what was read from the file for each packet and by\n"
        "seeks. A page for a browser (.html) shows an hour as well as a single packet and needs\n"
        "no network; it says how to move. A drawing (.svg) shows the same without motion. In\n"
        "a folder each file's page is named after it: film.ogm gives film.html.\n"
        "\n"
        "Examples:\n"
        "  ogmprobe timeline film.ogm -o film.html\n"
        "  ogmprobe timeline film.ogm -o film.html --from 1:00 --to 1:30\n"
        "  ogmprobe timeline film.ogm -o film.svg --seek-steps 0 --force\n"
        "  ogmprobe timeline *.ogm -o timelines";

inline constexpr const char* kExplainExamples =
        "The file is opened and played to its end. The result is compared with the file's\n"
        "pages; each finding has its place, the reason, and the log line that shows it. Then a\n"
        "ledger shows for each stream: packets (or frames of re-framed audio) in the file =\n"
        "returned + lost, by reason. The flags of a page are c (continues a packet), b (begins\n"
        "a stream), e (ends it).\n"
        "\n"
        "Examples:\n"
        "  ogmprobe explain film.ogm\n"
        "  ogmprobe explain film.ogm --pages | less\n"
        "  ogmprobe explain film.ogm --json | jq '.findings[].id'";

inline constexpr const char* kSyncExamples =
        "The file is played to its end. Each packet, or frame of re-framed audio, has the "
        "plug-in's\n"
        "time and that of the granule positions of the file's pages; late is the first minus the\n"
        "second, negative for early. If pages do not say when a packet begins, a range is shown.\n"
        "Offset is the median, drift the change in millionths.\n"
        "\n"
        "Examples:\n"
        "  ogmprobe sync film.ogm\n"
        "  ogmprobe sync film.ogm --packets | less\n"
        "  ogmprobe sync film.ogm --json | jq '.pairs[0].earliest'";

inline constexpr const char* kCompareExamples =
        "Both are played to their ends. The container, the tracks' formats, each packet's time,\n"
        "sync flag, size and bytes, the ends, and on request the log are compared. The first\n"
        "difference is shown on one line; packets are numbered from 0. A packet is \"only in\" "
        "one\n"
        "of the two if the other has none with the same time, sync flag and bytes. It is a\n"
        "difference too if only one plug-in accepts the file.\n"
        "\n"
        "Examples:\n"
        "  ogmprobe compare film.ogm copy.ogm\n"
        "  ogmprobe compare film.ogm --plugin-b old/libogmextractor.so\n"
        "  ogmprobe compare film.ogm --device dump.jsonl\n"
        "  ogmprobe compare film.ogm copy.ogm --json | jq '.differences[0]'";

inline constexpr const char* kCheckExamples =
        "Each file is opened and played to its end as by explain; the result is compared with\n"
        "what decoders need and declare. The verdict of a file is the worst of its tracks: "
        "\"plays\",\n"
        "\"plays with faults\" (exit code 6), \"does not play\" (7). With several files each has a "
        "line,\n"
        "and reasons are counted at the end. Without --codecs the decoders are the software "
        "decoders\n"
        "of a stock Android 13.\n"
        "\n"
        "Examples:\n"
        "  ogmprobe check film.ogm\n"
        "  adb pull /vendor/etc device; ogmprobe check film.ogm --codecs device/media_codecs.xml\n"
        "  ogmprobe check ~/films --state films.state --html films.html --timelines drawings\n"
        "  ogmprobe check ~/films --json | jq '.summary'";

}  // namespace ogmprobe
