// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <utils/RefBase.h>

#include <string>

/** A reference-counted object that records its events, one word for each. */
class TestObject : public android::RefBase {
  public:
    explicit TestObject(std::string* events = nullptr) : mEvents(events) {}
    ~TestObject() override { record("deleted"); }

    using RefBase::extendObjectLifetime;
    static constexpr int32_t kLivesUntilLastWeak = OBJECT_LIFETIME_WEAK;

    void refuseRevival() { mMayRevive = false; }

  protected:
    void onFirstRef() override { record("first" + std::to_string(getStrongCount())); }
    void onLastStrongRef(const void*) override {
        record("lastStrong" + std::to_string(getStrongCount()));
    }
    void onLastWeakRef(const void*) override { record("lastWeak"); }
    bool onIncStrongAttempted(uint32_t flags, const void* id) override {
        return mMayRevive && RefBase::onIncStrongAttempted(flags, id);
    }

  private:
    void record(const std::string& event) {
        if (mEvents != nullptr) {
            *mEvents += (mEvents->empty() ? "" : " ") + event;
        }
    }

    std::string* const mEvents;
    bool mMayRevive = true;
};

class DerivedObject : public TestObject {
  public:
    using TestObject::TestObject;
};
