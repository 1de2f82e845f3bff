// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <media/MediaExtractorPluginApi.h>

#include <string>

namespace ogmprobe::test {

/**
 * Does what the word says; returns from what cannot be done, and from no word at all. The words are
 * those of the table in Mischief.cpp.
 */
void misbehave(const std::string& what, android::CDataSource* source);

/** To be called while files can still be opened: finds the memory that other processes see too. */
void lookForSharedMemory();

}  // namespace ogmprobe::test
