// SPDX-License-Identifier: Apache-2.0
#include <media/MediaExtractorPluginApi.h>

#include <stddef.h>

#include <type_traits>

#include <gtest/gtest.h>

using namespace android;

static_assert(EXTRACTORDEF_VERSION_LEGACY == 1);
static_assert(EXTRACTORDEF_VERSION_NDK_V1 == 2);
static_assert(EXTRACTORDEF_VERSION_NDK_V2 == 3);
static_assert(EXTRACTORDEF_VERSION == 3);
static_assert(std::is_same_v<decltype(EXTRACTORDEF_VERSION), const uint32_t>);

static_assert(std::is_same_v<CreatorFunc, CMediaExtractor* (*)(CDataSource*, void*)>);
static_assert(std::is_same_v<FreeMetaFunc, void (*)(void*)>);
static_assert(
        std::is_same_v<SnifferFunc, CreatorFunc (*)(CDataSource*, float*, void**, FreeMetaFunc*)>);
static_assert(std::is_same_v<GetExtractorDef, ExtractorDef (*)()>);

static_assert(sizeof(media_uuid_t) == 16);
static_assert(alignof(media_uuid_t) == 1);
static_assert(std::is_same_v<decltype(media_uuid_t::b), const uint8_t[16]>);
static_assert(!std::is_copy_assignable_v<media_uuid_t>);

static_assert(std::is_copy_constructible_v<ExtractorDef>);
static_assert(!std::is_copy_assignable_v<ExtractorDef>);
static_assert(std::is_aggregate_v<ExtractorDef>);
static_assert(std::is_same_v<decltype(ExtractorDef::def_version), const uint32_t>);
static_assert(std::is_same_v<decltype(ExtractorDef::extractor_uuid), media_uuid_t>);
static_assert(std::is_same_v<decltype(ExtractorDef::extractor_version), const uint32_t>);
static_assert(std::is_same_v<decltype(ExtractorDef::extractor_name), const char*>);
static_assert(std::is_same_v<decltype(ExtractorDef::u.v2.sniff), SnifferFunc>);
static_assert(std::is_same_v<decltype(ExtractorDef::u.v3.sniff), SnifferFunc>);
static_assert(std::is_same_v<decltype(ExtractorDef::u.v3.supported_types), const char**>);

#ifdef __LP64__
static_assert(sizeof(ExtractorDef) == 48);
static_assert(alignof(ExtractorDef) == 8);
static_assert(offsetof(ExtractorDef, def_version) == 0);
static_assert(offsetof(ExtractorDef, extractor_uuid) == 4);
static_assert(offsetof(ExtractorDef, extractor_version) == 20);
static_assert(offsetof(ExtractorDef, extractor_name) == 24);
static_assert(offsetof(ExtractorDef, u.v2.sniff) == 32);
static_assert(offsetof(ExtractorDef, u.v3.sniff) == 32);
static_assert(offsetof(ExtractorDef, u.v3.supported_types) == 40);

static_assert(sizeof(CDataSource) == 40);
static_assert(offsetof(CDataSource, readAt) == 0);
static_assert(offsetof(CDataSource, getSize) == 8);
static_assert(offsetof(CDataSource, flags) == 16);
static_assert(offsetof(CDataSource, getUri) == 24);
static_assert(offsetof(CDataSource, handle) == 32);

static_assert(sizeof(CMediaBuffer) == 64);
static_assert(offsetof(CMediaBuffer, handle) == 0);
static_assert(offsetof(CMediaBuffer, release) == 8);
static_assert(offsetof(CMediaBuffer, data) == 16);
static_assert(offsetof(CMediaBuffer, size) == 24);
static_assert(offsetof(CMediaBuffer, range_offset) == 32);
static_assert(offsetof(CMediaBuffer, range_length) == 40);
static_assert(offsetof(CMediaBuffer, set_range) == 48);
static_assert(offsetof(CMediaBuffer, meta_data) == 56);

static_assert(sizeof(CMediaBufferGroup) == 40);
static_assert(offsetof(CMediaBufferGroup, handle) == 0);
static_assert(offsetof(CMediaBufferGroup, init) == 8);
static_assert(offsetof(CMediaBufferGroup, add_buffer) == 16);
static_assert(offsetof(CMediaBufferGroup, acquire_buffer) == 24);
static_assert(offsetof(CMediaBufferGroup, has_buffers) == 32);

static_assert(sizeof(CMediaTrack) == 56);
static_assert(offsetof(CMediaTrack, data) == 0);
static_assert(offsetof(CMediaTrack, free) == 8);
static_assert(offsetof(CMediaTrack, start) == 16);
static_assert(offsetof(CMediaTrack, stop) == 24);
static_assert(offsetof(CMediaTrack, getFormat) == 32);
static_assert(offsetof(CMediaTrack, read) == 40);
static_assert(offsetof(CMediaTrack, supportsNonBlockingRead) == 48);

static_assert(sizeof(CMediaExtractor) == 72);
static_assert(offsetof(CMediaExtractor, data) == 0);
static_assert(offsetof(CMediaExtractor, free) == 8);
static_assert(offsetof(CMediaExtractor, countTracks) == 16);
static_assert(offsetof(CMediaExtractor, getTrack) == 24);
static_assert(offsetof(CMediaExtractor, getTrackMetaData) == 32);
static_assert(offsetof(CMediaExtractor, getMetaData) == 40);
static_assert(offsetof(CMediaExtractor, flags) == 48);
static_assert(offsetof(CMediaExtractor, setMediaCas) == 56);
static_assert(offsetof(CMediaExtractor, name) == 64);
#endif

