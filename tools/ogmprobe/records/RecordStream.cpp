// SPDX-License-Identifier: Apache-2.0
#include "records/RecordStream.h"

#include <algorithm>
#include <array>
#include <type_traits>
#include <utility>

#include "records/RecordFields.h"

namespace ogmprobe {
namespace {

/** Marks the end, in place of a record's type. */
constexpr uint16_t kEnd = 0xffff;

// Far above what a working extractor returns. The writer cuts longer fields.
constexpr uint64_t kLongestText = uint64_t{1} << 16;
constexpr uint64_t kLongestList = uint64_t{1} << 16;
constexpr uint64_t kMaxBytes = uint64_t{1} << 30;

/** Memory for bytes is allocated as they arrive: a length alone does not allocate more. */
constexpr uint64_t kBytesAtOnce = uint64_t{1} << 20;

struct RecordHead {
    /** Index of the alternative of `Record`. */
    uint16_t type;
    /** Counts records, wrapping: bytes that are mistaken for a record rarely match. */
    uint16_t number;
};

/** One overload for each kind of field. */
class FieldWriter {
  public:
    explicit FieldWriter(RingWriter& ring) : mRing(ring) {}

    template <typename T>
            requires std::is_arithmetic_v<T> || std::is_enum_v<T> void put(const T& value) {
        mRing.write(&value, sizeof(value));
    }

    void put(const std::string& text) {
        const uint64_t size = std::min<uint64_t>(text.size(), kLongestText);
        put(size);
        mRing.write(text.data(), size);
    }

    void put(const std::vector<uint8_t>& bytes) {
        const uint64_t size = std::min<uint64_t>(bytes.size(), kMaxBytes);
        put(size);
        mRing.write(bytes.data(), size);
    }

    template <typename T>
    void put(const std::vector<T>& list) {
        const uint64_t size = std::min<uint64_t>(list.size(), kLongestList);
        put(size);
        for (uint64_t i = 0; i < size; ++i) {
            put(list[i]);
        }
    }

    template <typename T>
    void put(const std::optional<T>& value) {
        put(value.has_value());
        if (value) {
            put(*value);
        }
    }

    template <typename T>
    requires requires(const T& value) {
        fieldsOf(value);
    }
    void put(const T& value) {
        std::apply([this](const auto&... fields) { (this->put(fields), ...); }, fieldsOf(value));
    }

  private:
    RingWriter& mRing;
};

/** One overload for each kind of field, as for writing. */
class FieldReader {
  public:
    explicit FieldReader(RingReader& ring) : mRing(ring) {}

    template <typename T>
    requires std::is_arithmetic_v<T> void get(T& value) {
        mRing.read(&value, sizeof(value));
    }

    void get(bool& value) {
        uint8_t byte = 0;
        get(byte);
        require(byte <= 1, "a truth value that is none");
        value = byte != 0;
    }

    template <typename T>
    requires std::is_enum_v<T> void get(T& value) {
        std::underlying_type_t<T> number = 0;
        get(number);
        require(number >= 0 && number <= static_cast<decltype(number)>(lastOf(T())),
                "a number without a name");
        value = static_cast<T>(number);
    }

    void get(std::string& text) {
        text.resize(size(kLongestText));
        mRing.read(text.data(), text.size());
    }

    void get(std::vector<uint8_t>& bytes) {
        const uint64_t whole = size(kMaxBytes);
        bytes.clear();
        while (bytes.size() < whole) {
            const uint64_t done = bytes.size();
            bytes.resize(std::min(whole, done + kBytesAtOnce));
            mRing.read(bytes.data() + done, bytes.size() - done);
        }
    }

    template <typename T>
    void get(std::vector<T>& list) {
        const uint64_t whole = size(kLongestList);
        list.clear();
        while (list.size() < whole) {
            get(list.emplace_back());
        }
    }

    template <typename T>
    void get(std::optional<T>& value) {
        bool present = false;
        get(present);
        value.reset();
        if (present) {
            get(value.emplace());
        }
    }

    template <typename T>
    requires requires(T& value) {
        fieldsOf(value);
    }
    void get(T& value) {
        std::apply([this](auto&... fields) { (this->get(fields), ...); }, fieldsOf(value));
        if constexpr (std::same_as<T, TrackDescription>) {
            classify(value);
        }
    }

  private:
    static void require(bool condition, const char* otherwise) {
        if (!condition) {
            throw RingDamaged(otherwise);
        }
    }

    uint64_t size(uint64_t most) {
        uint64_t value = 0;
        get(value);
        require(value <= most, "a size out of bounds");
        return value;
    }

    RingReader& mRing;
};

template <size_t Index>
Record readAs(FieldReader& reader) {
    Record record(std::in_place_index<Index>);
    reader.get(std::get<Index>(record));
    return record;
}

template <size_t... Indices>
Record readType(uint16_t type, FieldReader& reader, std::index_sequence<Indices...>) {
    using Read = Record (*)(FieldReader&);
    constexpr std::array<Read, sizeof...(Indices)> kReaders = {readAs<Indices>...};
    return kReaders[type](reader);
}

constexpr size_t kRecordTypes = std::variant_size_v<Record>;

}  // namespace

void RecordWriter::write(const Record& record) {
    beginRecord(static_cast<uint16_t>(record.index()));
    std::visit([this](const auto& fields) { FieldWriter(mRing).put(fields); }, record);
    mRing.publish();
}

void RecordWriter::end() {
    beginRecord(kEnd);
    mRing.flush();
}

void RecordWriter::beginRecord(uint16_t type) {
    const RecordHead head = {type, mNumber++};
    mRing.write(&head, sizeof(head));
}

std::optional<Record> RecordReader::next() {
    RecordHead head = {};
    mRing.read(&head, sizeof(head));
    if (head.number != mNumber++) {
        throw RingDamaged("a record out of its turn");
    }
    if (head.type == kEnd) {
        return std::nullopt;
    }
    if (head.type >= kRecordTypes) {
        throw RingDamaged("a record of no known type");
    }
    FieldReader fields(mRing);
    return readType(head.type, fields, std::make_index_sequence<kRecordTypes>());
}

}  // namespace ogmprobe
