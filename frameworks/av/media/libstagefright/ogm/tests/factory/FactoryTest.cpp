// SPDX-License-Identifier: Apache-2.0
#include <dlfcn.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <atomic>
#include <filesystem>
#include <fstream>
#include <initializer_list>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "ExtractorFactory.h"
#include "MemorySource.h"
#include "OgmFile.h"
#include "Plugin.h"
#include "Samples.h"

namespace android::ogm::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr char kOurName[] = "ZOR OGM Extractor";
/** The name of our extractors. */
constexpr char kOurExtractor[] = "<unspecified>";
constexpr char kOurFile[] = "libogmextractor.so";

/** A folder of plug-ins, removed after the test. */
class PluginFolder {
  public:
    PluginFolder() {
        std::string path = (std::filesystem::temp_directory_path() / "extractors-XXXXXX").string();
        if (mkdtemp(path.data()) == nullptr) {
            throw std::runtime_error("cannot make a temporary folder");
        }
        mPath = path;
    }
    ~PluginFolder() { std::filesystem::remove_all(mPath); }
    PluginFolder(const PluginFolder&) = delete;
    PluginFolder& operator=(const PluginFolder&) = delete;

    const std::filesystem::path& path() const { return mPath; }

    void add(const std::filesystem::path& library, const std::string& name) const {
        std::filesystem::copy_file(library, mPath / name);
    }
    void addOurs() const { add(OGM_PLUGIN_PATH, kOurFile); }
    /** Adds a rival with the file name of its build. */
    void addRival(const std::string& name) const {
        add(std::filesystem::path(OGM_RIVALS) / name, name);
    }

  private:
    std::filesystem::path mPath;
};

class FactoryTest : public testing::Test {
  protected:
    /** Our plug-in and the given rivals, in one folder. */
    ExtractorFactory factoryWith(std::initializer_list<const char*> rivals) const {
        mFolder.addOurs();
        for (const char* rival : rivals) {
            mFolder.addRival(rival);
        }
        return ExtractorFactory({mFolder.path()});
    }

    std::string winnerFor(const ExtractorFactory& factory, Bytes bytes) const {
        MemorySource source(std::move(bytes));
        const auto extractor = factory.open(source.table());
        return extractor == nullptr ? "nobody" : extractor->name();
    }
    std::string winnerAgainst(const char* rival) const {
        return winnerFor(factoryWith({rival}), ogmFile());
    }

    static Bytes ogmFile() { return oneVideoOneAudioFile({}).bytes(); }
    static Bytes noOgmFile() { return Bytes(2048, 0x20); }

    PluginFolder mFolder;
};

/** Number of `meta` objects of the rival's sniffs that have not been freed. */
int unfreedMeta(const ExtractorFactory& factory, const std::string& name) {
    for (const auto& plugin : factory.plugins()) {
        if (plugin.definition.extractor_name == name) {
            return *static_cast<std::atomic<int>*>(dlsym(plugin.library.get(), "gRivalMetaCount"));
        }
    }
    throw std::logic_error("no such rival");
}

TEST_F(FactoryTest, RegistersThePluginUnderItsNameWithItsTypes) {
    const ExtractorFactory factory = factoryWith({});
    EXPECT_THAT(factory.names(), ElementsAre(kOurName));
    EXPECT_THAT(factory.supportedTypes(), ElementsAre("ogm", "ogg"));
}

TEST_F(FactoryTest, OpensAnOgmFileAndReadsTracksNameAndFormat) {
    const ExtractorFactory factory = factoryWith({});
    MemorySource source(ogmFile());
    const auto extractor = factory.open(source.table());
    ASSERT_NE(nullptr, extractor);
    EXPECT_EQ(2U, extractor->trackCount());
    EXPECT_EQ(kOurExtractor, extractor->name());
}

TEST_F(FactoryTest, OpensNothingThatIsNoOgmFile) {
    EXPECT_EQ("nobody", winnerFor(factoryWith({}), noOgmFile()));
}

TEST_F(FactoryTest, APluginThatAnswersLessLoses) {
    EXPECT_EQ(kOurExtractor, winnerAgainst("librival04extractor.so"));
}

TEST_F(FactoryTest, APluginWithLowerConfidenceGetsTheFilesThatOursRefuses) {
    EXPECT_EQ("Rival 0.4", winnerFor(factoryWith({"librival04extractor.so"}), noOgmFile()));
}

TEST_F(FactoryTest, APluginThatAnswersMoreWins) {
    EXPECT_EQ("Rival 0.6", winnerAgainst("librival06extractor.so"));
}

TEST_F(FactoryTest, AnEqualAnswerWinsWhenItsNameSortsFirst) {
    const ExtractorFactory factory = factoryWith({"librivalbeforeextractor.so"});
    EXPECT_THAT(factory.names(), ElementsAre("A rival", kOurName));
    EXPECT_EQ("A rival", winnerFor(factory, ogmFile()));
}

TEST_F(FactoryTest, AnEqualAnswerLosesWhenItsNameSortsLast) {
    const ExtractorFactory factory = factoryWith({"librivalafterextractor.so"});
    EXPECT_THAT(factory.names(), ElementsAre(kOurName, "ZZ rival"));
    EXPECT_EQ(kOurExtractor, winnerFor(factory, ogmFile()));
}

