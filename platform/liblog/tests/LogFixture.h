// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <mutex>
#include <string>
#include <vector>

#include <android/log.h>
#include <cutils/properties.h>
#include <gtest/gtest.h>

/** Collects what reaches the logger; afterwards restores the log and its properties. */
class LogTest : public testing::Test {
  protected:
    struct Entry {
        int32_t bufferId;
        int32_t priority;
        std::string tag;
        std::string text;
        bool hasFile;
        uint32_t line;
        size_t structSize;
    };

    LogTest() {
        entries().clear();
        __android_log_set_logger(record);
    }

    ~LogTest() override {
        __android_log_set_logger(__android_log_logd_logger);
        __android_log_set_minimum_priority(ANDROID_LOG_DEFAULT);
        for (const std::string& name : mPropertiesSet) {
            property_set(name.c_str(), "");
        }
    }

    void setProperty(const std::string& name, const char* value) {
        ASSERT_EQ(0, property_set(name.c_str(), value));
        mPropertiesSet.push_back(name);
    }

    static std::vector<Entry>& entries() {
        static std::vector<Entry> theEntries;
        return theEntries;
    }

  private:
    static void record(const struct __android_log_message* message) {
        static std::mutex lock;
        const std::lock_guard<std::mutex> guard(lock);
        entries().push_back({message->buffer_id, message->priority, message->tag, message->message,
                             message->file != nullptr, message->line, message->struct_size});
    }

    std::vector<std::string> mPropertiesSet;
};
