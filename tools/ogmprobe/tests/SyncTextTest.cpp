// SPDX-License-Identifier: Apache-2.0
#include "sync/SyncText.h"

#include <gtest/gtest.h>

#include <utility>

namespace ogmprobe::sync_text_test {
namespace {

/** Two returned packets of a track; the second is late by this time. */
TrackSync track(uint64_t number, TrackKind kind, const TimeRange& lateUs) {
    TrackSync track;
    track.track = number;
    track.kind = kind;
    const auto add = [&](size_t unit, int64_t pageUs, const TimeRange& late) {
        SyncPoint point;
        point.unit = unit;
        point.pageUs = TimeRange::at(pageUs);
        point.buffer = unit;
        point.lateUs = late;
        track.points.push_back(point);
    };
    add(0, 0, TimeRange::at(0));
    add(1, 61'500'000, lateUs);
    track.deviation.compared = 2;
    track.deviation.exact = lateUs.isExact() ? 2 : 1;
    (lateUs.certainUs() < 0 ? track.deviation.earliest : track.deviation.latest) = 1;
    return track;
}

TrackSync video(const TimeRange& lateUs = TimeRange::at(0)) {
    return track(0, TrackKind::kVideo, lateUs);
}

std::string sentenceOf(TrackSync track) {
    return worstSentence(FileSync{{std::move(track)}, {}});
}

TEST(SyncText, SaysHowLateOrEarlyATrackIsAndWhere) {
    const std::vector<std::pair<TimeRange, std::string>> cases = {
            {{0, 0}, "track 0 (video) has the times of the pages"},
            {{999, 999}, "track 0 (video) has the times of the pages"},
            {{-999, -999}, "track 0 (video) has the times of the pages"},
            {{1000, 1000}, "track 0 (video) is up to 0.001 s late at 0:01:01.500000"},
            {{-1000, -1000}, "track 0 (video) is up to 0.001 s early at 0:01:01.500000"},
            {{2'500'000, 9'000'000}, "track 0 (video) is up to 2.500 s late at 0:01:01.500000"},
            {{-9'000'000, -2'500'000}, "track 0 (video) is up to 2.500 s early at 0:01:01.500000"},
            {{-5000, 5000}, "track 0 (video) has the times of the pages as far as they show"},
    };
    for (const auto& [lateUs, sentence] : cases) {
        EXPECT_EQ(sentenceOf(video(lateUs)), sentence);
    }
}

TEST(SyncText, SaysWhyATrackCannotBeCompared) {
    TrackSync without = video();
    without.deviation = {};
    EXPECT_EQ(sentenceOf(without), "track 0 (video): the pages have no times for what is returned");
    for (SyncPoint& point : without.points) {
        point.buffer.reset();
    }
    EXPECT_EQ(sentenceOf(without), "track 0 (video): nothing on the pages is returned");
    EXPECT_EQ(worstSentence({}), "no track with times on the pages");
    EXPECT_EQ(syncText({}, false), "No track with times on the pages.\n");
}

TEST(SyncText, OfSeveralTracksTheWorstOneIsNamed) {
    const auto late = [](int64_t us) { return TimeRange::at(us); };
    EXPECT_EQ(worstSentence({{video(late(2000)), track(1, TrackKind::kAudio, late(-3000))}, {}}),
              "track 1 (audio) is up to 0.003 s early at 0:01:01.500000");
    EXPECT_EQ(worstSentence({{video(late(4000)), track(1, TrackKind::kAudio, late(-3000))}, {}}),
              "track 0 (video) is up to 0.004 s late at 0:01:01.500000");
}

/** An audio track compared with the video; the second point is late by this time. */
PairSync pair(size_t audio, const TimeRange& lateUs) {
    PairSync pair;
    pair.audio = audio;
    pair.points = {{0, TimeRange::at(0)}, {1, lateUs}};
    pair.deviation.compared = 2;
    pair.deviation.exact = lateUs.isExact() ? 2 : 1;
    (lateUs.certainUs() < 0 ? pair.deviation.earliest : pair.deviation.latest) = 1;
    return pair;
}

TEST(SyncText, SaysHowAudioRunsAgainstTheVideo) {
    const TrackSync sound = track(3, TrackKind::kAudio, TimeRange::at(50'000));
    const std::vector<std::pair<TimeRange, std::string>> cases = {
            {{0, 0}, "audio keeps with the video"},
            {{-5000, 5000}, "audio keeps with the video as far as the pages show"},
            {{2000, 2000}, "audio runs up to 0.002 s late at 0:01:01.500000"},
            {{-2000, -2000}, "audio runs up to 0.002 s early at 0:01:01.500000"},
    };
    for (const auto& [lateUs, sentence] : cases) {
        EXPECT_EQ(worstSentence({{video(), sound}, {pair(1, lateUs)}}), sentence);
    }
    PairSync nothing = pair(1, {0, 0});
    nothing.deviation = {};
    EXPECT_EQ(worstSentence({{video(), sound}, {nothing}}),
              "audio and video have no times to compare");
    const TrackSync other = track(5, TrackKind::kAudio, TimeRange::at(0));
    EXPECT_EQ(worstSentence({{video(), sound, other},
                             {pair(1, TimeRange::at(2000)), pair(2, TimeRange::at(-7000))}}),
              "audio of track 5 runs up to 0.007 s early at 0:01:01.500000");
}

TEST(SyncText, SaysHowGranulePositionsAreRead) {
    const std::string begin = "Track 0 (video) has the times of the pages; its granule positions ";
    const std::vector<std::pair<GranuleReading, std::string>> cases = {
            {GranuleReading::kEnd, "say where packets end"},
            {GranuleReading::kBeginning, "say where packets begin"},
    };
    const auto lastLine = [](const TrackSync& track) {
        const std::string text = syncText({{track}, {}}, false);
        return text.substr(text.rfind('\n', text.size() - 2) + 1);
    };
    TrackSync read = video();
    EXPECT_EQ(lastLine(read), begin + "may say where packets begin or where they end.\n");
    for (const auto& [reading, words] : cases) {
        read.reading = reading;
        read.isReadLikeOthers = false;
        EXPECT_EQ(lastLine(read), begin + words + ".\n");
        read.isReadLikeOthers = true;
        EXPECT_EQ(lastLine(read), begin + words + ", as in the other streams.\n");
    }
}

TEST(SyncText, SaysHowFastPagesGoAgainstTheirSamples) {
    const auto textOf = [](double ppm) {
        TrackSync track = video();
        track.contentDriftPpm = ppm;
        return syncText({{track}, {}}, false);
    };
    const std::string none = syncText({{video()}, {}}, false);
    EXPECT_EQ(textOf(9.9), none);
    EXPECT_EQ(textOf(-9.9), none);
    EXPECT_EQ(textOf(250),
              none + "The pages of track 0 go faster than its samples by 250 ppm, 0.015 s in a "
                     "minute.\n");
    EXPECT_EQ(textOf(-10),
              none + "The pages of track 0 go slower than its samples by 10 ppm, 0.001 s in a "
                     "minute.\n");
}

}  // namespace
}  // namespace ogmprobe::sync_text_test
