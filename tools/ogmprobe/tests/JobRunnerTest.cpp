// SPDX-License-Identifier: Apache-2.0
#include "process/JobRunner.h"

#include <android/log.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <filesystem>

#include "FakeFile.h"
#include "plugin/FileSource.h"
#include "plugin/PluginCall.h"

namespace ogmprobe {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

GlobalOptions fakePluginOptions(bool inProcess) {
    GlobalOptions options;
    options.pluginPath = test::testedBuild().fakePlugin;
    options.inProcess = inProcess;
    return options;
}

/** A word for a record, with some of its contents. */
struct Word {
    std::string operator()(const CallBegun& call) const {
        return std::string("> ") + functionName(call.function);
    }
    std::string operator()(const CallEnded& call) const {
        return std::string("< ") + functionName(call.function);
    }
    std::string operator()(const BufferRead& buffer) const {
        return "buffer " + std::to_string(buffer.timeUs.value_or(-1));
    }
    std::string operator()(const PacketPlayed& packet) const {
        return "packet " + std::to_string(packet.packet.timeUs);
    }
    std::string operator()(const LogLine& line) const { return "log " + line.text; }
    std::string operator()(const Failure& failure) const { return "failure " + failure.message; }
    std::string operator()(const TrackEnded&) const { return "end"; }
    std::string operator()(const SourceRead&) const { return "source"; }
    template <typename T>
    std::string operator()(const T&) const {
        return "";
    }
};

using Words = std::vector<std::string>;

/** Both ways of running a job. */
class JobRunnerTest : public testing::TestWithParam<bool> {
  protected:
    GlobalOptions options() const { return fakePluginOptions(GetParam()); }

    Words wordsOf(const JobRequest& request, const GlobalOptions& options) {
        Words words;
        runJob(request, options, [&words](const Record& record) {
            const std::string word = std::visit(Word(), record);
            if (!word.empty()) {
                words.push_back(word);
            }
        });
        return words;
    }

    /** Runs the job with a file that it does not read. */
    JobRequest request(const Job& job) const { return {mPlugin.file(test::fakeFile({})), job}; }

