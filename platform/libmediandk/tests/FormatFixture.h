// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <stdint.h>

#include <string>

#include <gtest/gtest.h>
#include <media/NdkMediaFormat.h>

/** A format for each test. */
class FormatTest : public testing::Test {
  protected:
    ~FormatTest() override { AMediaFormat_delete(mFormat); }

    /** The entries as text: shows names, types, values and order at once. */
    std::string text() const { return AMediaFormat_toString(mFormat); }

    AMediaFormat* const mFormat = AMediaFormat_new();
};