TEST_F(FactoryTest, AnAnswerOfNothingNeverWins) {
    EXPECT_EQ("nobody", winnerFor(factoryWith({"librivalunsureextractor.so"}), noOgmFile()));
}

TEST_F(FactoryTest, TheMetaOfALosingSniffIsFreed) {
    const ExtractorFactory factory = factoryWith({"librivalafterextractor.so"});
    MemorySource source(ogmFile());
    const auto extractor = factory.open(source.table());
    EXPECT_EQ(0, unfreedMeta(factory, "ZZ rival"));
}

TEST_F(FactoryTest, TheMetaOfTheWinningSniffIsFreedAfterCreation) {
    const ExtractorFactory factory = factoryWith({"librival06extractor.so"});
    MemorySource source(ogmFile());
    const auto extractor = factory.open(source.table());
    ASSERT_NE(nullptr, extractor);
    EXPECT_EQ(0, unfreedMeta(factory, "Rival 0.6"));
}

TEST_F(FactoryTest, ALibraryWhoseFileNameLacksExtractorIsIgnored) {
    mFolder.add(OGM_PLUGIN_PATH, "libogm.so");
    mFolder.add(OGM_PLUGIN_PATH, ".libogmextractor.so");
    EXPECT_THAT(ExtractorFactory({mFolder.path()}).names(), IsEmpty());
}

TEST_F(FactoryTest, AFileThatIsNotALibraryIsSkipped) {
    std::ofstream(mFolder.path() / "libnoextractor.so") << "no library";
    EXPECT_THAT(factoryWith({}).names(), ElementsAre(kOurName));
}

TEST_F(FactoryTest, ALibraryWithoutTheEntryPointIsPassedOver) {
    EXPECT_THAT(factoryWith({"libnoentryextractor.so"}).names(), ElementsAre(kOurName));
}

TEST_F(FactoryTest, PluginsThatFailTheChecksAreRefused) {
    EXPECT_THAT(factoryWith({"librivaloldextractor.so", "librivalnewerextractor.so",
                             "librivalnouuidextractor.so", "librivalnonameextractor.so"})
                        .names(),
                ElementsAre(kOurName));
}

TEST_F(FactoryTest, ALaterVersionWithTheSameUuidReplacesThePlugin) {
    EXPECT_THAT(factoryWith({"librivalupdateextractor.so"}).names(), ElementsAre("Update"));
}

TEST_F(FactoryTest, AnEarlierVersionWithTheSameUuidIsPassedOver) {
    EXPECT_THAT(factoryWith({"librivaloutdatedextractor.so"}).names(), ElementsAre(kOurName));
}

TEST_F(FactoryTest, OfEqualVersionsTheOneInTheEarlierFolderStays) {
    const PluginFolder earlier;
    earlier.addRival("librivalsameextractor.so");
    mFolder.addOurs();
    EXPECT_THAT(ExtractorFactory({earlier.path(), mFolder.path()}).names(), ElementsAre("Same"));
    EXPECT_THAT(ExtractorFactory({mFolder.path(), earlier.path()}).names(), ElementsAre(kOurName));
}

TEST_F(FactoryTest, AMissingFolderIsNoError) {
    mFolder.addOurs();
    const ExtractorFactory factory({mFolder.path() / "missing", mFolder.path()});
    EXPECT_THAT(factory.names(), ElementsAre(kOurName));
}

TEST_F(FactoryTest, AnExtractorKeepsItsLibraryAfterTheFactoryIsFreed) {
    MemorySource source(ogmFile());
    std::unique_ptr<ExtractorFactory::OpenedExtractor> extractor;
    {
        const ExtractorFactory factory = factoryWith({});
        extractor = factory.open(source.table());
    }
    ASSERT_NE(nullptr, extractor);
    CMediaExtractor* table = extractor->table();
    EXPECT_EQ(2U, table->countTracks(table->data));
}

/** Track objects, then their tables, then the extractor object, then its table. */
TEST_F(FactoryTest, EverySampleIsReadAndFreedInTheFrameworksOrder) {
    const ExtractorFactory factory = factoryWith({"librival04extractor.so"});
    for (const char* sample : kShortSamples) {
        SCOPED_TRACE(sample);
        MemorySource source(sampleBytes(sample));
        const auto extractor = factory.open(source.table());
        ASSERT_NE(nullptr, extractor);
        CMediaExtractor* table = extractor->table();
        std::vector<std::unique_ptr<Track>> tracks;
        // The factory's object frees the table, after the tracks.
        const std::shared_ptr<CMediaExtractor> shared(table, [](CMediaExtractor*) {});
        for (size_t i = 0; i < extractor->trackCount(); ++i) {
            tracks.push_back(std::make_unique<Track>(shared, table->getTrack(table->data, i)));
            ASSERT_EQ(AMEDIA_OK, tracks.back()->start());
        }
        for (const auto& track : tracks) {
            EXPECT_TRUE(track->read().hasBuffer);
        }
    }
}

}  // namespace
}  // namespace android::ogm::test
