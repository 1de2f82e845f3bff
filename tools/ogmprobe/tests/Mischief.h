// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <media/MediaExtractorPluginApi.h>

#include <string>

namespace ogmprobe::test {

/**
 * Does what the word says; the table in Mischief.cpp lists the words. Returns if that is not
 * possible or the word is empty.
 */
void misbehave(const std::string& what, android::CDataSource* source);

/** Finds memory that is shared with other processes. Call it while files can still be opened. */
void lookForSharedMemory();

}  // namespace ogmprobe::test