    test::FakePlugin mPlugin;
};

INSTANTIATE_TEST_SUITE_P(, JobRunnerTest, testing::Bool(), [](const auto& info) {
    return info.param ? "InProcess" : "InAProcessOfItsOwn";
});

TEST_P(JobRunnerTest, HandsOverThePacketsInTheOrderOfTheirTimes) {
    const std::string file = mPlugin.file(test::fakeFile({test::fakeVideo(), test::fakeAudio()}));
    EXPECT_THAT(wordsOf({file, playJob({})}, options()),
                ElementsAre("packet 0", "packet 0", "packet 60000", "end", "packet 80000",
                            "packet 40000", "end"));
}

TEST_P(JobRunnerTest, TracesCallsReadsAndLogLinesInTheOrderOfTheirHappening) {
    const std::string file = mPlugin.file(test::fakeFile({test::fakeVideo()}));
    GlobalOptions talkative = options();
    talkative.logPriority = ANDROID_LOG_INFO;
    PlayRequest play;
    play.seeksUs = {80000};
    const Words words = wordsOf({file, playJob(play), true}, talkative);
    EXPECT_THAT(
            words,
            ElementsAre("> GETEXTRACTORDEF", "< GETEXTRACTORDEF", "> sniff", "source", "< sniff",
                        "> create", "source", "< create", "> countTracks", "log countTracks",
                        "< countTracks", "> name", "log name", "< name", "> getMetaData",
                        "log getMetaData", "< getMetaData", "> getTrack", "log getTrack 0",
                        "< getTrack", "> getTrackMetaData", "< getTrackMetaData", "> start",
                        "log start track 0", "< start", "> getFormat", "< getFormat", "> read",
                        "log seek track 0 to 80000 mode 2", "source", "< read", "buffer 80000",
                        "> read", "< read", "buffer 40000", "packet 80000", "> read", "< read",
                        "packet 40000", "end", "> stop", "log stop track 0", "< stop",
                        "> the track's free", "log free track 0", "< the track's free",
                        "> the release of its buffers", "< the release of its buffers",
                        "> the extractor's free", "log free extractor", "< the extractor's free"));
}

TEST_P(JobRunnerTest, PutsTheReadsOfASearchIntoOneRecord) {
    auto video = test::fakeVideo();
    video["end"] = "search";
    video["format"]["mime"] = std::string(1 << 18, 'x');
    const std::string file = mPlugin.file(test::fakeFile({video}));
    const auto size = static_cast<uint64_t>(std::filesystem::file_size(file));
    std::vector<SourceRead> reads;
    runJob({file, playJob({}), true}, options(), [&reads](const Record& record) {
        if (const auto* read = std::get_if<SourceRead>(&record)) {
            reads.push_back(*read);
        }
    });
    ASSERT_EQ(reads.size(), 4U) << "one to sniff, one to create, the search and its end";
    EXPECT_EQ(reads[2].offset, 0);
    EXPECT_EQ(reads[2].size, 4U);
    EXPECT_EQ(reads[2].result, 4);
    EXPECT_EQ(reads[2].count, size - 3);
    EXPECT_EQ(reads[2].lastOffset(), static_cast<int64_t>(size - 4));
    EXPECT_EQ(reads[3].result, 3);
}

TEST_P(JobRunnerTest, LeavesReadsThatDoNotOverlapApart) {
    const Job job = [](const JobContext& context) {
        const PluginCall call(PluginFunction::kRead);
        const android::CDataSource* table = context.source.table();
        for (off64_t offset = 0; offset < 8; ++offset) {
            char byte = 0;
            table->readAt(table->handle, offset, &byte, 1);
        }
    };
    JobRequest traced = request(job);
    traced.traced = true;
    const Words words = wordsOf(traced, options());
    EXPECT_EQ(std::count(words.begin(), words.end(), "source"), 8);
}

TEST_P(JobRunnerTest, ConvertsAnExceptionOfTheJobToAFailure) {
    const Job job = [](const JobContext&) { throw ProbeError(ExitCode::kUsage, "no such thing"); };
    EXPECT_THAT(wordsOf(request(job), options()), ElementsAre("failure no such thing"));
}

TEST_P(JobRunnerTest, SaysWhetherThePluginIsToBlame) {
    GlobalOptions wrong = options();
    wrong.pluginPath = "missing.so";
    std::vector<bool> ofPlugin;
    const auto note = [&ofPlugin](const Record& record) {
        ofPlugin.push_back(std::get<Failure>(record).ofPlugin);
    };
    runJob({"missing", playJob({})}, options(), note);
    runJob({"missing", playJob({})}, wrong, note);
    EXPECT_THAT(ofPlugin, ElementsAre(false, true));
}

TEST_P(JobRunnerTest, EndsTheJobWithAnExceptionOfTheHandler) {
    const Job endless = [](const JobContext& context) {
        while (true) {
            context.sink(Progress{});
        }
    };
    const auto refuse = [](const Record&) { throw std::runtime_error("enough"); };
    EXPECT_THROW(runJob(request(endless), options(), refuse), std::runtime_error);
}

TEST_P(JobRunnerTest, LetsNoExceptionOfTheHandlerPassThroughThePlugin) {
    const std::string file = mPlugin.file(test::fakeFile({test::fakeVideo()}));
    for (const PluginFunction where : {PluginFunction::kSniff, PluginFunction::kRead,
                                       PluginFunction::kStop, PluginFunction::kFreeExtractor}) {
        const auto refuse = [where](const Record& record) {
            const auto* call = std::get_if<CallBegun>(&record);
            if (call != nullptr && call->function == where) {
                throw ProbeError(ExitCode::kFile, "disk full");
            }
        };
        EXPECT_THROW(runJob({file, playJob({}), true}, options(), refuse), ProbeError);
    }
}

class ExtractorProcessTest : public JobRunnerTest {};

INSTANTIATE_TEST_SUITE_P(, ExtractorProcessTest, testing::Values(false),
                         [](const auto&) { return "InAProcessOfItsOwn"; });

TEST_P(ExtractorProcessTest, KeepsAllThatCameBeforeADeathInTheMiddleOfWriting) {
    constexpr uint64_t kBefore = 100000;
    const Job job = [](const JobContext& context) {
        for (uint64_t i = 0; i < kBefore; ++i) {
            context.sink(Progress{i});
        }
        std::raise(SIGKILL);
    };
    uint64_t expected = 0;
    std::string failure;
    runJob(request(job), options(), [&](const Record& record) {
        if (const auto* progress = std::get_if<Progress>(&record)) {
            EXPECT_EQ(progress->readUpTo, expected++);
        } else if (const auto* last = std::get_if<Failure>(&record)) {
            failure = last->message;
        }
    });
    EXPECT_EQ(expected, kBefore);
    EXPECT_EQ(failure, "the extractor died: Killed (SIGKILL)");
}

TEST_P(ExtractorProcessTest, NoticesAJobThatNeverReports) {
    GlobalOptions impatient = options();
    impatient.timeoutSeconds = 0.2;
    const Job job = [](const JobContext&) {
        while (true) {
            std::raise(SIGCONT);
        }
    };
    EXPECT_THAT(wordsOf(request(job), impatient), ElementsAre(HasSubstr("is stuck")));
}

TEST_P(ExtractorProcessTest, LeavesNoProcess) {
    const Job job = [](const JobContext& context) { context.sink(Progress{}); };
    runJob(request(job), options(), [](const Record&) {});
    EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1);
    EXPECT_EQ(errno, ECHILD);
}

}  // namespace
}  // namespace ogmprobe
