// SPDX-License-Identifier: Apache-2.0
#include <media/NdkMediaFormatZor.h>

#include <dlfcn.h>

#include <gtest/gtest.h>

namespace {

TEST(NdkMediaFormatZorTest, TheLayerKeyHasItsText) {
    EXPECT_STREQ("mpeg-aud-layer", AMEDIAFORMAT_KEY_MPEG_AUD_LAYER);
}

TEST(NdkMediaFormatZorTest, TheKeyIsExportedByTheVendorsLibrary) {
    void* const library = dlopen("libmediandk.zor.so", RTLD_NOW | RTLD_NOLOAD);
    ASSERT_NE(nullptr, library) << dlerror();
    EXPECT_NE(nullptr, dlsym(library, "AMEDIAFORMAT_KEY_MPEG_AUD_LAYER"));
    dlclose(library);
}

}  // namespace
