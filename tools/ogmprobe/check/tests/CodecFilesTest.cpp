// SPDX-License-Identifier: Apache-2.0
#include "check/CodecFiles.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "ExitCode.h"
#include "TemporaryFolder.h"
#include "check/DecoderJson.h"

#include <nlohmann/json.hpp>

namespace ogmprobe::check {
namespace {

using testing::EndsWith;
using testing::HasSubstr;

class CodecFilesTest : public testing::Test {
  protected:
    std::string refusal(const std::vector<std::string>& paths) const {
        try {
            decodersOfFiles(paths);
        } catch (const ProbeError& error) {
            EXPECT_EQ(error.code(), ExitCode::kFile);
            return error.what();
        }
        return "";
    }

    test::TemporaryFolder mFolder;
};

TEST_F(CodecFilesTest, FilesAndWhatTheyIncludeMakeOneList) {
    mFolder.write("media_codecs_audio.xml", R"(<Included><Include href="more.xml"/></Included>)");
    mFolder.write("more.xml", R"(<Included><Decoders><MediaCodec name="b" type="audio/mpeg"/>
        </Decoders></Included>)");
    const std::string first = mFolder.write("media_codecs.xml", R"(<MediaCodecs>
        <Include href="media_codecs_audio.xml"/></MediaCodecs>)");
    const std::string second = mFolder.write("swcodec.xml", R"(<MediaCodecs><Decoders>
        <MediaCodec name="c" type="audio/raw"><Limit name="size" max="64x48"/></MediaCodec>
        </Decoders></MediaCodecs>)");
    const DecoderList list = decodersOfFiles({first, second});
    ASSERT_EQ(list.decoders.size(), 2U);
    EXPECT_EQ(list.decoders[0].name, "b");
    EXPECT_EQ(list.decoders[1].limits.maxSize->height, 48);
    EXPECT_THAT(list.source, EndsWith("swcodec.xml (2 decoders)"));
}

TEST_F(CodecFilesTest, AFileThatIsNotThereIsNamedWithTheOneThatIncludesIt) {
    EXPECT_THAT(refusal({"missing.xml"}),
                "cannot read the list of codecs missing.xml: No such file or directory");
    const std::string path =
            mFolder.write("a.xml", R"(<MediaCodecs><Include href="gone.xml"/></MediaCodecs>)");
    EXPECT_THAT(refusal({path}), HasSubstr("a.xml includes: No such file or directory; copy it"));
}

TEST_F(CodecFilesTest, AFileOfMoreThan1MegabyteIsRefusedUnread) {
    const std::string path = mFolder.write("big.xml", "");
    std::filesystem::resize_file(path, uint64_t{100} << 20);
    EXPECT_THAT(refusal({path}),
                EndsWith("big.xml is larger than 1.0 MB: it is no list of codecs"));
}

TEST_F(CodecFilesTest, AListWithoutADecoderIsRefused) {
    EXPECT_THAT(refusal({mFolder.write("a.xml", "<MediaCodecs/>")}), EndsWith("list no decoder"));
}

TEST_F(CodecFilesTest, DecodersTravelBetweenProcessesWithAllTheirLimits) {
    const Decoder decoder = {"c2.maker.x",
                             "video/x",
                             {Extent{1, 2},
                              Extent{3, 4},
                              Extent{5, 6},
                              Extent{7, 8},
                              {{9, 10}},
                              {{11, 12}, {13, 1e300}},
                              {{15, 16}},
                              {{17, 18.5}},
                              {{19, 20}},
                              {{21, 22}}},
                             "plays protected content only"};
    EXPECT_EQ(decoderOf(toJson(decoder)), decoder);
    const Decoder silent = {"c2.maker.y", "audio/y", {}, ""};
    EXPECT_EQ(decoderOf(toJson(silent)), silent);
}

}  // namespace
}  // namespace ogmprobe::check