static_assert(
        std::is_same_v<decltype(CDataSource::readAt), ssize_t (*)(void*, off64_t, void*, size_t)>);
static_assert(std::is_same_v<decltype(CDataSource::getSize), status_t (*)(void*, off64_t*)>);
static_assert(std::is_same_v<decltype(CDataSource::flags), uint32_t (*)(void*)>);
static_assert(std::is_same_v<decltype(CDataSource::getUri), bool (*)(void*, char*, size_t)>);

static_assert(std::is_same_v<decltype(CMediaBuffer::release), void (*)(void*)>);
static_assert(std::is_same_v<decltype(CMediaBuffer::data), void* (*)(void*)>);
static_assert(std::is_same_v<decltype(CMediaBuffer::size), size_t (*)(void*)>);
static_assert(std::is_same_v<decltype(CMediaBuffer::range_offset), size_t (*)(void*)>);
static_assert(std::is_same_v<decltype(CMediaBuffer::range_length), size_t (*)(void*)>);
static_assert(std::is_same_v<decltype(CMediaBuffer::set_range), void (*)(void*, size_t, size_t)>);
static_assert(std::is_same_v<decltype(CMediaBuffer::meta_data), AMediaFormat* (*)(void*)>);

static_assert(
        std::is_same_v<decltype(CMediaBufferGroup::init), bool (*)(void*, size_t, size_t, size_t)>);
static_assert(std::is_same_v<decltype(CMediaBufferGroup::add_buffer), void (*)(void*, size_t)>);
static_assert(std::is_same_v<decltype(CMediaBufferGroup::acquire_buffer),
                             media_status_t (*)(void*, CMediaBuffer**, bool, size_t)>);
static_assert(std::is_same_v<decltype(CMediaBufferGroup::has_buffers), bool (*)(void*)>);

static_assert(std::is_same_v<decltype(CMediaTrack::free), void (*)(void*)>);
static_assert(std::is_same_v<decltype(CMediaTrack::start),
                             media_status_t (*)(void*, CMediaBufferGroup*)>);
static_assert(std::is_same_v<decltype(CMediaTrack::stop), media_status_t (*)(void*)>);
static_assert(
        std::is_same_v<decltype(CMediaTrack::getFormat), media_status_t (*)(void*, AMediaFormat*)>);
static_assert(std::is_same_v<decltype(CMediaTrack::read),
                             media_status_t (*)(void*, CMediaBuffer**, uint32_t, int64_t)>);
static_assert(std::is_same_v<decltype(CMediaTrack::supportsNonBlockingRead), bool (*)(void*)>);

static_assert(std::is_same_v<decltype(CMediaExtractor::free), void (*)(void*)>);
static_assert(std::is_same_v<decltype(CMediaExtractor::countTracks), size_t (*)(void*)>);
static_assert(std::is_same_v<decltype(CMediaExtractor::getTrack), CMediaTrack* (*)(void*, size_t)>);
static_assert(std::is_same_v<decltype(CMediaExtractor::getTrackMetaData),
                             media_status_t (*)(void*, AMediaFormat*, size_t, uint32_t)>);
static_assert(std::is_same_v<decltype(CMediaExtractor::getMetaData),
                             media_status_t (*)(void*, AMediaFormat*)>);
static_assert(std::is_same_v<decltype(CMediaExtractor::flags), uint32_t (*)(void*)>);
static_assert(std::is_same_v<decltype(CMediaExtractor::setMediaCas),
                             media_status_t (*)(void*, const uint8_t*, size_t)>);
static_assert(std::is_same_v<decltype(CMediaExtractor::name), const char* (*)(void*)>);

static_assert(std::is_same_v<std::underlying_type_t<CMediaTrackReadOptions>, uint32_t>);
static_assert(SEEK_PREVIOUS_SYNC == 0, "the enumerators are names of the namespace too");
static_assert(SEEK_NEXT_SYNC == 1);
static_assert(SEEK_CLOSEST_SYNC == 2);
static_assert(SEEK_CLOSEST == 3);
static_assert(SEEK_FRAME_INDEX == 4);
static_assert(SEEK == 8);
static_assert(NONBLOCKING == 16);

namespace {

CreatorFunc neverSniffs(CDataSource*, float*, void**, FreeMetaFunc*) {
    return nullptr;
}

TEST(MediaExtractorPluginApiTest, ARecordIsInitialisedInFieldOrderWithADesignatedUnionMember) {
    static const char* types[] = {"one", nullptr};
    const ExtractorDef definition = {
            EXTRACTORDEF_VERSION, {{1, 2, 3}}, 7, "name", {.v3 = {neverSniffs, types}}};
    const ExtractorDef copy = definition;
    EXPECT_EQ(3U, copy.def_version);
    EXPECT_EQ(3, copy.extractor_uuid.b[2]);
    EXPECT_EQ(0, copy.extractor_uuid.b[15]);
    EXPECT_EQ(7U, copy.extractor_version);
    EXPECT_STREQ("name", copy.extractor_name);
    EXPECT_EQ(neverSniffs, copy.u.v3.sniff);
    EXPECT_EQ(types, copy.u.v3.supported_types);
}

}  // namespace
